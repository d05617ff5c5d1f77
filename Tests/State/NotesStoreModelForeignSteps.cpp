#include "Tests/State/NotesStoreModel.h"

#include <algorithm>
#include <chrono>

// What another program does, and the refresh that finds it.

namespace quillary::test {

using namespace Qt::StringLiterals;

LayoutFile NotesStoreModel::foreignNote() {
    const Folder folder = anyPlace();
    Note note{nullptr, folder, model.freeTitle(anyTitle(), u"md"_s, folder), u"md"_s, newText(), {}, {}};
    directory.write(note.path(), note.text.toUtf8());
    model.notes.append(note);
    return refresh();
}

LayoutFile NotesStoreModel::foreignText() {
    Note& note = model.note(anyNote());
    const Moment later = note.item->knownModificationDate + std::chrono::milliseconds(10);
    note.writtenText = newText();
    directory.replace(note.path(), note.writtenText.toUtf8());
    directory.setModified(note.path(), later);
    if (!note.item->isDirty()) {
        note.text = note.writtenText;
        note.history.clear();
    }
    return refresh();
}

LayoutFile NotesStoreModel::foreignRemoval() {
    const NoteItemPtr item = anyNote();
    directory.remove(model.note(item).path());
    model.notes.removeIf([&item](const Note& note) { return note.item == item; });
    return refresh();
}

LayoutFile NotesStoreModel::foreignRename() {
    Note& note = model.note(anyNote());
    const QString old = note.path();
    note.title = model.freeTitle(anyTitle(), note.extension, note.folder);
    directory.rename(old, note.path());
    becomeAnother(note);
    return refresh();
}

LayoutFile NotesStoreModel::foreignFolder() {
    const QString name = model.freeFolder(anyFolderName());
    directory.makeFolder(name);
    model.folders.append(name);
    return refresh();
}

LayoutFile NotesStoreModel::foreignFolderRename() {
    const QString name = pick(model.folders);
    const QString newName = model.freeFolder(anyFolderName());
    directory.rename(name, newName);
    model.folders.removeAll(name);
    model.folders.append(newName);
    for (Note& note : model.notes) {
        if (note.folder == name) {
            note.folder = newName;
            becomeAnother(note);
        }
    }
    return refresh();
}

LayoutFile NotesStoreModel::foreignFolderRemoval() {
    const QString name = pick(model.folders);
    directory.remove(name);
    model.removeFolder(name);
    return refresh();
}

void NotesStoreModel::becomeAnother(Note& note) {
    if (!note.item->isDirty()) {
        note.writtenText = note.text;
    }
    note.item = nullptr;
    note.text = note.writtenText;
    note.history.clear();
}

LayoutFile NotesStoreModel::refresh() {
    store->refreshFromDisk();
    for (Note& note : model.notes) {
        if (!note.item) {
            const auto found = std::ranges::find(store->notes(), directory.path(note.path()),
                                                 [](const NoteItemPtr& item) { return item->url(); });
            if (found != store->notes().end()) {
                note.item = *found;
            }
        }
    }
    return LayoutFile::untouched;
}

} // namespace quillary::test
