#include "Quillary/MenuBarExtra/MenuBarContent.h"

#include "../NotesFolder.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Text/TextStorage.h"

#include "Tests/State/FakeDesktop.h"

#include <QAction>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

class MenuBarContentTest : public testing::Test {
protected:
    MenuBarContentTest() {
        AppActions& actions = AppActions::shared();
        actions.desktop = &desktop;
        // What a command does comes after the window, which says where it was by then.
        actions.openMainWindow = [this] {
            ++openings;
            notesAtOpening = folder.store().notes().size();
        };
    }

    ~MenuBarContentTest() override { AppActions::shared() = {}; }

    /// The items on show, with their keys; separators are "-".
    QStringList items() {
        Q_EMIT content.menu()->aboutToShow();
        QStringList texts;
        for (const QAction* const action : content.menu()->actions()) {
            const QString keys = action->shortcut().toString(QKeySequence::PortableText);
            if (action->isVisible()) {
                texts.append(action->isSeparator() ? u"-"_s
                                                   : action->text() + (keys.isEmpty() ? u""_s : u"  "_s + keys));
            }
        }
        return texts;
    }

    QStringList recent() {
        const QStringList all = items();
        return all.mid(all.indexOf(u"Recenti"_s) + 1, all.lastIndexOf(u"-"_s) - all.indexOf(u"Recenti"_s) - 1);
    }

    QAction* item(const QString& text) {
        const QList<QAction*> actions = content.menu()->actions();
        const auto found = std::ranges::find(actions, text, [](const QAction* action) { return action->text(); });
        return found == actions.end() ? nullptr : *found;
    }

    test::FakeDesktop desktop;
    NotesFolder folder{{{u"a.md"_s, u"alfa"_s}, {u"b.md"_s, u"beta"_s}, {u"Lavoro/c.md"_s, u"gamma"_s}}};
    MenuBarContent content{&folder.store(), &folder.settings()};
    int openings = 0;
    qsizetype notesAtOpening = 0;
};

/// Gives notes dates one second apart, the first one the latest.
void date(NotesFolder& folder, const QStringList& titles) {
    Moment at = Moment{} + std::chrono::hours(24);
    for (const QString& title : titles) {
        folder.note(title)->setModified(at -= std::chrono::seconds(1));
    }
}

} // namespace

TEST_F(MenuBarContentTest, StandsInItsOrderWithTheHotKey) {
    date(folder, {u"b"_s, u"c"_s, u"a"_s});
    EXPECT_EQ(items(), (QStringList{u"Mostra Quillary  Meta+Alt+N"_s, u"-"_s, u"Nuova nota"_s,
                                    u"Nuova nota dagli appunti"_s, u"-"_s, u"Recenti"_s, u"b"_s, u"c  —  Lavoro"_s,
                                    u"a"_s, u"-"_s, u"Impostazioni…"_s, u"Esci da Quillary"_s}));
    EXPECT_FALSE(item(u"Recenti"_s)->isEnabled());
}

TEST_F(MenuBarContentTest, TellsTheHotKeyAsItIs) {
    const QAction* const show = item(u"Mostra Quillary"_s);
    folder.settings().setShortcut(KeyShortcut(38, KeyShortcut::Modifiers::command, u"j"_s), ShortcutAction::summon);
    EXPECT_EQ(show->shortcut(), QKeySequence(u"Ctrl+J"_s));
    folder.settings().setShortcut(std::nullopt, ShortcutAction::summon);
    EXPECT_TRUE(show->shortcut().isEmpty());
    EXPECT_TRUE(show->isEnabled());
}

TEST_F(MenuBarContentTest, ShowsTheWindowBeforeEachCommand) {
    NotesStore& store = folder.store();
    item(u"Mostra Quillary"_s)->trigger();
    EXPECT_EQ(openings, 1);

    store.setSelectedID(folder.note(u"c"_s)->id());
    item(u"Nuova nota"_s)->trigger();
    EXPECT_EQ(openings, 2);
    EXPECT_EQ(notesAtOpening, 3);
    EXPECT_EQ(store.selectedItem()->folder(), u"Lavoro"_s);
    EXPECT_EQ(store.selectedItem()->document()->storage().text(), QString());

    store.setSelectedID(std::nullopt);
    item(u"Nuova nota"_s)->trigger();
    EXPECT_EQ(store.selectedItem()->folder(), std::nullopt);

    desktop.clipboard = u"dagli appunti"_s;
    item(u"Nuova nota dagli appunti"_s)->trigger();
    EXPECT_EQ(openings, 4);
    EXPECT_EQ(notesAtOpening, 5);
    EXPECT_EQ(store.selectedItem()->document()->storage().text(), u"dagli appunti"_s);
}

