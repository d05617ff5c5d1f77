#pragma once

#include "QuillaryCore/Formats/MarkdownTree.h"

#include <QStringView>

#include <optional>
#include <vector>

/// The lines of a table.
namespace quillary::MarkdownTableRow {

/// A cell of a row: a stretch of the line, without surrounding spaces and tabs.
struct Cell {
    QStringView text;
    /// Whether it holds "\|", which stands for a bar.
    bool hasEscapedBars = false;
};

/// The cells of a line, at least one, put into `cells` in place of what it held.
void split(QStringView line, std::vector<Cell>& cells);

/// The text of a cell with escaped bars.
QString unescaped(QStringView cell);

/// The alignments that a line under a table's header gives; none if it is no such line. The result is put into
/// `alignments` in place of what it held.
bool readSeparator(QStringView line, std::vector<MarkdownTree::Alignment>& alignments);

} // namespace quillary::MarkdownTableRow
