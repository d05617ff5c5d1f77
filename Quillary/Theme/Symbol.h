#pragma once

#include <QIcon>

namespace quillary {

/// The small drawings of the interface. Each is an own drawing of lines in `Quillary/Theme/symbols`.
enum class Symbol {
    clear,
    folder,
    newNote,
    note,
    search,
    warning,
};

/// A symbol as an icon that takes the colour of the application's text whenever it is drawn, so that it follows a
/// change of appearance, at any scale.
QIcon symbolIcon(Symbol symbol);

} // namespace quillary
