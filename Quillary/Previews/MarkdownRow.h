#pragma once

#include "QuillaryCore/Formats/MarkdownTree.h"

namespace quillary {

/// A quote or a kind of item of a list that rows lie in: items with the same marker share one.
struct MarkdownFrame {
    enum class Marker : quint8 { none, bullet, number, open, done };

    /// The frame around it; -1 for none.
    qint32 parent = -1;
    /// Of a numbered item.
    qint32 number = 0;
    /// How many frames it lies in, no more than are shown.
    quint8 depth = 0;
    /// Of an item; a quote has none.
    Marker marker = Marker::none;
    /// How many digits the widest number of its list has.
    quint8 digits = 0;

    bool isQuote() const { return marker == Marker::none; }

    friend bool operator==(const MarkdownFrame&, const MarkdownFrame&) = default;
};

/// One row of the Markdown preview: a block without blocks of its own, or, of what may be very long, a piece of it.
/// There may be one for every two units of a text, so that it is kept small. MarkdownRows tells what stands in it.
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

    /// A part of what is shown in several rows.
    struct Part {
        /// The place of its code block, table or long text among these.
        qint32 source = -1;
        /// Where in its long text or its code block it begins; the line of a table, the header's being 0.
        qint32 start = 0;
    };

    MarkdownRow(Kind itsKind, qint32 itsFrame) : frame(itsFrame), kind(itsKind) {}

    union {
        /// Of a whole heading or paragraph.
        MarkdownTree::Text text = {};
        /// Of code, a table and a piece of a long text.
        Part part;
    };

    /// The innermost frame it lies in; -1 for none.
    qint32 frame;
    Kind kind : 3;
    Gap gap : 2 = Gap::none;
    /// Of a heading, 1 to 6.
    quint8 level : 3 = 0;
    /// How many of the frames it lies in, the innermost ones, begin with it.
    quint8 begun : 5 = 0;
    /// Whether it begins and ends its block.
    bool isFirst : 1 = true;
    bool isLast : 1 = true;
    /// Whether its last line of code or its line of a table goes on in the row below.
    bool isCut : 1 = false;
    /// Which piece of its line of a table, whose cells may be very long.
    quint16 piece : 15 = 0;
    /// Whether it is a piece of a long text.
    bool isPiece : 1 = false;

    bool hasText() const { return kind == Kind::heading || kind == Kind::paragraph; }
};

static_assert(sizeof(MarkdownFrame) == 12 && sizeof(MarkdownRow) == 16);

} // namespace quillary
