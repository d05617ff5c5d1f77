#pragma once

#include <QString>
#include <QStringView>

#include <cstddef>
#include <vector>

namespace quillary {

/// The blocks of a Markdown text in one list, each container before what is in it. However deep the nesting, the tree
/// is copied, compared and dropped like any list. MarkdownBlock and its fellows are the way to read it.
struct MarkdownTree {
    /// A text of a block: where it begins in the source, or, below zero, ~where it begins among the joined texts.
    /// The numbers of a tree are small enough for every text below 1 GiB.
    struct Text {
        static Text of(qsizetype start, qsizetype length) {
            return {static_cast<qint32>(start), static_cast<qint32>(length)};
        }

        qint32 start = 0;
        qint32 length = 0;
    };

    enum class Kind : quint8 { heading, paragraph, code, quote, list, table, rule, item };

    enum class Check : quint8 { none, open, done };

    enum class Alignment : quint8 { leading, center, trailing };

    /// There may be one for each unit of the text, so that it is kept small.
    struct Node {
        Kind kind = Kind::rule;
        Check check = Check::none;
        /// Of a list.
        bool isOrdered = false;
        /// Of a heading.
        quint8 level = 0;
        /// The index of the first node that isn't in this one.
        quint32 end = 0;

        union {
            /// Of a heading, a paragraph and a code block.
            Text text = {};
            /// The first number of a list, the place of a table among the tables.
            qint32 number;
        };
    };

    /// Its cells row by row, the header first. The alignments of the header's cells are the columns'.
    struct Table {
        quint32 firstCell = 0;
        quint32 endOfCells = 0;
        quint32 columns = 0;
    };

    struct Language {
        /// The code block that names it.
        quint32 node = 0;
        Text text;
    };

    struct Cell {
        Text text;
        Alignment alignment = Alignment::leading;
    };

    QStringView view(const Text& text) const { return view(text.start, text.length); }

    QStringView view(qsizetype start, qsizetype length) const {
        return start >= 0 ? QStringView(source).sliced(start, length) : QStringView(joined).sliced(~start, length);
    }

    /// The language of a code block; a null view if it names none.
    QStringView language(const Node& code) const;

    const Table& table(const Node& node) const { return tables[static_cast<std::size_t>(node.number)]; }

    /// Whether the nodes of two stretches say the same.
    static bool areEqual(const MarkdownTree& a, std::size_t firstOfA, std::size_t endOfA, const MarkdownTree& b,
                         std::size_t firstOfB, std::size_t endOfB);

    QString source;
    /// Texts that don't stand in the source in one piece.
    QString joined;
    std::vector<Node> nodes;
    std::vector<Cell> cells;
    std::vector<Table> tables;
    /// In the order of their nodes.
    std::vector<Language> languages;
};

} // namespace quillary
