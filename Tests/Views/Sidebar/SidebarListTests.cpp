#include "Quillary/Sidebar/SidebarList.h"

#include "Quillary/Sidebar/InlineTextField.h"
#include "Quillary/Theme/ToolTip.h"
#include "SidebarTest.h"

#include <QScrollBar>
#include <QSignalSpy>
#include <QToolTip>

#include <sys/stat.h>
#include <unistd.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// Two folders of two notes and one, and two notes at the top level.
class SidebarListTest : public SidebarTest {
protected:
    SidebarListTest()
        : SidebarTest({{u"a.md"_s, u"alfa"_s},
                       {u"b.txt"_s, {}},
                       {u"Casa/x.md"_s, u"ics"_s},
                       {u"Lavoro/c.md"_s, u"gamma"_s},
                       {u"Lavoro/d.md"_s, u"delta"_s}}) {}

    const QStringList allRows{u"Casa"_s, u"x"_s, u"Lavoro"_s, u"c"_s, u"d"_s, u"Note"_s, u"a"_s, u"b"_s};
};

/// Two hundred notes, far more than the list shows at a time.
class LongSidebarListTest : public SidebarTest {
protected:
    static QList<std::pair<QString, QString>> files() {
        QList<std::pair<QString, QString>> files;
        for (int i = 0; i < 200; ++i) {
            files.append({u"Nota %1.md"_s.arg(QString::number(i).rightJustified(3, u'0')), u"x"_s});
        }
        files.append({u"Cartella/y.md"_s, {}});
        return files;
    }

    LongSidebarListTest() : SidebarTest(files()) {}

    QScrollBar& bar() { return *m_list->verticalScrollBar(); }

    bool isShownWhole(int row) { return m_list->viewport()->rect().contains(m_list->rowRect(row)); }

    QString topTitle() { return SidebarModel::shownTitle(m_list->model().row(m_list->rowAt({20, 5}))); }
};

} // namespace

// Clicks

TEST_F(SidebarListTest, AClickSelectsTheNoteAndAsksForTheEditor) {
    store().setSelectedFolder(u"Casa"_s);
    const qint64 focus = store().editorFocusToken();
    click(u"b"_s);
    EXPECT_EQ(selectedTitle(), u"b"_s);
    EXPECT_EQ(store().selectedFolder(), std::nullopt);
    EXPECT_EQ(store().editorFocusToken(), focus + 1);
}

TEST_F(SidebarListTest, AClickOnTheSelectedNoteTakesTheHighlightFromAFolder) {
    select(u"a"_s);
    store().setSelectedFolder(u"Casa"_s);
    EXPECT_FALSE(m_list->isHighlighted(rowOf(u"a"_s)));
    EXPECT_TRUE(m_list->isHighlighted(rowOf(u"Casa"_s)));
    click(u"a"_s);
    EXPECT_TRUE(m_list->isHighlighted(rowOf(u"a"_s)));
    EXPECT_FALSE(m_list->isHighlighted(rowOf(u"Casa"_s)));
}

TEST_F(SidebarListTest, AClickWithControlStartsAndEndsAMultiSelection) {
    select(u"a"_s);
    click(u"c"_s, Qt::ControlModifier);
    EXPECT_EQ(multiSelection().size(), 2);
    EXPECT_TRUE(m_list->isHighlighted(rowOf(u"a"_s)));
    EXPECT_TRUE(m_list->isHighlighted(rowOf(u"c"_s)));
    EXPECT_FALSE(m_list->isHighlighted(rowOf(u"b"_s)));
    EXPECT_EQ(selectedTitle(), u"a"_s);
    click(u"a"_s, Qt::ControlModifier);
    EXPECT_TRUE(multiSelection().isEmpty());
    EXPECT_EQ(selectedTitle(), u"c"_s);
}

TEST_F(SidebarListTest, AClickWithShiftTakesTheRangeFromTheSelectedNote) {
    select(u"c"_s);
    click(u"b"_s, Qt::ShiftModifier);
    EXPECT_EQ(multiSelection(), QStringList({u"c"_s, u"d"_s, u"a"_s, u"b"_s}));
    click(u"x"_s, Qt::ShiftModifier);
    // Up to the selected note from above, over Casa and Lavoro; two are in the order of their creation.
    const QStringList range = multiSelection();
    EXPECT_EQ(QSet<QString>(range.cbegin(), range.cend()), QSet<QString>({u"x"_s, u"c"_s}));
    EXPECT_EQ(selectedTitle(), u"c"_s);
}

