#pragma once

#include "Quillary/Previews/MarkdownStyle.h"
#include "QuillaryCore/Formats/MarkdownTable.h"

#include <vector>

namespace quillary {

/// Where the columns of a table stand. They are as wide as a sample of their cells asks for, narrower if the page is; a
/// table that still has no room scrolls sideways.
class MarkdownTableColumns {
public:
    static constexpr qsizetype mostMeasured = 60;

    /// `available` is the width of the page.
    MarkdownTableColumns(const MarkdownTable& table, const MarkdownStyle& style, double available);

    qsizetype count() const { return static_cast<qsizetype>(m_lefts.size()) - 1; }

    double left(qsizetype column) const { return m_lefts[static_cast<std::size_t>(column)]; }

    double width(qsizetype column) const { return left(column + 1) - left(column); }

    double total() const { return m_lefts.back(); }

    /// Whether there are so many that each cell has one line, and only the cells in view are laid out.
    bool areMany() const { return count() > mostMeasured; }

    /// The column at this place; the first or last one beside the table.
    qsizetype columnAt(double x) const;

private:
    std::vector<double> m_lefts;
};

} // namespace quillary
