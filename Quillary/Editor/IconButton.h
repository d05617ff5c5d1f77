#pragma once

#include "Quillary/Theme/Symbol.h"

#include <QToolButton>

namespace quillary {

/// A flat button that shows a symbol and says what it does in its help text. It leaves the focus where it is.
class IconButton : public QToolButton {
    Q_OBJECT

public:
    IconButton(Symbol symbol, const QString& help, QWidget* parent);
};

} // namespace quillary
