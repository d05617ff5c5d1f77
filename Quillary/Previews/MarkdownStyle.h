#pragma once

#include "Quillary/Previews/MarkdownRow.h"

#include <QFont>

#include <algorithm>
#include <array>

namespace quillary {

struct MarkdownRows;

/// The fonts and measures of the Markdown preview for one size of the editor's font. All lengths are in pixels.
struct MarkdownStyle {
    static constexpr double columnWidth = 720;
    static constexpr double paddingAcross = 26;
    static constexpr double paddingAlong = 32;
    static constexpr double quoteBarWidth = 1.5;
    static constexpr double quoteGap = 12;
    static constexpr float quoteBarOpacity = 0.35F;
    static constexpr double headingLineGap = 6;
    static constexpr double codePadding = 10;
    static constexpr double codeRadius = 6;
    static constexpr double cellPaddingAcross = 10;
    static constexpr double cellPaddingAlong = 6;
    static constexpr double hairline = 1;

    explicit MarkdownStyle(double baseSize);

    /// The size of the text of a heading.
    double headingSize(int level) const;

    QFont headingFont(int level) const;

    /// Whether a heading of this level has a line below and a distance above.
    static bool hasLine(int level) { return level <= 2; }

    double gap(MarkdownRow::Gap gap) const;

    /// What a frame moves its rows to the right.
    double indent(const MarkdownFrame& frame) const;

    /// The room for some words that a row has on a page of a width, however deep it lies.
    double leastWidth(double available) const { return std::min(baseSize * 12, available); }

    /// Where the content of a frame begins, however deep it lies: there is always room beside it for some words.
    double left(const MarkdownRows& rows, qint32 frame, double available) const;

    double baseSize;
    double ruleMargin;
    double headingMargin;
    double lineSpacing;
    double codeLineSpacing;
    double boxSize;
    QFont body;
    QFont cell;
    QFont headerCell;
    QFont code;
    QFont language;
    /// The weight of the headings below the second level.
    QFont::Weight lowerHeading;
    // Of the body's font
    double lineHeight;
    double averageAdvance;
    double codeLineHeight;
    double codeAdvance;
    double digitAdvance;
    /// The room above the code for the language; 0 for a block that names none.
    double languageHeight;
};

} // namespace quillary
