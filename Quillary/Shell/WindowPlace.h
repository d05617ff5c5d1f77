#pragma once

class QSplitter;
class QWidget;

namespace quillary {

/// Where the main window stood and how it was divided, kept apart from the preferences in the directory for state
/// ($XDG_STATE_HOME/quillary/window.ini).
namespace WindowPlace {

/// Gives the window its last place, if there is one and it still lies on a screen.
void restore(QWidget& window, QSplitter& splitter);

/// Remembers the place. A failure loses nothing but the place.
void remember(const QWidget& window, const QSplitter& splitter);

} // namespace WindowPlace

} // namespace quillary
