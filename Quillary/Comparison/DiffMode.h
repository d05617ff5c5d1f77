#pragma once

namespace quillary {

/// How a comparison is shown: in two halves, or in one column.
enum class DiffMode {
    sideBySide,
    unified,
};

} // namespace quillary
