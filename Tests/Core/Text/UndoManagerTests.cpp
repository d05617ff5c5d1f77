#include "QuillaryCore/Text/UndoManager.h"

#include "QuillaryCore/Text/TextStorage.h"

#include <gmock/gmock.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

class UndoManagerTest : public testing::Test {
protected:
    TextStorage storage{u"prima riga\nseconda riga"_s};
    UndoManager history{storage};
    qsizetype caret = 0;

    /// Keys at the caret, one by one, as a view sends them.
    void type(const QString& keys) {
        for (const QChar key : keys) {
            history.replace({caret, 0}, QString(key), EditKind::typing, {caret, caret});
            ++caret;
        }
    }

    void backspace(int times = 1) {
        for (; times > 0; --times, --caret) {
            history.replace({caret - 1, 1}, u"", EditKind::deletingBackward, {caret, caret});
        }
    }

    void deleteForward(int times = 1) {
        for (; times > 0; --times) {
            history.replace({caret, 1}, u"", EditKind::deletingForward, {caret, caret});
        }
    }

    /// A motion of the caret, which ends a run.
    void go(qsizetype offset) {
        history.breakCoalescing();
        caret = offset;
    }

    /// The text after each step taken back, up to the beginning.
    QStringList undoAll() {
        QStringList texts;
        while (history.undo()) {
            texts.append(storage.text());
        }
        return texts;
    }

    void setText(const QString& text) {
        storage.setText(text);
        history.removeAllActions();
    }
};

TEST_F(UndoManagerTest, HasNothingToUndoAtFirst) {
    EXPECT_FALSE(history.canUndo());
    EXPECT_FALSE(history.canRedo());
    EXPECT_EQ(history.undo(), std::nullopt);
    EXPECT_EQ(history.redo(), std::nullopt);
}

TEST_F(UndoManagerTest, TakesTypingBackAsOneStep) {
    setText(u"ab"_s);
    go(1);
    type(u"parole, e ancora"_s);
    EXPECT_EQ(undoAll(), QStringList{u"ab"_s});
}

TEST_F(UndoManagerTest, LetsNoLineEndJoin) {
    for (const QString& terminator : {u"\n"_s, u"\r"_s, u"\u2028"_s, u"\u2029"_s, u"\u0085"_s, u"\v"_s, u"\f"_s}) {
        setText(u""_s);
        go(0);
        type(u"ab"_s + terminator + u"cd"_s);
        EXPECT_EQ(undoAll(), (QStringList{u"ab"_s + terminator, u"ab"_s, u""_s}));
    }
    setText(u""_s);
    go(0);
    type(u"a"_s);
    history.replace({1, 0}, u"\r\n", EditKind::typing, {1, 1});
    history.replace({3, 0}, u"\r\n", EditKind::typing, {3, 3});
    EXPECT_EQ(undoAll(), (QStringList{u"a\r\n"_s, u"a"_s, u""_s}));
}

TEST_F(UndoManagerTest, TakesARunOfBackspacesBackAsOneStep) {
    setText(u"abcdef"_s);
    go(5);
    backspace(3);
    EXPECT_EQ(storage.text(), u"abf"_s);
    EXPECT_EQ(history.undo(), (TextSelection{5, 5}));
    EXPECT_EQ(storage.text(), u"abcdef"_s);
    EXPECT_EQ(history.redo(), (TextSelection{2, 2}));
    EXPECT_EQ(storage.text(), u"abf"_s);
}

TEST_F(UndoManagerTest, TakesARunOfForwardDeletionsBackAsOneStep) {
    setText(u"abcdef"_s);
    go(1);
    deleteForward(3);
    EXPECT_EQ(storage.text(), u"aef"_s);
    EXPECT_EQ(history.undo(), (TextSelection{1, 1}));
    EXPECT_EQ(storage.text(), u"abcdef"_s);
    EXPECT_EQ(history.redo(), (TextSelection{1, 1}));
    EXPECT_EQ(storage.text(), u"aef"_s);
}

TEST_F(UndoManagerTest, DeletesALineEndAsAStepOfItsOwn) {
    setText(u"ab\ncd"_s);
    go(5);
    backspace(4);
    EXPECT_EQ(undoAll(), (QStringList{u"ab"_s, u"ab\n"_s, u"ab\ncd"_s}));
    setText(u"ab\ncd"_s);
    go(0);
    deleteForward(4);
    EXPECT_EQ(undoAll(), (QStringList{u"cd"_s, u"\ncd"_s, u"ab\ncd"_s}));
}

