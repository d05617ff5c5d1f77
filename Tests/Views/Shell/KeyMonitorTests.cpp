#include "Quillary/Shell/KeyMonitor.h"

#include "../NotesFolder.h"
#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/Shell/MainWindow.h"
#include "Quillary/Sidebar/SearchField.h"
#include "Quillary/Sidebar/SidebarList.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Text/TextStorage.h"

#include "Tests/State/FakeDesktop.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

enum class Focus { editor, list, field };

/// What is set up before a key.
enum Setup : unsigned {
    nothing = 0,
    twoNotes = 1,
    folderSelected = 2,
    noNote = 8,
    fieldFilled = 16,
    findBarOpen = 32,
    ownKeys = 64,
    recording = 128,
};

struct KeyRow {
    const char* name;
    QList<Focus> focuses;
    unsigned setup;
    QKeyCombination key;

    /// What is different afterwards, as `differences` tells it.
    QStringList expected;
};

const QList<Focus> everywhere{Focus::editor, Focus::list, Focus::field};

const KeyRow keyRows[] = {
    {"Delete asks about several notes", everywhere, twoNotes, Qt::Key_Delete, {u"asks about 2 notes"_s}},
    {"Backspace asks about several notes", everywhere, twoNotes, Qt::Key_Backspace, {u"asks about 2 notes"_s}},
    {"Backspace asks about several notes before a folder",
     everywhere,
     twoNotes | folderSelected,
     Qt::Key_Backspace,
     {u"asks about 2 notes"_s}},
    {"Backspace edits the text", {Focus::editor}, nothing, Qt::Key_Backspace, {u"text: «alf»"_s}},
    {"Backspace edits the field", {Focus::field}, fieldFilled, Qt::Key_Backspace, {u"field: «»"_s}},
    {"Backspace asks about a folder", {Focus::list}, folderSelected, Qt::Key_Backspace, {u"asks about a folder"_s}},
    {"Delete asks about a folder", {Focus::list}, folderSelected, Qt::Key_Delete, {u"asks about a folder"_s}},
    {"Escape leaves a folder", {Focus::list}, folderSelected, Qt::Key_Escape, {u"no folder"_s}},
    {"Escape leaves a folder first", {Focus::list}, folderSelected | twoNotes, Qt::Key_Escape, {u"no folder"_s}},
    {"Escape ends a multiple selection", everywhere, twoNotes, Qt::Key_Escape, {u"one note"_s}},
    {"Escape in a text ends a multiple selection before a folder",
     {Focus::editor, Focus::field},
     twoNotes | folderSelected,
     Qt::Key_Escape,
     {u"one note"_s}},
    {"Backspace edits the text and leaves a folder",
     {Focus::editor},
     folderSelected,
     Qt::Key_Backspace,
     {u"no folder"_s, u"text: «alf»"_s}},
    {"Backspace edits the field also with a folder",
     {Focus::field},
     folderSelected | fieldFilled,
     Qt::Key_Backspace,
     {u"field: «»"_s}},
    {"Escape in a text leaves a folder alone", {Focus::editor, Focus::field}, folderSelected, Qt::Key_Escape, {}},
    {"Delete is the list's with a single note", {Focus::list}, nothing, Qt::Key_Delete, {u"asks about 1 notes"_s}},
    {"Backspace is the list's with a single note",
     {Focus::list},
     nothing,
     Qt::Key_Backspace,
     {u"asks about 1 notes"_s}},
    {"⇧⌫ is no plain key", {Focus::list}, twoNotes | folderSelected, Qt::SHIFT | Qt::Key_Backspace, {}},
    {"⇧⎋ is no plain key", {Focus::list}, twoNotes | folderSelected, Qt::SHIFT | Qt::Key_Escape, {}},
    {"⌘G finds the next match while the bar is open",
     everywhere,
     twoNotes | findBarOpen,
     Qt::CTRL | Qt::Key_G,
     {u"match 1"_s}},
    {"⌘G finds although the user gave it to another command",
     everywhere,
     findBarOpen | ownKeys,
     Qt::CTRL | Qt::Key_G,
     {u"match 1"_s}},
    {"⇧⌘G is the menu's", everywhere, findBarOpen, Qt::SHIFT | Qt::CTRL | Qt::Key_G, {u"match 1"_s}},
    {"⌘G groups one", everywhere, nothing, Qt::CTRL | Qt::Key_G, {u"2 folders"_s}},
    {"⌘G groups although the user gave it to another command",
     everywhere,
     ownKeys,
     Qt::CTRL | Qt::Key_G,
     {u"2 folders"_s}},
    {"⌘G groups several", everywhere, twoNotes, Qt::CTRL | Qt::Key_G, {u"one note"_s, u"2 folders"_s}},
    {"⌘G beeps with nothing to group", {Focus::list, Focus::field}, noNote, Qt::CTRL | Qt::Key_G, {u"beep"_s}},
    {"⌘↓ selects the next note", everywhere, nothing, Qt::CTRL | Qt::Key_Down, {u"note b"_s}},
    {"⌘↑ selects the previous note", everywhere, nothing, Qt::CTRL | Qt::Key_Up, {u"note c"_s}},
    {"⌘K asks for the search field", everywhere, nothing, Qt::CTRL | Qt::Key_K, {u"search"_s}},
    {"⇧⌘P shows the preview", everywhere, nothing, Qt::SHIFT | Qt::CTRL | Qt::Key_P, {u"preview"_s}},
    {"⌘3 selects by place", everywhere, nothing, Qt::CTRL | Qt::Key_3, {u"note b"_s}},
    {"⌘3 selects by place also with a folder",
     {Focus::list},
     folderSelected,
     Qt::CTRL | Qt::Key_3,
     {u"no folder"_s, u"note b"_s}},
    {"⌘9 does nothing where there are fewer notes", everywhere, nothing, Qt::CTRL | Qt::Key_9, {}},
    {"⌘S of the user goes before the menu's", everywhere, ownKeys, Qt::CTRL | Qt::Key_S, {u"note b"_s}},
    {"A recording has every key for itself",
     everywhere,
     recording,
     Qt::CTRL | Qt::Key_N,
     {u"search by ⌘N"_s, u"no recording"_s}},
    {"A recording refuses typing", everywhere, recording, Qt::Key_A, {u"beep"_s}},
    {"A recording ends with Escape", everywhere, recording | twoNotes, Qt::Key_Escape, {u"no recording"_s}},
    {"A recording turns off with Backspace",
     everywhere,
     recording | twoNotes,
     Qt::Key_Backspace,
     {u"search by nothing"_s, u"no recording"_s}},
    {"⌘= zooms in", everywhere, nothing, Qt::CTRL | Qt::Key_Equal, {u"14 pt"_s}},
    {"⌘+ is the menu's", everywhere, nothing, Qt::CTRL | Qt::Key_Plus, {u"14 pt"_s}},
    {"⌘- is the menu's", everywhere, nothing, Qt::CTRL | Qt::Key_Minus, {u"12 pt"_s}},
    {"What no rule takes is typed", {Focus::editor}, nothing, Qt::Key_X, {u"text: «alfax»"_s}},
    {"What no rule takes is typed in a field", {Focus::field}, nothing, Qt::Key_X, {u"field: «x»"_s}},
    {"⌃⌥N is the hot key's", {Focus::list}, nothing, Qt::META | Qt::ALT | Qt::Key_N, {}},
};

