#pragma once

#include "Quillary/Theme/Symbol.h"

#include <QLabel>

namespace quillary {

/// A symbol that stands by itself, in the colour of the text around it. It is drawn anew whenever that changes.
class SymbolLabel : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;

    Symbol symbol() const { return m_symbol; }

    /// Shows a symbol that is as high and as wide as this, in logical pixels.
    void setSymbol(Symbol symbol, int side);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol m_symbol = Symbol::note;
};

} // namespace quillary
