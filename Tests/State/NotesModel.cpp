#include "Tests/State/NotesModel.h"

#include <algorithm>

namespace quillary::test {

namespace {

/// The first of "name", "name 2", "name 3" and so on that isn't taken.
template <typename IsTaken>
QString firstFree(const QString& name, const IsTaken& isTaken) {
    QString candidate = name;
    for (int number = 2; isTaken(candidate); ++number) {
        candidate = name + u' ' + QString::number(number);
    }
    return candidate;
}

} // namespace

NotesModel::Note& NotesModel::note(const NoteItemPtr& item) {
    return *std::ranges::find(notes, item, &Note::item);
}

QString NotesModel::freeTitle(const QString& title, const QString& extension, const std::optional<QString>& folder,
                              const Note* ignoring) const {
    return firstFree(title, [&](const QString& candidate) {
        return std::ranges::any_of(notes, [&](const Note& note) {
            return &note != ignoring && note.folder == folder && note.fileName() == candidate + u'.' + extension;
        });
    });
}

QString NotesModel::freeFolder(const QString& name, const std::optional<QString>& ignoring) const {
    return firstFree(name,
                     [&](const QString& candidate) { return candidate != ignoring && folders.contains(candidate); });
}

void NotesModel::rename(Note& note, const QString& title, const QString& extension) {
    const QString old = note.fileName();
    note.title = title;
    note.extension = extension;
    if (const auto names = order.find(note.folder.value_or(QString())); names != order.end()) {
        if (const qsizetype index = names->indexOf(old); index >= 0) {
            names->replace(index, note.fileName());
        }
    }
}

void NotesModel::move(Note& note, const std::optional<QString>& folder) {
    if (note.folder == folder) {
        return;
    }
    if (const auto names = order.find(note.folder.value_or(QString())); names != order.end()) {
        names->removeAll(note.fileName());
    }
    note.title = freeTitle(note.title, note.extension, folder);
    note.folder = folder;
}

void NotesModel::place(Note& note, const std::optional<QString>& folder, const std::optional<QString>& beforeFileName) {
    move(note, folder);
    QStringList& names = order[folder.value_or(QString())];
    names.removeAll(note.fileName());
    const qsizetype before = beforeFileName ? names.indexOf(*beforeFileName) : -1;
    names.insert(before < 0 ? names.size() : before, note.fileName());
}

void NotesModel::ensurePlace(const QString& fileName, const QStringList& shown, const std::optional<QString>& folder) {
    QStringList& names = order[folder.value_or(QString())];
    if (!names.contains(fileName)) {
        QStringList unplaced = shown;
        unplaced.removeIf([&names](const QString& each) { return names.contains(each); });
        names = unplaced + names;
    }
}

void NotesModel::remove(const NoteItemPtr& item) {
    const Note& gone = note(item);
    if (const auto names = order.find(gone.folder.value_or(QString())); names != order.end()) {
        names->removeAll(gone.fileName());
    }
    notes.removeIf([&item](const Note& note) { return note.item == item; });
}

void NotesModel::renameFolder(const QString& name, const QString& to) {
    folders.replace(folders.indexOf(name), to);
    for (Note& note : notes) {
        if (note.folder == name) {
            note.folder = to;
        }
    }
    if (order.contains(name)) {
        order.insert(to, order.take(name));
    }
}

void NotesModel::removeFolder(const QString& name) {
    folders.removeAll(name);
    notes.removeIf([&name](const Note& note) { return note.folder == name; });
}

QStringList NotesModel::orderedFileNames(const std::optional<QString>& folder) const {
    QStringList names = order.value(folder.value_or(QString()));
    names.removeDuplicates();
    names.removeIf([&](const QString& name) {
        return std::ranges::none_of(notes,
                                    [&](const Note& note) { return note.folder == folder && note.fileName() == name; });
    });
    return names;
}

} // namespace quillary::test
