#include "Quillary/Shell/WindowAccessibility.h"

#include "Quillary/Settings/SettingsView.h"
#include "Quillary/Shell/MainWindow.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QSplitterHandle>

namespace quillary {

namespace {

/// Qt takes a window that is no dialog for a mere container, and a splitter's handle for something unknown.
QAccessibleInterface* makeWindowPart(const QString&, QObject* object) {
    if (qobject_cast<MainWindow*>(object) != nullptr || qobject_cast<SettingsView*>(object) != nullptr) {
        return new QAccessibleWidget(qobject_cast<QWidget*>(object), QAccessible::Window);
    }
    if (auto* const handle = qobject_cast<QSplitterHandle*>(object)) {
        return new QAccessibleWidget(
            handle, QAccessible::Separator,
            QCoreApplication::translate("quillary::ContentView", "Bordo della barra laterale"));
    }
    return nullptr;
}

} // namespace

void installWindowAccessibility() {
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeWindowPart);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

} // namespace quillary
