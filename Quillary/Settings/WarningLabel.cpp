#include "Quillary/Settings/WarningLabel.h"

#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"

#include <QPainter>

namespace quillary {

namespace {

constexpr int signSide = 14;
constexpr int signSpacing = 6;

} // namespace

WarningLabel::WarningLabel(const QString& text, QWidget* parent) : WrappingLabel(parent) {
    setFont(Theme::font(12));
    setContentsMargins(signSide + signSpacing, 0, 0, 0);
    setText(text);
    // One line where nobody asks for the height of another width, as a page that is not on show.
    setPreferredWidth(QWIDGETSIZE_MAX);
    QSizePolicy policy = sizePolicy();
    policy.setHorizontalPolicy(QSizePolicy::Ignored);
    setSizePolicy(policy);
}

void WarningLabel::paintEvent(QPaintEvent* event) {
    WrappingLabel::paintEvent(event);
    QPainter painter(this);
    const QRect firstLine(0, contentsRect().top(), signSide, fontMetrics().lineSpacing());
    drawSymbol(painter, Symbol::warning, firstLine, palette().color(foregroundRole()));
}

} // namespace quillary
