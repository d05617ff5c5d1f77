#pragma once

#include <QStringView>

#include <optional>

namespace quillary {

/// A quote or an item of a list that rows lie in.
struct MarkdownFrame {
    enum class Marker : quint8 { none, bullet, number, open, done };

    /// The frame around it; -1 for none.
    qint32 parent = -1;
    /// The row that its marker stands beside.
    qint32 firstRow = 0;
    /// Of a numbered item.
    qint32 number = 0;
    /// How many frames it lies in, no more than are shown.
    quint8 depth = 0;
    /// Of an item; a quote has none.
    Marker marker = Marker::none;
    /// How many digits the widest number of its list has.
    quint8 digits = 0;

    bool isQuote() const { return marker == Marker::none; }
};

/// One row of the Markdown preview: a block without blocks of its own, or, of what may be very long, a piece of it.
struct MarkdownRow {
    enum class Kind : quint8 {
        heading,
        paragraph,
        code,
        table,
        rule,
        blank, ///< an item with nothing in it
    };

    /// The distance to the row above.
    enum class Gap : quint8 {
        none,   ///< the same block goes on
        item,   ///< the next item of a list
        nested, ///< the next block in a quote or an item
        block,  ///< the next block at top level
    };

    /// Of a heading or a paragraph its raw text, of code some of its lines without the last one's end. Null for a piece
    /// of a long text and for a row of a table.
    QStringView text;
    /// The place of its code block, table or long text among these.
    qint32 source = -1;
    /// Where in its long text or its code block it begins; the line of a table, the header's being 0.
    qint32 start = 0;
    /// The length of a piece of a long text.
    qint32 length = 0;
    /// The innermost frame it lies in; -1 for none.
    qint32 frame = -1;
    Kind kind = Kind::paragraph;
    Gap gap = Gap::none;
    /// Of a heading, 1 to 6.
    quint8 level = 0;
    /// Which piece of its line of a table, whose cells may be very long.
    quint8 piece = 0;
    /// Whether it begins and ends its block.
    bool isFirst = true;
    bool isLast = true;
    /// Whether its last line of code goes on in the row below.
    bool isCut = false;
};

} // namespace quillary
