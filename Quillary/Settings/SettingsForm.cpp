#include "Quillary/Settings/SettingsForm.h"

#include "Quillary/Theme/Theme.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace quillary {

SettingsForm::SettingsForm(QWidget* parent) : QWidget(parent), m_sections(new QVBoxLayout(this)) {
    m_sections->setContentsMargins(22, 14, 22, 18);
    m_sections->setSpacing(6);
    m_sections->setAlignment(Qt::AlignTop);
}

void SettingsForm::addSection(const QString& title) {
    if (m_form != nullptr) {
        m_sections->addSpacing(12);
    }
    auto* const heading = new QLabel(title, this);
    heading->setFont(Theme::font(13, QFont::DemiBold));
    m_sections->addWidget(heading);
    m_form = new QFormLayout;
    m_form->setContentsMargins(0, 0, 0, 0);
    m_form->setHorizontalSpacing(16);
    m_form->setVerticalSpacing(8);
    m_form->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_form->setFormAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    m_sections->addLayout(m_form);
}

void SettingsForm::addRow(const QString& label, QWidget* control) {
    control->setAccessibleName(label);
    m_form->addRow(label, control);
}

void SettingsForm::addRow(QWidget* control) {
    m_form->addRow(control);
}

void SettingsForm::addWideRow(QWidget* row) {
    row->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
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
    note->setWordWrap(true);
    addRow(note);
    return note;
}

} // namespace quillary
