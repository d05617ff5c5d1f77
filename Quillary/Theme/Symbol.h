#pragma once

#include <QIcon>

class QPainter;

namespace quillary {

/// The small drawings of the interface. Each is an own drawing of lines in `Quillary/Theme/symbols`, since those of a
/// desktop's icon theme would not follow the application's palette. The name that a symbol has among the desktop's
/// icons goes along with it (`QIcon::name`), for menus and tray items that the desktop itself draws.
enum class Symbol {
    add,
    check,
    checkedBox,
    checklist,
    chevronDown,
    chevronLeft,
    chevronRight,
    chevronUp,
    clear,
    close,
    comparison,
    copy,
    edit,
    equal,
    expand,
    folder,
    fontSize,
    keyboard,
    more,
    newFolder,
    newNote,
    note,
    openFolder,
    preview,
    refresh,
    remove,
    replace,
    replaceFilled,
    replacement,
    search,
    send,
    sent,
    settings,
    swap,
    trash,
    uncheckedBox,
    warning,
};

/// A symbol as an icon that takes the colour of the application's text whenever it is drawn, so that it follows a
/// change of appearance, at any scale. A disabled one has the colour of disabled text.
QIcon symbolIcon(Symbol symbol);

/// Draws a symbol in a colour, as large as fits in the middle of a rectangle.
void drawSymbol(QPainter& painter, Symbol symbol, const QRectF& rect, const QColor& color);

} // namespace quillary