TEST_F(SidebarListTest, ControlOutranksShift) {
    select(u"c"_s);
    click(u"b"_s, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(multiSelection().size(), 2);
}

TEST_F(SidebarListTest, AClickEndsAMultiSelection) {
    select(u"c"_s);
    click(u"b"_s, Qt::ShiftModifier);
    click(u"d"_s);
    EXPECT_TRUE(multiSelection().isEmpty());
    EXPECT_EQ(selectedTitle(), u"d"_s);
}

TEST_F(SidebarListTest, AClickOnAFolderSelectsItClosesItAndTakesTheKeyboard) {
    m_search->setFocus();
    const qint64 focus = store().sidebarFocusToken();
    click(u"Lavoro"_s);
    EXPECT_EQ(store().sidebarFocusToken(), focus + 1);
    EXPECT_EQ(store().selectedFolder(), std::optional(u"Lavoro"_s));
    EXPECT_EQ(rows(), QStringList({u"Casa"_s, u"x"_s, u"Lavoro"_s, u"Note"_s, u"a"_s, u"b"_s}));
    EXPECT_TRUE(m_list->hasFocus());
    click(u"Lavoro"_s);
    EXPECT_EQ(rows(), allRows);
}

TEST_F(SidebarListTest, ADoubleClickIsTwoClicks) {
    const QPoint place = placeOf(u"Lavoro"_s);
    QTest::mouseClick(m_list->viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(m_list->viewport(), Qt::LeftButton, {}, place);
    EXPECT_TRUE(store().collapsedFolders().contains(u"Lavoro"_s));
}

TEST_F(SidebarListTest, AClickOnAHeadingOrOnNothingDoesNothing) {
    select(u"a"_s);
    const qint64 focus = store().editorFocusToken();
    click(u"Note"_s);
    QTest::mouseClick(m_list->viewport(), Qt::LeftButton, {}, m_list->viewport()->rect().bottomLeft());
    EXPECT_EQ(selectedTitle(), u"a"_s);
    EXPECT_EQ(store().editorFocusToken(), focus);
}

TEST_F(SidebarListTest, APressThatIsReleasedElsewhereIsNoClick) {
    select(u"a"_s);
    QTest::mousePress(m_list->viewport(), Qt::LeftButton, {}, placeOf(u"c"_s));
    QTest::mouseRelease(m_list->viewport(), Qt::LeftButton, {}, placeOf(u"d"_s));
    EXPECT_EQ(selectedTitle(), u"a"_s);
    QTest::mouseClick(m_list->viewport(), Qt::MiddleButton, {}, placeOf(u"c"_s));
    EXPECT_EQ(selectedTitle(), u"a"_s);
}

// Keys

TEST_F(SidebarListTest, ArrowsWalkOverNotesAndFoldersButNotHeadings) {
    select(u"d"_s);
    m_list->setFocus();
    QTest::keyClick(m_list, Qt::Key_Down);
    EXPECT_EQ(selectedTitle(), u"a"_s);
    QTest::keyClick(m_list, Qt::Key_Up);
    QTest::keyClick(m_list, Qt::Key_Up);
    EXPECT_EQ(selectedTitle(), u"c"_s);
    QTest::keyClick(m_list, Qt::Key_Up);
    EXPECT_EQ(store().selectedFolder(), std::optional(u"Lavoro"_s));
    EXPECT_EQ(m_list->currentRow(), rowOf(u"Lavoro"_s));
    EXPECT_EQ(selectedTitle(), u"c"_s);
    QTest::keyClick(m_list, Qt::Key_Down);
    EXPECT_EQ(selectedTitle(), u"a"_s);
    QTest::keyClick(m_list, Qt::Key_Down);
    EXPECT_EQ(m_desktop.beeps, 0);
    QTest::keyClick(m_list, Qt::Key_Down);
    EXPECT_EQ(m_desktop.beeps, 1);
    EXPECT_EQ(selectedTitle(), u"b"_s);
}

TEST_F(SidebarListTest, RightAndLeftOpenAndCloseAFolder) {
    select(u"c"_s);
    QTest::keyClick(m_list, Qt::Key_Left);
    EXPECT_EQ(store().selectedFolder(), std::optional(u"Lavoro"_s));
    QTest::keyClick(m_list, Qt::Key_Left);
    EXPECT_TRUE(store().collapsedFolders().contains(u"Lavoro"_s));
    QTest::keyClick(m_list, Qt::Key_Right);
    EXPECT_FALSE(store().collapsedFolders().contains(u"Lavoro"_s));
    QTest::keyClick(m_list, Qt::Key_Right);
    EXPECT_EQ(store().selectedFolder(), std::nullopt);
    EXPECT_EQ(selectedTitle(), u"c"_s);
}

TEST_F(SidebarListTest, ReturnAsksForTheEditor) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        const qint64 focus = store().editorFocusToken();
        QTest::keyClick(m_list, key);
        EXPECT_EQ(store().editorFocusToken(), focus + 1);
    }
}

