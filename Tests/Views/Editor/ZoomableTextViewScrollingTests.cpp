#include "Tests/Views/Editor/HostileTexts.h"
#include "Tests/Views/Editor/ZoomableTextViewTest.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QFont>
#include <QFontMetricsF>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QScrollBar>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <optional>

namespace quillary {

namespace {

TEST_F(ZoomableTextViewTest, TheScrollBarReachesBothEnds) {
    for (const bool wraps : {true, false}) {
        open(words(2000).replace(u"a "_s, u"\n"_s).repeated(200));
        m_view->setWraps(wraps);
        QScrollBar& bar = *m_view->verticalScrollBar();
        bar.setValue(bar.maximum());
        EXPECT_EQ(m_view->visibleRange()->end(), m_view->storage().length());
        EXPECT_EQ(bar.value(), bar.maximum());
        bar.setValue(0);
        EXPECT_EQ(m_view->visibleRange()->location, 0);
    }
}

TEST_F(ZoomableTextViewTest, WhatIsSeenDoesNotJumpWhileEstimatesAreCorrected) {
    open(words(300'000).replace(u"q "_s, u"\n"_s));
    QScrollBar& bar = *m_view->verticalScrollBar();
    bar.setValue(bar.maximum() / 2);
    const int pitch = m_view->textLayout().pitch();
    for (int i = 0; i < 200; ++i) {
        // The row at the middle of the viewport goes up or down by exactly what was scrolled.
        const int middle = m_view->viewport()->height() / 2;
        const qsizetype seen = m_view->positionAt({ZoomableTextView::horizontalInset, middle});
        const int distance = (i % 3 == 0 ? 2 : -3) * pitch;
        bar.setValue(bar.value() + distance);
        ASSERT_EQ(m_view->positionAt({ZoomableTextView::horizontalInset, middle - distance}), seen) << i;
    }
}

TEST_F(ZoomableTextViewTest, TheScrollBarSoonKnowsTheTrueHeightWhileTheTextStandsStill) {
    open(words(200'000).replace(u"q "_s, u"\n"_s));
    QFont font = m_view->textLayout().font();
    font.setPointSizeF(11);
    m_view->setEditorFont(font);
    QScrollBar& bar = *m_view->verticalScrollBar();
    bar.setValue(bar.maximum() / 2);
    const std::optional<TextRange> seen = m_view->visibleRange();
    TextLayout exact(m_document->storage());
    exact.setFont(m_view->textLayout().font());
    exact.setWidth(m_view->textLayout().width());
    ASSERT_TRUE(exact.measureUntil(QDeadlineTimer::Forever));
    ASSERT_NE(m_view->textLayout().rowCount(), exact.rowCount()) << "an estimate has been right by chance";
    const qint64 height = exact.rowCount() * exact.pitch() + 2 * ZoomableTextView::verticalInset;
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar.maximum() == height - m_view->viewport()->height(); }));
    EXPECT_EQ(m_view->visibleRange(), seen);
}

TEST_F(ZoomableTextViewTest, ANewWidthKeepsTheTopWhereItIs) {
    open(words(100'000));
    m_view->verticalScrollBar()->setValue(m_view->verticalScrollBar()->maximum() / 2);
    const qsizetype top = m_view->visibleRange()->location;
    m_view->resize(600, 300);
    EXPECT_LE(m_view->visibleRange()->location, top);
    EXPECT_GE(m_view->visibleRange()->end(), top);
    m_view->verticalScrollBar()->setValue(0);
    m_view->resize(400, 300);
    EXPECT_EQ(m_view->scrollOrigin(), QPointF(0, 0));
}

TEST_F(ZoomableTextViewTest, TypingOutOfSightComesBackIntoSight) {
    open(u"riga\n"_s.repeated(1000));
    putCaret(0);
    m_view->verticalScrollBar()->setValue(m_view->verticalScrollBar()->maximum());
    type(u"x"_s);
    EXPECT_EQ(m_view->scrollOrigin().y(), 0);
    m_view->setWraps(false);
    putCaret(0);
    type(QString(300, u'y'));
    EXPECT_GT(m_view->horizontalScrollBar()->value(), 0);
    EXPECT_TRUE(m_view->viewport()->rect().contains(m_view->caretRect()));
}

TEST_F(ZoomableTextViewTest, LongLinesCanBeScrolledToBeforeTheyAreDrawn) {
    open(u"breve\n"_s.repeated(50) + QString(5'000, u'x') + u"\nfine"_s);
    m_view->setWraps(false);
    EXPECT_GT(m_view->horizontalScrollBar()->maximum(), 4'000);
    m_view->setScrollOrigin({3'000, m_view->scrollOrigin().y()});
    EXPECT_EQ(m_view->horizontalScrollBar()->value(), 3'000);
}

TEST_F(ZoomableTextViewTest, ZoomingKeepsTheColumnsOfALongLineOnShow) {
    open(QString(5'000, u'x') + u"\nfine"_s);
    m_view->setWraps(false);
    key(Qt::Key_End);
    ASSERT_TRUE(m_view->viewport()->rect().contains(m_view->caretRect()));
    for (const double size : {10.5, 11.0, 11.25, 12.0, 13.0, 14.0, 15.0, 16.5, 18.0, 22.0, 7.0, 10.0}) {
        QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        font.setPointSizeF(size);
        m_view->setEditorFont(font);
        const QRect caretRect = m_view->caretRect();
        EXPECT_TRUE(m_view->viewport()->rect().contains(caretRect)) << size << ' ' << caretRect.left();
    }
}

TEST_F(ZoomableTextViewTest, AnotherFontKeepsTheCaretInALongLineOnShow) {
    open(QString(5'000, u'x') + u"\nfine"_s);
    m_view->setWraps(false);
    for (const qsizetype caret : {5'000, 2'500}) {
        m_view->setSelection({caret, caret});
        m_view->scrollToRange({caret, 0});
        for (const auto family : {QFontDatabase::GeneralFont, QFontDatabase::FixedFont}) {
            QFont font = QFontDatabase::systemFont(family);
            font.setPointSizeF(13);
            m_view->setEditorFont(font);
            const QRect caretRect = m_view->caretRect();
            EXPECT_TRUE(m_view->viewport()->rect().contains(caretRect)) << caret << ' ' << caretRect.left();
        }
    }
}

TEST_F(ZoomableTextViewTest, ZoomingKeepsTheColumnsAlsoWithTheCaretInALineFromRightToLeft) {
    open(QString(5'000, u'x') + u'\n' + QString(20, QChar(0x05D0)));
    m_view->setWraps(false);
    m_view->setSelection({5'021, 5'021});
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(10);
    m_view->setEditorFont(font);
    const qreal before = QFontMetricsF(font).horizontalAdvance(u' ');
    m_view->setScrollOrigin({3'000, 0});
    font.setPointSizeF(20);
    m_view->setEditorFont(font);
    const qreal growth = QFontMetricsF(font).horizontalAdvance(u' ') / before;
    EXPECT_NEAR(m_view->horizontalScrollBar()->value(), 3'000 * growth, 2);
}

TEST_F(ZoomableTextViewTest, ZoomingFollowsNoCaretThatIsOutOfSight) {
    open(QString(QString(40, u'x') + u'\n').repeated(200));
    m_view->setWraps(false);
    key(Qt::Key_End);
    ASSERT_EQ(m_view->horizontalScrollBar()->value(), 0);
    m_view->verticalScrollBar()->setValue(m_view->verticalScrollBar()->maximum());
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(20);
    m_view->setEditorFont(font);
    EXPECT_GT(m_view->horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(m_view->horizontalScrollBar()->value(), 0);
}

TEST_F(ZoomableTextViewTest, CtrlAndTheWheelZoom) {
    open(u"uno"_s);
    int steps = 0;
    m_view->onZoomStep = [&](int step) { steps += step; };
    QWheelEvent up({50, 50}, m_view->mapToGlobal(QPointF(50, 50)), {}, {0, 120}, {}, Qt::ControlModifier,
                   Qt::NoScrollPhase, false);
    QApplication::sendEvent(m_view->viewport(), &up);
    EXPECT_EQ(steps, 1);
}

TEST_F(ZoomableTextViewTest, APinchZoomsInStepsOfAFixedTravel) {
    open(u"uno"_s);
    QList<int> steps;
    m_view->onZoomStep = [&](int step) { steps += step; };
    const auto pinch = [&](Qt::NativeGestureType type, double value) {
        QNativeGestureEvent event(type, QPointingDevice::primaryPointingDevice(), 2, {}, {}, {}, value, {});
        QApplication::sendEvent(m_view->viewport(), &event);
    };
    pinch(Qt::ZoomNativeGesture, 0.2);
    EXPECT_EQ(steps, QList<int>({1, 1}));
    pinch(Qt::ZoomNativeGesture, 0.05);
    EXPECT_EQ(steps.size(), 3);
    pinch(Qt::ZoomNativeGesture, 0.06);
    pinch(Qt::EndNativeGesture, 0);
    pinch(Qt::ZoomNativeGesture, 0.03);
    EXPECT_EQ(steps.size(), 3) << "the end of a gesture drops the rest";
    pinch(Qt::ZoomNativeGesture, -0.12);
    EXPECT_EQ(steps, QList<int>({1, 1, 1, -1}));
}

} // namespace

} // namespace quillary
