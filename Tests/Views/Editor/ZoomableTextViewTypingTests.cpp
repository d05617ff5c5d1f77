#include "Tests/Views/Editor/HostileTexts.h"
#include "Tests/Views/Editor/ZoomableTextViewTest.h"

#include <gtest/gtest.h>

namespace quillary {

namespace {

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