TEST_F(SidebarListTest, DeletionAsksAboutTheSelectedFolderOrElseTheNotes) {
    for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Backspace}) {
        store().setPendingFolderDeletion(std::nullopt);
        store().setPendingNoteDeletion({});
        select(u"x"_s);
        select(u"a"_s);
        QTest::keyClick(m_list, key);
        EXPECT_EQ(store().pendingNoteDeletion(), QList{note(u"a"_s)->id()});
        EXPECT_EQ(store().pendingFolderDeletion(), std::nullopt);

        store().setPendingNoteDeletion({});
        store().setSelectedFolder(u"Casa"_s);
        QTest::keyClick(m_list, key);
        EXPECT_EQ(store().pendingFolderDeletion(), std::optional(u"Casa"_s));
        EXPECT_TRUE(store().pendingNoteDeletion().isEmpty());
    }
}

TEST_F(SidebarListTest, DeletionAsksAboutAllNotesOfAMultiSelection) {
    select(u"a"_s);
    click(u"c"_s, Qt::ControlModifier);
    QTest::keyClick(m_list, Qt::Key_Delete);
    EXPECT_EQ(store().pendingNoteDeletion(), store().multiSelection());
}

TEST_F(SidebarListTest, TakesItsKeysAndLeavesTheOthers) {
    const auto isTaken = [this](int key, Qt::KeyboardModifiers modifiers) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        QCoreApplication::sendEvent(m_list, &event);
        return event.isAccepted();
    };
    for (const int key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_Return, Qt::Key_Delete}) {
        EXPECT_TRUE(isTaken(key, {})) << key;
        EXPECT_FALSE(isTaken(key, Qt::ControlModifier)) << key;
    }
    EXPECT_FALSE(isTaken(Qt::Key_A, {}));
    EXPECT_FALSE(isTaken(Qt::Key_Escape, {}));
}

TEST_F(SidebarListTest, ARequestForTheSidebarTakesTheKeyboard) {
    m_search->setFocus();
    store().raiseSidebarFocusToken();
    EXPECT_TRUE(m_list->hasFocus());
}

// What the rows say

TEST_F(SidebarListTest, FollowsASelectionFromElsewhere) {
    QSignalSpy current(m_list, &SidebarList::currentRowChanged);
    select(u"b"_s);
    EXPECT_EQ(m_list->currentRow(), rowOf(u"b"_s));
    store().setSelectedFolder(u"Casa"_s);
    EXPECT_EQ(m_list->currentRow(), rowOf(u"Casa"_s));
    EXPECT_GE(current.size(), 2);
    store().setSelectedID(std::nullopt);
    EXPECT_EQ(m_list->currentRow(), -1);
}

TEST_F(SidebarListTest, AnEmptyListSaysWhatToDo) {
    EXPECT_EQ(m_list->emptyText().first, u"Nessuna nota"_s);
    store().setSearchQuery(u" introvabile "_s);
    EXPECT_EQ(rows(), QStringList());
    EXPECT_EQ(m_list->emptyText(), std::pair(u"Nessun risultato"_s, u"↩ crea la nota «introvabile»."_s));
    EXPECT_FALSE(m_list->grab().isNull());
}

TEST_F(SidebarListTest, AnEmptyListNamesThePresentQuery) {
    class PaintCounter : public QObject {
    public:
        bool eventFilter(QObject*, QEvent* event) override {
            count += event->type() == QEvent::Paint ? 1 : 0;
            return false;
        }

        int count = 0;
    };

    store().setSearchQuery(u"intro"_s);
    rows();
    QCoreApplication::processEvents();
    PaintCounter paints;
    m_list->viewport()->installEventFilter(&paints);
    store().setSearchQuery(u"introvabile"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return paints.count > 0; }));
    m_list->viewport()->removeEventFilter(&paints);
}

