#include "Tests/State/NotesStoreModel.h"
#include "Tests/State/TrashCan.h"

#include <QCoreApplication>

// What a user does with folders, selections and the search.

namespace quillary::test {

using namespace Qt::StringLiterals;

LayoutFile NotesStoreModel::makeFolder() {
    const QList<NoteItemPtr> items = oneIn(2) ? someNotes(2) : QList<NoteItemPtr>();
    const QString name = model.freeFolder(u"Nuova cartella"_s);
    model.folders.prepend(name);
    for (const NoteItemPtr& item : items) {
        model.move(model.note(item), name);
    }
    EXPECT_EQ(store->createFolder(items), name);
    EXPECT_EQ(store->renamingFolder(), name);
    return LayoutFile::saved;
}

LayoutFile NotesStoreModel::renameFolder() {
    const QString name = pick(model.folders);
    const QString typed = anyFolderName();
    const QString expected = model.freeFolder(typed, name);
    const std::optional<NoteID> selected = store->selectedID();
    model.renameFolder(name, expected);
    store->renameFolder(name, typed);
    EXPECT_EQ(store->renamingFolder(), std::nullopt);
    EXPECT_EQ(store->selectedID(), selected);
    return typed == name ? LayoutFile::untouched : LayoutFile::saved;
}

LayoutFile NotesStoreModel::deleteFolder() {
    const QString name = pick(model.folders);
    const bool keepsNotes = oneIn(2);
    QMap<QString, QString> lost;
    for (const NoteItemPtr& item : store->notes(name)) {
        Note& note = model.note(item);
        if (keepsNotes) {
            model.move(note, std::nullopt);
        } else {
            lost.insert(note.fileName(), note.text);
        }
    }
    model.removeFolder(name);
    model.order.remove(name);
    store->deleteFolder(name, keepsNotes);
    const auto trashed = trashedFrom(directory.path(name));
    EXPECT_TRUE(trashed);
    for (auto text = lost.cbegin(); trashed && text != lost.cend(); ++text) {
        EXPECT_EQ(trashed->contents(text.key()), text.value().toUtf8());
    }
    emptyTrash();
    return LayoutFile::saved;
}

LayoutFile NotesStoreModel::moveFolder() {
    const QString name = pick(model.folders);
    const Folder before = oneIn(3) ? Folder() : Folder(pick(model.folders));
    store->moveFolder(name, before);
    if (before == name) {
        return LayoutFile::untouched;
    }
    model.folders.removeAll(name);
    model.folders.insert(before ? model.folders.indexOf(*before) : model.folders.size(), name);
    return LayoutFile::saved;
}

LayoutFile NotesStoreModel::shiftFolder() {
    const QString name = pick(model.folders);
    const qsizetype index = model.folders.indexOf(name);
    const int by = oneIn(2) ? 1 : -1;
    store->moveFolder(name, by);
    if (index + by < 0 || index + by >= model.folders.size()) {
        return LayoutFile::untouched;
    }
    model.folders.swapItemsAt(index, index + by);
    return LayoutFile::saved;
}

LayoutFile NotesStoreModel::colourFolder() {
    const QString name = pick(model.folders);
    const auto color = oneIn(3) ? std::nullopt : std::optional(pick(allFolderColors));
    store->setColor(color, name);
    EXPECT_EQ(store->folderColors().contains(name), color.has_value());
    return LayoutFile::saved;
}

LayoutFile NotesStoreModel::collapseFolder() {
    store->toggleCollapsed(pick(model.folders));
    return LayoutFile::saved;
}

LayoutFile NotesStoreModel::select() {
    const NoteItemPtr item = oneIn(6) || model.notes.isEmpty() ? nullptr : anyNote();
    store->setSelectedID(item ? std::optional(item->id()) : std::nullopt);
    EXPECT_EQ(store->selectedItem(), item);
    return LayoutFile::untouched;
}

LayoutFile NotesStoreModel::step() {
    const int by = oneIn(2) ? 1 : -1;
    switch (below(3)) {
    case 0:
        store->selectAdjacent(by);
        break;
    case 1:
        store->selectVisible(below(5));
        break;
    default:
        store->sidebarMove(by);
    }
    return LayoutFile::untouched;
}

LayoutFile NotesStoreModel::stepSideways() {
    if (oneIn(2)) {
        store->sidebarLeft();
    } else {
        store->sidebarRight();
    }
    return LayoutFile::either;
}

LayoutFile NotesStoreModel::selectSeveral() {
    QList<NoteID> ids;
    for (const NoteItemPtr& item : someNotes(4)) {
        ids.append(item->id());
    }
    switch (below(4)) {
    case 0:
        store->setMultiSelection(oneIn(5) ? QList<NoteID>() : ids);
        break;
    case 1:
        store->toggleInSelection(*anyNote());
        break;
    case 2:
        store->extendSelection(*anyNote());
        break;
    default:
        store->clearMultiSelection();
    }
    return LayoutFile::untouched;
}

LayoutFile NotesStoreModel::compare() {
    const std::optional<NoteID> selected = store->selectedID();
    switch (below(3)) {
    case 0:
        store->compare(*anyNote(), *anyNote());
        break;
    case 1:
        store->swapComparison();
        break;
    default:
        store->showDiff();
    }
    EXPECT_EQ(store->selectedID(), selected);
    return LayoutFile::untouched;
}

LayoutFile NotesStoreModel::search() {
    store->setSearchQuery(pick(QStringList{u""_s, u" "_s, u"a"_s, u"testo 1"_s, u"lista"_s, u"assente"_s}));
    return LayoutFile::untouched;
}

LayoutFile NotesStoreModel::endSearch() {
    if (oneIn(2)) {
        store->cancelSearch();
        return LayoutFile::untouched;
    }
    const QString query = store->searchQuery().trimmed();
    const NoteItemPtr selected = store->selectedItem();
    const bool makes = store->visibleNotes().isEmpty() && !query.isEmpty();
    store->commitSearch();
    if (makes) {
        const Folder folder = selected ? selected->folder() : std::nullopt;
        const QString extension = fileExtension(settings.defaultFormat());
        model.notes.append(
            {store->selectedItem(), folder, model.freeTitle(query, extension, folder), extension, {}, {}, {}});
    }
    EXPECT_EQ(store->searchQuery(), u"");
    return LayoutFile::either;
}

LayoutFile NotesStoreModel::reveal() {
    const NoteItemPtr item = anyNote();
    store->reveal(*item, oneIn(2));
    EXPECT_EQ(store->selectedItem(), item);
    return LayoutFile::either;
}

LayoutFile NotesStoreModel::sortDifferently() {
    settings.setSortOrder(pick(allNoteSortOrders));
    return LayoutFile::untouched;
}

LayoutFile NotesStoreModel::letEventsPass() {
    QCoreApplication::processEvents();
    return LayoutFile::untouched;
}

} // namespace quillary::test