class KeyMonitorTest : public testing::Test {
protected:
    KeyMonitorTest() {
        AppActions& actions = AppActions::shared();
        actions.desktop = &desktop;
        actions.mainWindow = &window;
        folder.keyboard().start();
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }

    ~KeyMonitorTest() override { AppActions::shared() = {}; }

    /// The text view on show; other notes have views of their own.
    static ZoomableTextView* editor() {
        NoteTextView* const shown = AppActions::shared().editor;
        return dynamic_cast<ZoomableTextView*>(shown);
    }

    QLineEdit* field() { return window.findChild<QLineEdit*>(); }

    SidebarList* list() { return window.findChild<SidebarList*>(); }

    QWidget* widget(Focus focus) {
        switch (focus) {
        case Focus::editor:
            return editor();
        case Focus::list:
            return list();
        case Focus::field:
            break;
        }
        return field();
    }

    void setUp(const KeyRow& row, Focus focus) {
        NotesStore& store = folder.store();
        store.setSelectedID(folder.note(u"a"_s)->id());
        if ((row.setup & fieldFilled) != 0) {
            field()->setText(u"a"_s);
        }
        if ((row.setup & twoNotes) != 0) {
            store.setMultiSelection({folder.note(u"a"_s)->id(), folder.note(u"b"_s)->id()});
        }
        if ((row.setup & folderSelected) != 0) {
            store.setSelectedFolder(u"Lavoro"_s);
        }
        if ((row.setup & noNote) != 0) {
            store.setSelectedID(std::nullopt);
        }
        if ((row.setup & ownKeys) != 0) {
            folder.settings().setShortcut(KeyShortcut(KeyCode::g, KeyShortcut::Modifiers::command, u"g"_s),
                                          ShortcutAction::previousNote);
            folder.settings().setShortcut(KeyShortcut(1, KeyShortcut::Modifiers::command, u"s"_s),
                                          ShortcutAction::nextNote);
        }
        if ((row.setup & findBarOpen) != 0) {
            folder.find().show(false);
            folder.find().setQuery(u"a"_s);
            folder.find().search(0);
        }
        if ((row.setup & recording) != 0) {
            folder.keyboard().toggleRecording(ShortcutAction::search);
        }
        if (editor() != nullptr) {
            editor()->setSelection({4, 4});
        }
        QCoreApplication::processEvents();
        widget(focus)->setFocus();
        before = state();
    }

