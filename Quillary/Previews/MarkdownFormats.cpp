#include "Quillary/Previews/MarkdownFormats.h"

#include "Quillary/Theme/Theme.h"

#include <QTextCharFormat>

#include <algorithm>
#include <array>
#include <optional>

namespace quillary::MarkdownFormats {

namespace {

constexpr double inlineCodeFactor = 0.9;
constexpr double pointsPerPixel = 0.75;

QTextCharFormat formatOf(const MarkdownStyledText::Run& run, const QFont& font, const QPalette& palette) {
    QTextCharFormat format;
    if (run.code) {
        const QFont code = Theme::monospacedFont(font.pointSizeF() / pointsPerPixel * inlineCodeFactor);
        format.setFontFamilies(code.families());
        format.setFontPointSize(code.pointSizeF());
        format.setFontFixedPitch(true);
        format.setBackground(Theme::subtleFill(palette));
    }
    if (run.strong) {
        format.setFontWeight(QFont::Bold);
    }
    if (run.emphasis) {
        format.setFontItalic(true);
    }
    if (run.strike) {
        format.setFontStrikeOut(true);
    }
    if (run.link >= 0) {
        format.setForeground(palette.color(QPalette::Link));
    }
    return format;
}

} // namespace

QFont fontOf(const MarkdownStyledText::Run& run, const QFont& font) {
    return formatOf(run, font, QPalette()).font().resolve(font);
}

QList<QTextLayout::FormatRange> ofText(const MarkdownStyledText& styled, const QFont& font, const QPalette& palette) {
    // Runs may be many; the ways in which they differ are few.
    std::array<std::optional<QTextCharFormat>, 32> looks;
    QList<QTextLayout::FormatRange> formats;
    for (const MarkdownStyledText::Run& run : styled.runs) {
        const std::size_t look = (run.code ? 1U : 0U) | (run.strong ? 2U : 0U) | (run.emphasis ? 4U : 0U) |
                                 (run.strike ? 8U : 0U) | (run.link >= 0 ? 16U : 0U);
        if (look == 0) {
            continue;
        }
        if (!looks[look]) {
            looks[look] = formatOf(run, font, palette);
        }
        formats.append({run.start, run.length, *looks[look]});
    }
    return formats;
}

QList<QTextLayout::FormatRange> ofCode(const QList<SyntaxToken>& tokens, qsizetype start, qsizetype length,
                                       const QPalette& palette) {
    QList<QTextLayout::FormatRange> formats;
    auto token = std::partition_point(tokens.begin(), tokens.end(),
                                      [start](const SyntaxToken& candidate) { return candidate.range.end() <= start; });
    for (; token != tokens.end() && token->range.location < start + length; ++token) {
        const qsizetype from = std::max(token->range.location, start);
        const qsizetype to = std::min(token->range.end(), start + length);
        QTextCharFormat format;
        format.setForeground(Theme::syntaxColor(token->kind).in(palette));
        formats.append({static_cast<int>(from - start), static_cast<int>(to - from), format});
    }
    return formats;
}

} // namespace quillary::MarkdownFormats
