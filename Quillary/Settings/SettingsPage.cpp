#include "Quillary/Settings/SettingsPage.h"

#include <QEvent>
#include <QScreen>
#include <QScrollBar>

namespace quillary {

SettingsPage::SettingsPage(QWidget* form, QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    // The keyboard goes to what is on the page, and the page follows it.
    setFocusPolicy(Qt::NoFocus);
    setWidget(form);
}

QSize SettingsPage::sizeHint() const {
    // Above and below are the tabs, the frame of the window, and a little of the desktop.
    const int line = fontMetrics().height();
    const QSize room = screen()->availableSize() - QSize(2 * line, 7 * line);
    QSize form = widget()->sizeHint();
    if (widget()->hasHeightForWidth()) {
        form.setHeight(widget()->heightForWidth(form.width()));
    }
    const bool isHigh = form.height() > room.height();
    const bool isWide = form.width() > room.width();
    return form.boundedTo(room).grownBy({0, 0, isHigh && !isWide ? verticalScrollBar()->sizeHint().width() : 0,
                                         isWide && !isHigh ? horizontalScrollBar()->sizeHint().height() : 0});
}

bool SettingsPage::eventFilter(QObject* watched, QEvent* event) {
    // A message that comes or goes makes the page as high as it needs.
    if (watched == widget() && event->type() == QEvent::LayoutRequest) {
        updateGeometry();
    }
    return QScrollArea::eventFilter(watched, event);
}

} // namespace quillary
