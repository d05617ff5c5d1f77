#include "Tests/Views/Editor/ComposingInput.h"
#include "Tests/Views/Editor/ZoomableTextViewTest.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QScrollBar>

#include <gtest/gtest.h>

namespace quillary {

namespace {

TEST_F(ZoomableTextViewTest, APreeditIsShownAndNeverPartOfTextOrHistory) {
    open(u"ab"_s);
    putCaret(1);
    const int before = m_view->caretRect().left();
    QInputMethodEvent composing(u"xyz"_s, {QInputMethodEvent::Attribute(QInputMethodEvent::Cursor, 2, 1)});
    QApplication::sendEvent(m_view.get(), &composing);
    EXPECT_EQ(text(), u"ab"_s);
    EXPECT_FALSE(m_document->undoManager().canUndo());
    EXPECT_NEAR(m_view->caretRect().left() - before, 2 * m_view->textLayout().blankWidth(), 1);
    QInputMethodEvent commit;
    commit.setCommitString(u"k"_s);
    QApplication::sendEvent(m_view.get(), &commit);
    EXPECT_EQ(text(), u"akb"_s);
    EXPECT_TRUE(m_view->textLayout().preedit().isEmpty());
    EXPECT_EQ(caret(), 2);
    m_view->undo();
    EXPECT_EQ(text(), u"ab"_s);
}

TEST_F(ZoomableTextViewTest, ACommitMayReplaceWhatStandsBeforeTheCaret) {
    open(u"casa"_s);
    putCaret(4);
    QInputMethodEvent event;
    event.setCommitString(u"e"_s, -1, 1);
    QApplication::sendEvent(m_view.get(), &event);
    EXPECT_EQ(text(), u"case"_s);
}

TEST_F(ZoomableTextViewTest, ACommitOverASelectionIsOneStepOfTheHistory) {
    open(u"uno due"_s);
    for (const QString& composed : {QString(), u"^"_s}) {
        m_view->setSelection({0, 3});
        if (!composed.isEmpty()) {
            QInputMethodEvent composition(composed, {});
            QApplication::sendEvent(m_view.get(), &composition);
        }
        QInputMethodEvent event;
        event.setCommitString(u"\u00ea"_s);
        QApplication::sendEvent(m_view.get(), &event);
        EXPECT_EQ(text(), u"\u00ea due"_s);
        m_view->undo();
        EXPECT_EQ(text(), u"uno due"_s);
        EXPECT_EQ(m_view->selection(), (TextSelection{0, 3}));
    }
}

TEST_F(ZoomableTextViewTest, AClickWhileTextIsComposedGoesWhereItIsSeen) {
    open(u"uno due tre quattro"_s);
    putCaret(3);
    ComposingInput input;
    input.compose(u"xyz"_s);
    const QPoint point = m_view->caretRect().center() + QPoint(40, 0);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, point);
    EXPECT_EQ(text(), u"unoxyz due tre quattro"_s);
    EXPECT_GT(caret(), 6);
    EXPECT_EQ(caret(), m_view->positionAt(point));
}

TEST_F(ZoomableTextViewTest, AClickFarFromWhatIsComposedGoesWhereTheViewWasScrolledTo) {
    open(u"riga\n"_s.repeated(500));
    putCaret(0);
    ComposingInput input;
    input.compose(u"xyz"_s);
    m_view->verticalScrollBar()->setValue(2'000);
    const int scrolled = m_view->verticalScrollBar()->value();
    ASSERT_GT(scrolled, 1'000);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, {50, 50});
    EXPECT_EQ(text().left(7), u"xyzriga"_s);
    EXPECT_EQ(m_view->verticalScrollBar()->value(), scrolled);
    EXPECT_GT(caret(), 100);
}

TEST_F(ZoomableTextViewTest, InputMethodsMayAskForTheCaretInTheMidstOfAChange) {
    for (const bool wraps : {false, true}) {
        open(u"riga\n"_s.repeated(50'000));
        m_view->setWraps(wraps);
        const ComposingInput input;
        putCaret(m_view->storage().length());
        m_view->scrollToRange({m_view->storage().length(), 0});
        m_view->selectAll();
        key(Qt::Key_Delete);
        EXPECT_EQ(text(), QString());
        const QRect caretRect = m_view->caretRect().translated(m_view->viewport()->pos());
        EXPECT_EQ(input.caret().toRect().topLeft(), caretRect.topLeft());
        m_view->undo();
        m_document->replaceAll(u"breve"_s);
        EXPECT_TRUE(QRectF(m_view->rect()).contains(input.caret()));
    }
}

TEST_F(ZoomableTextViewTest, InputMethodsAreToldOfTheCaretWhereTheViewHasScrolledTo) {
    open(u"riga\n"_s.repeated(100));
    const ComposingInput input;
    putCaret(0);
    for (int line = 0; line < 40; ++line) {
        key(Qt::Key_Return);
        EXPECT_EQ(input.caret().toRect().top(), m_view->caretRect().translated(m_view->viewport()->pos()).top());
    }
    EXPECT_GT(m_view->verticalScrollBar()->value(), 0);
}

TEST_F(ZoomableTextViewTest, InputMethodsSeeAThousandUnitsOfTheLineAtMost) {
    open(u"sopra\n"_s + QString(100'000, u'x') + u"qui"_s + QString(100'000, u'y') + u"\nsotto"_s);
    putCaret(6 + 100'000);
    const QString surrounding = m_view->inputMethodQuery(Qt::ImSurroundingText).toString();
    const int position = m_view->inputMethodQuery(Qt::ImCursorPosition).toInt();
    EXPECT_LE(surrounding.size(), 1000);
    EXPECT_EQ(surrounding.mid(position, 3), u"qui"_s);
    putCaret(3);
    EXPECT_EQ(m_view->inputMethodQuery(Qt::ImSurroundingText).toString(), u"sopra"_s);
    EXPECT_EQ(m_view->inputMethodQuery(Qt::ImCursorPosition).toInt(), 3);
}

} // namespace

} // namespace quillary
