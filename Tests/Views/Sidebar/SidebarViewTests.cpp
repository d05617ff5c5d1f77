#include "Quillary/Sidebar/SidebarView.h"

#include "SidebarTest.h"

#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QSignalSpy>
#include <QToolButton>

#include <algorithm>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

class SidebarViewTest : public SidebarTest {
protected:
    SidebarViewTest() : SidebarTest({{u"a.md"_s, u"alfa"_s}, {u"b.txt"_s, {}}, {u"Lavoro/c.md"_s, u"gamma"_s}}) {}

    void awaitTexts() {
        ASSERT_TRUE(QTest::qWaitFor([&] {
            return std::ranges::all_of(store().notes(),
                                       [](const NoteItemPtr& item) { return item->document() != nullptr; });
        }));
    }

    bool hasLabel(const QString& text) {
        return std::ranges::any_of(m_view.findChildren<QLabel*>(),
                                   [&](const QLabel* label) { return label->text() == text; });
    }

    QToolButton* button(const QString& toolTip) {
        for (QToolButton* const button : m_view.findChildren<QToolButton*>()) {
            if (button->toolTip() == toolTip) {
                return button;
            }
        }
        return nullptr;
    }
};

} // namespace

TEST_F(SidebarViewTest, TypingInTheFieldSearchesAndEscapeEndsIt) {
    m_search->setFocus();
    QTest::keyClicks(m_search, u"gam"_s);
    EXPECT_EQ(store().searchQuery(), u"gam"_s);
    const qint64 focus = store().editorFocusToken();
    QTest::keyClick(m_search, Qt::Key_Escape);
    EXPECT_EQ(store().searchQuery(), QString());
    EXPECT_EQ(m_search->text(), QString());
    EXPECT_TRUE(m_search->hasFocus());
    EXPECT_EQ(store().editorFocusToken(), focus);
    QTest::keyClick(m_search, Qt::Key_Escape);
    EXPECT_EQ(store().editorFocusToken(), focus + 1);
}

TEST_F(SidebarViewTest, TheFieldShowsAQueryFromElsewhere) {
    store().setSearchQuery(u"alfa"_s);
    EXPECT_EQ(m_search->text(), u"alfa"_s);
    EXPECT_EQ(m_search->placeholderText(), u"Cerca"_s);
}

TEST_F(SidebarViewTest, TheButtonInTheFieldEmptiesIt) {
    QAction* clear = nullptr;
    for (QAction* const action : m_search->actions()) {
        clear = action->text() == u"Cancella"_s ? action : clear;
    }
    ASSERT_NE(clear, nullptr);
    EXPECT_FALSE(clear->isVisible());
    QTest::keyClicks(m_search, u"g"_s);
    EXPECT_TRUE(clear->isVisible());
    m_list->setFocus();
    QToolButton* const shown = button(u"Cancella"_s);
    ASSERT_NE(shown, nullptr);
    ASSERT_TRUE(shown->isVisible());
    QTest::mouseClick(shown, Qt::LeftButton);
    EXPECT_EQ(store().searchQuery(), QString());
    EXPECT_FALSE(clear->isVisible());
    EXPECT_TRUE(m_search->hasFocus());
}

TEST_F(SidebarViewTest, TheFieldShowsThatItHasTheKeyboard) {
    const QColor accent = m_search->palette().color(QPalette::Link);
    const auto edge = [this] { return m_search->grab().toImage().pixelColor(m_search->width() / 2, 0); };
    m_list->setFocus();
    EXPECT_NE(edge(), accent);
    m_search->setFocus();
    EXPECT_EQ(edge(), accent);
}

TEST_F(SidebarViewTest, TheFieldStepsThroughTheListAndGoesOnAtTheOtherEnd) {
    select(u"c"_s);
    m_search->setFocus();
    for (const QString& title : {u"a"_s, u"b"_s, u"c"_s}) {
        QTest::keyClick(m_search, Qt::Key_Down);
        EXPECT_EQ(selectedTitle(), title);
    }
    QTest::keyClick(m_search, Qt::Key_Up);
    EXPECT_EQ(selectedTitle(), u"b"_s);
    EXPECT_TRUE(m_search->hasFocus());
}

