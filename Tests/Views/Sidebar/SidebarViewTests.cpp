#include "Quillary/Sidebar/SidebarView.h"

#include "../NotesFolder.h"
#include "Quillary/Sidebar/SearchField.h"
#include "Quillary/Sidebar/SidebarList.h"

#include <QAction>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// The sidebar on show, over a folder with one sub-folder.
class SidebarViewOf : public testing::Test {
protected:
    SidebarViewOf() {
        m_view.resize(260, 500);
        m_view.show();
        if (!QTest::qWaitForWindowExposed(&m_view)) {
            ADD_FAILURE() << "the view is not exposed";
        }
    }

    NotesStore& store() { return m_folder.store(); }

    QString selectedTitle() {
        const NoteItemPtr selected = store().selectedItem();
        return selected == nullptr ? QString() : selected->title();
    }

    void clickRow(int row) {
        const QRect place = m_list->visualRect(m_list->model()->index(row, 0));
        QTest::mouseClick(m_list->viewport(), Qt::LeftButton, {}, place.center());
    }

    NotesFolder m_folder = NotesFolder({{u"a.md"_s, u"alfa"_s}, {u"b.txt"_s, {}}, {u"Lavoro/c.md"_s, u"gamma"_s}});
    QAction m_newNote;
    SidebarView m_view{m_folder.store(), &m_newNote};
    SidebarList* m_list = m_view.findChild<SidebarList*>();
    SearchField* m_search = m_view.findChild<SearchField*>();
};

} // namespace

TEST_F(SidebarViewOf, AClickSelectsTheNoteAndAsksForTheEditor) {
    QSignalSpy focus(&store(), &NotesStore::editorFocusTokenChanged);
    clickRow(4);
    EXPECT_EQ(selectedTitle(), u"b"_s);
    EXPECT_EQ(focus.size(), 1);
}

TEST_F(SidebarViewOf, AClickOnAFolderSelectsItAndClosesIt) {
    clickRow(0);
    EXPECT_EQ(store().selectedFolder(), std::optional(u"Lavoro"_s));
    EXPECT_TRUE(store().collapsedFolders().contains(u"Lavoro"_s));
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_list->model()->rowCount() == 4; }));
    clickRow(0);
    EXPECT_FALSE(store().collapsedFolders().contains(u"Lavoro"_s));
}

TEST_F(SidebarViewOf, AClickOnAHeadingSelectsNothing) {
    const QString before = selectedTitle();
    clickRow(2);
    EXPECT_EQ(selectedTitle(), before);
}

TEST_F(SidebarViewOf, FollowsASelectionFromElsewhere) {
    store().setSelectedID(m_folder.note(u"b"_s)->id());
    EXPECT_EQ(m_list->currentIndex().row(), 4);
    store().setSelectedFolder(u"Lavoro"_s);
    EXPECT_EQ(m_list->currentIndex().row(), 0);
    store().setSelectedID(std::nullopt);
    EXPECT_FALSE(m_list->currentIndex().isValid());
}

TEST_F(SidebarViewOf, ArrowsWalkOverNotesAndFoldersButNotHeadings) {
    store().setSelectedID(m_folder.note(u"c"_s)->id());
    QTest::keyClick(m_list, Qt::Key_Down);
    EXPECT_EQ(selectedTitle(), u"a"_s);
    QTest::keyClick(m_list, Qt::Key_Up);
    EXPECT_EQ(selectedTitle(), u"c"_s);
    QTest::keyClick(m_list, Qt::Key_Up);
    EXPECT_EQ(store().selectedFolder(), std::optional(u"Lavoro"_s));
    EXPECT_EQ(selectedTitle(), u"c"_s);
}

TEST_F(SidebarViewOf, RightAndLeftOpenAndCloseAFolder) {
    store().setSelectedID(m_folder.note(u"c"_s)->id());
    QTest::keyClick(m_list, Qt::Key_Left);
    EXPECT_EQ(store().selectedFolder(), std::optional(u"Lavoro"_s));
    QTest::keyClick(m_list, Qt::Key_Left);
    EXPECT_TRUE(store().collapsedFolders().contains(u"Lavoro"_s));
    QTest::keyClick(m_list, Qt::Key_Right);
    EXPECT_FALSE(store().collapsedFolders().contains(u"Lavoro"_s));
}

TEST_F(SidebarViewOf, ReturnInTheListAsksForTheEditor) {
    QSignalSpy focus(&store(), &NotesStore::editorFocusTokenChanged);
    QTest::keyClick(m_list, Qt::Key_Return);
    EXPECT_EQ(focus.size(), 1);
}

