#include "Quillary/Shell/ErrorAlert.h"

#include "Quillary/Theme/Theme.h"

#include <QEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

#include <cmath>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

/// Of the message in the desktop's ordinary size of texts, so that its lines are neither a few words long nor as long
/// as the window is wide.
constexpr double messageWidth = 320;

} // namespace

ErrorAlert::ErrorAlert(NotesStore& store, QWidget* window) : QObject(window), m_store(store), m_window(window) {
    connect(&store, &NotesStore::errorMessageChanged, this, &ErrorAlert::update, Qt::QueuedConnection);
    update();
}

QMessageBox* ErrorAlert::makeBox() {
    auto* const box = new QMessageBox(m_window);
    box->setIcon(QMessageBox::Warning);
    box->setWindowTitle(tr("Quillary"));
    box->setTextFormat(Qt::PlainText);
    box->setText(tr("Si è verificato un problema"));
    box->setStandardButtons(QMessageBox::Ok);
    box->button(QMessageBox::Ok)->setText(tr("OK"));
    box->setEscapeButton(QMessageBox::Ok);
    box->setModal(true);
    box->installEventFilter(this);
    if (auto* const title = box->findChild<QLabel*>(u"qt_msgbox_label"_s)) {
        QFont font = title->font();
        font.setBold(true);
        title->setFont(font);
    }
    // Qt gives its image no name.
    if (auto* const image = box->findChild<QLabel*>(u"qt_msgboxex_icon_label"_s)) {
        image->setAccessibleName(tr("Attenzione"));
    }
    connect(box, &QDialog::finished, this, [this] { m_store.setErrorMessage(std::nullopt); });
    return box;
}

void ErrorAlert::update() {
    if (m_store.errorMessage()) {
        if (m_box == nullptr) {
            m_box = makeBox();
        }
        m_box->setInformativeText(*m_store.errorMessage());
        if (auto* const message = m_box->findChild<QLabel*>(u"qt_msgbox_informativelabel"_s)) {
            message->setMinimumWidth(static_cast<int>(std::lround(messageWidth * Theme::textScale())));
        }
        // The box takes the format of its text for that text alone, and the name of a note may look like markup.
        for (QLabel* const label : m_box->findChildren<QLabel*>()) {
            label->setTextFormat(Qt::PlainText);
        }
        m_box->open();
    } else if (m_box != nullptr) {
        m_box->hide();
    }
}

/// The image is drawn once, in the colours of its time.
bool ErrorAlert::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::PaletteChange && m_box != nullptr) {
        m_box->setIcon(QMessageBox::Warning);
    }
    return QObject::eventFilter(watched, event);
}

} // namespace quillary
