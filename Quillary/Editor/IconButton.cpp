#include "Quillary/Editor/IconButton.h"

namespace quillary {

IconButton::IconButton(Symbol symbol, const QString& help, QWidget* parent) : QToolButton(parent) {
    setAutoRaise(true);
    setIcon(symbolIcon(symbol));
    setToolTip(help);
    setAccessibleName(help);
}

} // namespace quillary
