#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NoteDocument.h"
#include "Quillary/State/NotesStore.h"
#include "QuillaryCore/Notes/NoteSnippet.h"
#include "QuillaryCore/Platform/FileStatus.h"

#include <QPointer>

#include <cerrno>
#include <chrono>

namespace quillary {

using namespace std::chrono_literals;

bool NotesStore::save(NoteItem& item) {
    item.saveTask.reset();
    if (!item.isDirty() || !item.document() || !contains(item)) {
        return true;
    }
    const QString text = item.document()->text();
    // In the place that an unmounted volume left, nobody would find the text again.
    const bool isElsewhere = isVolumeAway() && !fileStatus(item.url());
    const auto date =
        isElsewhere ? Result<Moment, FileError>(SystemError{ENODEV}) : m_fileStore.write(text, item.url());
    if (!date) {
        fail(tr("Impossibile salvare «%1»").arg(FilePath::displayText(item.title())), date.error());
        return false;
    }
    item.isSettled = true;
    item.knownModificationDate = *date;
    item.setModified(*date);
    item.setDirty(false);
    item.setSnippet(NoteSnippet::make(text, NoteItem::snippetLength));
    if (m_settings->sortOrder() == NoteSortOrder::modified) {
        resort();
    }
    return true;
}

void NotesStore::saveDirtyNotes() {
    // A save can bring the notes into another order.
    const QList<NoteItemPtr> notes = m_notes;
    for (const NoteItemPtr& note : notes) {
        if (note->isDirty()) {
            save(*note);
        }
    }
}

void NotesStore::scheduleSave(NoteItem& item) {
    if (!item.saveTask) {
        item.saveTask = std::make_unique<DelayedTask>(500ms, [store = QPointer(this), weak = item.weak_from_this()] {
            const NoteItemPtr note = weak.lock();
            if (store && note) {
                store->save(*note);
            }
        });
    }
    item.saveTask->restart();
}

void NotesStore::saveLayout() {
    const auto saved =
        isVolumeAway() ? Status<FileError>(SystemError{ENODEV}) : m_fileStore.saveLayout(currentLayout());
    if (!saved) {
        fail(tr("Impossibile salvare l'ordine delle cartelle"), saved.error());
    }
}

} // namespace quillary