TEST_F(UndoManagerTest, JoinsNoKindsWithEachOther) {
    setText(u"xyz"_s);
    go(1);
    type(u"abc"_s);
    backspace();
    type(u"d"_s);
    deleteForward();
    EXPECT_EQ(storage.text(), u"xabdz"_s);
    EXPECT_EQ(undoAll(), (QStringList{u"xabdyz"_s, u"xabyz"_s, u"xabcyz"_s, u"xyz"_s}));
}

TEST_F(UndoManagerTest, JoinsNothingWithOtherEdits) {
    setText(u""_s);
    history.replace({0, 0}, u"ab", EditKind::other, {});
    history.replace({2, 0}, u"cd", EditKind::other, {2, 2});
    caret = 4;
    type(u"ef"_s);
    history.replace({6, 0}, u"gh", EditKind::other, {6, 6});
    EXPECT_EQ(undoAll(), (QStringList{u"abcdef"_s, u"abcd"_s, u"ab"_s, u""_s}));
}

TEST_F(UndoManagerTest, JoinsOnlyWhereTheRunLeftOff) {
    setText(u"0123456789"_s);
    caret = 2;
    type(u"a"_s);
    caret = 7;
    type(u"b"_s);
    caret = 10;
    backspace();
    caret = 5;
    backspace();
    caret = 0;
    deleteForward();
    caret = 3;
    deleteForward();
    EXPECT_EQ(undoAll().size(), 6);
    EXPECT_EQ(storage.text(), u"0123456789"_s);
}

TEST_F(UndoManagerTest, StartsAStepAfterABreak) {
    setText(u""_s);
    type(u"ab"_s);
    go(2);
    type(u"cd"_s);
    EXPECT_EQ(undoAll(), (QStringList{u"ab"_s, u""_s}));
}

TEST_F(UndoManagerTest, StartsAStepAfterUndoAndRedo) {
    setText(u""_s);
    type(u"ab"_s);
    history.undo();
    history.redo();
    type(u"cd"_s);
    EXPECT_EQ(undoAll(), (QStringList{u"ab"_s, u""_s}));
}

TEST_F(UndoManagerTest, JoinsWhatIsTypedOverASelection) {
    setText(u"uno\ndue tre"_s);
    history.replace({2, 5}, u"x", EditKind::typing, {7, 2});
    caret = 3;
    type(u"yz"_s);
    EXPECT_EQ(storage.text(), u"unxyz tre"_s);
    EXPECT_EQ(history.undo(), (TextSelection{7, 2}));
    EXPECT_EQ(storage.text(), u"uno\ndue tre"_s);
    EXPECT_EQ(history.redo(), (TextSelection{5, 5}));
    EXPECT_EQ(storage.text(), u"unxyz tre"_s);
}

TEST_F(UndoManagerTest, JoinsWhatOverwrites) {
    setText(u"abcdef"_s);
    for (qsizetype offset = 1; offset < 4; ++offset) {
        history.replace({offset, 1}, u"x", EditKind::typing, {offset, offset});
    }
    EXPECT_EQ(storage.text(), u"axxxef"_s);
    EXPECT_EQ(undoAll(), QStringList{u"abcdef"_s});
    history.redo();
    EXPECT_EQ(storage.text(), u"axxxef"_s);
}

TEST_F(UndoManagerTest, GivesTheSelectionToShow) {
    setText(u"uno due tre"_s);
    history.replace({4, 3}, u"quattro", EditKind::other, {4, 7});
    EXPECT_EQ(history.undo(), (TextSelection{4, 7}));
    EXPECT_EQ(history.redo(), (TextSelection{11, 11}));
    history.replace({0, 4}, u"", EditKind::other, {4, 0});
    EXPECT_EQ(history.undo(), (TextSelection{4, 0}));
    EXPECT_EQ(history.redo(), (TextSelection{0, 0}));
}

TEST_F(UndoManagerTest, IgnoresWhatChangesNothing) {
    setText(u"ab"_s);
    go(2);
    type(u"c"_s);
    history.undo();
    history.replace({1, 0}, u"", EditKind::other, {1, 1});
    EXPECT_EQ(history.replaceAll({}, {1, 2}), (TextSelection{1, 2}));
    const TextReplacement nothing[] = {{{0, 0}, u""_s}, {{2, 0}, u""_s}};
    EXPECT_EQ(history.replaceAll(nothing, {1, 2}), (TextSelection{1, 2}));
    EXPECT_TRUE(history.canRedo());
    EXPECT_FALSE(history.canUndo());
}

