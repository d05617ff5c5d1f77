#include "Quillary/SendPanel/SoloPanelPresenter.h"

#include "Quillary/SendPanel/SoloSendPanel.h"
#include "Quillary/State/NotesStore.h"
#include "QuillaryCore/Platform/FilePath.h"

namespace quillary {

SoloPanelPresenter::SoloPanelPresenter(NotesStore& store, AppSettings& settings, SoloController& solo, QWidget* window)
    : QObject(window), m_store(store), m_settings(settings), m_solo(solo), m_window(window) {
    connect(&solo, &SoloController::isPanelPresentedChanged, this, &SoloPanelPresenter::update);
}

void SoloPanelPresenter::update() {
    if (!m_solo.isPanelPresented()) {
        if (m_panel) {
            m_panel->close();
        }
    } else if (!m_panel) {
        open();
    }
}

void SoloPanelPresenter::open() {
    const NoteItemPtr note = m_store.selectedItem();
    const auto shared = note == nullptr ? std::nullopt : m_store.textToShare(*note);
    if (!shared) {
        m_solo.setPanelPresented(false);
        return;
    }
    const SoloSendPanel::Message message{FilePath::displayText(note->title()), shared->text, shared->isSelection};
    m_panel = new SoloSendPanel(m_solo, m_settings, message, m_window);
    m_panel->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_panel, &QDialog::finished, &m_solo, [solo = &m_solo] { solo->setPanelPresented(false); });
    m_panel->open();
}

} // namespace quillary
