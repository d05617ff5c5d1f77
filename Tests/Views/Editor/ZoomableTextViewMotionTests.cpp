#include "Tests/Views/Editor/HostileTexts.h"
#include "Tests/Views/Editor/ZoomableTextViewTest.h"

#include <QRandomGenerator>
#include <QScrollBar>

#include <gtest/gtest.h>

#include <array>

namespace quillary {

namespace {

TEST_F(ZoomableTextViewTest, TheCaretStopsInNoCluster) {
    QRandomGenerator random(4);
    open(hostileText(random, 400), {300, 400});
    for (const bool wraps : {true, false}) {
        m_view->setWraps(wraps);
        for (int i = 0; i < 1500; ++i) {
            static constexpr std::array keys = {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up,     Qt::Key_Down,
                                                Qt::Key_Home, Qt::Key_End,   Qt::Key_PageUp, Qt::Key_PageDown};
            key(keys[static_cast<std::size_t>(random.bounded(8))],
                random.bounded(4) == 0 ? Qt::ControlModifier : Qt::NoModifier);
            ASSERT_EQ(m_view->storage().clusterBoundaryAtOrBefore(caret()), caret());
        }
    }
}

TEST_F(ZoomableTextViewTest, RightGoesThroughTheWholeTextClusterByCluster) {
    QRandomGenerator random(8);
    open(hostileText(random, 200));
    qsizetype expected = 0;
    while (expected < m_view->storage().length()) {
        const bool isRightToLeft = m_view->textLayout().rowHolding(expected).isRightToLeft;
        expected = m_view->storage().nextCluster(expected);
        key(isRightToLeft ? Qt::Key_Left : Qt::Key_Right);
        ASSERT_EQ(caret(), expected);
    }
}

TEST_F(ZoomableTextViewTest, EndStaysInItsRowWhenTheRowIsBrokenWithinAWord) {
    open(QString(200, u'x'));
    key(Qt::Key_End);
    const TextLayout::Row first = m_view->textLayout().rowHolding(0);
    EXPECT_EQ(caret(), first.contents.end());
    EXPECT_LT(m_view->caretRect().top(), rowTop(1));
    key(Qt::Key_Home);
    EXPECT_EQ(caret(), 0);
    key(Qt::Key_End);
    key(Qt::Key_Down);
    EXPECT_EQ(caret(), 2 * first.contents.end());
    EXPECT_LT(m_view->caretRect().top(), rowTop(2));
}

TEST_F(ZoomableTextViewTest, VerticalMotionRemembersItsColumn) {
    open(u"abcdefgh\nab\nabcdefgh"_s);
    putCaret(6);
    key(Qt::Key_Down);
    EXPECT_EQ(caret(), 11);
    key(Qt::Key_Down);
    EXPECT_EQ(caret(), 18);
    key(Qt::Key_Up);
    key(Qt::Key_Up);
    EXPECT_EQ(caret(), 6);
}

TEST_F(ZoomableTextViewTest, APageMovesViewAndCaretTogether) {
    open(u"riga\n"_s.repeated(500));
    putCaret(0);
    const int rows = m_view->viewport()->height() / m_view->textLayout().pitch() - 1;
    key(Qt::Key_PageDown);
    EXPECT_EQ(m_view->storage().lineAt(caret()), rows);
    EXPECT_EQ(m_view->verticalScrollBar()->value(), rows * m_view->textLayout().pitch());
    key(Qt::Key_PageUp);
    EXPECT_EQ(caret(), 0);
    EXPECT_EQ(m_view->verticalScrollBar()->value(), 0);
}

TEST_F(ZoomableTextViewTest, ASelectionCollapsesToTheSideOfTheArrow) {
    open(u"abcdef"_s);
    m_view->setSelection({1, 4});
    key(Qt::Key_Left);
    EXPECT_EQ(m_view->selection(), (TextSelection{1, 1}));
    m_view->setSelection({4, 1});
    key(Qt::Key_Right);
    EXPECT_EQ(m_view->selection(), (TextSelection{4, 4}));
}

} // namespace

} // namespace quillary