    /// All that a key may change, each part by a name.
    QMap<QString, QString> state() {
        NotesStore& store = folder.store();
        const NoteItemPtr note = folder.note(u"a"_s);
        const auto yes = [](bool is, const QString& text) { return is ? text : QString(); };
        return {
            {u"01"_s, yes(!store.pendingNoteDeletion().isEmpty(),
                          u"asks about %1 notes"_s.arg(store.pendingNoteDeletion().size()))},
            {u"02"_s, yes(store.pendingFolderDeletion().has_value(), u"asks about a folder"_s)},
            {u"03"_s, yes(!store.selectedFolder(), u"no folder"_s)},
            {u"04"_s, yes(store.multiSelection().isEmpty(), u"one note"_s)},
            {u"05"_s, u"%1 folders"_s.arg(store.folders().size())},
            {u"07"_s, store.selectedItem() == nullptr ? u"no note"_s : u"note "_s + store.selectedItem()->title()},
            {u"08"_s, yes(store.searchFocusToken() > 0, u"search"_s)},
            {u"09"_s, yes(note->showsPreview(), u"preview"_s)},
            {u"10"_s, u"%1 pt"_s.arg(folder.settings().fontSize())},
            {u"11"_s, u"text: «%1»"_s.arg(note->document()->storage().text())},
            {u"12"_s, u"field: «%1»"_s.arg(field()->text())},
            {u"13"_s, yes(desktop.beeps > 0, u"beep"_s)},
            {u"14"_s, u"match %1"_s.arg(folder.find().currentIndex().value_or(-1))},
            {u"15"_s, u"search by "_s + (folder.settings().shortcut(ShortcutAction::search)
                                             ? folder.settings().shortcut(ShortcutAction::search)->displayString()
                                             : u"nothing"_s)},
            {u"16"_s, yes(!folder.keyboard().recordingAction(), u"no recording"_s)},
        };
    }

    QStringList differences() {
        const QMap<QString, QString> after = state();
        QStringList texts;
        for (auto each = after.cbegin(); each != after.cend(); ++each) {
            if (before.value(each.key()) != each.value()) {
                texts.append(each.value());
            }
        }
        return texts;
    }

