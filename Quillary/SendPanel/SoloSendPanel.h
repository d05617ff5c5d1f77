#pragma once

#include "Quillary/Solo/SoloController.h"

#include <QDialog>
#include <QPointer>

class QCheckBox;
class QLabel;
class QListWidget;
class QListWidgetItem;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QToolButton;

namespace quillary {

class AppSettings;
class FlowLayout;
class ProjectPicker;
class SearchBox;
class SegmentedPicker;

/// The sheet from which a note's text goes to Solo, as a new session's first message or into an open session.
class SoloSendPanel : public QDialog {
    Q_OBJECT

public:
    /// What is sent: a text with the title of its note, and whether it is only the editor's selection.
    struct Message {
        QString title;
        QString text;
        bool isSelection = false;
    };

    /// `solo` and `settings` must outlive it. It asks for what Solo offers at once.
    SoloSendPanel(SoloController& solo, AppSettings& settings, const Message& message, QWidget* parent = nullptr);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QWidget* makeHeader();
    SegmentedPicker* makeModePicker();
    QProgressBar* makeProgress();
    QWidget* makeNewSession();
    QWidget* makeOpenSession();
    QWidget* makeFailure();
    void connectAll();
    int heightOfScreen() const;
    void showMode();
    void showTools();
    void makeChips();
    void showProjects();
    void showSessions();
    void showProgress();
    void enable(QWidget& control, bool isEnabled);
    void showError();
    void sendTo(const QListWidgetItem* row);

    SoloController& m_solo;
    AppSettings& m_settings;
    Message m_message;
    QToolButton* m_refresh = nullptr;
    SegmentedPicker* m_modes = nullptr;
    QStackedWidget* m_pages = nullptr;
    QWidget* m_chips = nullptr;
    FlowLayout* m_chipLayout = nullptr;
    QList<SoloAgentTool> m_shownTools;
    ProjectPicker* m_projects = nullptr;
    QPushButton* m_start = nullptr;
    SearchBox* m_sessionQuery = nullptr;
    QListWidget* m_sessions = nullptr;
    QLabel* m_noSession = nullptr;
    QCheckBox* m_submit = nullptr;
    QCheckBox* m_bringToFront = nullptr;
    QWidget* m_failure = nullptr;
    QLabel* m_error = nullptr;
    QProgressBar* m_progress = nullptr;
    /// A control that was disabled while it had the keyboard, and what has it since then.
    QPointer<QWidget> m_waitsForFocus;
    QPointer<QWidget> m_hasFocusMeanwhile;
};

} // namespace quillary
