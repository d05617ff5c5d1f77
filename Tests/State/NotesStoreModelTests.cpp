#include "Tests/State/NotesStoreModel.h"

#include "Quillary/State/DelayedTask.h"
#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Text/UndoManager.h"

#include <QDir>
#include <QDirIterator>

#include <algorithm>
#include <vector>

namespace quillary::test {

using namespace Qt::StringLiterals;

namespace {

std::vector<quint32> seeds() {
    const char* const replayed = "QUILLARY_MODEL_SEED";
    if (qEnvironmentVariableIsSet(replayed)) {
        return {quint32(qEnvironmentVariableIntValue(replayed))};
    }
    return {1, 2, 3};
}

} // namespace

// What holds after every step.

void NotesStoreModel::expectNotesAsOnDisk() {
    QStringList onDisk;
    const QString root = directory.path().text();
    QDirIterator files(root, {u"*.md"_s, u"*.txt"_s, u"*.json"_s, u"*.html"_s}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        onDisk.append(files.next().sliced(root.size() + 1));
    }
    QStringList inMemory;
    for (const NoteItemPtr& item : store->notes()) {
        inMemory.append(item->url().text().sliced(root.size() + 1));
    }
    QStringList inModel;
    for (const Note& note : model.notes) {
        inModel.append(note.path());
    }
    for (QStringList* const paths : {&onDisk, &inMemory, &inModel}) {
        paths->sort();
    }
    EXPECT_EQ(line(onDisk), line(inModel));
    EXPECT_EQ(line(inMemory), line(inModel));
}

void NotesStoreModel::expectTexts() {
    for (Note& note : model.notes) {
        SCOPED_TRACE(qPrintable(note.path()));
        ASSERT_TRUE(store->contains(*note.item));
        EXPECT_EQ(note.item->url().bytes(), directory.path(note.path()).bytes());
        EXPECT_EQ(note.item->folder(), note.folder);
        if (note.item->document()) {
            EXPECT_EQ(note.item->document()->text().toStdString(), note.text.toStdString());
            EXPECT_EQ(note.item->characterCount(), note.text.size());
            EXPECT_EQ(note.item->document()->undoManager().canUndo(), !note.history.isEmpty());
        }
        if (note.item->isDirty()) {
            EXPECT_NE(note.item->saveTask, nullptr);
        } else {
            note.writtenText = note.text;
        }
        EXPECT_EQ(directory.contents(note.path()).toStdString(), note.writtenText.toStdString());
    }
}

void NotesStoreModel::expectOrder() {
    const QList<NoteItemPtr> sorted = store->sorted(store->notes());
    EXPECT_EQ(line(store->folders()), line(model.folders));
    EXPECT_EQ(QDir(directory.path().text()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), model.folders.size());
    for (const QString& folder : store->collapsedFolders()) {
        EXPECT_TRUE(model.folders.contains(folder));
    }
    if (settings.sortOrder() != NoteSortOrder::manual) {
        EXPECT_TRUE(sorted == store->notes());
        return;
    }
    // By hand, the order is one within each folder.
    expectManualOrder(std::nullopt, sorted);
    for (const QString& folder : std::as_const(model.folders)) {
        expectManualOrder(folder, sorted);
    }
}

void NotesStoreModel::expectManualOrder(const Folder& folder, QList<NoteItemPtr> sorted) {
    sorted.removeIf([&folder](const NoteItemPtr& item) { return item->folder() != folder; });
    const QStringList shown = fileNames(store->notes(folder));
    EXPECT_EQ(line(shown), line(fileNames(sorted)));
    const QStringList ordered = model.orderedFileNames(folder);
    EXPECT_EQ(line(shown.last(ordered.size())), line(ordered)) << qPrintable(folder.value_or(QString()));
}

void NotesStoreModel::expectSelection() {
    const QList<NoteID>& several = store->multiSelection();
    EXPECT_TRUE(!store->selectedID() || store->selectedItem());
    EXPECT_TRUE(several.isEmpty() || store->actionTargets().size() >= 2);
    EXPECT_TRUE(!store->isShowingDiff() || several.size() == 2);
    if (const NoteItemPtr selected = store->selectedItem()) {
        EXPECT_TRUE(selected->document());
    }
}

void NotesStoreModel::expectLayoutFile(LayoutFile expected, const FileStatus& before) {
    if (expected == LayoutFile::untouched) {
        EXPECT_EQ(layoutFile(), before);
    } else if (expected == LayoutFile::saved) {
        EXPECT_NE(layoutFile(), before);
        EXPECT_EQ(layout(), store->currentLayout().encoded());
    }
}

QStringList NotesStoreModel::fileNames(const QList<NoteItemPtr>& items) {
    QStringList names;
    for (const NoteItemPtr& item : items) {
        names.append(item->fileName());
    }
    return names;
}

void NotesStoreModel::emptyTrash() {
    QDir(qEnvironmentVariable("XDG_DATA_HOME") + u"/Trash"_s).removeRecursively();
}

void NotesStoreModel::run(int steps) {
    enum class Needs { nothing, notes, folders };

    struct Step {
        const char* name;
        int weight;
        Needs needs;
        LayoutFile (NotesStoreModel::*run)();
    };

    const Step all[] = {
        {"make note", 14, Needs::nothing, &NotesStoreModel::makeNote},
        {"type", 12, Needs::notes, &NotesStoreModel::typeText},
        {"undo", 6, Needs::notes, &NotesStoreModel::undo},
        {"replace text", 2, Needs::notes, &NotesStoreModel::replaceText},
        {"save", 5, Needs::notes, &NotesStoreModel::save},
        {"save all", 1, Needs::nothing, &NotesStoreModel::saveAll},
        {"rename note", 6, Needs::notes, &NotesStoreModel::renameNote},
        {"change format", 5, Needs::notes, &NotesStoreModel::changeFormat},
        {"move notes", 6, Needs::notes, &NotesStoreModel::moveNotes},
        {"place notes", 7, Needs::notes, &NotesStoreModel::placeNotes},
        {"shift note", 5, Needs::nothing, &NotesStoreModel::shiftNote},
        {"trash notes", 4, Needs::notes, &NotesStoreModel::trashNotes},
        {"make folder", 3, Needs::nothing, &NotesStoreModel::makeFolder},
        {"rename folder", 3, Needs::folders, &NotesStoreModel::renameFolder},
        {"delete folder", 5, Needs::folders, &NotesStoreModel::deleteFolder},
        {"move folder", 2, Needs::folders, &NotesStoreModel::moveFolder},
        {"shift folder", 2, Needs::folders, &NotesStoreModel::shiftFolder},
        {"colour folder", 2, Needs::folders, &NotesStoreModel::colourFolder},
        {"collapse folder", 4, Needs::folders, &NotesStoreModel::collapseFolder},
        {"select", 5, Needs::nothing, &NotesStoreModel::select},
        {"step", 6, Needs::nothing, &NotesStoreModel::step},
        {"step sideways", 3, Needs::nothing, &NotesStoreModel::stepSideways},
        {"select several", 6, Needs::notes, &NotesStoreModel::selectSeveral},
        {"compare", 4, Needs::notes, &NotesStoreModel::compare},
        {"search", 4, Needs::nothing, &NotesStoreModel::search},
        {"end search", 4, Needs::nothing, &NotesStoreModel::endSearch},
        {"reveal", 3, Needs::notes, &NotesStoreModel::reveal},
        {"sort differently", 2, Needs::nothing, &NotesStoreModel::sortDifferently},
        {"let events pass", 8, Needs::nothing, &NotesStoreModel::letEventsPass},
        {"foreign note", 2, Needs::nothing, &NotesStoreModel::foreignNote},
        {"foreign text", 4, Needs::notes, &NotesStoreModel::foreignText},
        {"foreign removal", 2, Needs::notes, &NotesStoreModel::foreignRemoval},
        {"foreign rename", 2, Needs::notes, &NotesStoreModel::foreignRename},
        {"foreign folder", 1, Needs::nothing, &NotesStoreModel::foreignFolder},
        {"foreign folder rename", 1, Needs::folders, &NotesStoreModel::foreignFolderRename},
        {"foreign folder removal", 1, Needs::folders, &NotesStoreModel::foreignFolderRemoval},
    };
    QList<qsizetype> drawn;
    for (qsizetype index = 0; index < qsizetype(std::size(all)); ++index) {
        drawn.append(QList<qsizetype>(all[index].weight, index));
    }
    QStringList taken;
    for (int count = 0; count < steps && !HasFailure(); ++count) {
        const Step& step = all[pick(drawn)];
        if ((step.needs == Needs::notes && model.notes.isEmpty()) ||
            (step.needs == Needs::folders && model.folders.isEmpty())) {
            continue;
        }
        taken.append(QString::fromLatin1(step.name));
        const FileStatus before = layoutFile();
        const LayoutFile effect = (this->*step.run)();
        expectNotesAsOnDisk();
        expectTexts();
        expectOrder();
        expectSelection();
        expectLayoutFile(effect, before);
        EXPECT_EQ(store->errorMessage(), std::nullopt);
    }
    if (HasFailure()) {
        ADD_FAILURE() << "QUILLARY_MODEL_SEED=" << GetParam() << ", step " << taken.size() << "; the last steps: "
                      << qPrintable(taken.last(std::min<qsizetype>(taken.size(), 12)).join(u", "_s));
    }
}

TEST_P(NotesStoreModel, HoldsThroughRandomCommandsAndForeignChanges) {
    const int steps =
        qEnvironmentVariableIsSet("QUILLARY_MODEL_STEPS") ? qEnvironmentVariableIntValue("QUILLARY_MODEL_STEPS") : 1000;
    run(steps);
    if (HasFailure()) {
        return;
    }

    // What comes back with the next start.
    store->saveDirtyNotes();
    store.reset();
    openStore();
    refresh();
    for (Note& note : model.notes) {
        note.item = nullptr;
        note.history.clear();
    }
    refresh();
    expectNotesAsOnDisk();
    expectTexts();
}

INSTANTIATE_TEST_SUITE_P(Seeds, NotesStoreModel, testing::ValuesIn(seeds()),
                         [](const auto& seed) { return std::to_string(seed.param); });

} // namespace quillary::test
