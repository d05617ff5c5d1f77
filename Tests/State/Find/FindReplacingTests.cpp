#include "QuillaryCore/Text/UndoManager.h"

#include "Tests/State/Find/FakeFindView.h"

namespace quillary::test {

using namespace Qt::StringLiterals;

using FindReplacing = FindTest;

TEST_F(FindReplacing, WalksThroughTheNote) {
    open(u"uno due uno due uno"_s);
    lookFor(u"uno"_s);
    find->setReplacement(u"tre"_s);
    find->replaceCurrent();
    EXPECT_EQ(text(), u"tre due uno due uno"_s);
    EXPECT_EQ(view->selected, (TextSelection{8, 11}));
    EXPECT_EQ(find->anchorLocation(), 3);
    find->replaceCurrent();
    EXPECT_EQ(text(), u"tre due tre due uno"_s);
    EXPECT_EQ(find->matchCount(), 1);
    find->replaceCurrent();
    EXPECT_EQ(text(), u"tre due tre due tre"_s);
    EXPECT_EQ(find->matchCount(), 0);
    find->replaceCurrent();
    EXPECT_EQ(desktop.beeps, 1);
}

TEST_F(FindReplacing, DoesNotMatchWhatItPutThere) {
    open(u"aXa"_s);
    lookFor(u"a"_s);
    find->setReplacement(u"aa"_s);
    find->replaceCurrent();
    EXPECT_EQ(text(), u"aaXa"_s);
    EXPECT_EQ(find->currentIndex(), 2);
    EXPECT_EQ(view->selected, (TextSelection{3, 4}));
    EXPECT_EQ(view->indicated.back(), (TextRange{3, 1}));
}

TEST_F(FindReplacing, GoesOnAtTheStartBehindTheLastMatch) {
    open(u"a b a"_s);
    select(3, 3);
    lookFor(u"a"_s);
    find->setReplacement(u"c"_s);
    find->replaceCurrent();
    EXPECT_EQ(text(), u"a b c"_s);
    EXPECT_EQ(view->selected, (TextSelection{0, 1}));
}

TEST_F(FindReplacing, ExpandsTheTemplateOfAPattern) {
    open(u"Mario Rossi"_s);
    lookFor(u"(\\w+) (\\w+)"_s, {.regex = true});
    find->setReplacement(u"$2 $1"_s);
    find->replaceCurrent();
    EXPECT_EQ(text(), u"Rossi Mario"_s);
    find->setOptions({});
    find->setQuery(u"Rossi"_s);
    find->setReplacement(u"$1"_s);
    find->replaceAll();
    EXPECT_EQ(text(), u"$1 Mario"_s);
}

TEST_F(FindReplacing, ReplacesAllInOneUndoableStep) {
    open(u"aXa"_s);
    lookFor(u"a"_s);
    find->setReplacement(u"aa"_s);
    find->replaceAll();
    EXPECT_EQ(text(), u"aaXaa"_s);
    EXPECT_EQ(find->matchCount(), 4);
    EXPECT_EQ(view->highlights.size(), 4U);
    EXPECT_TRUE(store->selectedItem()->isDirty());
    UndoManager& undoManager = view->shownDocument()->undoManager();
    undoManager.undo();
    EXPECT_EQ(text(), u"aXa"_s);
    EXPECT_FALSE(undoManager.canUndo());
    undoManager.redo();
    EXPECT_EQ(text(), u"aaXaa"_s);
}

TEST_F(FindReplacing, TakesAllPlacesAndTextsFromTheUnchangedText) {
    open(u"a1 b22 c333"_s);
    lookFor(u"([a-z])(\\d+)"_s, {.regex = true});
    find->setReplacement(u"$2$1$2"_s);
    find->replaceAll();
    EXPECT_EQ(text(), u"1a1 22b22 333c333"_s);
}

TEST_F(FindReplacing, ReplacesTenThousandAndTheRestTheNextTime) {
    open(QString(10'050, u'a'));
    lookFor(u"a"_s);
    find->setReplacement(u"b"_s);
    find->replaceAll();
    EXPECT_EQ(text(), QString(10'000, u'b') % QString(50, u'a'));
    EXPECT_EQ(find->matchCount(), 50);
    find->replaceAll();
    EXPECT_EQ(text(), QString(10'050, u'b'));
    EXPECT_EQ(desktop.beeps, 0);
    find->replaceAll();
    EXPECT_EQ(desktop.beeps, 1);
}

TEST_F(FindReplacing, RemovesByAnEmptyReplacement) {
    open(u"a-b-c"_s);
    lookFor(u"-"_s);
    find->replaceCurrent();
    EXPECT_EQ(text(), u"ab-c"_s);
    find->replaceAll();
    EXPECT_EQ(text(), u"abc"_s);
}

TEST_F(FindReplacing, KeepsEverythingElseOfTheTextAsItIs) {
    open(u"a\r\nb\u0001a\u2028a\n"_s);
    lookFor(u"a"_s);
    find->setReplacement(u"x\n"_s);
    find->replaceAll();
    EXPECT_EQ(text(), u"x\n\r\nb\u0001x\n\u2028x\n\n"_s);
}

TEST_F(FindReplacing, IsSilentWhereTheViewRefuses) {
    open(u"a a"_s);
    lookFor(u"a"_s);
    find->setReplacement(u"bbb"_s);
    view->refuses = true;
    find->replaceCurrent();
    EXPECT_EQ(find->anchorLocation(), 3);
    find->replaceAll();
    EXPECT_EQ(text(), u"a a"_s);
    EXPECT_EQ(desktop.beeps, 0);
    EXPECT_EQ(find->matchCount(), 2);
}

TEST_F(FindReplacing, SearchesATextThatChangedUnseenAnewBeforeItReplaces) {
    open(u"lungo testo con a"_s);
    lookFor(u"a"_s);
    view->shownDocument()->replaceAll(u"a, a"_s);
    find->setReplacement(u"b"_s);
    find->replaceAll();
    EXPECT_EQ(text(), u"b, b"_s);
    view->shownDocument()->replaceAll(u"niente"_s);
    find->replaceAll();
    EXPECT_EQ(text(), u"niente"_s);
}

} // namespace quillary::test
