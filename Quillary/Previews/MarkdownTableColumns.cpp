#include "Quillary/Previews/MarkdownTableColumns.h"

#include "Quillary/Previews/PreviewText.h"
#include "QuillaryCore/Formats/MarkdownInline.h"

#include <QFontMetricsF>

#include <algorithm>

namespace quillary {

namespace {

constexpr qsizetype sampleCells = 600;
constexpr qsizetype sampleUnits = 100;
constexpr double widestText = 320;

/// The width that the text of a cell asks for.
double widthOf(QStringView raw, const QFontMetricsF& metrics) {
    const MarkdownStyledText styled = MarkdownInline::styled(raw.first(std::min(raw.size(), sampleUnits)));
    double width = metrics.horizontalAdvance(PreviewText::oneLine(styled.text));
    for (const MarkdownStyledText::Run& run : styled.runs) {
        // Code and strong text are somewhat wider.
        if (run.code || run.strong) {
            width += 0.12 * metrics.horizontalAdvance(styled.text.sliced(run.start, run.length));
        }
    }
    return width;
}

} // namespace

MarkdownTableColumns::MarkdownTableColumns(const MarkdownTable& table, const MarkdownStyle& style, double available) {
    const qsizetype columns = table.columnCount();
    const bool isMeasured = columns <= mostMeasured;
    const qsizetype sampleRows =
        std::min(table.rowCount(), isMeasured ? std::max<qsizetype>(sampleCells / columns, 4) : 4);
    const QFontMetricsF cellMetrics(style.cell);
    const QFontMetricsF headerMetrics(style.headerCell);
    const double padding = 2 * MarkdownStyle::cellPaddingAcross;
    const double least = style.baseSize * 5 + padding;

    std::vector<double> widths;
    widths.reserve(static_cast<std::size_t>(columns));
    double sum = 0;
    double leastSum = 0;
    for (qsizetype column = 0; column < columns; ++column) {
        double width = 0;
        if (isMeasured) {
            width = widthOf(table.header(column), headerMetrics);
            for (qsizetype row = 0; row < sampleRows; ++row) {
                width = std::max(width, widthOf(table.cell(row, column), cellMetrics));
            }
        } else {
            qsizetype units = table.header(column).size();
            for (qsizetype row = 0; row < sampleRows; ++row) {
                units = std::max(units, table.cell(row, column).size());
            }
            width = static_cast<double>(std::min(units, sampleUnits)) * style.averageAdvance;
        }
        // A pixel more, so that rounding wraps nothing.
        width = std::min(width, widestText) + padding + 1;
        widths.push_back(width);
        sum += width;
        leastSum += std::min(width, least);
    }

    // Where cells have one line each, narrower ones would only show less.
    const bool isNarrowed = isMeasured && sum > available;
    const double part = isNarrowed ? std::max((available - leastSum) / (sum - leastSum), 0.0) : 1;
    m_lefts.reserve(widths.size() + 1);
    m_lefts.push_back(0);
    for (const double width : widths) {
        const double narrow = std::min(width, least);
        m_lefts.push_back(m_lefts.back() + narrow + (width - narrow) * (sum > leastSum ? part : 1));
    }
}

qsizetype MarkdownTableColumns::columnAt(double x) const {
    const auto behind = std::upper_bound(m_lefts.begin(), m_lefts.end(), x);
    return std::clamp<qsizetype>(behind - m_lefts.begin() - 1, 0, count() - 1);
}

} // namespace quillary
