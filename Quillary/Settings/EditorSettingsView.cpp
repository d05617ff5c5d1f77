#include "Quillary/Settings/EditorSettingsView.h"

#include "Quillary/Editor/EditorFont.h"
#include "Quillary/Settings/SettingsBinding.h"
#include "Quillary/Theme/Theme.h"

#include <QFrame>
#include <QLabel>
#include <QSpinBox>
#include <QVBoxLayout>

#include <cmath>

namespace quillary {

EditorSettingsView::EditorSettingsView(AppSettings* settings, QWidget* parent)
    : SettingsForm(parent), m_settings(*settings) {
    addText();
    addSample();
}

void EditorSettingsView::addText() {
    addSection(tr("Testo"));
    addRow(tr("Carattere"), makeSettingsPicker(allEditorFontStyles, &m_settings, &AppSettings::fontStyle,
                                               &AppSettings::setFontStyle, &AppSettings::fontStyleChanged, this));
    auto* const size = new QSpinBox(this);
    size->setRange(static_cast<int>(AppSettings::smallestFontSize), static_cast<int>(AppSettings::largestFontSize));
    size->setSuffix(tr(" pt"));
    const auto update = [this, size] { size->setValue(static_cast<int>(std::lround(m_settings.fontSize()))); };
    update();
    connect(&m_settings, &AppSettings::fontSizeChanged, size, update);
    connect(size, &QSpinBox::valueChanged, &m_settings, [this](int value) {
        // A size in between, which somebody set by another way, stays until the user changes it.
        if (value != std::lround(m_settings.fontSize())) {
            m_settings.setFontSize(value);
        }
    });
    addRow(tr("Dimensione"), size);
    bindToggle(addToggle(tr("A capo automatico")), &m_settings, &AppSettings::wrapLines, &AppSettings::setWrapLines,
               &AppSettings::wrapLinesChanged);
}

void EditorSettingsView::addSample() {
    addSection(tr("Esempio"));
    auto* const sample =
        new QLabel(tr("{ \"penna\": \"oca\", \"righe\": 42 }\nLa rapida volpe salta il cane pigro."), this);
    sample->setTextFormat(Qt::PlainText);
    sample->setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
    sample->setMargin(12);
    sample->setAutoFillBackground(true);
    sample->setBackgroundRole(QPalette::Base);
    sample->setForegroundRole(QPalette::Text);
    // As wide as the largest font needs, so that the window stays as it is.
    sample->setMinimumSize(480, 112);
    sample->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    const auto update = [this, sample] { sample->setFont(editorFont(m_settings.editorStyle())); };
    connect(&m_settings, &AppSettings::fontSizeChanged, sample, update);
    connect(&m_settings, &AppSettings::fontStyleChanged, sample, update);
    update();
    addRow(sample);
}

} // namespace quillary
