#pragma once

#include <QKeySequence>

namespace quillary {

/// The commands of the menu "Modifica", which belong to whichever widget has the keyboard.
namespace StandardEditing {

/// Does in the focused widget what the key of a standard command does there, as the widget knows its keys best. Beeps
/// if there is none, or it has no use for the command.
void perform(QKeySequence::StandardKey key);

} // namespace StandardEditing

} // namespace quillary
