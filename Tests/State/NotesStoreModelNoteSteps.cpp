#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Text/TextStorage.h"
#include "QuillaryCore/Text/UndoManager.h"

#include "Tests/State/NotesStoreModel.h"
#include "Tests/State/TrashCan.h"

#include <algorithm>
#include <array>
#include <utility>

// What a user does with notes.

namespace quillary::test {

using namespace Qt::StringLiterals;

QString NotesStoreModel::anyTitle() {
    return pick(QStringList{u"a"_s, u"b"_s, u"c"_s, u"a 2"_s, u"lista"_s});
}

QString NotesStoreModel::anyFolderName() {
    return pick(QStringList{u"Casa"_s, u"Lavoro"_s, u"Casa 2"_s, u"Viaggi"_s});
}

NotesStoreModel::Folder NotesStoreModel::anyPlace() {
    return model.folders.isEmpty() || oneIn(2) ? Folder() : Folder(pick(model.folders));
}

NoteFormat NotesStoreModel::anyFormat() {
    return pick(std::array{NoteFormat::markdown, NoteFormat::plain, NoteFormat::json, NoteFormat::html});
}

NoteItemPtr NotesStoreModel::anyNote() {
    return pick(model.notes).item;
}

QList<NoteItemPtr> NotesStoreModel::someNotes(qsizetype most) {
    QList<NoteItemPtr> items;
    for (qsizetype count = 1 + below(most); count > 0 && !model.notes.isEmpty(); --count) {
        if (const NoteItemPtr item = anyNote(); !items.contains(item)) {
            items.append(item);
        }
    }
    return items;
}

QString NotesStoreModel::newText() {
    return u"testo %1\nriga"_s.arg(++textCount);
}

LayoutFile NotesStoreModel::makeNote() {
    const Folder folder = anyPlace();
    const NoteFormat format = anyFormat();
    const QString title = anyTitle();
    const bool opens = folder && store->collapsedFolders().contains(*folder);
    Note note{nullptr, folder, model.freeTitle(title, fileExtension(format), folder), fileExtension(format), newText(),
              {},      {}};
    note.item = store->makeNote(title, note.text, format, oneIn(2), folder);
    model.notes.append(note);
    EXPECT_EQ(store->selectedItem(), note.item);
    return opens ? LayoutFile::saved : LayoutFile::untouched;
}

LayoutFile NotesStoreModel::typeText() {
    Note& note = model.note(anyNote());
    store->ensureLoaded(*note.item);
    NoteDocument& document = *note.item->document();
    note.history.append(std::exchange(note.text, newText()));
    document.undoManager().replace({0, document.length()}, note.text, EditKind::other, {});
    store->textDidChange(*note.item, document, false);
    return LayoutFile::untouched;
}

LayoutFile NotesStoreModel::undo() {
    Note& note = model.note(anyNote());
    if (!note.history.isEmpty()) {
        note.item->document()->undoManager().undo();
        store->textDidChange(*note.item, *note.item->document(), false);
        note.text = note.history.takeLast();
    }
    return LayoutFile::untouched;
}

LayoutFile NotesStoreModel::replaceText() {
    Note& note = model.note(anyNote());
    if (note.item->document()) {
        note.text = newText();
        note.history.clear();
        store->replaceText(*note.item, note.text);
    }
    return LayoutFile::untouched;
}

LayoutFile NotesStoreModel::save() {
    const NoteItemPtr item = anyNote();
    EXPECT_TRUE(store->save(*item));
    EXPECT_FALSE(item->isDirty());
    return LayoutFile::untouched;
}

LayoutFile NotesStoreModel::saveAll() {
    store->saveDirtyNotes();
    EXPECT_TRUE(std::ranges::none_of(store->notes(), &NoteItem::isDirty));
    return LayoutFile::untouched;
}

LayoutFile NotesStoreModel::renameNote() {
    Note& note = model.note(anyNote());
    const QString title = anyTitle();
    const bool isOrdered = model.order.value(note.folder.value_or(QString())).contains(note.fileName());
    if (title != note.title) {
        model.rename(note, model.freeTitle(title, note.extension, note.folder, &note), note.extension);
    }
    store->rename(*note.item, u' ' + title + u'\n');
    return isOrdered ? LayoutFile::either : LayoutFile::untouched;
}

LayoutFile NotesStoreModel::changeFormat() {
    Note& note = model.note(anyNote());
    const NoteFormat format = anyFormat();
    const bool isOrdered = model.order.value(note.folder.value_or(QString())).contains(note.fileName());
    if (note.item->format() != format) {
        const QString extension = fileExtension(format);
        model.rename(note, model.freeTitle(note.title, extension, note.folder), extension);
    }
    store->changeFormat(*note.item, format);
    return isOrdered ? LayoutFile::either : LayoutFile::untouched;
}

LayoutFile NotesStoreModel::moveNotes() {
    const QList<NoteItemPtr> items = someNotes(3);
    const Folder folder = anyPlace();
    for (const NoteItemPtr& item : items) {
        model.move(model.note(item), folder);
    }
    store->move(items, folder);
    if (items.size() > 1) {
        EXPECT_EQ(store->selectedItem(), items.first());
    }
    return LayoutFile::saved;
}

LayoutFile NotesStoreModel::placeNotes() {
    const Folder folder = anyPlace();
    const QList<NoteItemPtr> there = store->notes(folder);
    return place(someNotes(3), folder, there.isEmpty() || oneIn(3) ? nullptr : pick(there));
}

LayoutFile NotesStoreModel::place(const QList<NoteItemPtr>& items, const Folder& folder, const NoteItemPtr& before) {
    const std::optional<NoteID> selected = store->selectedID();
    QList<NoteItemPtr> targets = items;
    targets.removeAll(before);
    if (!targets.isEmpty()) {
        adoptManualOrder();
        if (before) {
            model.ensurePlace(before->fileName(), fileNames(store->notes(folder)), folder);
        }
    }
    for (const NoteItemPtr& item : std::as_const(targets)) {
        model.place(model.note(item), folder, before ? Folder(before->fileName()) : Folder());
    }
    store->place(items, folder, before);
    EXPECT_EQ(store->selectedID(), selected);
    return targets.isEmpty() ? LayoutFile::untouched : LayoutFile::saved;
}

void NotesStoreModel::adoptManualOrder() {
    if (settings.sortOrder() == NoteSortOrder::manual) {
        return;
    }
    model.order.clear();
    model.order.insert(QString(), fileNames(store->notes(std::nullopt)));
    for (const QString& folder : std::as_const(model.folders)) {
        model.order.insert(folder, fileNames(store->notes(folder)));
    }
}

LayoutFile NotesStoreModel::shiftNote() {
    const NoteItemPtr selected = store->selectedItem();
    const int by = oneIn(2) ? 1 : -1;
    if (!selected) {
        store->shiftSelectedNote(by);
        return LayoutFile::untouched;
    }
    adoptManualOrder();
    const QList<NoteItemPtr> there = store->notes(selected->folder());
    const qsizetype target = there.indexOf(selected) + by;
    const bool isInside = target >= 0 && target < there.size();
    if (isInside) {
        const NoteItemPtr before = there.value(by < 0 ? target : target + 1);
        if (before) {
            model.ensurePlace(before->fileName(), fileNames(there), selected->folder());
        }
        model.place(model.note(selected), selected->folder(), before ? Folder(before->fileName()) : Folder());
    }
    store->shiftSelectedNote(by);
    EXPECT_EQ(store->selectedItem(), selected);
    return isInside ? LayoutFile::saved : LayoutFile::untouched;
}

LayoutFile NotesStoreModel::trashNotes() {
    const QList<NoteItemPtr> items = someNotes(2);
    const auto before = model.order;
    const NoteItemPtr selected = store->selectedItem();
    QMap<QString, QString> texts;
    for (const NoteItemPtr& item : items) {
        texts.insert(item->url().text(), model.note(item).text);
        model.remove(item);
    }
    store->moveToTrash(items);
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        const auto trashed = trashedFrom(FilePath::fromText(text.key()));
        EXPECT_TRUE(trashed && trashed->contents() == text.value().toUtf8()) << qPrintable(text.key());
    }
    emptyTrash();
    if (!items.contains(selected)) {
        EXPECT_EQ(store->selectedItem(), selected);
    }
    return model.order == before ? LayoutFile::untouched : LayoutFile::saved;
}

} // namespace quillary::test