TEST_F(SidebarListTest, ATipShowsTheNameOfTheFile) {
    QHelpEvent help(QEvent::ToolTip, placeOf(u"b"_s), m_list->viewport()->mapToGlobal(placeOf(u"b"_s)));
    QCoreApplication::sendEvent(m_list->viewport(), &help);
    EXPECT_EQ(QToolTip::text(), u"b.txt"_s);
    QToolTip::hideText();
}

TEST_F(SidebarListTest, ATipShowsEveryNameAsItStands) {
    for (const QString& title : {u"R & D"_s, u"Uso di <b> e \"i\""_s}) {
        m_folder.write(title % u".txt", {});
        store().refreshFromDisk();
        rows();
        QHelpEvent help(QEvent::ToolTip, placeOf(title), m_list->viewport()->mapToGlobal(placeOf(title)));
        QCoreApplication::sendEvent(m_list->viewport(), &help);
        EXPECT_EQ(QToolTip::text(), plainToolTip(title % u".txt"));
        QToolTip::hideText();
    }
}

// Renaming a folder in its place

TEST_F(SidebarListTest, AFolderIsRenamedInItsPlace) {
    store().setRenamingFolder(u"Lavoro"_s);
    InlineTextField* const field = m_list->renameField();
    ASSERT_NE(field, nullptr);
    EXPECT_TRUE(field->hasFocus());
    EXPECT_EQ(field->selectedText(), u"Lavoro"_s);
    EXPECT_TRUE(m_list->rowRect(rowOf(u"Lavoro"_s)).contains(field->geometry()));
    QTest::keyClicks(field, u"Ufficio"_s);
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(store().folders(), QStringList({u"Casa"_s, u"Ufficio"_s}));
    EXPECT_EQ(store().renamingFolder(), std::nullopt);
    EXPECT_EQ(m_list->renameField(), nullptr);
    EXPECT_TRUE(m_list->hasFocus());
}

TEST_F(SidebarListTest, ReturnAloneRenamesNoFolderAlsoOneWhoseNameIsNoText) {
    const FilePath strange = store().fileStore().directory().appending(u"x\xdce8");
    ASSERT_EQ(mkdir(strange.bytes().constData(), 0700), 0);
    store().refreshFromDisk();
    rows();
    store().setRenamingFolder(u"x\xdce8"_s);
    InlineTextField* const field = m_list->renameField();
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->text(), u"x\ufffd"_s);
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_TRUE(store().folders().contains(u"x\xdce8"_s));
    EXPECT_EQ(store().errorMessage(), std::nullopt);
    // Qt's own clearing of the folder can't reach such a name.
    EXPECT_EQ(rmdir(strange.bytes().constData()), 0);
}

TEST_F(SidebarListTest, EscapeLeavesTheFoldersNameAsItWas) {
    store().setRenamingFolder(u"Lavoro"_s);
    QTest::keyClicks(m_list->renameField(), u"Altro"_s);
    QTest::keyClick(m_list->renameField(), Qt::Key_Escape);
    EXPECT_EQ(store().folders(), QStringList({u"Casa"_s, u"Lavoro"_s}));
    EXPECT_EQ(store().renamingFolder(), std::nullopt);
    EXPECT_EQ(m_list->renameField(), nullptr);
}

TEST_F(SidebarListTest, LosingTheFocusCommitsTheFoldersName) {
    store().setRenamingFolder(u"Lavoro"_s);
    QTest::keyClicks(m_list->renameField(), u"Ufficio"_s);
    m_search->setFocus();
    EXPECT_EQ(store().folders(), QStringList({u"Casa"_s, u"Ufficio"_s}));
    EXPECT_TRUE(m_search->hasFocus());
}

TEST_F(SidebarListTest, AClickOnTheFolderBeingRenamedDoesNotCloseIt) {
    store().setRenamingFolder(u"Lavoro"_s);
    const QRect header = m_list->rowRect(rowOf(u"Lavoro"_s));
    m_list->click(rowOf(u"Lavoro"_s), {});
    EXPECT_TRUE(store().collapsedFolders().isEmpty());
    EXPECT_EQ(store().selectedFolder(), std::nullopt);
    EXPECT_TRUE(header.isValid());
}

