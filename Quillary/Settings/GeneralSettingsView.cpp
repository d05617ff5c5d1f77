#include "Quillary/Settings/GeneralSettingsView.h"

#include "Quillary/Settings/SettingsBinding.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/Theme/PaddedButton.h"
#include "Quillary/Theme/ToolTip.h"
#include "QuillaryCore/Platform/FilePath.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLineEdit>

namespace quillary {

GeneralSettingsView::GeneralSettingsView(AppSettings* settings, NotesStore* store, QWidget* parent)
    : SettingsForm(parent), m_settings(*settings), m_store(*store) {
    addArchive();
    addAppearance();
    addNotes();
}

void GeneralSettingsView::addArchive() {
    addSection(tr("Archivio"));
    auto* const path = new QLineEdit(this);
    path->setReadOnly(true);
    path->setMinimumWidth(320);
    const auto update = [this, path] {
        const QString text = FilePath::displayText(m_settings.notesDirectory().text());
        path->setText(text);
        path->setToolTip(plainToolTip(text));
        path->setCursorPosition(0);
    };
    connect(&m_settings, &AppSettings::notesDirectoryChanged, path, update);
    update();
    addRow(tr("Cartella"), path);

    auto* const buttons = new QWidget(this);
    auto* const choose = new PaddedButton(tr("Scegli…"), buttons);
    choose->setAccessibleName(tr("Scegli la cartella delle note"));
    connect(choose, &QPushButton::clicked, this, &GeneralSettingsView::chooseDirectory);
    auto* const open = new PaddedButton(tr("Apri nel Finder"), buttons);
    connect(open, &QPushButton::clicked, this, [this] {
        if (Desktop* const desktop = AppActions::shared().desktop) {
            desktop->open(m_settings.notesDirectory());
        }
    });
    auto* const layout = new QHBoxLayout(buttons);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(choose);
    layout->addWidget(open);
    addBelow(buttons);
    addNote(tr("Ogni nota è un file di testo in questa cartella: .md, .txt, .json, .csv."));
}

void GeneralSettingsView::addAppearance() {
    addSection(tr("Aspetto"));
    addRow(tr("Tema"), makeSettingsPicker(allAppAppearances, &m_settings, &AppSettings::appearance,
                                          &AppSettings::setAppearance, &AppSettings::appearanceChanged, this));
    bindToggle(addToggle(tr("Mostra Quillary nella barra dei menu")), &m_settings, &AppSettings::showsMenuBarExtra,
               &AppSettings::setShowsMenuBarExtra, &AppSettings::showsMenuBarExtraChanged);
}

void GeneralSettingsView::addNotes() {
    addSection(tr("Note"));
    addRow(tr("Formato delle nuove note"),
           makeSettingsPicker(allNoteFormats, &m_settings, &AppSettings::defaultFormat, &AppSettings::setDefaultFormat,
                              &AppSettings::defaultFormatChanged, this));
    addRow(tr("Ordina per"), makeSettingsPicker(allNoteSortOrders, &m_settings, &AppSettings::sortOrder,
                                                &AppSettings::setSortOrder, &AppSettings::sortOrderChanged, this));
    bindToggle(addToggle(tr("Riconosci JSON e CSV incollati in una nota vuota")), &m_settings,
               &AppSettings::autoDetectFormat, &AppSettings::setAutoDetectFormat,
               &AppSettings::autoDetectFormatChanged);
}

void GeneralSettingsView::chooseDirectory() {
    Desktop* const desktop = AppActions::shared().desktop;
    if (desktop == nullptr) {
        return;
    }
    if (const auto directory = desktop->chooseDirectory(m_settings.notesDirectory(), tr("Usa questa cartella"))) {
        m_store.changeDirectory(*directory);
    }
}

} // namespace quillary