TEST_F(SidebarViewTest, ReturnInTheFieldTakesTheFirstNoteFound) {
    select(u"a"_s);
    awaitTexts();
    const qint64 focus = store().editorFocusToken();
    QTest::keyClicks(m_search, u"gamma"_s);
    QTest::keyClick(m_search, Qt::Key_Return);
    EXPECT_EQ(selectedTitle(), u"c"_s);
    EXPECT_EQ(store().searchQuery(), QString());
    EXPECT_EQ(store().editorFocusToken(), focus + 1);
}

TEST_F(SidebarViewTest, ReturnOnATitleThatDoesNotExistMakesIt) {
    select(u"c"_s);
    QTest::keyClicks(m_search, u"Spesa "_s);
    QTest::keyClick(m_search, Qt::Key_Enter);
    EXPECT_EQ(selectedTitle(), u"Spesa"_s);
    EXPECT_EQ(store().selectedItem()->folder(), std::optional(u"Lavoro"_s));
    EXPECT_EQ(store().searchQuery(), QString());
}

TEST_F(SidebarViewTest, ARequestForTheSearchTakesTheKeyboard) {
    m_list->setFocus();
    store().raiseSearchFocusToken();
    EXPECT_TRUE(m_search->hasFocus());
}

TEST_F(SidebarViewTest, TheButtonAboveTheListIsTheCommandForANewNote) {
    QSignalSpy triggered(&m_newNote, &QAction::triggered);
    for (QToolButton* const button : m_view.findChildren<QToolButton*>()) {
        if (button->defaultAction() == &m_newNote) {
            QTest::mouseClick(button, Qt::LeftButton);
        }
    }
    EXPECT_EQ(triggered.size(), 1);
}

TEST_F(SidebarViewTest, TheFooterCountsAllNotes) {
    EXPECT_TRUE(hasLabel(u"3 note"_s));
    EXPECT_TRUE(hasLabel(u"Note"_s));
    store().setSearchQuery(u"alfa"_s);
    store().toggleCollapsed(u"Lavoro"_s);
    EXPECT_TRUE(hasLabel(u"3 note"_s));
    QFile::remove(m_folder.path(u"a.md"_s));
    QFile::remove(m_folder.path(u"b.txt"_s));
    store().refreshFromDisk();
    EXPECT_TRUE(hasLabel(u"1 nota"_s));
    QFile::remove(m_folder.path(u"Lavoro/c.md"_s));
    store().refreshFromDisk();
    EXPECT_TRUE(hasLabel(u"0 note"_s));
}

TEST_F(SidebarViewTest, TheFooterNamesTheDirectoryAlsoWhereOneEmptyOneFollowsAnother) {
    for (const QString& name : {u"Una vuota"_s, u"Un'altra"_s}) {
        store().changeDirectory(FilePath::fromText(m_folder.path(name)));
        EXPECT_TRUE(hasLabel(name)) << name.toStdString();
        EXPECT_TRUE(hasLabel(u"0 note"_s));
    }
    QTest::mouseClick(button(u"Apri cartella delle note"_s), Qt::LeftButton);
    EXPECT_EQ(m_desktop.opened, QStringList(m_folder.path(u"Un'altra"_s)));
}

TEST_F(SidebarViewTest, TheFootersButtonsOpenTheDirectoryAndMakeAFolder) {
    ASSERT_NE(button(u"Apri cartella delle note"_s), nullptr);
    QTest::mouseClick(button(u"Apri cartella delle note"_s), Qt::LeftButton);
    EXPECT_EQ(m_desktop.opened, QStringList(store().fileStore().directory().text()));

    ASSERT_NE(button(u"Nuova cartella (⌥⌘N)"_s), nullptr);
    QTest::mouseClick(button(u"Nuova cartella (⌥⌘N)"_s), Qt::LeftButton);
    EXPECT_EQ(store().folders().size(), 2);
    EXPECT_EQ(store().renamingFolder(), std::optional(store().folders().constFirst()));
    EXPECT_EQ(store().notes(std::nullopt).size(), 2);
}
