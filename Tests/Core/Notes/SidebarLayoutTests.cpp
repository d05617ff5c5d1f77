#include "QuillaryCore/Notes/SidebarLayout.h"

#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

const QString composed = u"caff\u00E8"_s;
const QString decomposed = u"caffe\u0300"_s;

SidebarLayout layoutWithNotes(const QStringList& top) {
    SidebarLayout layout;
    layout.noteOrder.insert(u""_s, top);
    return layout;
}

} // namespace

TEST(FolderColor, HasItsNamesInOrder) {
    const QStringList names{u"red"_s,  u"orange"_s, u"yellow"_s, u"green"_s,
                            u"teal"_s, u"blue"_s,   u"purple"_s, u"gray"_s};
    ASSERT_EQ(static_cast<qsizetype>(allFolderColors.size()), names.size());
    for (qsizetype i = 0; i < names.size(); ++i) {
        const FolderColor color = allFolderColors[static_cast<std::size_t>(i)];
        EXPECT_EQ(rawValue(color), names[i]);
        EXPECT_EQ(folderColorFromRawValue(names[i]), color);
    }
    EXPECT_EQ(folderColorFromRawValue(u"fuchsia"), std::nullopt);
    EXPECT_EQ(folderColorFromRawValue(u"Red"), std::nullopt);
    EXPECT_EQ(folderColorFromRawValue(u""), std::nullopt);
}

TEST(SidebarLayout, TheTopLevelHasTheEmptyKey) {
    EXPECT_EQ(SidebarLayout::key(std::nullopt), u""_s);
    EXPECT_EQ(SidebarLayout::key(u"Idee"_s), u"Idee"_s);
}

TEST(SidebarLayout, OrderedGivesKnownFoldersThenNewOnesByName) {
    const struct {
        QStringList order;
        QStringList folders;
        QStringList expected;
    } cases[] = {
        {{u"b"_s, u"gone"_s}, {u"a"_s, u"b"_s, u"c"_s}, {u"b"_s, u"a"_s, u"c"_s}},
        {{}, {u"Cartella 10"_s, u"b"_s, u"Cartella 2"_s, u"A"_s}, {u"A"_s, u"b"_s, u"Cartella 2"_s, u"Cartella 10"_s}},
        {{u"z"_s, u"y"_s}, {u"y"_s, u"z"_s}, {u"z"_s, u"y"_s}},
        {{u"B"_s}, {u"a"_s, u"b"_s}, {u"a"_s, u"b"_s}},
        {{u"a"_s}, {}, {}},
        {{u"b"_s, u"b"_s}, {u"a"_s, u"b"_s}, {u"b"_s, u"b"_s, u"a"_s}},
        // an entry reaches the one folder of its name, however composed, and gives the folder's own spelling
        {{composed, u"a"_s}, {u"a"_s, decomposed}, {decomposed, u"a"_s}},
        {{composed, decomposed}, {decomposed, composed}, {composed, decomposed}},
        {{composed}, {decomposed, composed}, {composed, decomposed}},
    };

    for (const auto& [order, folders, expected] : cases) {
        SidebarLayout layout;
        layout.folderOrder = order;
        const SidebarLayout before = layout;
        EXPECT_EQ(layout.ordered(folders, u"it"_s), expected);
        EXPECT_EQ(layout.folderOrder, before.folderOrder);
    }
}

TEST(SidebarLayout, OrderedLeavesNewNamesThatCompareEqualAsTheyAreGiven) {
    // Every spelling of one name, in an order that none of them suggests.
    QStringList folders;
    for (int spelling = 0; spelling < 64; ++spelling) {
        QString name;
        for (int word = 0; word < 6; ++word) {
            name += (spelling * 37 >> word) % 2 == 0 ? composed : decomposed;
        }
        folders.append(name);
    }
    EXPECT_EQ(SidebarLayout().ordered(folders, u"it"_s), folders);
}

TEST(SidebarLayout, OrderedFollowsTheLocale) {
    const QStringList folders{u"z"_s, u"\u00E4"_s};
    const SidebarLayout layout;
    EXPECT_EQ(layout.ordered(folders, u"sv"_s), folders);
    EXPECT_EQ(layout.ordered(folders, u"it"_s), QStringList({u"\u00E4"_s, u"z"_s}));
    const QString before = interfaceLocale();
    setInterfaceLocale(u"sv"_s);
    EXPECT_EQ(layout.ordered(folders), folders);
    setInterfaceLocale(before);
}

