#pragma once

namespace quillary {

/// Makes known to screen readers what Qt doesn't know: that the main window and the settings are windows, and what the
/// border between the list and the note is. Called more than once, it does nothing more.
void installWindowAccessibility();

} // namespace quillary
