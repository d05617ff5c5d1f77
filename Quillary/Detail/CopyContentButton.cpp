#include "Quillary/Detail/CopyContentButton.h"

#include "Quillary/Theme/Symbol.h"

#include <QTimer>

#include <chrono>
#include <utility>

namespace quillary {

CopyContentButton::CopyContentButton(std::function<void()> action, QWidget* parent)
    : QToolButton(parent), m_action(std::move(action)) {
    setAutoRaise(true);
    setIcon(symbolIcon(Symbol::copy));
    setToolTip(tr("Copia il contenuto negli appunti (⌥⌘C)"));
    setAccessibleName(toolTip());
    connect(this, &QToolButton::clicked, this, &CopyContentButton::copy);
}

void CopyContentButton::copy() {
    m_action();
    setDidCopy(true);
    // Each click has its own moment; the first that ends clears the mark.
    using namespace std::chrono_literals;
    QTimer::singleShot(1200ms, Qt::PreciseTimer, this, [this] { setDidCopy(false); });
}

void CopyContentButton::setDidCopy(bool didCopy) {
    m_didCopy = didCopy;
    setIcon(symbolIcon(didCopy ? Symbol::check : Symbol::copy));
}

} // namespace quillary
