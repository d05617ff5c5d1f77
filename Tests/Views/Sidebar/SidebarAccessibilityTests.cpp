#include "Quillary/Sidebar/InlineTextField.h"
#include "SidebarTest.h"

#include <QAccessible>
#include <QApplication>
#include <QMenu>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

class SidebarAccessibilityTest : public SidebarTest {
protected:
    SidebarAccessibilityTest()
        : SidebarTest({{u"a.md"_s, u"alfa"_s}, {u"b.txt"_s, {}}, {u"Lavoro/c.md"_s, u"gamma"_s}}) {
        m_accessible = QAccessible::queryAccessibleInterface(m_list);
        m_list->setFocus();
    }

    QAccessibleInterface* row(const QString& title) { return m_accessible->child(rowOf(title)); }

    QString nameOf(const QString& title) { return row(title)->text(QAccessible::Name); }

    QAccessibleInterface* m_accessible = nullptr;
};

} // namespace

TEST_F(SidebarAccessibilityTest, IsAListOfItsRows) {
    ASSERT_NE(m_accessible, nullptr);
    EXPECT_EQ(m_accessible->role(), QAccessible::List);
    EXPECT_EQ(m_accessible->text(QAccessible::Name), u"Note"_s);
    EXPECT_TRUE(m_accessible->state().multiSelectable);
    ASSERT_EQ(m_accessible->childCount(), 5);
    EXPECT_EQ(m_accessible->child(5), nullptr);
    EXPECT_EQ(m_accessible->child(-1), nullptr);
    for (int i = 0; i < 5; ++i) {
        QAccessibleInterface* const child = m_accessible->child(i);
        EXPECT_EQ(child, m_accessible->child(i));
        EXPECT_EQ(child->parent(), m_accessible);
        EXPECT_EQ(m_accessible->indexOfChild(child), i);
        EXPECT_EQ(m_accessible->childAt(child->rect().center().x(), child->rect().center().y()), child);
    }
    EXPECT_EQ(row(u"Note"_s)->role(), QAccessible::Heading);
    EXPECT_EQ(row(u"a"_s)->role(), QAccessible::ListItem);
    EXPECT_EQ(nameOf(u"Lavoro"_s), u"Lavoro, 1 nota"_s);
    EXPECT_EQ(row(u"b"_s)->text(QAccessible::Description).section(u',', 0, 0), displayName(NoteFormat::plain));
}

TEST_F(SidebarAccessibilityTest, SaysWhatIsSelectedWhereTheCursorIsAndWhichFolderIsOpen) {
    select(u"a"_s);
    EXPECT_TRUE(row(u"a"_s)->state().selected);
    EXPECT_TRUE(row(u"a"_s)->state().focused);
    EXPECT_FALSE(row(u"b"_s)->state().selected);
    EXPECT_FALSE(row(u"Note"_s)->state().selectable);
    EXPECT_EQ(m_accessible->focusChild(), row(u"a"_s));

    click(u"b"_s, Qt::ControlModifier);
    EXPECT_TRUE(row(u"a"_s)->state().selected);
    EXPECT_TRUE(row(u"b"_s)->state().selected);

    EXPECT_TRUE(row(u"Lavoro"_s)->state().expandable);
    EXPECT_TRUE(row(u"Lavoro"_s)->state().expanded);
    store().toggleCollapsed(u"Lavoro"_s);
    EXPECT_TRUE(row(u"Lavoro"_s)->state().collapsed);
    EXPECT_FALSE(row(u"Lavoro"_s)->state().expanded);
    EXPECT_FALSE(row(u"a"_s)->state().expandable);
}

TEST_F(SidebarAccessibilityTest, ARowStaysOneObjectUntilItGoes) {
    QAccessibleInterface* const before = row(u"b"_s);
    const QAccessible::Id id = QAccessible::uniqueId(before);
    store().toggleCollapsed(u"Lavoro"_s);
    EXPECT_EQ(row(u"b"_s), before);
    QFile::remove(m_folder.path(u"b.txt"_s));
    store().refreshFromDisk();
    m_list->model().update();
    EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
}

TEST_F(SidebarAccessibilityTest, RowsCanBePressedAndShowTheirMenus) {
    QAccessibleActionInterface* const actions = row(u"b"_s)->actionInterface();
    ASSERT_NE(actions, nullptr);
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(selectedTitle(), u"b"_s);
    actions->doAction(QAccessibleActionInterface::showMenuAction());
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    QApplication::activePopupWidget()->close();
    row(u"Lavoro"_s)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(store().collapsedFolders().contains(u"Lavoro"_s));
    EXPECT_TRUE(row(u"Note"_s)->actionInterface()->actionNames().isEmpty());
}

TEST_F(SidebarAccessibilityTest, TheFieldForANameIsInItsRow) {
    EXPECT_EQ(row(u"Lavoro"_s)->childCount(), 0);
    store().setRenamingFolder(u"Lavoro"_s);
    ASSERT_EQ(row(u"Lavoro"_s)->childCount(), 1);
    const QAccessibleInterface* const field = row(u"Lavoro"_s)->child(0);
    EXPECT_EQ(field->object(), m_list->renameField());
    EXPECT_EQ(field->text(QAccessible::Name), u"Nome della cartella"_s);
    EXPECT_EQ(m_accessible->focusChild(), field);
    EXPECT_EQ(m_accessible->childCount(), 5);
}

TEST_F(SidebarAccessibilityTest, AnEmptyListSaysWhy) {
    store().setSearchQuery(u"introvabile"_s);
    m_list->model().update();
    EXPECT_EQ(m_accessible->childCount(), 0);
    EXPECT_EQ(m_accessible->text(QAccessible::Description), u"Nessun risultato. ↩ crea la nota «introvabile»."_s);
}