TEST_F(MenuBarContentTest, ReadsTheClipboardWhenTheWindowHasTheKeyboard) {
    QList<std::function<void()>> kept;
    AppActions& actions = AppActions::shared();
    actions.isApplicationActive = [] { return false; };
    actions.keepUntilActive = [&kept](const std::function<void()>& command) { kept.append(command); };
    item(u"Nuova nota dagli appunti"_s)->trigger();
    EXPECT_EQ(openings, 1);
    EXPECT_EQ(folder.store().notes().size(), 3);

    desktop.clipboard = u"dagli appunti"_s;
    ASSERT_EQ(kept.size(), 1);
    kept.constFirst()();
    EXPECT_EQ(folder.store().selectedItem()->document()->storage().text(), u"dagli appunti"_s);

    // What needs no clipboard is there at once.
    item(u"Nuova nota"_s)->trigger();
    EXPECT_EQ(folder.store().notes().size(), 5);
    EXPECT_EQ(kept.size(), 1);
}

TEST_F(MenuBarContentTest, RevealsARecentNoteAsText) {
    NotesStore& store = folder.store();
    store.setSelectedID(folder.note(u"a"_s)->id());
    store.setSearchQuery(u"alfa"_s);
    store.toggleCollapsed(u"Lavoro"_s);
    item(u"c  —  Lavoro"_s)->trigger();
    EXPECT_EQ(openings, 1);
    EXPECT_EQ(store.selectedItem(), folder.note(u"c"_s));
    EXPECT_FALSE(store.selectedItem()->showsPreview());
}

TEST_F(MenuBarContentTest, FollowsChangesWhileItIsOnScreen) {
    date(folder, {u"a"_s, u"b"_s, u"c"_s});
    ASSERT_EQ(recent(), (QStringList{u"a"_s, u"b"_s, u"c  —  Lavoro"_s}));
    folder.store().rename(*folder.note(u"b"_s), u"altro"_s);
    // No panel asked this time.
    EXPECT_TRUE(QTest::qWaitFor([&] { return item(u"altro"_s) != nullptr; }));
    folder.note(u"a"_s)->setModified(Moment{});
    EXPECT_TRUE(QTest::qWaitFor([&] { return content.menu()->actions().indexOf(item(u"altro"_s)) == 6; }));
}

TEST_F(MenuBarContentTest, HasNoItemForWhatIsNoNoteAnyMore) {
    QAction* const first = item(u"a"_s);
    folder.store().setSearchQuery(u"zzz"_s);
    EXPECT_EQ(recent().size(), 3);
    const NoteItemPtr gone = folder.note(u"a"_s);
    ASSERT_TRUE(QFile::remove(folder.path(u"a.md"_s)));
    folder.store().refreshFromDisk();
    ASSERT_EQ(folder.note(u"a"_s), nullptr);
    // The panel may still show what was there.
    first->trigger();
    EXPECT_NE(folder.store().selectedItem(), gone);
    EXPECT_EQ(recent().size(), 2);
}

TEST_F(MenuBarContentTest, ShowsTitlesLetterByLetter) {
    NotesStore& store = folder.store();
    const std::pair<QString, QString> titles[] = {
        {u"nota_di_oggi"_s, u"nota__di__oggi"_s},
        {u"pane & burro & sale"_s, u"pane && burro & sale"_s},
        {u"caff"_s + QChar(0xDCE8), u"caff\ufffd"_s},
    };
    for (const auto& [title, expected] : titles) {
        ASSERT_NE(store.makeNote(title), nullptr);
        EXPECT_TRUE(recent().contains(expected)) << recent().join(u", "_s).toStdString();
    }
}

TEST_F(MenuBarContentTest, AsksForTheSettings) {
    const QSignalSpy requests(&content, &MenuBarContent::settingsRequested);
    item(u"Impostazioni…"_s)->trigger();
    EXPECT_EQ(requests.count(), 1);
    EXPECT_EQ(openings, 0);
}

TEST(MenuBarContentRecent, AreTheEightLatestOfAllAndKeepTheirOrderWhenDatesTie) {
    QList<std::pair<QString, QString>> files;
    for (const QChar name : u"abcdefghij"_s) {
        files.append({name + u".md"_s, u"testo"_s});
    }
    NotesFolder folder(files);
    const Moment day = Moment{} + std::chrono::hours(24);
    for (const NoteItemPtr& note : folder.store().notes()) {
        note->setModified(day);
    }
    folder.note(u"j"_s)->setModified(day + std::chrono::nanoseconds(1));
    folder.note(u"a"_s)->setModified(day - std::chrono::nanoseconds(1));
    MenuBarContent content(&folder.store(), &folder.settings());

    QStringList expected{u"j"_s};
    for (const NoteItemPtr& note : folder.store().notes()) {
        if (note->title() != u"j"_s && note->title() != u"a"_s) {
            expected.append(note->title());
        }
    }
    QStringList shown;
    for (const QAction* const action : content.menu()->actions().mid(6, MenuBarContent::recentCount)) {
        shown.append(action->text());
    }
    EXPECT_EQ(shown, expected.first(8));
}

TEST(MenuBarContentRecent, AreNoneInAnEmptyFolder) {
    NotesFolder folder({});
    MenuBarContent content(&folder.store(), &folder.settings());
    for (const QAction* const action : content.menu()->actions().mid(6, MenuBarContent::recentCount)) {
        EXPECT_FALSE(action->isVisible());
    }
}