TEST(SidebarLayout, ManuallyOrderedGivesNewNotesThenKnownOnes) {
    const struct {
        QStringList stored;
        QStringList names;
        QStringList expected;
    } cases[] = {
        {{u"x.md"_s, u"y.md"_s}, {u"new.md"_s, u"y.md"_s, u"x.md"_s}, {u"new.md"_s, u"x.md"_s, u"y.md"_s}},
        {{}, {u"b"_s, u"a"_s}, {u"b"_s, u"a"_s}},
        {{u"gone"_s, u"a"_s}, {u"c"_s, u"a"_s, u"b"_s}, {u"c"_s, u"b"_s, u"a"_s}},
        {{u"a.md"_s}, {u"a.txt"_s, u"a.md"_s}, {u"a.txt"_s, u"a.md"_s}},
        {{u"A"_s}, {u"a"_s}, {u"a"_s}},
        {{decomposed}, {u"b"_s, composed}, {u"b"_s, composed}},
        {{decomposed, u"b"_s}, {u"b"_s, composed}, {composed, u"b"_s}},
        {{composed, u"b"_s}, {decomposed, u"b"_s, composed}, {decomposed, composed, u"b"_s}},
    };

    for (const auto& [stored, names, expected] : cases) {
        EXPECT_EQ(layoutWithNotes(stored).manuallyOrdered(names, std::nullopt), expected);
        SidebarLayout layout;
        layout.noteOrder.insert(u"Idee"_s, stored);
        EXPECT_EQ(layout.manuallyOrdered(names, u"Idee"_s), expected);
        EXPECT_EQ(layout.manuallyOrdered(names, u"Altro"_s), names);
        EXPECT_EQ(layout.manuallyOrdered(names, std::nullopt), names);
    }
}

TEST(SidebarLayout, ManuallyOrderedFindsAFolderHoweverItsNameIsComposed) {
    SidebarLayout layout;
    layout.noteOrder.insert(decomposed, {u"b"_s, u"a"_s});
    EXPECT_EQ(layout.manuallyOrdered({u"a"_s, u"b"_s}, composed), QStringList({u"b"_s, u"a"_s}));
    layout.noteOrder.insert(composed, {u"a"_s, u"b"_s});
    EXPECT_EQ(layout.manuallyOrdered({u"a"_s, u"b"_s}, composed), QStringList({u"a"_s, u"b"_s}));
    EXPECT_EQ(layout.manuallyOrdered({u"a"_s, u"b"_s}, decomposed), QStringList({u"b"_s, u"a"_s}));
}

TEST(SidebarLayout, PlaceNotePutsANoteBeforeAnother) {
    const struct {
        QStringList stored;
        QString name;
        std::optional<QString> before;
        QStringList expected;
    } cases[] = {
        {{u"a"_s, u"b"_s}, u"n"_s, u"b"_s, {u"a"_s, u"n"_s, u"b"_s}},
        {{u"a"_s, u"b"_s}, u"n"_s, std::nullopt, {u"a"_s, u"b"_s, u"n"_s}},
        {{u"a"_s, u"b"_s}, u"n"_s, u"gone"_s, {u"a"_s, u"b"_s, u"n"_s}},
        {{}, u"n"_s, u"a"_s, {u"n"_s}},
        {{u"a"_s, u"b"_s, u"c"_s}, u"c"_s, u"b"_s, {u"a"_s, u"c"_s, u"b"_s}},
        {{u"a"_s, u"b"_s, u"c"_s}, u"a"_s, u"c"_s, {u"b"_s, u"a"_s, u"c"_s}},
        {{u"a"_s, u"b"_s}, u"a"_s, u"b"_s, {u"a"_s, u"b"_s}},
        {{u"a"_s, u"b"_s}, u"a"_s, u"a"_s, {u"b"_s, u"a"_s}},
        {{u"n"_s, u"a"_s, u"n"_s}, u"n"_s, u"a"_s, {u"n"_s, u"a"_s}},
        {{u"a"_s, u"a"_s}, u"n"_s, u"a"_s, {u"n"_s, u"a"_s, u"a"_s}},
        {{u"N"_s}, u"n"_s, std::nullopt, {u"N"_s, u"n"_s}},
        {{decomposed, u"b"_s}, composed, std::nullopt, {u"b"_s, composed}},
        {{u"a"_s, decomposed}, u"n"_s, composed, {u"a"_s, u"n"_s, decomposed}},
    };

    for (const auto& [stored, name, before, expected] : cases) {
        SidebarLayout layout = layoutWithNotes(stored);
        layout.placeNote(name, std::nullopt, std::nullopt, before);
        EXPECT_EQ(layout.noteOrder, layoutWithNotes(expected).noteOrder);
    }
}

