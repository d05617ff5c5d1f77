#include "Quillary/Shell/ErrorAlert.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>

namespace quillary {

using namespace Qt::StringLiterals;

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
        // The box takes the format of its text for that text alone, and the name of a note may look like markup.
        for (QLabel* const label : m_box->findChildren<QLabel*>()) {
            label->setTextFormat(Qt::PlainText);
        }
        m_box->open();
    } else if (m_box != nullptr) {
        m_box->hide();
    }
}

} // namespace quillary
