#include "Tests/Views/Editor/ZoomableTextViewTest.h"

#include <QApplication>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace quillary {

namespace {

TEST_F(ZoomableTextViewTest, AReadOnlyViewTakesNoEdits) {
    open(u"uno"_s);
    m_view->setReadOnly(true);
    type(u"x"_s);
    key(Qt::Key_Backspace);
    key(Qt::Key_Return);
    m_view->selectAll();
    m_view->cut();
    paste(u"x"_s);
    EXPECT_FALSE(m_view->replaceText({0, 1}, u"x"_s));
    EXPECT_EQ(text(), u"uno"_s);
    QInputMethodEvent commit;
    commit.setCommitString(u"x"_s);
    QApplication::sendEvent(m_view.get(), &commit);
    EXPECT_EQ(text(), u"uno"_s);
    m_view->copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"uno"_s);
}

TEST_F(ZoomableTextViewTest, EveryEditIsAnnouncedOnce) {
    open({});
    QSignalSpy before(m_view.get(), &ZoomableTextView::aboutToEdit);
    QSignalSpy after(m_view.get(), &ZoomableTextView::edited);
    const auto expect = [&](int count) {
        EXPECT_EQ(before.count(), count);
        EXPECT_EQ(after.count(), count);
    };
    type(u"a"_s);
    expect(1);
    paste(u"bc"_s);
    expect(2);
    key(Qt::Key_Backspace);
    expect(3);
    m_view->undo();
    expect(4);
    m_view->redo();
    expect(5);
    m_view->replaceText({0, 1}, u"x"_s);
    expect(6);
    key(Qt::Key_Left);
    m_document->replaceAll(u"da fuori"_s);
    m_view->redo();
    key(Qt::Key_Home, Qt::ControlModifier);
    key(Qt::Key_Backspace);
    expect(6);
}

TEST_F(ZoomableTextViewTest, AReplacementFromOutsideKeepsTheCaretAsFarAsTheTextGoes) {
    open(u"uno due tre"_s);
    putCaret(8);
    m_document->replaceAll(u"quattro cinque"_s);
    EXPECT_EQ(caret(), 8);
    m_view->setSelection({5, 14});
    m_document->replaceAll(u"breve"_s);
    EXPECT_EQ(m_view->selection(), (TextSelection{5, 5}));
}

TEST_F(ZoomableTextViewTest, AnEditByOthersMovesTheSelectionAlong) {
    open(u"uno due tre"_s);
    m_view->setSelection({4, 7});
    m_document->storage().replace({0, 3}, u"millecento");
    EXPECT_EQ(m_view->selectedText(), u"due"_s);
}

} // namespace

} // namespace quillary
