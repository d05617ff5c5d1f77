#include "Quillary/Keyboard/KeyboardController.h"

#include "FakeHotKeyBackend.h"
#include "Quillary/Find/FindController.h"
#include "Quillary/State/AppActions.h"

#include "Tests/State/NotesStoreTest.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <functional>

namespace quillary::test {

using namespace Qt::StringLiterals;

namespace {

using Modifiers = KeyShortcut::Modifiers;

const KeyShortcut commandJ(38, Modifiers::command, u"j"_s);

class KeyboardControllerTest : public NotesStoreTest {
protected:
    KeyboardControllerTest() {
        directory.write(u"a.md"_s, "alfa");
        directory.write(u"b.md"_s, "beta");
        directory.makeFolder(u"Lavoro"_s);
        directory.write(u"Lavoro/c.md"_s, "gamma");
        openStore();
        find = std::make_unique<FindController>(*store);
        auto backend = std::make_unique<FakeHotKeyBackend>(&hotKey);
        fakeBackend = backend.get();
        keyboard = std::make_unique<KeyboardController>(store.get(), &settings, find.get(), std::move(backend));
    }

    ~KeyboardControllerTest() override { AppActions::shared() = {}; }

    /// Presses a key in the main window.
    bool press(const KeyShortcut& shortcut, bool isInEditableText = false) {
        const KeyPress press{shortcut, true, isInEditableText};
        const bool expected = keyboard->wouldConsume(press);
        const bool consumed = keyboard->handle(press);
        EXPECT_EQ(consumed, expected);
        return consumed;
    }

    bool pressElsewhere(const KeyShortcut& shortcut) { return keyboard->handle({shortcut, false, false}); }

    void selectTwo() { store->setMultiSelection({note(u"a"_s)->id(), note(u"b"_s)->id()}); }

