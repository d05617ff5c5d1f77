#include "Tests/State/Find/FakeFindView.h"

namespace quillary::test {

using namespace Qt::StringLiterals;

using FindController = FindTest;
using Finder = quillary::FindController;

TEST_F(FindController, IsClosedAndEmptyAtFirst) {
    open(u"testo"_s);
    EXPECT_FALSE(find->isVisible());
    EXPECT_FALSE(find->showsReplace());
    EXPECT_EQ(find->query(), QString());
    EXPECT_EQ(find->replacement(), QString());
    EXPECT_EQ(find->options(), SearchOptions());
    EXPECT_EQ(find->matchCount(), 0);
    EXPECT_EQ(find->currentIndex(), std::nullopt);
    EXPECT_EQ(find->errorMessage(), std::nullopt);
    EXPECT_EQ(find->fieldFocusToken(), 0);
    EXPECT_FALSE(find->focusesReplaceField());
    EXPECT_EQ(find->anchorLocation(), 0);
}

TEST_F(FindController, SelectsTheFirstMatchFromTheAnchorWithEachKey) {
    open(u"nota uno, nota due, no"_s);
    select(5, 5);
    find->show(false);
    find->setQuery(u"n"_s);
    EXPECT_EQ(selectedText(), u"n"_s);
    EXPECT_EQ(view->selected, (TextSelection{6, 7}));
    find->setQuery(u"no"_s);
    EXPECT_EQ(view->selected, (TextSelection{6, 8}));
    find->setQuery(u"not"_s);
    EXPECT_EQ(view->selected, (TextSelection{10, 13}));
    EXPECT_EQ(find->currentIndex(), 1);
}

TEST_F(FindController, GoesBackToTheAnchorWhenTheQueryGetsShorter) {
    open(u"a ab abc"_s);
    find->show(false);
    find->setQuery(u"abc"_s);
    EXPECT_EQ(view->selected, (TextSelection{5, 8}));
    find->setQuery(u"ab"_s);
    EXPECT_EQ(view->selected, (TextSelection{2, 4}));
    EXPECT_EQ(find->anchorLocation(), 0);
}

TEST_F(FindController, WrapsToTheFirstMatchOfTheNote) {
    open(u"nota, nota, fine"_s);
    select(13, 13);
    lookFor(u"nota"_s);
    EXPECT_EQ(find->currentIndex(), 0);
    EXPECT_EQ(find->matchCount(), 2);
    EXPECT_EQ(view->selected, (TextSelection{0, 4}));
}

TEST_F(FindController, RevealsTheCurrentMatch) {
    open(u"uno due"_s);
    lookFor(u"due"_s);
    EXPECT_EQ(view->scrolledTo.back(), (TextRange{4, 3}));
    EXPECT_EQ(view->indicated.back(), (TextRange{4, 3}));
    EXPECT_EQ(selectedText(), u"due"_s);
}

TEST_F(FindController, MarksAllMatchesAndTheCurrentOneAboveThem) {
    open(u"a b a b a"_s);
    select(1, 1);
    lookFor(u"a"_s);
    EXPECT_EQ(view->highlights, (std::vector<TextRange>{{0, 1}, {4, 1}, {8, 1}}));
    EXPECT_EQ(view->currentHighlight, 1);
    find->step(1);
    EXPECT_EQ(view->currentHighlight, 2);
    EXPECT_EQ(view->highlights.size(), 3U);
    find->setQuery(u"zeta"_s);
    EXPECT_TRUE(view->highlights.empty());
}

TEST_F(FindController, SearchesAnewForOtherOptions) {
    open(u"Nota nota notare"_s);
    lookFor(u"nota"_s);
    EXPECT_EQ(find->matchCount(), 3);
    find->setOptions({.caseSensitive = true});
    EXPECT_EQ(find->matchCount(), 2);
    find->setOptions({.caseSensitive = true, .wholeWord = true});
    EXPECT_EQ(find->matchCount(), 1);
    EXPECT_EQ(view->selected, (TextSelection{5, 9}));
}

TEST_F(FindController, SearchesNothingForAnEqualQueryOrEqualOptions) {
    open(u"a a a"_s);
    lookFor(u"a"_s);
    find->step(1);
    const SignalCount queries(find, &Finder::queryChanged);
    const SignalCount currents(find, &Finder::currentIndexChanged);
    const std::size_t reveals = view->indicated.size();
    find->setQuery(u"a"_s);
    find->setOptions({});
    EXPECT_EQ(find->currentIndex(), 1);
    EXPECT_EQ(view->indicated.size(), reveals);
    EXPECT_EQ(queries.count() + currents.count(), 0);
}

TEST_F(FindController, SearchesNothingForAReplacement) {
    open(u"a a a"_s);
    lookFor(u"a"_s);
    find->step(1);
    find->setReplacement(u"b"_s);
    EXPECT_EQ(find->replacement(), u"b"_s);
    EXPECT_EQ(find->currentIndex(), 1);
}

TEST_F(FindController, TakesTheSelectedWordForTheQuery) {
    open(u"uno due uno due"_s);
    select(8, 11);
    find->show(false);
    EXPECT_EQ(find->query(), u"uno"_s);
    EXPECT_EQ(find->anchorLocation(), 8);
    EXPECT_EQ(find->currentIndex(), 1);
    EXPECT_EQ(view->selected, (TextSelection{8, 11}));
}

TEST_F(FindController, TakesTheWordThatWasSelectedBackwards) {
    open(u"uno due"_s);
    select(7, 4);
    find->show(false);
    EXPECT_EQ(find->query(), u"due"_s);
    EXPECT_EQ(find->anchorLocation(), 4);
}

TEST_F(FindController, TakesATextWithinALineOnly) {
    struct Case {
        const char* name;
        QString selected;
        bool isTaken;
    };

    std::vector<Case> cases{
        {"one unit", u"x"_s, true},
        {"500 units", QString(500, u'x'), true},
        {"501 units", QString(501, u'x'), false},
        {"a tab", u"a\tb"_s, true},
        {"two lines", u"a\nb"_s, false},
        {"a line with its end", u"a\r\n"_s, false},
        {"unit separator",
         u"a\x1F"
         u"b"_s,
         true},
    };
    for (const char16_t end : {u'\n', u'\v', u'\f', u'\r', u'\x85', u'\u2028', u'\u2029'}) {
        cases.push_back({"a line's end", u"a"_s % QChar(end) % u"b"_s, false});
    }
    for (const Case& each : cases) {
        open(each.selected % u" poi"_s);
        select(0, each.selected.size());
        find->setQuery(u"prima"_s);
        EXPECT_EQ(find->selectedSingleLineText().has_value(), each.isTaken) << each.name;
        find->show(false);
        EXPECT_EQ(find->query(), each.isTaken ? each.selected : u"prima"_s) << each.name;
    }
    open(u"testo"_s);
    EXPECT_EQ(find->selectedSingleLineText(), std::nullopt);
    AppActions::shared().editor = {};
    EXPECT_EQ(find->selectedSingleLineText(), std::nullopt);
}

TEST_F(FindController, PutsTheFocusWhereThereIsSomethingToType) {
    open(u"testo"_s);
    find->show(true);
    EXPECT_TRUE(find->showsReplace());
    EXPECT_FALSE(find->focusesReplaceField());
    EXPECT_EQ(find->fieldFocusToken(), 1);
    find->setQuery(u"es"_s);
    find->show(true);
    EXPECT_TRUE(find->focusesReplaceField());
    EXPECT_EQ(find->fieldFocusToken(), 2);
    find->show(false);
    EXPECT_FALSE(find->focusesReplaceField());
    EXPECT_EQ(find->fieldFocusToken(), 3);
}

TEST_F(FindController, KeepsTheOpenRowAndHidesTheClosedOne) {
    open(u"testo"_s);
    find->show(true);
    find->show(false);
    EXPECT_TRUE(find->showsReplace());
    find->close();
    EXPECT_TRUE(find->showsReplace());
    find->show(false);
    EXPECT_FALSE(find->showsReplace());
    find->setShowsReplace(true);
    find->show(false);
    EXPECT_TRUE(find->showsReplace());
}

TEST_F(FindController, PutsAPreviewAside) {
    open(u"testo"_s);
    store->selectedItem()->setShowsPreview(true);
    find->show(false);
    EXPECT_FALSE(store->selectedItem()->showsPreview());
}

TEST_F(FindController, ClosesWithTheFocusInTheEditorAndKeepsWhatItFound) {
    open(u"a a"_s);
    lookFor(u"a"_s);
    find->setReplacement(u"b"_s);
    const qint64 token = store->editorFocusToken();
    find->close();
    EXPECT_FALSE(find->isVisible());
    EXPECT_TRUE(view->highlights.empty());
    EXPECT_EQ(store->editorFocusToken(), token + 1);
    EXPECT_EQ(find->query(), u"a"_s);
    EXPECT_EQ(find->replacement(), u"b"_s);
    EXPECT_EQ(find->matchCount(), 2);
    EXPECT_EQ(find->currentIndex(), 0);
    find->close();
    EXPECT_EQ(store->editorFocusToken(), token + 1);
}

TEST_F(FindController, SearchesNothingWhileItIsClosed) {
    open(u"a a"_s);
    find->setQuery(u"a"_s);
    EXPECT_EQ(find->matchCount(), 0);
    EXPECT_TRUE(view->highlights.empty());
    find->show(false);
    EXPECT_EQ(find->matchCount(), 2);
    EXPECT_EQ(find->currentIndex(), 0);
}

TEST_F(FindController, StepsAroundBothEnds) {
    open(u"a b a b a"_s);
    lookFor(u"a"_s);
    const qsizetype anchor = find->anchorLocation();
    for (const auto& [by, index] : {std::pair(1, 1), std::pair(1, 2), std::pair(1, 0), std::pair(-1, 2),
                                    std::pair(-1, 1), std::pair(7, 2), std::pair(-8, 0)}) {
        find->step(by);
        EXPECT_EQ(find->currentIndex(), index) << by;
        EXPECT_EQ(view->selected, (TextSelection{index * 4, index * 4 + 1}));
        EXPECT_EQ(view->indicated.back(), (TextRange{index * 4, 1}));
    }
    EXPECT_EQ(find->anchorLocation(), anchor);
}

TEST_F(FindController, OpensItselfToStep) {
    open(u"a b a"_s);
    lookFor(u"a"_s);
    find->close();
    select(0, 0);
    find->step(1);
    EXPECT_TRUE(find->isVisible());
    EXPECT_EQ(find->currentIndex(), 1);
}

TEST_F(FindController, BeepsWhereThereIsNothingToStepTo) {
    open(u"testo"_s);
    select(2, 2);
    lookFor(u"zeta"_s);
    find->step(1);
    find->step(-1);
    EXPECT_EQ(desktop.beeps, 2);
    EXPECT_EQ(find->currentIndex(), std::nullopt);
    EXPECT_EQ(view->selected, (TextSelection{2, 2}));
}

TEST_F(FindController, TellsWhatIsWrongWithAPatternWithoutMovingTheSelection) {
    open(u"uno (due)"_s);
    lookFor(u"(due"_s);
    EXPECT_EQ(view->selected, (TextSelection{4, 8}));
    find->setOptions({.regex = true});
    EXPECT_EQ(find->errorMessage(), u"Espressione regolare non valida"_s);
    EXPECT_EQ(find->matchCount(), 0);
    EXPECT_EQ(find->currentIndex(), std::nullopt);
    EXPECT_TRUE(view->highlights.empty());
    EXPECT_EQ(view->selected, (TextSelection{4, 8}));
    find->setQuery(u"(due)"_s);
    EXPECT_EQ(find->errorMessage(), std::nullopt);
    EXPECT_EQ(find->matchCount(), 1);
    find->setQuery({});
    EXPECT_EQ(find->errorMessage(), std::nullopt);
    EXPECT_EQ(find->matchCount(), 0);
}

TEST_F(FindController, RefreshesAfterAnEditWithoutMovingAnything) {
    open(u"a b a"_s);
    select(3, 3);
    lookFor(u"a"_s);
    select(2, 2);
    const std::size_t scrolls = view->scrolledTo.size();
    view->replaceText({2, 1}, u"a a"_s);
    EXPECT_EQ(find->matchCount(), 4);
    EXPECT_EQ(view->highlights.size(), 4U);
    EXPECT_EQ(view->selected, (TextSelection{5, 5}));
    EXPECT_EQ(find->currentIndex(), 3);
    EXPECT_EQ(view->scrolledTo.size(), scrolls);
}

TEST_F(FindController, CopesWithoutAnEditor) {
    open(u"a"_s);
    AppActions::shared().editor = {};
    find->setQuery(u"a"_s);
    find->show(true);
    EXPECT_TRUE(find->isVisible());
    EXPECT_EQ(find->anchorLocation(), 0);
    EXPECT_EQ(find->matchCount(), 0);
    find->step(1);
    find->replaceCurrent();
    find->replaceAll();
    find->useSelectionForFind();
    EXPECT_EQ(desktop.beeps, 4);
    find->close();
    EXPECT_FALSE(find->isVisible());
}

TEST_F(FindController, BoundsTheMatches) {
    open(QString(20'000, u'a'));
    lookFor(u"a"_s);
    EXPECT_EQ(find->matchCount(), 10'000);
    find->step(-1);
    EXPECT_EQ(find->currentIndex(), 9'999);
}

TEST_F(FindController, UsesTheSelectionForTheSearch) {
    open(u"uno due due"_s);
    select(4, 7);
    find->useSelectionForFind();
    EXPECT_TRUE(find->isVisible());
    EXPECT_FALSE(find->showsReplace());
    EXPECT_EQ(find->query(), u"due"_s);
    EXPECT_EQ(find->matchCount(), 2);
    EXPECT_EQ(desktop.beeps, 0);
    select(3, 3);
    find->useSelectionForFind();
    EXPECT_EQ(desktop.beeps, 1);
    EXPECT_EQ(find->query(), u"due"_s);
}

TEST_F(FindController, OpensNothingForASelectionThatIsNoTextWithinALine) {
    open(u"uno\ndue"_s);
    select(2, 5);
    find->useSelectionForFind();
    EXPECT_EQ(desktop.beeps, 1);
    EXPECT_FALSE(find->isVisible());
    EXPECT_EQ(find->query(), QString());
}

TEST_F(FindController, TellsOfChangesOnly) {
    open(u"a a"_s);
    const SignalCount counts(find, &Finder::matchCountChanged);
    const SignalCount currents(find, &Finder::currentIndexChanged);
    const SignalCount errors(find, &Finder::errorMessageChanged);
    const SignalCount visible(find, &Finder::isVisibleChanged);
    lookFor(u"a"_s);
    find->show(false);
    find->search();
    EXPECT_EQ(counts.count(), 1);
    EXPECT_EQ(currents.count(), 1);
    EXPECT_EQ(errors.count(), 0);
    EXPECT_EQ(visible.count(), 1);
}

} // namespace quillary::test