TEST_F(SidebarListTest, AClickBesideTheFieldEndsTheRenamingAndNoMore) {
    for (const QString& typed : {QString(), u"Ufficio"_s}) {
        store().setRenamingFolder(u"Lavoro"_s);
        QTest::keyClicks(m_list->renameField(), typed);
        const QRect header = m_list->rowRect(rowOf(u"Lavoro"_s));
        const QPoint beside(m_list->renameField()->x() - 4, header.center().y());
        QTest::mouseClick(m_list->viewport(), Qt::LeftButton, {}, beside);
        EXPECT_EQ(m_list->renameField(), nullptr);
        EXPECT_EQ(store().renamingFolder(), std::nullopt);
        EXPECT_TRUE(store().collapsedFolders().isEmpty());
        EXPECT_EQ(store().selectedFolder(), std::nullopt);
    }
    EXPECT_EQ(store().folders(), QStringList({u"Casa"_s, u"Ufficio"_s}));
    // The next click is one like any other.
    QCoreApplication::processEvents();
    click(u"Ufficio"_s);
    EXPECT_TRUE(store().collapsedFolders().contains(u"Ufficio"_s));
}

TEST_F(SidebarListTest, AClickOnAnotherRowEndsTheRenamingAndIsAClick) {
    store().setRenamingFolder(u"Lavoro"_s);
    QTest::keyClicks(m_list->renameField(), u"Ufficio"_s);
    click(u"b"_s);
    EXPECT_EQ(store().folders(), QStringList({u"Casa"_s, u"Ufficio"_s}));
    EXPECT_EQ(selectedTitle(), u"b"_s);
}

TEST_F(SidebarListTest, KeysOfTheFieldDoNotReachTheListBehindIt) {
    select(u"a"_s);
    store().setRenamingFolder(u"Lavoro"_s);
    QTest::keyClick(m_list->renameField(), Qt::Key_Down);
    QTest::keyClick(m_list->renameField(), Qt::Key_Up);
    EXPECT_EQ(selectedTitle(), u"a"_s);
    EXPECT_EQ(store().selectedFolder(), std::nullopt);
}

TEST_F(SidebarListTest, ANewFolderIsNamedAtOnce) {
    ASSERT_TRUE(store().createFolder({note(u"a"_s)}).has_value());
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_list->renameField() != nullptr; }));
    EXPECT_EQ(rows().constFirst(), store().folders().constFirst());
    QTest::keyClicks(m_list->renameField(), u"Idee"_s);
    QTest::keyClick(m_list->renameField(), Qt::Key_Return);
    EXPECT_EQ(store().folders().constFirst(), u"Idee"_s);
    EXPECT_EQ(note(u"a"_s)->folder(), std::optional(u"Idee"_s));
}

TEST_F(SidebarListTest, RenamingWaitsUntilASearchShowsTheFolderAgain) {
    store().setSearchQuery(u"alfa"_s);
    rows();
    store().setRenamingFolder(u"Lavoro"_s);
    EXPECT_EQ(m_list->renameField(), nullptr);
    EXPECT_EQ(store().renamingFolder(), std::optional(u"Lavoro"_s));
    store().setSearchQuery({});
    rows();
    ASSERT_NE(m_list->renameField(), nullptr);
    EXPECT_EQ(m_list->renamedFolder(), u"Lavoro"_s);

    // A folder that goes out of sight takes its field along, and commits nothing.
    QTest::keyClicks(m_list->renameField(), u"Altro"_s);
    store().setSearchQuery(u"alfa"_s);
    rows();
    EXPECT_EQ(m_list->renameField(), nullptr);
    EXPECT_EQ(store().renamingFolder(), std::optional(u"Lavoro"_s));
    EXPECT_EQ(store().folders(), QStringList({u"Casa"_s, u"Lavoro"_s}));
}

// Scrolling

TEST_F(LongSidebarListTest, ScrollsToTheSelectedNoteAndFolder) {
    select(u"Nota 150"_s);
    EXPECT_TRUE(isShownWhole(rowOf(u"Nota 150"_s)));
    const int place = bar().value();
    select(u"Nota 149"_s);
    EXPECT_EQ(bar().value(), place);
    store().setSelectedFolder(u"Cartella"_s);
    EXPECT_TRUE(isShownWhole(rowOf(u"Cartella"_s)));
}

TEST_F(LongSidebarListTest, ComesOnScreenWithTheSelectedNoteInView) {
    select(u"Nota 003"_s);
    SidebarView second(store(), &m_newNote);
    second.resize(260, 500);
    second.show();
    const SidebarList& list = *second.findChild<SidebarList*>();
    EXPECT_EQ(list.verticalScrollBar()->value(), 0);
    select(u"Nota 150"_s);
    second.hide();
    select(u"Nota 003"_s);
    second.show();
    EXPECT_TRUE(list.viewport()->rect().contains(list.rowRect(list.currentRow())));
}