    HotKeyRecord hotKey;
    std::unique_ptr<FindController> find;
    FakeHotKeyBackend* fakeBackend = nullptr;
    std::unique_ptr<KeyboardController> keyboard;
};

const KeyShortcut deleteKey(KeyCode::deleteKey, {}, {});
const KeyShortcut forwardDelete(KeyCode::forwardDelete, {}, {});
const KeyShortcut escapeKey(KeyCode::escape, {}, {});
const KeyShortcut commandG(KeyCode::g, Modifiers::command, u"g"_s);

KeyShortcut command(quint16 keyCode, const QString& key) {
    return {keyCode, Modifiers::command, key};
}

} // namespace

TEST_F(KeyboardControllerTest, AnswersNoKeyBeforeItStarts) {
    selectTwo();
    EXPECT_FALSE(press(deleteKey));
    keyboard->start();
    EXPECT_TRUE(press(deleteKey));
}

TEST_F(KeyboardControllerTest, AnswersNoKeyOfOtherWindows) {
    keyboard->start();
    selectTwo();
    EXPECT_FALSE(pressElsewhere(deleteKey));
    EXPECT_FALSE(pressElsewhere(escapeKey));
    EXPECT_FALSE(pressElsewhere(commandG));
    EXPECT_FALSE(pressElsewhere(defaultShortcut(ShortcutAction::search)));
    EXPECT_FALSE(pressElsewhere(command(18, u"1"_s)));
}

TEST_F(KeyboardControllerTest, DeletingAsksAboutSeveralNotesAlsoFromTheEditor) {
    keyboard->start();
    for (const KeyShortcut& key : {deleteKey, forwardDelete}) {
        for (const bool isInEditableText : {false, true}) {
            store->setPendingNoteDeletion({});
            selectTwo();
            EXPECT_TRUE(press(key, isInEditableText));
            EXPECT_EQ(store->pendingNoteDeletion().size(), 2);
        }
    }
}

TEST_F(KeyboardControllerTest, DeletingReachesTheTextWithOneSelectedNote) {
    keyboard->start();
    select(u"a"_s);
    EXPECT_FALSE(press(deleteKey, true));
    EXPECT_FALSE(press(deleteKey, false));
    EXPECT_TRUE(store->pendingNoteDeletion().isEmpty());
}

TEST_F(KeyboardControllerTest, DeletingAsksAboutASelectedFolderOutsideOfTexts) {
    keyboard->start();
    for (const KeyShortcut& key : {deleteKey, forwardDelete}) {
        store->setPendingFolderDeletion(std::nullopt);
        store->setSelectedFolder(u"Lavoro"_s);
        EXPECT_FALSE(press(key, true));
        EXPECT_EQ(store->pendingFolderDeletion(), std::nullopt);
        EXPECT_TRUE(press(key, false));
        EXPECT_EQ(store->pendingFolderDeletion(), u"Lavoro"_s);
    }
}

TEST_F(KeyboardControllerTest, EscapeLeavesAFolderBeforeAMultipleSelection) {
    keyboard->start();
    selectTwo();
    store->setSelectedFolder(u"Lavoro"_s);
    EXPECT_TRUE(press(escapeKey, false));
    EXPECT_EQ(store->selectedFolder(), std::nullopt);
    EXPECT_EQ(store->multiSelection().size(), 2);
    EXPECT_TRUE(press(escapeKey, false));
    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_FALSE(press(escapeKey, false));
}

TEST_F(KeyboardControllerTest, EscapeInTheEditorEndsAMultipleSelectionAlsoWithAFolder) {
    keyboard->start();
    selectTwo();
    store->setSelectedFolder(u"Lavoro"_s);
    EXPECT_TRUE(press(escapeKey, true));
    EXPECT_EQ(store->selectedFolder(), u"Lavoro"_s);
    EXPECT_TRUE(store->multiSelection().isEmpty());
    EXPECT_FALSE(press(escapeKey, true));
}

TEST_F(KeyboardControllerTest, PlainKeysWithModifiersAreOthers) {
    keyboard->start();
    selectTwo();
    store->setSelectedFolder(u"Lavoro"_s);
    EXPECT_FALSE(press(KeyShortcut(KeyCode::deleteKey, Modifiers::shift, {})));
    EXPECT_FALSE(press(KeyShortcut(KeyCode::escape, Modifiers::option, {})));
    EXPECT_FALSE(press(KeyShortcut(0, {}, u"a"_s)));
    EXPECT_EQ(store->selectedFolder(), u"Lavoro"_s);
}

TEST_F(KeyboardControllerTest, CommandGGroupsWhileTheFindBarIsClosed) {
    keyboard->start();
    selectTwo();
    EXPECT_TRUE(press(commandG, true));
    EXPECT_EQ(store->folders().size(), 2);
    EXPECT_EQ(note(u"a"_s)->folder(), store->folders().constFirst());
    EXPECT_EQ(note(u"b"_s)->folder(), store->folders().constFirst());
}

TEST_F(KeyboardControllerTest, CommandGBeepsWithNothingToGroup) {
    keyboard->start();
    store->setSelectedID(std::nullopt);
    EXPECT_TRUE(press(commandG));
    EXPECT_EQ(desktop.beeps, 1);
    EXPECT_EQ(store->folders().size(), 1);
}

TEST_F(KeyboardControllerTest, CommandGStepsWhileTheFindBarIsOpenWhoeverElseHasTheKeys) {
    keyboard->start();
    settings.setShortcut(commandG, ShortcutAction::nextNote);
    find->show(false);
    const NoteItemPtr before = store->selectedItem();
    EXPECT_TRUE(press(commandG));
    // There is no match to step to.
    EXPECT_EQ(desktop.beeps, 1);
    EXPECT_EQ(store->folders().size(), 1);
    EXPECT_EQ(store->selectedItem(), before);
}

TEST_F(KeyboardControllerTest, PerformsTheUsersShortcuts) {
    keyboard->start();
    select(u"a"_s);
    EXPECT_TRUE(press(defaultShortcut(ShortcutAction::nextNote), true));
    EXPECT_EQ(store->selectedItem(), note(u"b"_s));
    EXPECT_TRUE(press(defaultShortcut(ShortcutAction::previousNote), true));
    EXPECT_EQ(store->selectedItem(), note(u"a"_s));
    const SignalCount searches(store, &NotesStore::searchFocusTokenChanged);
    EXPECT_TRUE(press(defaultShortcut(ShortcutAction::search)));
    EXPECT_EQ(searches.count(), 1);
    EXPECT_TRUE(press(defaultShortcut(ShortcutAction::togglePreview)));
    EXPECT_TRUE(note(u"a"_s)->showsPreview());

    settings.setShortcut(commandJ, ShortcutAction::search);
    EXPECT_FALSE(press(defaultShortcut(ShortcutAction::search)));
    EXPECT_TRUE(press(commandJ));
    EXPECT_EQ(searches.count(), 2);
    settings.setShortcut(std::nullopt, ShortcutAction::search);
    EXPECT_FALSE(press(commandJ));
}

TEST_F(KeyboardControllerTest, AChosenShortcutGoesBeforeAFixedOne) {
    keyboard->start();
    const SignalCount searches(store, &NotesStore::searchFocusTokenChanged);
    settings.setShortcut(command(1, u"s"_s), ShortcutAction::search);
    EXPECT_TRUE(press(command(1, u"s"_s)));
    EXPECT_EQ(searches.count(), 1);
}

TEST_F(KeyboardControllerTest, NeverSummonsByItself) {
    keyboard->start();
    EXPECT_FALSE(press(defaultShortcut(ShortcutAction::summon)));
    select(u"b"_s);
    settings.setShortcut(command(18, u"1"_s), ShortcutAction::summon);
    EXPECT_TRUE(press(command(18, u"1"_s)));
    EXPECT_EQ(store->selectedItem(), store->visibleNotes().constFirst());
}

TEST_F(KeyboardControllerTest, DigitsAreThoseThatAKeyGives) {
    keyboard->start();
    const QList<NoteItemPtr> visible = store->visibleNotes();
    ASSERT_EQ(visible.size(), 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(press(command(200, QString::number(i + 1)), true));
        EXPECT_EQ(store->selectedItem(), visible[i]);
    }
    EXPECT_TRUE(press(command(25, u"9"_s)));
    EXPECT_EQ(store->selectedItem(), visible[2]);
    for (const QString& key : {u"0"_s, u"&"_s, u"10"_s, u""_s, u"\u0661"_s}) {
        EXPECT_FALSE(press(command(18, key))) << key.toStdString();
    }
    EXPECT_FALSE(press(KeyShortcut(18, Modifiers::command | Modifiers::shift, u"1"_s)));
    EXPECT_FALSE(press(KeyShortcut(18, {}, u"1"_s)));
}

TEST_F(KeyboardControllerTest, CommandEqualsZoomsIn) {
    keyboard->start();
    settings.setFontSize(13.4);
    EXPECT_TRUE(press(command(24, u"="_s)));
    EXPECT_EQ(settings.fontSize(), 14);
    settings.setFontSize(28);
    EXPECT_TRUE(press(command(24, u"="_s)));
    EXPECT_EQ(settings.fontSize(), 28);
    EXPECT_FALSE(press(KeyShortcut(24, Modifiers::command | Modifiers::option, u"="_s)));
}

TEST_F(KeyboardControllerTest, RegistersTheHotKeyAtTheStartAndAfterEachChange) {
    EXPECT_EQ(hotKey.held, std::nullopt);
    keyboard->start();
    EXPECT_EQ(hotKey.held, defaultShortcut(ShortcutAction::summon));
    settings.setShortcut(commandJ, ShortcutAction::summon);
    EXPECT_EQ(hotKey.held, commandJ);
    settings.setShortcut(std::nullopt, ShortcutAction::summon);
    EXPECT_EQ(hotKey.held, std::nullopt);
    EXPECT_FALSE(keyboard->globalHotKeyFailed());
    settings.resetShortcut(ShortcutAction::summon);
    EXPECT_EQ(hotKey.held, defaultShortcut(ShortcutAction::summon));
    const int grabs = hotKey.grabs;
    keyboard->start();
    EXPECT_EQ(hotKey.grabs, grabs);
}

TEST_F(KeyboardControllerTest, TellsOfARefusedHotKeyUntilTheNextSuccess) {
    const QSignalSpy changes(keyboard.get(), &KeyboardController::globalHotKeyFailedChanged);
    hotKey.refuses = true;
    keyboard->start();
    EXPECT_TRUE(keyboard->globalHotKeyFailed());
    keyboard->registerGlobalHotKey();
    EXPECT_EQ(changes.count(), 1);
    hotKey.refuses = false;
    settings.setShortcut(commandJ, ShortcutAction::summon);
    EXPECT_FALSE(keyboard->globalHotKeyFailed());
    EXPECT_EQ(changes.count(), 2);

    Q_EMIT fakeBackend->refused();
    EXPECT_TRUE(keyboard->globalHotKeyFailed());
}

TEST_F(KeyboardControllerTest, FailsWhereThereIsNoHotKeyAtAll) {
    KeyboardController without(store.get(), &settings, find.get(), nullptr);
    without.start();
    EXPECT_TRUE(without.globalHotKeyFailed());
    settings.setShortcut(std::nullopt, ShortcutAction::summon);
    EXPECT_FALSE(without.globalHotKeyFailed());
}

TEST_F(KeyboardControllerTest, TheHotKeyTogglesTheMainWindow) {
    int openings = 0;
    AppActions::shared().openMainWindow = [&] { ++openings; };
    keyboard->start();
    Q_EMIT fakeBackend->pressed();
    EXPECT_EQ(openings, 1);
    keyboard->perform(ShortcutAction::summon);
    EXPECT_EQ(openings, 2);
    keyboard->toggleRecording(ShortcutAction::search);
    Q_EMIT fakeBackend->pressed();
    EXPECT_EQ(openings, 2);
}

TEST_F(KeyboardControllerTest, RecordsInAnyWindowWhileTheHotKeyRests) {
    keyboard->start();
    const QSignalSpy changes(keyboard.get(), &KeyboardController::recordingActionChanged);
    keyboard->toggleRecording(ShortcutAction::summon);
    EXPECT_EQ(keyboard->recordingAction(), ShortcutAction::summon);
    EXPECT_EQ(hotKey.held, std::nullopt);
    EXPECT_TRUE(pressElsewhere(commandJ));
    EXPECT_EQ(keyboard->recordingAction(), std::nullopt);
    EXPECT_EQ(settings.shortcut(ShortcutAction::summon), commandJ);
    EXPECT_EQ(hotKey.held, commandJ);
    EXPECT_EQ(changes.count(), 2);
}

TEST_F(KeyboardControllerTest, RecordsTheKeysThatTheActionHasAndItsDefault) {
    keyboard->start();
    keyboard->toggleRecording(ShortcutAction::search);
    EXPECT_TRUE(pressElsewhere(defaultShortcut(ShortcutAction::search)));
    EXPECT_EQ(keyboard->recordingAction(), std::nullopt);
    EXPECT_TRUE(settings.isDefault(ShortcutAction::search));
}

TEST_F(KeyboardControllerTest, TogglingCancelsOrGoesOverToAnotherAction) {
    keyboard->start();
    keyboard->toggleRecording(ShortcutAction::search);
    EXPECT_TRUE(pressElsewhere(KeyShortcut(0, Modifiers::shift, u"a"_s)));
    EXPECT_NE(keyboard->recordingMessage(), std::nullopt);
    keyboard->toggleRecording(ShortcutAction::nextNote);
    EXPECT_EQ(keyboard->recordingAction(), ShortcutAction::nextNote);
    EXPECT_EQ(keyboard->recordingMessage(), std::nullopt);
    EXPECT_EQ(hotKey.held, std::nullopt);
    keyboard->toggleRecording(ShortcutAction::nextNote);
    EXPECT_EQ(keyboard->recordingAction(), std::nullopt);
    EXPECT_EQ(hotKey.held, defaultShortcut(ShortcutAction::summon));

    keyboard->toggleRecording(ShortcutAction::search);
    keyboard->cancelRecording();
    EXPECT_EQ(keyboard->recordingAction(), std::nullopt);
    const int grabs = hotKey.grabs;
    keyboard->cancelRecording();
    EXPECT_EQ(hotKey.grabs, grabs);
}

TEST_F(KeyboardControllerTest, RecordingEndsWithEscapeAndTurnsOffWithDelete) {
    keyboard->start();
    keyboard->toggleRecording(ShortcutAction::search);
    EXPECT_TRUE(pressElsewhere(escapeKey));
    EXPECT_EQ(keyboard->recordingAction(), std::nullopt);
    EXPECT_TRUE(settings.isDefault(ShortcutAction::search));

    keyboard->toggleRecording(ShortcutAction::summon);
    EXPECT_TRUE(pressElsewhere(deleteKey));
    EXPECT_EQ(keyboard->recordingAction(), std::nullopt);
    EXPECT_EQ(settings.shortcut(ShortcutAction::summon), std::nullopt);
    EXPECT_EQ(hotKey.held, std::nullopt);
    EXPECT_FALSE(keyboard->globalHotKeyFailed());
}

TEST_F(KeyboardControllerTest, DeleteAndEscapeWithModifiersAreRecordedAsAnyKey) {
    keyboard->start();
    for (const quint16 key : {KeyCode::deleteKey, KeyCode::escape}) {
        const KeyShortcut shortcut(key, Modifiers::command, {});
        keyboard->toggleRecording(ShortcutAction::search);
        EXPECT_TRUE(pressElsewhere(shortcut));
        EXPECT_EQ(settings.shortcut(ShortcutAction::search), shortcut);
    }
}

TEST_F(KeyboardControllerTest, RecordingRefusesOrdinaryTyping) {
    keyboard->start();
    keyboard->toggleRecording(ShortcutAction::search);
    const KeyShortcut refusedKeys[] = {
        {0, Modifiers::shift, u"a"_s}, {0, {}, u"a"_s}, {KeyCode::forwardDelete, {}, {}}, {KeyCode::tab, {}, {}}};
    for (const KeyShortcut& shortcut : refusedKeys) {
        EXPECT_TRUE(pressElsewhere(shortcut));
        EXPECT_EQ(keyboard->recordingMessage(), u"Usa almeno uno tra ⌘ ⌥ ⌃"_s);
    }
    EXPECT_EQ(desktop.beeps, 4);
    EXPECT_EQ(keyboard->recordingAction(), ShortcutAction::search);
    const KeyShortcut f5(96, {}, {});
    EXPECT_TRUE(pressElsewhere(f5));
    EXPECT_EQ(settings.shortcut(ShortcutAction::search), f5);
    EXPECT_EQ(keyboard->recordingMessage(), std::nullopt);
}

TEST_F(KeyboardControllerTest, RecordingRefusesWhatAnotherActionHas) {
    keyboard->start();
    keyboard->toggleRecording(ShortcutAction::togglePreview);
    EXPECT_TRUE(pressElsewhere(defaultShortcut(ShortcutAction::search)));
    EXPECT_EQ(keyboard->recordingMessage(), u"Già usata da «Cerca note»"_s);
    EXPECT_EQ(desktop.beeps, 1);
    EXPECT_EQ(keyboard->recordingAction(), ShortcutAction::togglePreview);
    EXPECT_TRUE(settings.isDefault(ShortcutAction::togglePreview));
}

TEST_F(KeyboardControllerTest, RecordingOverlooksAKeyThatIsHeldDown) {
    keyboard->start();
    keyboard->toggleRecording(ShortcutAction::search);
    EXPECT_TRUE(keyboard->handle({commandJ, false, false, true}));
    EXPECT_EQ(keyboard->recordingAction(), ShortcutAction::search);
}

} // namespace quillary::test
