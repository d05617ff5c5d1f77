#pragma once

#include <QObject>
#include <QPointer>

namespace quillary {

class AppSettings;
class NotesStore;
class SoloController;
class SoloSendPanel;

/// Keeps the send panel on screen over a window exactly while the controller says so, for the note that was selected
/// when it opened.
class SoloPanelPresenter : public QObject {
    Q_OBJECT

public:
    SoloPanelPresenter(NotesStore& store, AppSettings& settings, SoloController& solo, QWidget* window);

private:
    void update();
    void open();

    NotesStore& m_store;
    AppSettings& m_settings;
    SoloController& m_solo;
    QWidget* m_window;
    QPointer<SoloSendPanel> m_panel;
};

} // namespace quillary
