#include "Quillary/Theme/Contrast.h"
#include "Quillary/Theme/Palettes.h"
#include "Quillary/Theme/Theme.h"

#include "Tests/Views/Editor/ZoomableTextViewTest.h"

#include <QGuiApplication>
#include <QImage>
#include <QPalette>
#include <QStyleHints>

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace quillary {

namespace {

TEST_F(ZoomableTextViewTest, ASelectionHasNoStripes) {
    open(u"uno\ndue\n\ntre"_s);
    QPalette palette = m_view->palette();
    palette.setColor(QPalette::Highlight, Qt::blue);
    palette.setColor(QPalette::HighlightedText, Qt::black);
    palette.setColor(QPalette::Base, Qt::white);
    m_view->setPalette(palette);
    m_view->selectAll();
    const QImage shown = image();
    for (int y = rowTop(0); y < rowTop(4); ++y) {
        EXPECT_LT(shown.pixelColor(ZoomableTextView::horizontalInset, y).red(), 128) << y;
    }
    EXPECT_EQ(shown.pixelColor(ZoomableTextView::horizontalInset, rowTop(1) - 1), QColor(Qt::blue));
    EXPECT_EQ(shown.pixelColor(ZoomableTextView::horizontalInset, rowTop(2) + 5), QColor(Qt::blue));
    EXPECT_EQ(shown.pixelColor(ZoomableTextView::horizontalInset, rowTop(0) - 1), QColor(Qt::white));
    EXPECT_EQ(shown.pixelColor(ZoomableTextView::horizontalInset, rowTop(4)), QColor(Qt::white));
}

TEST_F(ZoomableTextViewTest, SourceTextIsReadInASelectionAndOnTheCurrentMatchToo) {
    open(u"HHHH"_s);
    m_view->setReadOnly(true);
    m_view->textLayout().syntax().add({0, 4}, SyntaxTokenKind::comment);
    const auto greatestContrast = [this](const QColor& ground) {
        const QImage shown = image();
        double greatest = 1;
        for (int x = ZoomableTextView::horizontalInset; x < ZoomableTextView::horizontalInset + 20; ++x) {
            const QColor pixel = shown.pixelColor(x, rowTop(0) + m_view->textLayout().baseline() - 3);
            greatest = std::max(greatest, contrast(pixel, ground));
        }
        return greatest;
    };
    for (const QPalette& palette : {lightPalette(), darkPalette()}) {
        m_view->setPalette(palette);
        m_view->selectAll();
        EXPECT_GE(greatestContrast(palette.color(QPalette::Highlight)), textContrast) << isDark(palette);
        const TextRange found{0, 4};
        m_view->setFindHighlights({&found, 1}, 0);
        EXPECT_GE(greatestContrast(Theme::findHighlight), textContrast) << isDark(palette);
        m_view->clearFindHighlights();
    }
}

TEST_F(ZoomableTextViewTest, RowsStandAtThePitch) {
    open(u"H\nH\nH"_s);
    putCaret(5);
    m_view->setReadOnly(true);
    const QImage shown = image();
    const int pitch = m_view->textLayout().pitch();
    const QRect first(ZoomableTextView::horizontalInset, rowTop(0), 20, pitch);
    EXPECT_EQ(shown.copy(first), shown.copy(first.translated(0, pitch)));
    EXPECT_EQ(shown.copy(first), shown.copy(first.translated(0, 2 * pitch)));
    EXPECT_NE(shown.copy(first), shown.copy(first.translated(0, 3 * pitch)));
}

TEST_F(ZoomableTextViewTest, TheCaretStandsOutInTheAccentColour) {
    open(u"ab"_s);
    putCaret(1);
    for (const QPalette& palette : {lightPalette(), darkPalette()}) {
        m_view->setPalette(palette);
        const QPoint middle = m_view->caretRect().center();
        EXPECT_EQ(image().pixelColor(middle.x(), middle.y() - 1).rgb(), palette.color(QPalette::Link).rgb());
    }
}

TEST_F(ZoomableTextViewTest, TheCaretBlinksAtTheRateOfTheDesktop) {
    open(u"ab"_s);
    QStyleHints& hints = *QGuiApplication::styleHints();
    const int before = hints.cursorFlashTime();
    const auto isOn = [&] {
        const QPoint middle = m_view->caretRect().center();
        return image().pixelColor(middle.x(), middle.y() - 1).rgb() == m_view->palette().color(QPalette::Link).rgb();
    };
    hints.setCursorFlashTime(60);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isOn(); }));
    EXPECT_TRUE(QTest::qWaitFor(isOn));
    hints.setCursorFlashTime(0);
    EXPECT_TRUE(isOn()) << "a rate of nothing is a caret that stays";
    QTest::qWait(100);
    EXPECT_TRUE(isOn());
    hints.setCursorFlashTime(before);
}

TEST_F(ZoomableTextViewTest, FollowsThePalette) {
    open(u"HHHH"_s);
    m_view->setReadOnly(true);
    for (const auto& [base, ink] :
         {std::pair{QColor(Qt::white), QColor(Qt::black)}, {QColor(30, 30, 30), QColor(220, 220, 220)}}) {
        QPalette palette = m_view->palette();
        palette.setColor(QPalette::Base, base);
        palette.setColor(QPalette::Text, ink);
        m_view->setPalette(palette);
        const QImage shown = image();
        EXPECT_EQ(shown.pixelColor(2, 2), base);
        bool hasInk = false;
        for (int x = 0; x < 100; ++x) {
            hasInk = hasInk || shown.pixelColor(x, rowTop(0) + m_view->textLayout().baseline() - 3) == ink;
        }
        EXPECT_TRUE(hasInk);
    }
}

} // namespace

} // namespace quillary
