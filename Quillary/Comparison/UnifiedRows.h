#pragma once

#include "Quillary/Comparison/DiffLineView.h"
#include "QuillaryCore/Compare/DiffRow.h"

#include <QList>

namespace quillary {

/// A row in one column, with a gutter column for each side: one line, or two for a row that changed.
namespace UnifiedRows {

QList<DiffLineView> lines(const DiffRow& row);

} // namespace UnifiedRows

} // namespace quillary