TEST_F(UndoManagerTest, DropsWhatWasUndoneAtTheNextEdit) {
    setText(u""_s);
    type(u"a"_s);
    go(1);
    type(u"b"_s);
    history.undo();
    EXPECT_TRUE(history.canRedo());
    caret = 1;
    type(u"c"_s);
    EXPECT_FALSE(history.canRedo());
    EXPECT_EQ(history.redo(), std::nullopt);
    EXPECT_EQ(undoAll(), (QStringList{u"a"_s, u""_s}));
}

TEST_F(UndoManagerTest, MakesAGroupOneStep) {
    setText(u"uno due tre"_s);
    history.beginGroup();
    history.replace({8, 3}, u"3", EditKind::other, {11, 11});
    history.beginGroup();
    history.replace({4, 3}, u"2\n", EditKind::other, {});
    history.endGroup();
    history.replace({0, 3}, u"", EditKind::other, {});
    EXPECT_FALSE(history.canUndo());
    EXPECT_EQ(history.undo(), std::nullopt);
    history.endGroup();
    EXPECT_EQ(storage.text(), u" 2\n 3"_s);
    EXPECT_EQ(history.undo(), (TextSelection{11, 11}));
    EXPECT_EQ(storage.text(), u"uno due tre"_s);
    EXPECT_FALSE(history.canUndo());
    EXPECT_EQ(history.redo(), (TextSelection{0, 0}));
    EXPECT_EQ(storage.text(), u" 2\n 3"_s);
    EXPECT_FALSE(history.canRedo());
}

TEST_F(UndoManagerTest, KeepsAGroupApartFromItsNeighbours) {
    setText(u""_s);
    type(u"ab"_s);
    history.beginGroup();
    type(u"cd"_s);
    history.endGroup();
    type(u"ef"_s);
    EXPECT_EQ(undoAll(), (QStringList{u"abcd"_s, u"ab"_s, u""_s}));
}

TEST_F(UndoManagerTest, LeavesNoStepOfAnEmptyGroup) {
    setText(u""_s);
    type(u"ab"_s);
    history.beginGroup();
    history.beginGroup();
    history.endGroup();
    history.endGroup();
    type(u"cd"_s);
    EXPECT_EQ(undoAll(), QStringList{u""_s});
}

TEST_F(UndoManagerTest, ReplacesManyRangesAsOneStep) {
    setText(u"aXa"_s);
    const TextReplacement replacements[] = {{{0, 1}, u"aa"_s}, {{2, 1}, u"aa"_s}};
    EXPECT_EQ(history.replaceAll(replacements, {1, 3}), (TextSelection{2, 5}));
    EXPECT_EQ(storage.text(), u"aaXaa"_s);
    EXPECT_EQ(history.undo(), (TextSelection{1, 3}));
    EXPECT_EQ(storage.text(), u"aXa"_s);
    EXPECT_FALSE(history.canUndo());
    EXPECT_EQ(history.redo(), (TextSelection{2, 5}));
    EXPECT_EQ(storage.text(), u"aaXaa"_s);
}

TEST_F(UndoManagerTest, CarriesTheSelectionThroughReplacements) {
    // "0123456789" with 2..4 gone, "abc" for 5..7 and "-" before 9.
    const TextReplacement replacements[] = {{{2, 2}, u""_s}, {{5, 2}, u"abc"_s}, {{9, 0}, u"-"_s}};
    const qsizetype moved[] = {0, 1, 2, 2, 2, 3, 6, 6, 7, 9, 10};
    for (qsizetype position = 0; position <= 10; ++position) {
        setText(u"0123456789"_s);
        EXPECT_EQ(history.replaceAll(replacements, {position, position}),
                  (TextSelection{moved[position], moved[position]}))
            << position;
        EXPECT_EQ(storage.text(), u"014abc78-9"_s);
    }
}

