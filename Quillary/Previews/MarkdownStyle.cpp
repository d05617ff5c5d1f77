#include "Quillary/Previews/MarkdownStyle.h"

#include "Quillary/Previews/MarkdownRows.h"
#include "Quillary/Theme/Theme.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>

#include <algorithm>
#include <array>

namespace quillary {

namespace {

constexpr std::array headingFactors = {1.7, 1.4, 1.18, 1.05, 1.0, 0.92};
constexpr double cellFactor = 0.95;
constexpr double codeFactor = 0.92;
constexpr double boxFactor = 0.9;
constexpr double languageSize = 9.5;

/// Medium, or the next heavier weight of a font that has none, as many don't: it would give its regular one, and a
/// heading of the text's size would look like text.
QFont::Weight mediumOf(const QFont& font) {
    const QString family = QFontInfo(font).family();
    const QStringList styles = QFontDatabase::styles(family);
    const bool hasMedium = std::ranges::any_of(
        styles, [&family](const QString& style) { return QFontDatabase::weight(family, style) == QFont::Medium; });
    return hasMedium ? QFont::Medium : QFont::DemiBold;
}

} // namespace

MarkdownStyle::MarkdownStyle(double size)
    : baseSize(size),
      ruleMargin(size * 0.4),
      headingMargin(size * 0.4),
      lineSpacing(size * 0.3),
      codeLineSpacing(size * 0.2),
      boxSize(size * boxFactor),
      body(Theme::font(size)),
      cell(Theme::font(size * cellFactor)),
      headerCell(Theme::font(size * cellFactor, QFont::DemiBold)),
      code(Theme::monospacedFont(size * codeFactor)),
      language(Theme::font(languageSize)),
      lowerHeading(mediumOf(body)) {
    const QFontMetricsF bodyMetrics(body);
    const QFontMetricsF codeMetrics(code);
    lineHeight = bodyMetrics.height();
    averageAdvance = bodyMetrics.averageCharWidth();
    digitAdvance = bodyMetrics.horizontalAdvance(u'0');
    codeLineHeight = codeMetrics.height();
    codeAdvance = codeMetrics.horizontalAdvance(u'x');
    languageHeight = QFontMetricsF(language).height() + 4;
}

double MarkdownStyle::headingSize(int level) const {
    return baseSize * headingFactors.at(static_cast<std::size_t>(level - 1));
}

QFont MarkdownStyle::headingFont(int level) const {
    return Theme::font(headingSize(level), level <= 2 ? QFont::DemiBold : lowerHeading);
}

double MarkdownStyle::gap(MarkdownRow::Gap gap) const {
    switch (gap) {
    case MarkdownRow::Gap::none:
        return 0;
    case MarkdownRow::Gap::item:
        return baseSize * 0.35;
    case MarkdownRow::Gap::nested:
        return baseSize * 0.5;
    case MarkdownRow::Gap::block:
        return baseSize * 0.85;
    }
    Q_UNREACHABLE();
}

double MarkdownStyle::indent(const MarkdownFrame& frame) const {
    if (frame.isQuote()) {
        return quoteBarWidth + quoteGap;
    }
    const double usual = baseSize * 1.6;
    // The number, its dot and a blank.
    return std::max(usual, digitAdvance * (frame.digits + 1) + baseSize * 0.5);
}

double MarkdownStyle::left(const MarkdownRows& rows, qint32 frame, double available) const {
    double left = 0;
    for (; frame >= 0; frame = rows.frames[static_cast<std::size_t>(frame)].parent) {
        left += indent(rows.frames[static_cast<std::size_t>(frame)]);
    }
    return std::min(left, available - leastWidth(available));
}

} // namespace quillary
