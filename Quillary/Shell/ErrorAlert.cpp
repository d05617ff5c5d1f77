#include "Quillary/Shell/ErrorAlert.h"

#include <QLabel>
#include <QPushButton>

namespace quillary {

using namespace Qt::StringLiterals;

ErrorAlert::ErrorAlert(NotesStore& store, QWidget* window) : QObject(window), m_store(store), m_box(window) {
    m_box.setIcon(QMessageBox::Warning);
    m_box.setWindowTitle(tr("Quillary"));
    m_box.setTextFormat(Qt::PlainText);
    m_box.setText(tr("Si è verificato un problema"));
    m_box.setStandardButtons(QMessageBox::Ok);
    m_box.button(QMessageBox::Ok)->setText(tr("OK"));
    m_box.setEscapeButton(QMessageBox::Ok);
    m_box.setModal(true);
    // Qt gives its image no name.
    if (auto* const image = m_box.findChild<QLabel*>(u"qt_msgboxex_icon_label"_s)) {
        image->setAccessibleName(tr("Attenzione"));
    }
    connect(&m_box, &QDialog::finished, this, [this] { m_store.setErrorMessage(std::nullopt); });
    connect(&store, &NotesStore::errorMessageChanged, this, &ErrorAlert::update, Qt::QueuedConnection);
    update();
}

void ErrorAlert::update() {
    if (m_store.errorMessage()) {
        m_box.setInformativeText(*m_store.errorMessage());
        // The box takes the format of its text for that text alone, and the name of a note may look like markup.
        for (QLabel* const label : m_box.findChildren<QLabel*>()) {
            label->setTextFormat(Qt::PlainText);
        }
        m_box.open();
    } else {
        m_box.hide();
    }
}

} // namespace quillary
