#include "Quillary/Detail/EditableTitle.h"

#include "DetailTest.h"
#include "Quillary/Editor/EditorView.h"
#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/Sidebar/InlineTextField.h"

#include <QSignalSpy>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

class EditableTitleTest : public DetailTest {
protected:
    EditableTitleTest() : DetailTest({{u"a.md"_s, u"alfa"_s}, {u"b.md"_s, u"beta"_s}}) {}

    InlineTextField* field() const { return m_view.findChild<InlineTextField*>(); }

    bool isEditing() const { return m_view.findChild<EditableTitle*>()->isEditing(); }

    bool waitForEditorFocus() {
        return QTest::qWaitFor([this] { return m_view.findChild<EditorView*>()->textView()->hasFocus(); });
    }

    void beginEditing() {
        click(u"Fai clic per rinominare"_s);
        ASSERT_TRUE(isEditing());
    }
};

} // namespace

TEST_F(EditableTitleTest, ShowsTheTitleUnderItsHelp) {
    QAbstractButton* const title = button(u"Fai clic per rinominare"_s);
    ASSERT_NE(title, nullptr);
    EXPECT_EQ(title->accessibleName(), u"a"_s);
    store().rename(*m_folder.note(u"a"_s), u"R & D"_s);
    EXPECT_EQ(title->accessibleName(), u"R & D"_s);
    select(u"b"_s);
    EXPECT_EQ(title->accessibleName(), u"b"_s);
}

TEST_F(EditableTitleTest, AClickEditsTheTitleAndReturnRenames) {
    beginEditing();
    ASSERT_TRUE(field()->hasFocus());
    EXPECT_EQ(field()->selectedText(), u"a"_s);
    const qint64 token = store().editorFocusToken();
    QTest::keyClicks(field(), u"Nuovo"_s);
    QTest::keyClick(field(), Qt::Key_Return);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(store().selectedItem()->title(), u"Nuovo"_s);
    EXPECT_EQ(store().editorFocusToken(), token + 1);
    EXPECT_TRUE(waitForEditorFocus());
}

TEST_F(EditableTitleTest, ReturnAloneRenamesNothing) {
    for (const QString& title : {u"a"_s, u"uno\ndue"_s, u"tre\tquattro"_s}) {
        m_folder.write(title % u".md", u"testo"_s);
        store().refreshFromDisk();
        select(title);
        beginEditing();
        QTest::keyClick(field(), Qt::Key_Return);
        EXPECT_FALSE(isEditing());
        EXPECT_EQ(store().selectedItem()->title(), title);
        EXPECT_TRUE(QFile::exists(m_folder.path(title % u".md")));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST_F(EditableTitleTest, EscapeLeavesTheNameAndGivesTheEditorTheFocus) {
    beginEditing();
    const qint64 token = store().editorFocusToken();
    QTest::keyClicks(field(), u"Nuovo"_s);
    QTest::keyClick(field(), Qt::Key_Escape);
    EXPECT_FALSE(isEditing());
    EXPECT_TRUE(QFile::exists(m_folder.path(u"a.md"_s)));
    EXPECT_FALSE(QFile::exists(m_folder.path(u"Nuovo.md"_s)));
    EXPECT_EQ(store().editorFocusToken(), token + 1);
    EXPECT_TRUE(waitForEditorFocus());
}

TEST_F(EditableTitleTest, LosingTheFocusRenamesOnce) {
    beginEditing();
    const qint64 token = store().editorFocusToken();
    QTest::keyClicks(field(), u"Nuovo"_s);
    button(u"Copia il contenuto negli appunti (⌥⌘C)"_s)->setFocus(Qt::TabFocusReason);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(store().selectedItem()->title(), u"Nuovo"_s);
    EXPECT_EQ(store().editorFocusToken(), token + 1);
}

TEST_F(EditableTitleTest, TheMenuCommandEditsIt) {
    store().raiseTitleRenameToken();
    ASSERT_TRUE(isEditing());
    QTest::keyClicks(field(), u"bozza"_s);

    // Again: what was typed so far stays.
    store().raiseTitleRenameToken();
    EXPECT_EQ(field()->text(), u"bozza"_s);
    EXPECT_TRUE(field()->hasFocus());
}

TEST_F(EditableTitleTest, TheMenuCommandFindsNothingToEditWithoutATitle) {
    selectAll({u"a"_s, u"b"_s});
    store().raiseTitleRenameToken();
    EXPECT_FALSE(isEditing());
    store().clearMultiSelection();
    store().setSelectedID(std::nullopt);
    store().raiseTitleRenameToken();
    EXPECT_FALSE(isEditing());
}

TEST_F(EditableTitleTest, TheKeyboardAloneEditsIt) {
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
        QAbstractButton* const title = button(u"Fai clic per rinominare"_s);
        title->setFocus(Qt::TabFocusReason);
        QTest::keyClick(title, key);
        EXPECT_TRUE(isEditing());
        QTest::keyClick(field(), Qt::Key_Escape);
    }
}

TEST_F(EditableTitleTest, AnotherNoteEndsTheEditWithTheNoteThatItBeganWith) {
    const NoteItemPtr first = m_folder.note(u"a"_s);
    beginEditing();
    QTest::keyClicks(field(), u"Nuovo"_s);
    select(u"b"_s);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(first->title(), u"Nuovo"_s);
    EXPECT_EQ(store().selectedItem()->title(), u"b"_s);
}

TEST_F(EditableTitleTest, ANoteThatGoesTakesItsEditWithIt) {
    beginEditing();
    QTest::keyClicks(field(), u"Nuovo"_s);
    const qint64 token = store().editorFocusToken();
    store().moveToTrash({m_folder.note(u"a"_s)});
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(store().editorFocusToken(), token + 1);
    EXPECT_TRUE(waitForEditorFocus());
    EXPECT_EQ(store().errorMessage(), std::nullopt);
    EXPECT_EQ(store().selectedItem()->title(), u"b"_s);
}