    test::FakeDesktop desktop;
    NotesFolder folder{{{u"a.md"_s, u"alfa"_s}, {u"b.md"_s, u"beta"_s}, {u"Lavoro/c.md"_s, u"gamma"_s}}};
    KeyMonitor monitor{&folder.keyboard()};
    MainWindow window{folder.store(), folder.settings(), folder.find(), folder.keyboard(), folder.solo()};
    QMap<QString, QString> before;
};

/// Presses a key as the window system does, which looks for a shortcut first.
void press(QWidget& window, QKeyCombination key) {
    QTest::keyClick(window.windowHandle(), key.key(), key.keyboardModifiers());
    QCoreApplication::processEvents();
}

/// One row with one place of the focus.
struct KeyCase {
    const KeyRow* row;
    Focus focus;

    friend void PrintTo(const KeyCase& each, std::ostream* stream) {
        *stream << each.row->name
                << (each.focus == Focus::editor ? " in the editor"
                    : each.focus == Focus::list ? " in the list"
                                                : " in the field");
    }
};

std::vector<KeyCase> keyCases() {
    std::vector<KeyCase> cases;
    for (const KeyRow& row : keyRows) {
        for (const Focus focus : row.focuses) {
            cases.push_back({&row, focus});
        }
    }
    return cases;
}

class KeyMonitorRowTest : public KeyMonitorTest, public testing::WithParamInterface<KeyCase> {};

} // namespace

TEST_P(KeyMonitorRowTest, DoesWhatTheFirstRuleSaysAndNothingElse) {
    const auto& [row, focus] = GetParam();
    setUp(*row, focus);
    ASSERT_TRUE(widget(focus)->hasFocus());
    press(window, row->key);
    EXPECT_EQ(differences().join(u", "_s).toStdString(), row->expected.join(u", "_s).toStdString());
}

INSTANTIATE_TEST_SUITE_P(Rules, KeyMonitorRowTest, testing::ValuesIn(keyCases()));

TEST_F(KeyMonitorTest, AnOpenMenuHasItsKeysForItself) {
    NotesStore& store = folder.store();
    store.setMultiSelection({folder.note(u"a"_s)->id(), folder.note(u"b"_s)->id()});
    QMenu* const menu = window.findChild<QMenuBar*>()->actions().constFirst()->menu();
    menu->popup({});
    ASSERT_TRUE(QTest::qWaitFor([&] { return menu->isVisible(); }));
    press(window, Qt::Key_Escape);
    EXPECT_FALSE(menu->isVisible());
    EXPECT_EQ(store.multiSelection().size(), 2);
}

TEST_F(KeyMonitorTest, ReturnIsThePanelsAfterEachClickThatSelects) {
    NotesStore& store = folder.store();
    store.setSelectedID(folder.note(u"a"_s)->id());
    const auto clickWithControl = [this](const QString& title) {
        const int row = list()->model().rowOfNote(folder.note(title)->id());
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, Qt::ControlModifier, list()->rowRect(row).center());
    };
    clickWithControl(u"b"_s);
    clickWithControl(u"c"_s);
    ASSERT_EQ(store.multiSelection().size(), 3);
    press(window, Qt::Key_Return);
    EXPECT_EQ(store.folders().size(), 2);
    EXPECT_EQ(folder.note(u"a"_s)->folder(), folder.note(u"c"_s)->folder());
}

