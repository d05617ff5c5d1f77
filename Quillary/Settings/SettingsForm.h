#pragma once

#include <QWidget>

class QCheckBox;
class QFormLayout;
class QLabel;
class QVBoxLayout;

namespace quillary {

/// A page of the settings: sections with a heading, each a form of labelled controls.
class SettingsForm : public QWidget {
    Q_OBJECT

public:
    explicit SettingsForm(QWidget* parent = nullptr);

protected:
    /// Starts a section; what is added from then on belongs to it.
    void addSection(const QString& title);

    /// A control with its label, which also names it for screen readers.
    void addRow(const QString& label, QWidget* control);

    /// A control by itself.
    void addRow(QWidget* control);

    /// A row that lays itself out over the whole width.
    void addWideRow(QWidget* row);

    /// A switch that is labelled by itself.
    QCheckBox* addToggle(const QString& text);

    /// A line of explanation.
    QLabel* addNote(const QString& text);

private:
    QVBoxLayout* m_sections;
    QFormLayout* m_form = nullptr;
};

} // namespace quillary
