#pragma once

#include "Tests/State/FilesInMemory.h"
#include "Tests/State/NotesModel.h"
#include "Tests/State/NotesStoreTest.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <iterator>
#include <string>

namespace quillary::test {

/// What a step may do to the file of the sidebar's layout.
enum class LayoutFile { untouched, saved, either };

/// A store and a model of it, through the same random steps. QUILLARY_MODEL_SEED replays one seed, QUILLARY_MODEL_STEPS
/// says how many steps a seed has.
class NotesStoreModel : private FilesInMemory, public NotesStoreTest, public testing::WithParamInterface<quint32> {
protected:
    using Note = NotesModel::Note;
    using Folder = std::optional<QString>;

    NotesStoreModel() { openStore(); }

    // Choices.

    qsizetype below(qsizetype count) { return qsizetype(random.bounded(quint32(count))); }

    bool oneIn(int count) { return below(count) == 0; }

    template <typename Container>
    auto pick(const Container& choices) {
        return *std::next(std::begin(choices), below(qsizetype(std::size(choices))));
    }

    QString anyTitle();
    QString anyFolderName();
    Folder anyPlace();
    NoteFormat anyFormat();
    NoteItemPtr anyNote();
    QList<NoteItemPtr> someNotes(qsizetype most);

    /// A text that there never was before, so that it can be told where it is and where it was lost.
    QString newText();

    // Steps. Each says what it may do to the layout's file.

    LayoutFile makeNote();
    LayoutFile typeText();
    LayoutFile undo();
    LayoutFile replaceText();
    LayoutFile save();
    LayoutFile saveAll();
    LayoutFile renameNote();
    LayoutFile changeFormat();
    LayoutFile moveNotes();
    LayoutFile placeNotes();
    LayoutFile place(const QList<NoteItemPtr>& items, const Folder& folder, const NoteItemPtr& before);
    LayoutFile shiftNote();
    LayoutFile trashNotes();
    LayoutFile makeFolder();
    LayoutFile renameFolder();
    LayoutFile deleteFolder();
    LayoutFile moveFolder();
    LayoutFile shiftFolder();
    LayoutFile colourFolder();
    LayoutFile collapseFolder();
    LayoutFile select();
    LayoutFile step();
    LayoutFile stepSideways();
    LayoutFile selectSeveral();
    LayoutFile compare();
    LayoutFile search();
    LayoutFile endSearch();
    LayoutFile reveal();
    LayoutFile sortDifferently();
    LayoutFile letEventsPass();

    /// Lets the model take over the order on show, as the first place that is given by hand does.
    void adoptManualOrder();

    // What another program does, and the refresh that finds it.

    LayoutFile foreignNote();
    LayoutFile foreignText();
    LayoutFile foreignRemoval();
    LayoutFile foreignRename();
    LayoutFile foreignFolder();
    LayoutFile foreignFolderRename();
    LayoutFile foreignFolderRemoval();

    /// The note goes on as another one, with what was written of its text.
    static void becomeAnother(Note& note);

    LayoutFile refresh();

    // What holds after every step.

    void expectNotesAsOnDisk();
    void expectTexts();
    void expectOrder();
    void expectManualOrder(const Folder& folder, QList<NoteItemPtr> sorted);
    void expectSelection();
    void expectLayoutFile(LayoutFile expected, const FileStatus& before);

    /// In a form that a failure shows.
    static std::string line(const QStringList& names) { return names.join(u'|').toStdString(); }

    static QStringList fileNames(const QList<NoteItemPtr>& items);

    static void emptyTrash();

    void run(int steps);

    QRandomGenerator random{GetParam()};
    NotesModel model;
    int textCount = 0;
};

} // namespace quillary::test