TEST(SidebarLayout, PlaceNoteMovesANoteBetweenFolders) {
    SidebarLayout layout;
    layout.noteOrder.insert(u"A"_s, {u"x"_s, u"n"_s, u"n"_s});
    layout.noteOrder.insert(u"B"_s, {u"y"_s, u"n"_s, u"z"_s});
    layout.placeNote(u"n"_s, u"A"_s, u"B"_s, u"z"_s);
    EXPECT_EQ(layout.noteOrder.value(u"A"_s), QStringList({u"x"_s}));
    EXPECT_EQ(layout.noteOrder.value(u"B"_s), QStringList({u"y"_s, u"n"_s, u"z"_s}));
    layout.placeNote(u"n"_s, u"B"_s, std::nullopt, std::nullopt);
    EXPECT_EQ(layout.noteOrder.value(u"B"_s), QStringList({u"y"_s, u"z"_s}));
    EXPECT_EQ(layout.noteOrder.value(u""_s), QStringList({u"n"_s}));
    EXPECT_EQ(layout.noteOrder.size(), 3);
}

TEST(SidebarLayout, PlaceNoteFromAFolderWithoutAnOrderMakesNone) {
    SidebarLayout layout;
    layout.placeNote(u"n"_s, u"A"_s, std::nullopt, std::nullopt);
    EXPECT_EQ(layout.noteOrder, layoutWithNotes({u"n"_s}).noteOrder);
}

TEST(SidebarLayout, EnsurePlaceGivesANoteThePlaceThatItIsShownAt) {
    const QStringList names = {u"new"_s, u"a"_s, u"newer"_s, u"b"_s, composed};

    const struct {
        QStringList stored;
        QString name;
        QStringList expected;
    } cases[] = {
        {{u"b"_s, composed, u"a"_s}, u"newer"_s, {u"new"_s, u"newer"_s, u"b"_s, composed, u"a"_s}},
        {{u"b"_s, u"gone"_s, decomposed}, u"a"_s, {u"new"_s, u"a"_s, u"newer"_s, u"b"_s, u"gone"_s, decomposed}},
        {{u"b"_s, u"a"_s}, u"a"_s, {u"b"_s, u"a"_s}},
        {{u"b"_s, decomposed}, composed, {u"b"_s, decomposed}},
        {{}, u"b"_s, names},
    };

    for (const auto& [stored, name, expected] : cases) {
        SidebarLayout layout = layoutWithNotes(stored);
        const QStringList shown = layout.manuallyOrdered(names, std::nullopt);
        layout.ensurePlace(name, names, std::nullopt);
        EXPECT_EQ(layout.noteOrder.value(QString()), expected) << qPrintable(name);
        EXPECT_EQ(layout.manuallyOrdered(names, std::nullopt), shown);
    }
    SidebarLayout inFolders;
    inFolders.noteOrder.insert(decomposed, {u"a"_s});
    inFolders.ensurePlace(u"b"_s, {u"a"_s, u"b"_s}, composed);
    inFolders.ensurePlace(u"c"_s, {u"c"_s}, u"D"_s);
    EXPECT_EQ(inFolders.noteOrder.value(decomposed), QStringList({u"b"_s, u"a"_s}));
    EXPECT_EQ(inFolders.noteOrder.value(u"D"_s), QStringList({u"c"_s}));
    EXPECT_EQ(inFolders.noteOrder.size(), 2);
}

TEST(SidebarLayout, RenameNoteReplacesTheFirstEntryInPlace) {
    SidebarLayout layout = layoutWithNotes({u"a"_s, u"b"_s, u"a"_s});
    layout.renameNote(u"a"_s, u"z"_s, std::nullopt);
    EXPECT_EQ(layout.noteOrder.value(u""_s), QStringList({u"z"_s, u"b"_s, u"a"_s}));
    layout.renameNote(u"gone"_s, u"q"_s, std::nullopt);
    layout.renameNote(u"B"_s, u"q"_s, std::nullopt);
    layout.renameNote(u"b"_s, u"q"_s, u"Idee"_s);
    EXPECT_EQ(layout.noteOrder, layoutWithNotes({u"z"_s, u"b"_s, u"a"_s}).noteOrder);
}

TEST(SidebarLayout, RemoveNoteRemovesEveryEntry) {
    SidebarLayout layout = layoutWithNotes({u"a"_s, u"b"_s, u"a"_s});
    layout.removeNote(u"a"_s, u"Idee"_s);
    EXPECT_EQ(layout.noteOrder, layoutWithNotes({u"a"_s, u"b"_s, u"a"_s}).noteOrder);
    layout.removeNote(u"a"_s, std::nullopt);
    EXPECT_EQ(layout.noteOrder, layoutWithNotes({u"b"_s}).noteOrder);
    layout.removeNote(u"b"_s, std::nullopt);
    EXPECT_EQ(layout.noteOrder, layoutWithNotes({}).noteOrder);
}

