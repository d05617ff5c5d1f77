#pragma once

#include <QWidget>

class QCheckBox;
class QFormLayout;
class QLabel;

namespace quillary {

/// A page of the settings: sections with a heading, and labelled controls in one column through all of them.
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

    /// More controls, below the one of the row above.
    void addBelow(QWidget* controls);

    /// A row that lays itself out over the whole width.
    void addWideRow(QWidget* row);

    /// A switch that is labelled by itself.
    QCheckBox* addToggle(const QString& text);

    /// A line of explanation.
    QLabel* addNote(const QString& text);

    /// Air between what belongs to a section and what follows it without a heading.
    void addSpace();

private:
    QFormLayout* m_form;
};

} // namespace quillary
