#include "Quillary/State/AppActions.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NoteDocument.h"
#include "Quillary/State/NotesStore.h"
#include "QuillaryCore/Notes/NoteNaming.h"
#include "QuillaryCore/Notes/NoteSnippet.h"
#include "QuillaryCore/Unicode/CanonicalEquality.h"

#include <QTimeZone>

#include <algorithm>
#include <utility>

namespace quillary {

namespace {

constexpr qsizetype longestDetectedText = 1'000'000;

QString shownTitle(const NoteItem& item) {
    return FilePath::displayText(item.title());
}

} // namespace

NoteItemPtr NotesStore::makeNote(const std::optional<QString>& title, const QString& contents,
                                 std::optional<NoteFormat> format, bool showPreview,
                                 const std::optional<QString>& folder) {
    const auto volume = ensureVolumeIsThere();
    const auto url =
        volume ? m_fileStore.createNote(title ? *title : NoteNaming::defaultTitle(now(), QTimeZone::systemTimeZone()),
                                        format.value_or(m_settings->defaultFormat()), contents, folder)
               : Result<FilePath, FileError>(volume.error());
    const auto info = url ? m_fileStore.info(*url) : Result<NoteFileInfo, FileError>(url.error());
    if (!info) {
        fail(tr("Impossibile creare la nota"), info.error());
        return nullptr;
    }
    const auto note = std::make_shared<NoteItem>(*info);
    attach(contents, NoteSnippet::make(contents, NoteItem::snippetLength), *note);
    note->isSettled = true;
    note->setShowsPreview(showPreview);

    if (folder && m_collapsedFolders.contains(*folder)) {
        toggleCollapsed(*folder);
    }
    if (!m_multiSelection.isEmpty()) {
        clearMultiSelection();
    }
    setSearchQuery({});
    insert(note);
    setSelectedID(note->id());
    removeNamesakes({note});
    raiseEditorFocusToken();
    return note;
}

NoteItemPtr NotesStore::makeNoteBesideSelected(const std::optional<QString>& title, const QString& contents,
                                               std::optional<NoteFormat> format, bool showPreview) {
    const NoteItemPtr selected = selectedItem();
    return makeNote(title, contents, format, showPreview, selected ? selected->folder() : std::nullopt);
}

void NotesStore::textDidChange(NoteItem& item, NoteDocument& document, bool detectFormat) {
    item.setDirty(true);
    item.setCharacterCount(document.length());
    scheduleSave(item);
    if (!detectFormat || !m_settings->autoDetectFormat() || item.characterCount() > longestDetectedText) {
        return;
    }
    const std::optional<NoteFormat> format = detectFormatOf(document.text());
    if (format && *format != item.format()) {
        changeFormat(item, *format);
    }
}

void NotesStore::replaceText(NoteItem& item, const QString& text) {
    const std::shared_ptr<NoteDocument> document = item.document();
    if (!document) {
        return;
    }
    NoteTextView* const editor = AppActions::shared().editor;
    if (editor && editor->shownDocument() == document.get()) {
        if (!editor->replaceText({0, document->length()}, text)) {
            return;
        }
    } else {
        // What could be undone of the old text fits no more.
        document->replaceAll(text);
        textDidChange(item, *document, false);
    }
    item.raiseRevision();
}

void NotesStore::changeFormat(NoteItem& item, NoteFormat format) {
    if (item.format() == format) {
        return;
    }
    save(item);
    const QString oldFileName = item.fileName();
    const auto url = m_fileStore.changeFormat(item.url(), format);
    if (!url) {
        fail(tr("Impossibile cambiare il formato di «%1»").arg(shownTitle(item)), url.error());
        return;
    }
    item.setUrl(*url);
    removeNamesakes({item.shared_from_this()});
    renameInOrder(item, oldFileName);
    // A free name may have another title.
    resort();
    if (!supportsPreview(format)) {
        item.setShowsPreview(false);
    }
}

void NotesStore::rename(NoteItem& item, const QString& title) {
    const QString trimmed = title.trimmed();
    if (trimmed.isEmpty() || canonicallyEqual(trimmed, item.title()) || trimmed == shownTitle(item)) {
        return;
    }
    save(item);
    const QString oldFileName = item.fileName();
    const auto url = m_fileStore.rename(item.url(), trimmed);
    if (!url) {
        fail(tr("Impossibile rinominare «%1»").arg(shownTitle(item)), url.error());
        return;
    }
    item.setUrl(*url);
    removeNamesakes({item.shared_from_this()});
    renameInOrder(item, oldFileName);
    resort();
}

void NotesStore::requestTrash(const std::optional<QList<NoteItemPtr>>& items) {
    QList<NoteID> ids;
    for (const NoteItemPtr& item : items ? *items : actionTargets()) {
        ids.append(item->id());
    }
    if (ids.isEmpty()) {
        AppActions::shared().beep();
    } else {
        setPendingNoteDeletion(ids);
    }
}

void NotesStore::moveToTrash(const QList<NoteItemPtr>& items) {
    const QList<NoteItemPtr> targets = present(items);
    if (targets.isEmpty()) {
        return;
    }
    const QSet<NoteItemPtr> targetSet(targets.cbegin(), targets.cend());
    const QList<NoteItemPtr> visible = visibleNotes();
    const auto firstTarget =
        std::ranges::find_if(visible, [&targetSet](const NoteItemPtr& note) { return targetSet.contains(note); });
    const qsizetype position = firstTarget - visible.begin();
    const bool wasVisible = firstTarget != visible.end();

    QList<NoteItemPtr> trashed;
    for (const NoteItemPtr& target : targets) {
        save(*target);
        if (const auto moved = m_fileStore.moveToTrash(target->url()); moved) {
            target->saveTask.reset();
            trashed.append(target);
        } else {
            fail(tr("Impossibile spostare «%1» nel Cestino").arg(shownTitle(*target)), moved.error());
        }
    }
    if (trashed.isEmpty()) {
        return;
    }
    remove(trashed);
    removeFromOrder(trashed);
    if (std::ranges::none_of(trashed, [this](const NoteItemPtr& note) { return note->id() == m_selectedID; })) {
        return;
    }
    const QList<NoteItemPtr> left = visibleNotes();
    if (!left.isEmpty()) {
        setSelectedID(left[wasVisible ? std::min(position, left.size() - 1) : 0]->id());
    } else {
        setSelectedID(m_notes.isEmpty() ? std::nullopt : std::optional(m_notes.first()->id()));
    }
}

void NotesStore::togglePreview() {
    const NoteItemPtr note = selectedItem();
    if (!note || !note->canPreview()) {
        AppActions::shared().beep();
        return;
    }
    note->setShowsPreview(!note->showsPreview());
    if (!note->showsPreview()) {
        raiseEditorFocusToken();
    }
}

std::optional<NotesStore::SharedText> NotesStore::textToShare(const NoteItem& item) const {
    const std::shared_ptr<NoteDocument>& document = item.document();
    if (!document) {
        return std::nullopt;
    }
    const bool isInPreview = item.showsPreview() && item.canPreview();
    const NoteTextView* const editor = AppActions::shared().editor;
    if (!isInPreview && editor && editor->shownDocument() == document.get() && !editor->selection().isEmpty()) {
        return SharedText{document->text(editor->selection().range()), true};
    }
    return SharedText{document->text(), false};
}

} // namespace quillary
