#pragma once

#include "Quillary/Comparison/DiffLineView.h"
#include "QuillaryCore/Compare/DiffRow.h"

#include <array>

namespace quillary {

/// A row in two halves of equal width: the old line on the left, the new one on the right.
namespace SideBySideRow {

std::array<DiffLineView, 2> halves(const DiffRow& row);

} // namespace SideBySideRow

} // namespace quillary
