#include "Quillary/Dialogs/NoteDeletionDialog.h"

#include "../NotesFolder.h"
#include "DialogTest.h"
#include "Quillary/Dialogs/ConfirmationDialog.h"

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

class NoteDeletionDialogTest : public DialogTest {
protected:
    NoteDeletionDialogTest() : DialogTest({{u"a.md"_s, u"alfa"_s}, {u"b.md"_s, u"beta"_s}, {u"c.md"_s, u"gamma"_s}}) {
        new NoteDeletionDialog(store(), &m_window);
    }
};

} // namespace

TEST_F(NoteDeletionDialogTest, IsOnScreenExactlyWhileNotesWait) {
    EXPECT_EQ(dialog(), nullptr) << "it is made when it first asks";
    store().requestTrash();
    EXPECT_TRUE(isAsking());
    EXPECT_EQ(texts(), QStringList({u"Spostare «a» nel Cestino?"_s, u"Potrai recuperarla dal Cestino del Finder."_s}));
    EXPECT_EQ(buttons(), QStringList({u"Sposta nel Cestino"_s, u"Annulla"_s}));
    store().setPendingNoteDeletion({});
    EXPECT_FALSE(isAsking());
}

TEST_F(NoteDeletionDialogTest, CountsSeveralNotes) {
    store().requestTrash(QList{note(u"a"_s), note(u"b"_s)});
    EXPECT_EQ(texts(),
              QStringList({u"Spostare 2 note nel Cestino?"_s, u"Potrai recuperarle dal Cestino del Finder."_s}));
}

TEST_F(NoteDeletionDialogTest, FollowsTheNotesThatWait) {
    store().requestTrash(QList{note(u"a"_s), note(u"b"_s)});
    ASSERT_TRUE(QFile::remove(m_folder.path(u"b.md"_s)));
    store().refreshFromDisk();
    EXPECT_EQ(texts().first(), u"Spostare «a» nel Cestino?"_s);
    store().rename(*note(u"a"_s), u"<b>R & D"_s);
    EXPECT_EQ(texts().first(), u"Spostare «<b>R & D» nel Cestino?"_s);
}

TEST_F(NoteDeletionDialogTest, ReturnMovesToTheTrash) {
    store().requestTrash();
    press(Qt::Key_Return);
    EXPECT_FALSE(isAsking());
    EXPECT_TRUE(store().pendingNoteDeletion().isEmpty());
    EXPECT_FALSE(QFile::exists(m_folder.path(u"a.md"_s)));
    EXPECT_EQ(store().notes().size(), 2);
}

TEST_F(NoteDeletionDialogTest, EveryOtherWayOutKeepsTheNotes) {
    const QList<std::function<void()>> ways = {
        [this] { press(Qt::Key_Escape); },
        [this] { click(u"Annulla"_s); },
        [this] { dialog()->close(); },
        [this] {
            press(Qt::Key_Tab);
            press(Qt::Key_Space);
        },
    };
    for (const std::function<void()>& leave : ways) {
        store().requestTrash();
        ASSERT_TRUE(isAsking());
        leave();
        EXPECT_FALSE(isAsking());
        EXPECT_TRUE(store().pendingNoteDeletion().isEmpty());
        EXPECT_EQ(store().notes().size(), 3);
    }
}

TEST_F(NoteDeletionDialogTest, ConfirmingEndsAMultipleSelectionFirst) {
    store().setMultiSelection({note(u"a"_s)->id(), note(u"b"_s)->id()});
    store().showDiff();
    store().requestTrash(store().actionTargets());
    bool hadEnded = false;
    QObject::connect(&store(), &NotesStore::notesChanged, &m_window,
                     [&] { hadEnded = store().multiSelection().isEmpty() && !store().isShowingDiff(); });
    click(u"Sposta nel Cestino"_s);
    EXPECT_TRUE(hadEnded);
    ASSERT_EQ(store().notes().size(), 1);
    EXPECT_EQ(store().notes().first()->title(), u"c"_s);
}

TEST_F(NoteDeletionDialogTest, NotesThatHaveGoneAreLeftOut) {
    store().requestTrash(QList{note(u"a"_s), note(u"b"_s)});
    ASSERT_TRUE(QFile::remove(m_folder.path(u"a.md"_s)));
    store().refreshFromDisk();
    click(u"Sposta nel Cestino"_s);
    EXPECT_EQ(store().errorMessage(), std::nullopt);
    ASSERT_EQ(store().notes().size(), 1);
    EXPECT_EQ(store().notes().first()->title(), u"c"_s);
}

TEST_F(NoteDeletionDialogTest, ALongTitleStaysInTheDialog) {
    store().rename(*note(u"a"_s), QString(120, u'w'));
    store().requestTrash();
    EXPECT_LE(dialog()->width(), 520);
    EXPECT_GE(dialog()->height(), dialog()->layout()->totalHeightForWidth(dialog()->width()));
}
