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
    struct Text {
        qsizetype start = 0;
        qsizetype length = 0;
    };

    enum class Kind : quint8 { heading, paragraph, code, quote, list, table, rule, item };

    enum class Check : quint8 { none, open, done };

    enum class Alignment : quint8 { leading, center, trailing };

    struct Node {
        Kind kind = Kind::rule;
        Check check = Check::none;
        /// Of a list.
        bool isOrdered = false;
        /// The level of a heading, the first number of a list, the columns of a table; of a code block its place among
        /// the languages, or -1.
        int number = 0;
        /// The index of the first node that isn't in this one.
        std::size_t end = 0;
        /// Of a heading, a paragraph and a code block.
        Text text;
        /// Of a table: its cells row by row, the header first. The alignments of the header's cells are the columns'.
        std::size_t firstCell = 0;
        std::size_t endOfCells = 0;
    };

    struct Cell {
        Text text;
        Alignment alignment = Alignment::leading;
    };

    QStringView view(const Text& text) const {
        return text.start >= 0 ? QStringView(source).sliced(text.start, text.length)
                               : QStringView(joined).sliced(~text.start, text.length);
    }

    /// The language of a code block; a null view if it names none.
    QStringView language(const Node& code) const {
        return code.number < 0 ? QStringView() : view(languages[static_cast<std::size_t>(code.number)]);
    }

    /// Whether the nodes of two stretches say the same.
    static bool areEqual(const MarkdownTree& a, std::size_t firstOfA, std::size_t endOfA, const MarkdownTree& b,
                         std::size_t firstOfB, std::size_t endOfB);

    QString source;
    /// Texts that don't stand in the source in one piece.
    QString joined;
    std::vector<Node> nodes;
    std::vector<Cell> cells;
    std::vector<Text> languages;
};

} // namespace quillary
