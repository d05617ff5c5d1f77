#include "Tests/Views/Editor/ZoomableTextViewTest.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>

#include <gtest/gtest.h>

namespace quillary {

namespace {

TEST_F(ZoomableTextViewTest, AClickInTheGapBetweenLinesBelongsToTheLine) {
    open(u"uno\ndue\ntre"_s);
    const int pitch = m_view->textLayout().pitch();
    for (int row = 0; row < 3; ++row) {
        for (const int y : {0, pitch / 2, pitch - 1}) {
            QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {},
                              {ZoomableTextView::horizontalInset, rowTop(row) + y});
            EXPECT_EQ(caret(), 4 * row) << y;
        }
    }
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, {2, 2});
    EXPECT_EQ(caret(), 0);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, {390, 290});
    EXPECT_EQ(caret(), 11);
}

TEST_F(ZoomableTextViewTest, ADragBelowTheEdgeScrolls) {
    open(u"riga\n"_s.repeated(200));
    QWidget* viewport = m_view->viewport();
    QTest::mousePress(viewport, Qt::LeftButton, {}, {100, 100});
    const QPoint below(100, viewport->height() + 40);
    QMouseEvent move(QEvent::MouseMove, below, viewport->mapToGlobal(below), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(viewport, &move);
    EXPECT_TRUE(QTest::qWaitFor([&] { return m_view->verticalScrollBar()->value() > 300; }));
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, below);
    EXPECT_GT(m_view->selection().range().length, 100);
}

TEST_F(ZoomableTextViewTest, ATripleClickTakesTheLineWithItsTerminator) {
    open(u"uno\r\ndue parole\r\ntre"_s);
    const QPoint point(ZoomableTextView::horizontalInset + 5, rowTop(1) + 5);
    QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, {}, point);
    EXPECT_EQ(m_view->selectedText(), u"due"_s);
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, point);
    EXPECT_EQ(m_view->selectedText(), u"due parole\r\n"_s);
}

TEST_F(ZoomableTextViewTest, ADragGoesOnAfterTheTextItBeganInHasGone) {
    for (const bool isReplaced : {false, true}) {
        open(u"prima riga\nuno due parola"_s);
        QWidget* const viewport = m_view->viewport();
        const QPoint word = m_view->characterRect(20).center();
        const auto send = [viewport](QEvent::Type type, QPoint point, Qt::MouseButton button,
                                     Qt::MouseButtons buttons) {
            QMouseEvent event(type, point, viewport->mapToGlobal(point), button, buttons, {});
            QApplication::sendEvent(viewport, &event);
        };
        send(QEvent::MouseButtonDblClick, word, Qt::LeftButton, Qt::LeftButton);
        ASSERT_EQ(m_view->selectedText(), u"parola"_s);
        if (isReplaced) {
            m_document->storage().setText(u"prima riga\nuno due "_s);
        } else {
            key(Qt::Key_Backspace);
        }
        send(QEvent::MouseMove, word + QPoint(4, 0), Qt::NoButton, Qt::LeftButton);
        send(QEvent::MouseButtonRelease, word + QPoint(4, 0), Qt::LeftButton, Qt::NoButton);
        EXPECT_LE(m_view->selection().range().end(), text().size());
        EXPECT_EQ(text(), u"prima riga\nuno due "_s);
        key(Qt::Key_End);
        type(u"x"_s);
        EXPECT_EQ(text(), u"prima riga\nuno due x"_s);
        if (!isReplaced) {
            m_view->undo();
            m_view->undo();
            EXPECT_EQ(text(), u"prima riga\nuno due parola"_s);
        }
    }
}

TEST_F(ZoomableTextViewTest, ADragAfterADoubleClickGoesByWords) {
    open(u"uno due tre quattro"_s);
    const auto at = [&](qsizetype position) {
        const TextLayout::Row row = m_view->textLayout().rowHolding(position);
        return QPoint(ZoomableTextView::horizontalInset + qRound(m_view->textLayout().xOf(row, position)),
                      rowTop(0) + 5);
    };
    QWidget* viewport = m_view->viewport();
    QTest::mouseDClick(viewport, Qt::LeftButton, {}, at(9));
    const auto dragTo = [&](QPoint point) {
        QMouseEvent move(QEvent::MouseMove, point, viewport->mapToGlobal(point), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(viewport, &move);
    };
    dragTo(at(14));
    EXPECT_EQ(m_view->selectedText(), u"tre quattro"_s);
    dragTo(at(5));
    EXPECT_EQ(m_view->selectedText(), u"due tre"_s);
    EXPECT_EQ(caret(), 4);
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, at(5));
}

TEST_F(ZoomableTextViewTest, TheContextMenuOffersWhatIsPossible) {
    open(u"uno"_s);
    QGuiApplication::clipboard()->clear();
    QContextMenuEvent event(QContextMenuEvent::Mouse, {50, 50}, m_view->mapToGlobal(QPoint(50, 50)));
    const auto entries = [&] {
        QApplication::sendEvent(m_view->viewport(), &event);
        auto* menu = m_view->findChild<QMenu*>();
        QStringList result;
        for (const QAction* action : menu->actions()) {
            if (!action->isSeparator()) {
                result += (action->isEnabled() ? u"+"_s : u"-"_s) + action->text();
            }
        }
        delete menu;
        return result;
    };
    EXPECT_EQ(entries(), QStringList({u"-Annulla"_s, u"-Ripristina"_s, u"-Taglia"_s, u"-Copia"_s, u"-Incolla"_s,
                                      u"-Elimina"_s, u"+Seleziona tutto"_s}));
    m_view->selectAll();
    m_view->cut();
    m_view->undo();
    EXPECT_EQ(entries(), QStringList({u"-Annulla"_s, u"+Ripristina"_s, u"+Taglia"_s, u"+Copia"_s, u"+Incolla"_s,
                                      u"+Elimina"_s, u"+Seleziona tutto"_s}));
    m_view->setReadOnly(true);
    EXPECT_EQ(entries(), QStringList({u"-Annulla"_s, u"-Ripristina"_s, u"-Taglia"_s, u"+Copia"_s, u"-Incolla"_s,
                                      u"-Elimina"_s, u"+Seleziona tutto"_s}));
}

} // namespace

} // namespace quillary
