#include "Quillary/Settings/SettingsForm.h"

#include "Quillary/Theme/Theme.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace quillary {

SettingsForm::SettingsForm(QWidget* parent) : QWidget(parent), m_form(new QFormLayout) {
    m_form->setContentsMargins(0, 0, 0, 0);
    m_form->setHorizontalSpacing(16);
    m_form->setVerticalSpacing(8);
    m_form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_form->setFormAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(22, 14, 22, 18);
    layout->addLayout(m_form);
    layout->addStretch(1);
}

void SettingsForm::addSection(const QString& title) {
    if (m_form->rowCount() > 0) {
        addSpace();
    }
    auto* const heading = new QLabel(title, this);
    heading->setFont(Theme::font(13, QFont::DemiBold));
    m_form->addRow(heading);
}

void SettingsForm::addRow(const QString& label, QWidget* control) {
    control->setAccessibleName(label);
    m_form->addRow(label, control);
}

void SettingsForm::addRow(QWidget* control) {
    m_form->addRow(control);
}

void SettingsForm::addBelow(QWidget* controls) {
    m_form->setWidget(m_form->rowCount(), QFormLayout::FieldRole, controls);
}

void SettingsForm::addWideRow(QWidget* row) {
    row->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_form->addRow(row);
}

QCheckBox* SettingsForm::addToggle(const QString& text) {
    auto* const toggle = new QCheckBox(text, this);
    addRow(toggle);
    return toggle;
}

QLabel* SettingsForm::addNote(const QString& text) {
    auto* const note = new QLabel(text, this);
    note->setFont(Theme::font(12));
    note->setForegroundRole(QPalette::PlaceholderText);
    addRow(note);
    return note;
}

void SettingsForm::addSpace() {
    constexpr int height = 4;
    m_form->addItem(new QSpacerItem(0, height));
}

} // namespace quillary
