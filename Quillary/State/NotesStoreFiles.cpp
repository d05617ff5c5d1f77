#include "Quillary/State/AppActions.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NoteDocument.h"
#include "Quillary/State/NotesStore.h"
#include "QuillaryCore/Formats/JSONFormatter.h"
#include "QuillaryCore/Formats/JSONParser.h"

#include <algorithm>

namespace quillary {

using namespace Qt::StringLiterals;

void NotesStore::createNoteFromClipboard() {
    const Desktop* const desktop = AppActions::shared().desktop;
    const QString text = desktop ? desktop->clipboardText().value_or(QString()) : QString();
    const auto format =
        !text.isEmpty() && m_settings->autoDetectFormat() ? detectFormatOf(text) : std::optional<NoteFormat>();
    makeNoteBesideSelected({}, text, format, format.has_value());
}

void NotesStore::importFiles() {
    Desktop* const desktop = AppActions::shared().desktop;
    if (!desktop) {
        return;
    }
    const QList<FilePath> files =
        desktop->chooseFiles(tr("I file verranno copiati nella cartella delle note."), tr("Importa"));
    if (files.isEmpty()) {
        return;
    }
    // What comes to the path of a note whose file went unseen is another note.
    refreshFromDisk();
    std::optional<FilePath> last;
    for (const FilePath& file : files) {
        const auto volume = ensureVolumeIsThere();
        const auto imported = volume ? m_fileStore.importFile(file) : Result<FilePath, FileError>(volume.error());
        if (imported) {
            last = *imported;
        } else {
            fail(tr("Impossibile importare «%1»").arg(FilePath::displayText(file.fileName())), imported.error());
        }
    }
    refreshFromDisk();
    if (!last) {
        return;
    }
    const auto note = std::ranges::find_if(
        m_notes, [&last](const NoteItemPtr& each) { return each->url().standardized() == last->standardized(); });
    if (note != m_notes.end()) {
        const NoteID id = (*note)->id();
        setSearchQuery({});
        setSelectedID(id);
    }
}

void NotesStore::saveSelectedAs() {
    const NoteItemPtr note = selectedItem();
    Desktop* const desktop = AppActions::shared().desktop;
    if (!note || !note->document() || !desktop) {
        return;
    }
    const auto destination = desktop->chooseDestination(note->fileName());
    if (!destination) {
        return;
    }
    if (const auto written = m_fileStore.write(note->document()->text(), *destination); !written) {
        fail(tr("Impossibile salvare «%1»").arg(FilePath::displayText(destination->fileName())), written.error());
    }
}

void NotesStore::copySelectedContent() {
    const NoteItemPtr note = selectedItem();
    Desktop* const desktop = AppActions::shared().desktop;
    if (note && note->document() && desktop) {
        desktop->setClipboardText(note->document()->text());
    }
}

void NotesStore::reformatJSON(bool pretty) {
    const NoteItemPtr note = selectedItem();
    if (!note || !note->document()) {
        return;
    }
    const QString text = note->document()->text();
    const auto value = JSONParser::parse(text);
    if (!value) {
        setErrorMessage(tr("Il testo non è un JSON valido") % u".\n"_s % value.error().errorDescription());
        return;
    }
    constexpr int indent = 2;
    const QString formatted = pretty ? JSONFormatter::prettyPrinted(*value, indent) : JSONFormatter::minified(*value);
    if (formatted != text) {
        replaceText(*note, formatted);
    }
    changeFormat(*note, NoteFormat::json);
}

} // namespace quillary
