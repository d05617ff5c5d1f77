#include "Quillary/Theme/Palettes.h"

#include "Tests/Views/Editor/HostileTexts.h"
#include "Tests/Views/Editor/ZoomableTextViewTest.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStyleHints>
#include <QWheelEvent>

#include <gmock/gmock.h>

namespace quillary {

namespace {

// Typing

TEST_F(ZoomableTextViewTest, TypedLettersGoWhereTheCaretIs) {
    open(u"ac"_s);
    putCaret(1);
    type(u"b"_s);
    EXPECT_EQ(text(), u"abc"_s);
    EXPECT_EQ(caret(), 2);
}

TEST_F(ZoomableTextViewTest, TypingTakesThePlaceOfTheSelection) {
    open(u"uno due tre"_s);
    m_view->setSelection({4, 7});
    type(u"x"_s);
    EXPECT_EQ(text(), u"uno x tre"_s);
    m_view->undo();
    EXPECT_EQ(text(), u"uno due tre"_s);
    EXPECT_EQ(m_view->selection(), (TextSelection{4, 7}));
}

TEST_F(ZoomableTextViewTest, EnterTakesTheTerminatorOfItsOwnLine) {
    struct Case {
        QString before;
        qsizetype caret;
        QString after;
    };

    const QList<Case> cases = {
        {u"a\nb"_s, 0, u"\na\nb"_s},
        {u"a\r\nb\n"_s, 1, u"a\r\n\r\nb\n"_s},
        {u"a\r\nb\n"_s, 4, u"a\r\nb\n\n"_s},
        {u"a\rb"_s, 3, u"a\rb\r"_s},
        {u"ab"_s, 1, u"a\nb"_s},
        {u""_s, 0, u"\n"_s},
        {u"a\u2029b"_s, 1, u"a\u2029\u2029b"_s},
    };
    for (const Case& each : cases) {
        open(each.before);
        putCaret(each.caret);
        key(Qt::Key_Return);
        EXPECT_EQ(text(), each.after);
    }
}

TEST_F(ZoomableTextViewTest, ShiftAndEnterAreEnter) {
    open(u"a\r\n"_s);
    key(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(text(), u"\r\na\r\n"_s);
}

TEST_F(ZoomableTextViewTest, TabIsALetter) {
    open({});
    key(Qt::Key_Tab);
    EXPECT_EQ(text(), u"\t"_s);
    EXPECT_TRUE(m_view->hasFocus());
}

TEST_F(ZoomableTextViewTest, KeysWithCtrlAreNoLetters) {
    open({});
    QTest::keyClick(m_view.get(), 'j', Qt::ControlModifier);
    EXPECT_EQ(text(), QString());
}

TEST_F(ZoomableTextViewTest, BackspaceAndDeleteTakeOneCluster) {
    for (const QString& cluster : {u"\r\n"_s, u"e\u0301"_s, u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s,
                                   u"\U0001F1EE\U0001F1F9"_s, u"\U0001F600"_s}) {
        open(u"a"_s + cluster + u"b"_s);
        putCaret(1 + cluster.size());
        key(Qt::Key_Backspace);
        EXPECT_EQ(text(), u"ab"_s);
        m_view->undo();
        putCaret(1);
        key(Qt::Key_Delete);
        EXPECT_EQ(text(), u"ab"_s);
    }
}

// Motion

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

// Mouse

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

// Clipboard, undo and exactness

TEST_F(ZoomableTextViewTest, EveryUnitSurvivesCopyAndPaste) {
    QString all;
    for (const QString& piece : hostilePieces()) {
        all += piece + u"|"_s;
    }
    open(all);
    m_view->selectAll();
    m_view->copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), all);
    m_view->paste();
    EXPECT_EQ(text(), all);
    key(Qt::Key_End, Qt::ControlModifier);
    m_view->paste();
    EXPECT_EQ(text(), all + all);
}

TEST_F(ZoomableTextViewTest, APastedLoneSurrogateBecomesAReplacementCharacter) {
    open(u"ab"_s);
    putCaret(1);
    paste(QString(QChar(0xD800)));
    EXPECT_EQ(text(), u"a\uFFFDb"_s);
}

TEST_F(ZoomableTextViewTest, ATextEditedInOnePlaceDiffersThereOnly) {
    for (const QString& piece : hostilePieces()) {
        const QString before = u"\uFEFF"_s + piece + u"x\r\nfine\n"_s + piece;
        const QString after = u"\uFEFF"_s + piece + u"xy\r\nfine\n"_s + piece;
        open(before);
        putCaret(1 + piece.size() + 1);
        type(u"y"_s);
        EXPECT_EQ(text(), after);
        m_view->undo();
        EXPECT_EQ(text(), before);
        m_view->selectAll();
        m_view->cut();
        EXPECT_EQ(text(), QString());
        m_view->undo();
        EXPECT_EQ(text(), before);
        m_view->redo();
        m_view->paste();
        EXPECT_EQ(text(), before);
    }
}

TEST_F(ZoomableTextViewTest, RandomEditsUndoneLeaveTheTextAsItWas) {
    QRandomGenerator random(12);
    const QString start = hostileText(random, 300);
    open(start, {250, 200});
    for (int i = 0; i < 400; ++i) {
        const qint64 length = m_view->storage().length() + 1;
        m_view->setSelection({random.bounded(length), random.bounded(4) == 0 ? random.bounded(length) : caret()});
        switch (random.bounded(5)) {
        case 0:
            paste(hostileText(random, 5));
            break;
        case 1:
            key(Qt::Key_Backspace);
            break;
        case 2:
            key(Qt::Key_Return);
            break;
        case 3:
            m_view->grab();
            break;
        default:
            type(u"parola"_s);
        }
    }
    const QString last = text();
    while (m_document->undoManager().canUndo()) {
        m_view->undo();
    }
    EXPECT_EQ(text(), start);
    while (m_document->undoManager().canRedo()) {
        m_view->redo();
    }
    EXPECT_EQ(text(), last);
}

/// The terminator that a line ends with, or the one of the line before, found by looking at each unit.
QString terminatorFor(const QString& text, qsizetype position) {
    const auto terminatorAt = [&](qsizetype at) {
        const bool isPair = at + 1 < text.size() && text[at] == u'\r' && text[at + 1] == u'\n';
        const QString unit = text.mid(at, isPair ? 2 : 1);
        return u"\n\r\v\f\u0085\u2028\u2029"_s.contains(text[at]) ? unit : QString();
    };
    for (qsizetype at = position; at < text.size(); ++at) {
        if (const QString found = terminatorAt(at); !found.isEmpty()) {
            return found;
        }
    }
    for (qsizetype at = position - 1; at >= 0; --at) {
        const bool isBehindCarriageReturn = at > 0 && text[at] == u'\n' && text[at - 1] == u'\r';
        if (const QString found = terminatorAt(isBehindCarriageReturn ? at - 1 : at); !found.isEmpty()) {
            return found;
        }
    }
    return u"\n"_s;
}

TEST_F(ZoomableTextViewTest, WhateverIsDoneTheTextIsThatOfAPlainString) {
    QRandomGenerator random(2024);
    for (const QString& terminator : {u"\r\n"_s, u"\n"_s, QString()}) {
        QString model;
        for (int line = 0; line < 40; ++line) {
            model += hostileText(random, 4) + (terminator.isEmpty() ? QString() : terminator);
        }
        open(model, {250, 200});
        QStringList history{model};
        for (int i = 0; i < 150; ++i) {
            const qint64 length = m_view->storage().length() + 1;
            m_view->setSelection({random.bounded(length), random.bounded(2) == 0 ? random.bounded(length) : 0});
            if (random.bounded(3) > 0) {
                putCaret(caret());
            }
            const TextRange range = m_view->selection().range();
            const auto replaceInModel = [&](const QString& by) {
                model.replace(range.location, range.length, by);
                history.append(model);
            };
            switch (random.bounded(5)) {
            case 0: {
                const QString pasted = hostileText(random, 3) + u"\r\nx"_s;
                paste(pasted);
                replaceInModel(pasted);
                break;
            }
            case 1: {
                const QString replacement = hostileText(random, 2) + u"y"_s;
                m_view->replaceText(range, replacement);
                replaceInModel(replacement);
                break;
            }
            case 2:
                replaceInModel(terminatorFor(model, range.location));
                key(Qt::Key_Return);
                break;
            case 3:
                if (history.size() > 1) {
                    // What was typed is a step of its own, since the caret moved in between.
                    history.removeLast();
                    model = history.last();
                    m_view->undo();
                }
                break;
            default:
                type(u"z"_s);
                replaceInModel(u"z"_s);
            }
            ASSERT_EQ(text(), model) << "step " << i;
        }
        while (m_document->undoManager().canUndo()) {
            m_view->undo();
        }
        EXPECT_EQ(text(), history.first());
    }
}

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

// Input methods

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

// Scrolling

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

// Looks

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

// Size

TEST_F(ZoomableTextViewTest, TakesKeysInALineOfAMillionUnits) {
    for (const bool wraps : {true, false}) {
        open(words(1'000'000));
        m_view->setWraps(wraps);
        for (const qsizetype position : {qsizetype(0), qsizetype(500'000), m_view->storage().length()}) {
            putCaret(position);
            type(u"parola "_s);
            key(Qt::Key_Return);
            key(Qt::Key_Backspace);
            EXPECT_TRUE(m_view->viewport()->rect().intersects(m_view->caretRect()));
            EXPECT_EQ(caret(), m_view->storage().clusterBoundaryAtOrBefore(position + 7));
        }
    }
}

} // namespace

} // namespace quillary