TEST(SidebarLayout, RenameFolderCarriesEverythingAlong) {
    SidebarLayout layout;
    layout.folderOrder = {u"a"_s, u"b"_s, u"a"_s};
    layout.collapsedFolders = {u"c"_s, u"a"_s};
    layout.folderColors = {{u"a"_s, FolderColor::teal}, {u"z"_s, FolderColor::red}};
    layout.noteOrder = {{u"a"_s, {u"1.md"_s}}, {u"z"_s, {u"2.md"_s}}};
    layout.renameFolder(u"a"_s, u"z"_s);
    EXPECT_EQ(layout.folderOrder, QStringList({u"z"_s, u"b"_s, u"z"_s}));
    EXPECT_EQ(layout.collapsedFolders, QStringList({u"c"_s, u"z"_s}));
    EXPECT_EQ(layout.folderColors, (QMap<QString, FolderColor>{{u"z"_s, FolderColor::teal}}));
    EXPECT_EQ(layout.noteOrder, (QMap<QString, QStringList>{{u"z"_s, {u"1.md"_s}}}));
}

TEST(SidebarLayout, RenameFolderLeavesTheTargetWhereThereIsNothingToMove) {
    SidebarLayout layout;
    layout.folderColors = {{u"z"_s, FolderColor::red}};
    layout.noteOrder = {{u"z"_s, {u"2.md"_s}}};
    const SidebarLayout before = layout;
    layout.renameFolder(u"a"_s, u"z"_s);
    EXPECT_EQ(layout, before);
    layout.renameFolder(u"z"_s, u"z"_s);
    EXPECT_EQ(layout, before);
}

TEST(SidebarLayout, RenameFolderChangesTheSpellingOfANameToo) {
    SidebarLayout layout;
    layout.folderOrder = {decomposed};
    layout.folderColors = {{decomposed, FolderColor::red}};
    layout.renameFolder(decomposed, composed);
    EXPECT_EQ(layout.folderOrder, QStringList({composed}));
    EXPECT_EQ(layout.folderColors.keys(), QStringList({composed}));
}

TEST(SidebarLayout, RemoveFolderRemovesItEverywhere) {
    SidebarLayout layout;
    layout.folderOrder = {u"a"_s, u"b"_s, u"a"_s};
    layout.collapsedFolders = {u"a"_s, u"A"_s};
    layout.folderColors = {{u"a"_s, FolderColor::teal}, {u"b"_s, FolderColor::red}};
    layout.noteOrder = {{u"a"_s, {u"1.md"_s}}, {u""_s, {u"2.md"_s}}};
    layout.removeFolder(u"a"_s);
    EXPECT_EQ(layout.folderOrder, QStringList({u"b"_s}));
    EXPECT_EQ(layout.collapsedFolders, QStringList({u"A"_s}));
    EXPECT_EQ(layout.folderColors, (QMap<QString, FolderColor>{{u"b"_s, FolderColor::red}}));
    EXPECT_EQ(layout.noteOrder, (QMap<QString, QStringList>{{u""_s, {u"2.md"_s}}}));
}

TEST(SidebarLayout, EqualsOneThatNamesTheSameInAllFourFields) {
    SidebarLayout layout;
    layout.folderOrder = {composed};
    layout.collapsedFolders = {composed};
    layout.folderColors = {{composed, FolderColor::red}};
    layout.noteOrder = {{composed, {composed}}};
    SidebarLayout other;
    other.folderOrder = {decomposed};
    other.collapsedFolders = {decomposed};
    other.folderColors = {{decomposed, FolderColor::red}};
    other.noteOrder = {{decomposed, {decomposed}}};
    EXPECT_EQ(layout, other);
    SidebarLayout changed = layout;
    changed.folderOrder.append(u"x"_s);
    EXPECT_NE(layout, changed);
    changed = layout;
    changed.collapsedFolders.clear();
    EXPECT_NE(layout, changed);
    changed = layout;
    changed.folderColors[composed] = FolderColor::blue;
    EXPECT_NE(layout, changed);
    changed = layout;
    changed.noteOrder[composed] = QStringList{u"x"_s};
    EXPECT_NE(layout, changed);
    changed = layout;
    changed.noteOrder[u"altra"_s] = QStringList();
    EXPECT_NE(layout, changed);
}

} // namespace quillary