TEST_F(UndoManagerTest, UndoesTenThousandReplacementsAtOnce) {
    const QString before = u"parola e parola;\r\n"_s.repeated(10'000);
    setText(before);
    std::vector<TextReplacement> replacements;
    for (qsizetype i = 0; i < 10'000; ++i) {
        replacements.push_back({{i * 18 + 9, 6}, i % 2 == 0 ? u""_s : u"altro testo"_s});
    }
    int announced = 0;
    QObject::connect(&storage, &TextStorage::changed, &storage, [&] { ++announced; });
    history.replaceAll(replacements, {});
    const QString after = storage.text();
    history.undo();
    EXPECT_EQ(storage.text(), before);
    history.redo();
    EXPECT_EQ(storage.text(), after);
    EXPECT_EQ(announced, 3);
}

TEST_F(UndoManagerTest, AnnouncesAStepAsOneChange) {
    setText(u"uno due tre"_s);
    history.beginGroup();
    history.replace({8, 3}, u"3", EditKind::other, {});
    history.replace({0, 3}, u"1", EditKind::other, {});
    history.endGroup();
    std::vector<TextChange> changes;
    QObject::connect(&storage, &TextStorage::changed, &storage,
                     [&](const TextChange& change) { changes.push_back(change); });
    history.undo();
    history.redo();
    EXPECT_THAT(changes, testing::ElementsAre(TextChange{0, 7, 11}, TextChange{0, 11, 7}));
}

TEST_F(UndoManagerTest, BringsBackEveryUnit) {
    // Lone surrogates too: no edit lets them in, but a text may have them, and an edit may part a pair.
    const QString text = u"a\r\n\r\u2028\u2029\u0085\v\f\u00A0\0\uFFFC\uFEFFe\u0301\U0001F600"_s + QChar(0xFDD0) +
                         QChar(0xFDD1) + QChar(0xDC00) + QChar(0xD800);
    for (qsizetype from = 0; from <= text.size(); ++from) {
        for (qsizetype length = 0; length <= text.size() - from; ++length) {
            setText(text);
            history.replace({from, length}, u"x", EditKind::other, {});
            const QString changed = storage.text();
            history.undo();
            ASSERT_EQ(storage.text(), text);
            history.redo();
            ASSERT_EQ(storage.text(), changed);
        }
    }
}

TEST_F(UndoManagerTest, PutsTheReplacementCharacterForLoneSurrogates) {
    setText(u"ab"_s);
    history.replace({1, 0}, QString(QChar(0xD800)), EditKind::typing, {1, 1});
    const TextReplacement replacements[] = {{{0, 1}, QString(QChar(0xDC00))}};
    history.replaceAll(replacements, {});
    EXPECT_EQ(storage.text(), u"\uFFFD\uFFFDb"_s);
}

TEST_F(UndoManagerTest, ForgetsEverything) {
    type(u"ab"_s);
    history.undo();
    type(u"cd"_s);
    history.removeAllActions();
    EXPECT_FALSE(history.canUndo());
    EXPECT_FALSE(history.canRedo());
    const QString text = storage.text();
    EXPECT_EQ(history.undo(), std::nullopt);
    EXPECT_EQ(storage.text(), text);
    go(0);
    type(u"x"_s);
    EXPECT_EQ(undoAll(), QStringList{text});
}

TEST_F(UndoManagerTest, ForgetsWithinAGroup) {
    setText(u""_s);
    history.beginGroup();
    type(u"ab"_s);
    history.removeAllActions();
    type(u"cd"_s);
    history.endGroup();
    EXPECT_EQ(undoAll(), QStringList{u"ab"_s});
}

TEST_F(UndoManagerTest, DoesNotOutliveAChangeByOthers) {
    setText(u"uno"_s);
    go(3);
    type(u" due"_s);
    storage.setText(u"x"_s);
    EXPECT_FALSE(history.canUndo());
    EXPECT_EQ(history.undo(), std::nullopt);
    EXPECT_EQ(storage.text(), u"x"_s);
    go(1);
    type(u"y"_s);
    EXPECT_EQ(undoAll(), QStringList{u"x"_s});
}

TEST_F(UndoManagerTest, SurvivesBracketsOfTheStorage) {
    setText(u"ab"_s);
    storage.beginEditing();
    history.replace({0, 1}, u"x", EditKind::other, {});
    history.replace({1, 1}, u"y", EditKind::other, {});
    storage.endEditing();
    EXPECT_EQ(undoAll(), (QStringList{u"xb"_s, u"ab"_s}));
}

TEST_F(UndoManagerTest, TellsThatItsAnswersMayHaveChanged) {
    setText(u""_s);
    std::vector<std::pair<bool, bool>> answers;
    QObject::connect(&history, &UndoManager::changed, &history,
                     [&] { answers.emplace_back(history.canUndo(), history.canRedo()); });
    type(u"a"_s);
    history.undo();
    history.redo();
    history.beginGroup();
    history.endGroup();
    history.removeAllActions();
    const std::pair<bool, bool> expected[] = {{true, false},  {false, true}, {true, false},
                                              {false, false}, {true, false}, {false, false}};
    EXPECT_THAT(answers, testing::ElementsAreArray(expected));
}

} // namespace

} // namespace quillary
