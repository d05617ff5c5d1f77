#pragma once

#include "QuillaryCore/Formats/MarkdownStyledText.h"

#include <QFont>

#include <array>
#include <cstddef>
#include <memory>

namespace quillary {

/// How high a wrapped text in a cell of a table is at most, told without shaping it.
///
/// A line of a table is as high as its highest cell, and of a wide table most cells are out of view. Shaping them costs
/// a thousand times what it costs to add up the advances of their glyphs. Lines are broken where the next word has no
/// room, so that words that are taken for wider than they are, with fewer places to break them, never make fewer lines:
/// a cell whose lines counted like this are no more than another one has needs no layout to tell the height.
class MarkdownCellBound {
public:
    /// For texts with this font.
    explicit MarkdownCellBound(const QFont& font);

    /// The most that the lines of a text take at a width, in pixels; infinite for a text of which this can't be told:
    /// one with letters that may join, combine, run from right to left or be drawn with another font.
    double heightOf(const MarkdownStyledText& text, double width);

private:
    /// The font of a look of runs: plain, or set as code, strong or emphasized.
    struct Look;

    static constexpr std::size_t lookCount = 8;

    static std::size_t placeOf(const MarkdownStyledText::Run& run);
    Look& lookOf(const MarkdownStyledText::Run& run);
    double lineCount(const MarkdownStyledText& text, double width);
    double lineHeight(const MarkdownStyledText& text);

    QFont m_font;
    /// Made when they are asked for.
    std::array<std::shared_ptr<Look>, lookCount> m_looks;
};

} // namespace quillary
