#pragma once

namespace quillary {

/// Makes the sidebar's list known to screen readers: a list whose children are its rows, with what each of them shows,
/// whether it is selected, and whether a folder is open. Called more than once, it does nothing more.
void installSidebarAccessibility();

} // namespace quillary