TEST_F(KeyMonitorTest, ATitleThatIsLeftForAnotherFieldLeavesItTheKeyboard) {
    NotesStore& store = folder.store();
    store.setSelectedID(folder.note(u"a"_s)->id());
    const auto rename = [&](const QString& title) {
        store.raiseTitleRenameToken();
        QCoreApplication::processEvents();
        ASSERT_NE(qobject_cast<QLineEdit*>(QApplication::focusWidget()), nullptr);
        QTest::keyClicks(QApplication::focusWidget(), title);
    };
    const auto type = [](const QString& text) {
        for (int i = 0; i < 5; ++i) {
            QCoreApplication::processEvents();
        }
        QTest::keyClicks(QApplication::focusWidget(), text);
    };
    rename(u"Uno"_s);
    press(window, Qt::CTRL | Qt::Key_F);
    type(u"alfa"_s);
    EXPECT_EQ(folder.find().query(), u"alfa"_s);
    EXPECT_EQ(store.selectedItem()->title(), u"Uno"_s);

    rename(u"Due"_s);
    QTest::mouseClick(window.findChild<SearchField*>(), Qt::LeftButton);
    type(u"x"_s);
    EXPECT_EQ(store.searchQuery(), u"x"_s);
    EXPECT_EQ(store.selectedItem()->title(), u"Due"_s);
    store.setSearchQuery({});

    rename(u"Tre"_s);
    press(window, Qt::ALT | Qt::CTRL | Qt::Key_N);
    type(u"Cartella"_s);
    press(window, Qt::Key_Return);
    EXPECT_TRUE(store.folders().contains(u"Cartella"_s));
    EXPECT_EQ(store.selectedItem()->title(), u"Tre"_s);

    rename(u"Quattro"_s);
    press(window, Qt::Key_Return);
    type(u"!"_s);
    EXPECT_EQ(store.selectedItem()->title(), u"Quattro"_s);
    EXPECT_EQ(store.selectedItem()->document()->text(), u"!"_s) << "what was found was selected";
}

TEST_F(KeyMonitorTest, ASelectionThatShrinksLeavesTheKeyboardToWhoTypes) {
    NotesStore& store = folder.store();
    store.setMultiSelection({folder.note(u"a"_s)->id(), folder.note(u"b"_s)->id(), folder.note(u"c"_s)->id()});
    field()->setFocus();
    store.toggleInSelection(*folder.note(u"c"_s));
    ASSERT_EQ(store.multiSelection().size(), 2);
    EXPECT_TRUE(field()->hasFocus());
}

TEST_F(KeyMonitorTest, ShiftAndF10OpensTheMenuOfWhatHasTheKeyboard) {
    for (const Focus focus : {Focus::list, Focus::editor, Focus::field}) {
        widget(focus)->setFocus();
        press(window, Qt::SHIFT | Qt::Key_F10);
        ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::activePopupWidget() != nullptr; }));
        EXPECT_NE(qobject_cast<QMenu*>(QApplication::activePopupWidget()), nullptr);
        QApplication::activePopupWidget()->close();
    }
}

TEST_F(KeyMonitorTest, OtherWindowsKeepTheirKeysUnlessAShortcutIsRecorded) {
    folder.store().setMultiSelection({folder.note(u"a"_s)->id(), folder.note(u"b"_s)->id()});
    QLineEdit other(u"testo"_s);
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    press(other, Qt::Key_Backspace);
    EXPECT_EQ(other.text(), u"test"_s);
    EXPECT_TRUE(folder.store().pendingNoteDeletion().isEmpty());

    folder.keyboard().toggleRecording(ShortcutAction::search);
    press(other, Qt::Key_A);
    press(other, Qt::Key_Control);
    EXPECT_EQ(folder.keyboard().recordingMessage(), u"Usa almeno uno tra ⌘ ⌥ ⌃"_s);
    press(other, Qt::CTRL | Qt::Key_A);
    EXPECT_EQ(folder.keyboard().recordingAction(), std::nullopt);
    EXPECT_EQ(folder.settings().shortcut(ShortcutAction::search)->displayString(), u"⌘A"_s);
    EXPECT_EQ(other.text(), u"test"_s);
    EXPECT_FALSE(other.hasSelectedText());
}

TEST_F(KeyMonitorTest, RecordingTakesKeysThatAreShortcutsOfMenus) {
    folder.keyboard().toggleRecording(ShortcutAction::togglePreview);
    press(window, Qt::CTRL | Qt::Key_N);
    EXPECT_EQ(folder.store().notes().size(), 3);
    EXPECT_EQ(folder.settings().shortcut(ShortcutAction::togglePreview)->displayString(), u"⌘N"_s);
    // From then on the dispatcher has them before the menu.
    press(window, Qt::CTRL | Qt::Key_N);
    EXPECT_EQ(folder.store().notes().size(), 3);
    EXPECT_TRUE(folder.store().selectedItem()->showsPreview());
}