TEST_F(LongSidebarListTest, ScrollsToANoteThatHasJustCome) {
    ASSERT_NE(store().makeNote(u"Nota 180 bis"_s), nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        const int row = m_list->model().rowOfNote(*store().selectedID());
        return row >= 0 && isShownWhole(row);
    }));
}

TEST_F(LongSidebarListTest, TheFirstNoteUnderAHeadingShowsTheHeadingToo) {
    bar().setValue(bar().maximum());
    select(u"Nota 001"_s);
    select(u"Nota 000"_s);
    EXPECT_TRUE(isShownWhole(rowOf(u"Note"_s)));
}

TEST_F(LongSidebarListTest, KeepsWhatIsOnScreenWhileRowsComeAndGoAboveAndBelow) {
    m_list->scrollToRow(rowOf(u"Nota 100"_s));
    const QString title = topTitle();
    const int y = m_list->rowRect(rowOf(title)).top();
    m_folder.write(u"Nota 000 bis.md"_s, {});
    QFile::remove(m_folder.path(u"Nota 199.md"_s));
    QFile::remove(m_folder.path(u"Nota 002.md"_s));
    QFile::remove(m_folder.path(u"Nota 003.md"_s));
    store().refreshFromDisk();
    EXPECT_EQ(m_list->rowRect(rowOf(title)).top(), y);
    // The row at the top itself goes: the next one stays.
    const QString next = SidebarModel::shownTitle(m_list->model().row(rowOf(title) + 1));
    const int nextY = m_list->rowRect(rowOf(next)).top();
    QFile::remove(m_folder.path(title + u".md"_s));
    store().refreshFromDisk();
    EXPECT_EQ(m_list->rowRect(rowOf(next)).top(), nextY);
}

TEST_F(LongSidebarListTest, AtTheTopShowsWhatComesOnTop) {
    bar().setValue(0);
    QDir().mkpath(m_folder.path(u"Altra cartella"_s));
    store().refreshFromDisk();
    rows();
    EXPECT_EQ(bar().value(), 0);
}

TEST_F(LongSidebarListTest, ASearchStartsAtItsTopAndItsEndShowsTheSelectedNote) {
    select(u"Nota 150"_s);
    store().setSearchQuery(u"Nota"_s);
    rows();
    EXPECT_EQ(bar().value(), 0);
    bar().setValue(500);
    store().setSearchQuery(u"Nota 1"_s);
    rows();
    EXPECT_EQ(bar().value(), 0);
    store().setSearchQuery({});
    EXPECT_TRUE(isShownWhole(rowOf(u"Nota 150"_s)));
}

TEST_F(LongSidebarListTest, PagesAndEndsScrollWithoutSelecting) {
    bar().setValue(0);
    select(u"Nota 000"_s);
    QTest::keyClick(m_list, Qt::Key_End);
    EXPECT_EQ(bar().value(), bar().maximum());
    QTest::keyClick(m_list, Qt::Key_PageUp);
    EXPECT_EQ(bar().value(), bar().maximum() - bar().pageStep());
    QTest::keyClick(m_list, Qt::Key_Home);
    EXPECT_EQ(bar().value(), 0);
    QTest::keyClick(m_list, Qt::Key_PageDown);
    EXPECT_EQ(bar().value(), bar().pageStep());
    EXPECT_EQ(selectedTitle(), u"Nota 000"_s);
}

TEST_F(LongSidebarListTest, TheFieldForANameScrollsWithItsFolder) {
    store().setRenamingFolder(u"Cartella"_s);
    ASSERT_NE(m_list->renameField(), nullptr);
    const int y = m_list->renameField()->y();
    bar().setValue(10);
    EXPECT_EQ(m_list->renameField()->y(), y - 10);
}

TEST_F(LongSidebarListTest, PaintsOnlyTheRowsInView) {
    const QImage before = m_list->grab().toImage();
    note(u"Nota 150"_s)->setSnippet(u"fuori vista"_s);
    EXPECT_EQ(m_list->grab().toImage(), before);
    note(u"Nota 001"_s)->setSnippet(u"in vista"_s);
    EXPECT_NE(m_list->grab().toImage(), before);
}
