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

    /// What a node without a text of its own has.
    struct Extent {
        /// The index of the first node that isn't in this one.
        quint32 end;
        /// The first number of a list, the place of a table among the tables.
        qint32 number;
    };

    /// There may be one for each unit of the text, so that it is kept small.
    struct Node {
        Kind kind = Kind::rule;
        Check check = Check::none;
        /// Of a list.
        bool isOrdered = false;
        /// Of a heading.
        quint8 level = 0;

        union {
            /// Of a heading, a paragraph and a code block.
            Text text = {};
            /// Of any other.
            Extent extent;
        };

        bool hasText() const { return kind == Kind::heading || kind == Kind::paragraph || kind == Kind::code; }
    };

    /// Its lines, the header's first, and the alignments of its columns, by their places among these.
    struct Table {
        quint32 firstLine = 0;
        quint32 endOfLines = 0;
        quint32 firstAlignment = 0;
        quint32 columns = 0;
    };

    struct Language {
        /// The code block that names it.
        quint32 node = 0;
        Text text;
    };

    QStringView view(const Text& text) const { return view(text.start, text.length); }

    QStringView view(qsizetype start, qsizetype length) const {
        return start >= 0 ? QStringView(source).sliced(start, length) : QStringView(joined).sliced(~start, length);
    }

    /// The language of a code block; a null view if it names none.
    QStringView language(const Node& code) const;

    /// The index of the first node that isn't in this one.
    std::size_t endOf(std::size_t node) const {
        return nodes[node].hasText() ? node + 1 : std::size_t(nodes[node].extent.end);
    }

    const Table& table(const Node& node) const { return tables[static_cast<std::size_t>(node.extent.number)]; }

    /// How many cells a line of a table is kept with: those behind are empty.
    std::size_t cellCount(std::size_t line) const {
        return (line + 1 < lines.size() ? lines[line + 1] : cells.size()) - lines[line];
    }

    /// Whether the nodes of two stretches say the same.
    static bool areEqual(const MarkdownTree& a, std::size_t firstOfA, std::size_t endOfA, const MarkdownTree& b,
                         std::size_t firstOfB, std::size_t endOfB);

    QString source;
    /// Texts that don't stand in the source in one piece.
    QString joined;
    std::vector<Node> nodes;
    /// The cells of all tables, line by line. A line has no more than are written in it, since a wide header over many
    /// short rows would be too much otherwise.
    std::vector<Text> cells;
    /// Where the cells of each line begin.
    std::vector<quint32> lines;
    std::vector<Alignment> alignments;
    std::vector<Table> tables;
    /// In the order of their nodes.
    std::vector<Language> languages;
};

} // namespace quillary