TEST_F(SidebarViewOf, TypingInTheFieldSearchesAndEscapeEndsIt) {
    QTest::keyClicks(m_search, u"gam"_s);
    EXPECT_EQ(store().searchQuery(), u"gam"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_list->model()->rowCount() == 1; }));
    QTest::keyClick(m_search, Qt::Key_Escape);
    EXPECT_EQ(store().searchQuery(), QString());
    EXPECT_EQ(m_search->text(), QString());

    QSignalSpy focus(&store(), &NotesStore::editorFocusTokenChanged);
    QTest::keyClick(m_search, Qt::Key_Escape);
    EXPECT_EQ(focus.size(), 1);
}

TEST_F(SidebarViewOf, TheFieldStepsThroughTheListWithoutLosingTheKeyboard) {
    store().setSelectedID(m_folder.note(u"c"_s)->id());
    m_search->setFocus();
    QTest::keyClick(m_search, Qt::Key_Down);
    EXPECT_EQ(selectedTitle(), u"a"_s);
    QTest::keyClick(m_search, Qt::Key_Down);
    EXPECT_EQ(selectedTitle(), u"b"_s);
    QTest::keyClick(m_search, Qt::Key_Down);
    EXPECT_EQ(selectedTitle(), u"b"_s);
    QTest::keyClick(m_search, Qt::Key_Up);
    EXPECT_EQ(selectedTitle(), u"a"_s);
}

TEST_F(SidebarViewOf, ReturnInTheFieldTakesTheFirstNoteFound) {
    store().setSelectedID(m_folder.note(u"a"_s)->id());
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_folder.note(u"c"_s)->document() != nullptr; }));
    QTest::keyClicks(m_search, u"gamma"_s);
    QTest::keyClick(m_search, Qt::Key_Return);
    EXPECT_EQ(selectedTitle(), u"c"_s);
    EXPECT_EQ(store().searchQuery(), QString());
}

TEST_F(SidebarViewOf, ReturnOnATitleThatDoesNotExistMakesIt) {
    store().setSelectedID(m_folder.note(u"c"_s)->id());
    QTest::keyClicks(m_search, u"Spesa "_s);
    QTest::keyClick(m_search, Qt::Key_Return);
    EXPECT_EQ(selectedTitle(), u"Spesa"_s);
    EXPECT_EQ(store().selectedItem()->folder(), std::optional(u"Lavoro"_s));
    EXPECT_EQ(store().searchQuery(), QString());
}

TEST_F(SidebarViewOf, TheButtonAboveTheListIsTheCommandForANewNote) {
    QSignalSpy triggered(&m_newNote, &QAction::triggered);
    for (QToolButton* const button : m_view.findChildren<QToolButton*>()) {
        if (button->defaultAction() == &m_newNote) {
            QTest::mouseClick(button, Qt::LeftButton);
        }
    }
    EXPECT_EQ(triggered.size(), 1);
}

TEST_F(SidebarViewOf, TheFooterCountsAllNotes) {
    const auto hasLabel = [this](const QString& text) {
        const QList<QLabel*> labels = m_view.findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) { return label->text() == text; });
    };
    EXPECT_TRUE(hasLabel(u"3 note"_s));
    EXPECT_TRUE(hasLabel(u"Note"_s));
    store().setSearchQuery(u"alfa"_s);
    EXPECT_TRUE(hasLabel(u"3 note"_s));
    QFile::remove(m_folder.path(u"a.md"_s));
    QFile::remove(m_folder.path(u"b.txt"_s));
    store().refreshFromDisk();
    EXPECT_TRUE(hasLabel(u"1 nota"_s));
}

TEST_F(SidebarViewOf, KeepsItsPlaceWhileRowsChangeBelow) {
    for (int i = 0; i < 200; ++i) {
        m_folder.write(u"nota %1.md"_s.arg(i), u"x"_s);
    }
    store().refreshFromDisk();
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_list->model()->rowCount() == 205; }));
    m_list->scrollTo(m_list->model()->index(120, 0), QAbstractItemView::PositionAtTop);
    const QModelIndex top = m_list->indexAt({20, 5});
    const QString title = top.data().toString();
    QFile::remove(m_folder.path(u"nota 199.md"_s));
    store().refreshFromDisk();
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_list->model()->rowCount() == 204; }));
    EXPECT_EQ(m_list->indexAt({20, 5}).data().toString(), title);
}
