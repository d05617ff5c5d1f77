#include "Tests/Views/Editor/HostileTexts.h"
#include "Tests/Views/Editor/ZoomableTextViewTest.h"

#include <QGuiApplication>
#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace quillary {

namespace {

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

} // namespace

} // namespace quillary
