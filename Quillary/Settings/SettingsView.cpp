#include "Quillary/Settings/SettingsView.h"

#include "Quillary/Settings/EditorSettingsView.h"
#include "Quillary/Settings/GeneralSettingsView.h"
#include "Quillary/Settings/SettingsPage.h"
#include "Quillary/Settings/ShortcutSettingsView.h"
#include "Quillary/Theme/Symbol.h"

#include <QAction>
#include <QEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QTabWidget>
#include <QVBoxLayout>

namespace quillary {

SettingsView::SettingsView(AppSettings* settings, NotesStore* store, KeyboardController* keyboard, QWidget* parent)
    : QWidget(parent, Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint), m_keyboard(*keyboard) {
    setWindowTitle(tr("Impostazioni"));
    auto* const tabs = new QTabWidget(this);
    tabs->setDocumentMode(true);
    tabs->setAccessibleName(tr("Impostazioni"));
    const auto add = [tabs](QWidget* form, Symbol symbol, const QString& title) {
        tabs->addTab(new SettingsPage(form, tabs), symbolIcon(symbol), title);
    };
    add(new GeneralSettingsView(settings, store), Symbol::settings, tr("Generale"));
    add(new EditorSettingsView(settings), Symbol::fontSize, tr("Editor"));
    add(new ShortcutSettingsView(settings, keyboard), Symbol::keyboard, tr("Scorciatoie"));
    connect(tabs, &QTabWidget::currentChanged, keyboard, &KeyboardController::cancelRecording);

    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 6, 0, 0);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(tabs);

    auto* const closing = new QAction(this);
    closing->setShortcut(Qt::CTRL | Qt::Key_W);
    connect(closing, &QAction::triggered, this, &QWidget::close);
    addAction(closing);
}

void SettingsView::present() {
    show();
    raise();
    activateWindow();
}

/// As a shortcut Escape would be taken from a list that is open.
void SettingsView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void SettingsView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    // Nobody is there to press the keys any more.
    if (event->type() == QEvent::ActivationChange && !isActiveWindow()) {
        m_keyboard.cancelRecording();
    }
}

void SettingsView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_keyboard.cancelRecording();
}

} // namespace quillary
