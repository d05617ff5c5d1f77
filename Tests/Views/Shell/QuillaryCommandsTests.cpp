#include "../NotesFolder.h"
#include "Quillary/Shell/MainWindow.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Text/TextStorage.h"

#include "Tests/State/FakeDesktop.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// A main window with its menus.
class QuillaryCommandsTest : public testing::Test {
protected:
    QuillaryCommandsTest() { AppActions::shared().desktop = &desktop; }

    ~QuillaryCommandsTest() override { AppActions::shared() = {}; }

    /// The menu of a title without its mnemonic, in the menu bar or in another menu; there must be one.
    QMenu* menu(const QString& title) {
        for (QMenu* const each : window.findChildren<QMenu*>()) {
            if (each->title().remove(u'&') == title) {
                return each;
            }
        }
        return nullptr;
    }

    static QAction* item(const QMenu* menu, const QString& text) {
        for (QAction* const action : menu->actions()) {
            if (action->text() == text) {
                return action;
            }
        }
        return nullptr;
    }

    /// Items as they stand, with their keys; submenus end with "▸", separators are "-".
    static QStringList items(const QMenu* menu) {
        QStringList texts;
        for (const QAction* const action : menu->actions()) {
            const QString keys = action->shortcut().toString(QKeySequence::PortableText);
            texts.append(action->isSeparator() ? u"-"_s
                                               : action->text() + (action->menu() == nullptr ? u""_s : u" ▸"_s) +
                                                     (keys.isEmpty() ? u""_s : u"  "_s + keys));
        }
        return texts;
    }

    void run(const QString& menuTitle, const QString& text) { item(menu(menuTitle), text)->trigger(); }

    test::FakeDesktop desktop;
    NotesFolder folder{{{u"a.md"_s, u"alfa"_s}, {u"b.md"_s, u"beta"_s}, {u"Lavoro/c.md"_s, u"gamma"_s}}};
    MainWindow window{folder.store(), folder.settings(), folder.find(), folder.keyboard(), folder.solo()};
};

} // namespace

TEST_F(QuillaryCommandsTest, StandInTheirOrderWithTheirKeys) {
    QStringList titles;
    for (const QAction* const action : window.findChild<QMenuBar*>()->actions()) {
        titles.append(action->text().remove(u'&'));
    }
    EXPECT_EQ(titles, (QStringList{u"File"_s, u"Modifica"_s, u"Vista"_s, u"Nota"_s, u"Finestra"_s}));
    EXPECT_EQ(items(menu(u"File"_s)),
              (QStringList{u"Nuova nota  Ctrl+N"_s, u"Nuova nota dagli appunti  Ctrl+Shift+N"_s,
                           u"Nuova cartella  Ctrl+Alt+N"_s, u"Importa file…  Ctrl+O"_s, u"-"_s, u"Salva  Ctrl+S"_s,
                           u"Salva come…  Ctrl+Shift+S"_s, u"Rinomina…  Ctrl+R"_s, u"Mostra nel Finder  Ctrl+Shift+R"_s,
                           u"Apri cartella delle note"_s, u"Sposta nel Cestino…  Ctrl+Shift+Backspace"_s, u"-"_s,
                           u"Chiudi finestra  Ctrl+W"_s, u"Esci da Quillary  Ctrl+Q"_s}));
    EXPECT_EQ(items(menu(u"Modifica"_s)),
              (QStringList{u"Annulla  Ctrl+Z"_s,
                           u"Ripristina  "_s + QKeySequence(QKeySequence::Redo).toString(QKeySequence::PortableText),
                           u"-"_s, u"Taglia  Ctrl+X"_s, u"Copia  Ctrl+C"_s, u"Incolla  Ctrl+V"_s,
                           u"Seleziona tutto  Ctrl+A"_s, u"-"_s, u"Trova ▸"_s, u"-"_s, u"Impostazioni…  Ctrl+,"_s}));
    EXPECT_EQ(items(menu(u"Trova"_s)),
              (QStringList{u"Trova…  Ctrl+F"_s, u"Trova e sostituisci…  Ctrl+Alt+F"_s,
                           u"Trova successivo (⌘G con la ricerca aperta)"_s, u"Trova precedente  Ctrl+Shift+G"_s,
                           u"Usa selezione per trovare  Ctrl+E"_s}));
    EXPECT_EQ(items(menu(u"Vista"_s)),
              (QStringList{u"Mostra / nascondi barra laterale  Meta+Ctrl+S"_s, u"-"_s, u"Ingrandisci testo  Ctrl++"_s,
                           u"Riduci testo  Ctrl+-"_s, u"Dimensione predefinita  Ctrl+0"_s, u"-"_s, u"Aspetto ▸"_s}));
    EXPECT_EQ(items(menu(u"Nota"_s)),
              (QStringList{u"Nota successiva  Ctrl+Down"_s, u"Nota precedente  Ctrl+Up"_s, u"Cerca note  Ctrl+K"_s,
                           u"Mostra / nascondi anteprima  Ctrl+Shift+P"_s, u"-"_s, u"Formato ▸"_s,
                           u"Formatta JSON  Ctrl+Alt+Shift+F"_s, u"Compatta JSON"_s, u"-"_s,
                           u"Confronta note selezionate  Ctrl+Shift+D"_s, u"Raggruppa in nuova cartella  Ctrl+G"_s,
                           u"Sposta in ▸"_s, u"Sposta nota in su  Ctrl+Alt+Up"_s,
                           u"Sposta nota in giù  Ctrl+Alt+Down"_s, u"-"_s, u"Invia a Solo…  Ctrl+Shift+Return"_s,
                           u"Copia contenuto della nota  Ctrl+Alt+C"_s, u"-"_s, u"Cartella ▸"_s}));
    EXPECT_EQ(items(menu(u"Formato"_s)),
              (QStringList{u"Testo  Meta+Ctrl+1"_s, u"Markdown  Meta+Ctrl+2"_s, u"JSON  Meta+Ctrl+3"_s,
                           u"CSV  Meta+Ctrl+4"_s, u"HTML  Meta+Ctrl+5"_s, u"CSS  Meta+Ctrl+6"_s,
                           u"JavaScript  Meta+Ctrl+7"_s, u"PHP  Meta+Ctrl+8"_s}));
    EXPECT_EQ(items(menu(u"Aspetto"_s)), (QStringList{u"Sistema"_s, u"Chiaro"_s, u"Scuro"_s}));
}

TEST_F(QuillaryCommandsTest, ShowAShortcutOfTheUsersAtOnce) {
    AppSettings& settings = folder.settings();
    const QAction* const search = item(menu(u"Nota"_s), u"Cerca note"_s);
    settings.setShortcut(KeyShortcut(38, KeyShortcut::Modifiers::command, u"j"_s), ShortcutAction::search);
    EXPECT_EQ(search->shortcut(), QKeySequence(u"Ctrl+J"_s));
    settings.setShortcut(std::nullopt, ShortcutAction::search);
    EXPECT_TRUE(search->shortcut().isEmpty());
    EXPECT_TRUE(search->isEnabled());
    settings.setShortcut(KeyShortcut(96, {}, {}), ShortcutAction::search);
    EXPECT_TRUE(search->shortcut().isEmpty());
    settings.resetShortcut(ShortcutAction::search);
    EXPECT_EQ(search->shortcut(), QKeySequence(u"Ctrl+K"_s));
}

TEST_F(QuillaryCommandsTest, MakeNotesBesideTheSelectedOne) {
    folder.store().setSelectedID(folder.note(u"c"_s)->id());
    run(u"File"_s, u"Nuova nota"_s);
    EXPECT_EQ(folder.store().selectedItem()->folder(), u"Lavoro"_s);
    folder.store().setSelectedID(std::nullopt);
    run(u"File"_s, u"Nuova nota"_s);
    EXPECT_EQ(folder.store().selectedItem()->folder(), std::nullopt);
    run(u"File"_s, u"Nuova cartella"_s);
    EXPECT_EQ(folder.store().folders().size(), 2);
}

TEST_F(QuillaryCommandsTest, OpenAndDriveTheFindBar) {
    FindController& find = folder.find();
    run(u"Trova"_s, u"Trova…"_s);
    EXPECT_TRUE(find.isVisible());
    EXPECT_FALSE(find.showsReplace());
    run(u"Trova"_s, u"Trova e sostituisci…"_s);
    EXPECT_TRUE(find.showsReplace());
    find.setQuery(u"a"_s);
    ASSERT_EQ(find.matchCount(), 2);
    run(u"Trova"_s, u"Trova successivo (⌘G con la ricerca aperta)"_s);
    EXPECT_EQ(find.currentIndex(), 1);
    run(u"Trova"_s, u"Trova precedente"_s);
    EXPECT_EQ(find.currentIndex(), 0);
    AppActions::shared().editor->replaceText({0, 0}, u"x"_s);
    run(u"Trova"_s, u"Usa selezione per trovare"_s);
    EXPECT_EQ(desktop.beeps, 1);
}

TEST_F(QuillaryCommandsTest, ActOnTheSelectedNoteAndDoNothingWithoutOne) {
    NotesStore& store = folder.store();
    store.setSelectedID(folder.note(u"a"_s)->id());
    run(u"File"_s, u"Mostra nel Finder"_s);
    EXPECT_EQ(desktop.revealed, QStringList{folder.path(u"a.md"_s)});
    run(u"File"_s, u"Apri cartella delle note"_s);
    EXPECT_EQ(desktop.opened, QStringList{folder.settings().notesDirectory().text()});
    const QSignalSpy renames(&store, &NotesStore::titleRenameTokenChanged);
    run(u"File"_s, u"Rinomina…"_s);
    EXPECT_EQ(renames.count(), 1);
    run(u"Formato"_s, u"JSON"_s);
    EXPECT_TRUE(QFile::exists(folder.path(u"a.json"_s)));
    run(u"File"_s, u"Sposta nel Cestino…"_s);
    EXPECT_EQ(store.pendingNoteDeletion(), QList<NoteID>{folder.note(u"a"_s)->id()});

    store.setSelectedID(std::nullopt);
    run(u"File"_s, u"Salva"_s);
    run(u"File"_s, u"Mostra nel Finder"_s);
    run(u"Formato"_s, u"CSS"_s);
    EXPECT_EQ(desktop.revealed.size(), 1);
    EXPECT_EQ(store.errorMessage(), std::nullopt);
}

TEST_F(QuillaryCommandsTest, ReachTheCommandsOnFiles) {
    NotesStore& store = folder.store();
    desktop.clipboard = u"{\"a\":1}"_s;
    run(u"File"_s, u"Nuova nota dagli appunti"_s);
    ASSERT_EQ(store.selectedItem()->format(), NoteFormat::json);
    const TextStorage& text = store.selectedItem()->document()->storage();
    run(u"Nota"_s, u"Formatta JSON"_s);
    EXPECT_EQ(text.text(), u"{\n  \"a\": 1\n}"_s);
    run(u"Nota"_s, u"Compatta JSON"_s);
    EXPECT_EQ(text.text(), u"{\"a\":1}"_s);
    run(u"File"_s, u"Importa file…"_s);
    run(u"File"_s, u"Salva come…"_s);
    EXPECT_EQ(desktop.panels.size(), 2);
}

TEST_F(QuillaryCommandsTest, PerformTheUsersActions) {
    NotesStore& store = folder.store();
    store.setSelectedID(folder.note(u"a"_s)->id());
    run(u"Nota"_s, u"Nota successiva"_s);
    EXPECT_EQ(store.selectedItem(), folder.note(u"b"_s));
    run(u"Nota"_s, u"Nota precedente"_s);
    EXPECT_EQ(store.selectedItem(), folder.note(u"a"_s));
    run(u"Nota"_s, u"Mostra / nascondi anteprima"_s);
    EXPECT_TRUE(store.selectedItem()->showsPreview());
    const QSignalSpy searches(&store, &NotesStore::searchFocusTokenChanged);
    run(u"Nota"_s, u"Cerca note"_s);
    EXPECT_EQ(searches.count(), 1);
}

TEST_F(QuillaryCommandsTest, ZoomByWholePointsWithinTheBounds) {
    AppSettings& settings = folder.settings();
    settings.setFontSize(27.4);
    run(u"Vista"_s, u"Ingrandisci testo"_s);
    EXPECT_EQ(settings.fontSize(), 28);
    run(u"Vista"_s, u"Ingrandisci testo"_s);
    EXPECT_EQ(settings.fontSize(), 28);
    run(u"Vista"_s, u"Dimensione predefinita"_s);
    EXPECT_EQ(settings.fontSize(), 13);
    settings.setFontSize(9);
    run(u"Vista"_s, u"Riduci testo"_s);
    EXPECT_EQ(settings.fontSize(), 9);
}

TEST_F(QuillaryCommandsTest, ChooseTheAppearanceAndMarkTheOneInUse) {
    run(u"Aspetto"_s, u"Scuro"_s);
    EXPECT_EQ(folder.settings().appearance(), AppAppearance::dark);
    folder.settings().setAppearance(AppAppearance::light);
    EXPECT_TRUE(item(menu(u"Aspetto"_s), u"Chiaro"_s)->isChecked());
    EXPECT_FALSE(item(menu(u"Aspetto"_s), u"Scuro"_s)->isChecked());
}

TEST_F(QuillaryCommandsTest, GroupTheSelectedNotesInANewFolder) {
    NotesStore& store = folder.store();
    store.setMultiSelection({folder.note(u"a"_s)->id(), folder.note(u"b"_s)->id()});
    run(u"Nota"_s, u"Raggruppa in nuova cartella"_s);
    EXPECT_EQ(folder.note(u"a"_s)->folder(), store.folders().constFirst());
    EXPECT_EQ(folder.note(u"b"_s)->folder(), store.folders().constFirst());
}

TEST_F(QuillaryCommandsTest, CompareTheSelectedNotes) {
    NotesStore& store = folder.store();
    run(u"Nota"_s, u"Confronta note selezionate"_s);
    EXPECT_FALSE(store.isShowingDiff());
    store.setMultiSelection({folder.note(u"a"_s)->id(), folder.note(u"b"_s)->id()});
    run(u"Nota"_s, u"Confronta note selezionate"_s);
    EXPECT_TRUE(store.isShowingDiff());
}

TEST_F(QuillaryCommandsTest, ShiftTheSelectedNoteAndCopyItsContent) {
    NotesStore& store = folder.store();
    const NoteItemPtr a = folder.note(u"a"_s);
    const NoteItemPtr b = folder.note(u"b"_s);
    store.setSelectedID(b->id());
    run(u"Nota"_s, u"Sposta nota in su"_s);
    EXPECT_EQ(store.notes(std::nullopt), (QList{b, a}));
    run(u"Nota"_s, u"Sposta nota in giù"_s);
    EXPECT_EQ(store.notes(std::nullopt), (QList{a, b}));
    run(u"Nota"_s, u"Copia contenuto della nota"_s);
    EXPECT_EQ(desktop.clipboard, u"beta"_s);
}

TEST_F(QuillaryCommandsTest, StayEnabledButForTwo) {
    const auto disabled = [](const QWidget& in) {
        QStringList texts;
        for (const QMenu* const each : in.findChildren<QMenu*>()) {
            for (const QAction* const action : each->actions()) {
                if (!action->isEnabled() && !action->isSeparator()) {
                    texts.append(action->text());
                }
            }
        }
        return texts;
    };
    folder.store().setSelectedID(std::nullopt);
    EXPECT_EQ(disabled(window), (QStringList{u"Invia a Solo…"_s, u"Cartella"_s}));
    folder.store().setSelectedID(folder.note(u"a"_s)->id());
    EXPECT_EQ(disabled(window), (QStringList{u"Invia a Solo…"_s, u"Cartella"_s})) << "Solo is not installed";

    SoloController installed(folder.settings(), SoloClient(u"/bin/true"_s, std::nullopt));
    MainWindow other(folder.store(), folder.settings(), folder.find(), folder.keyboard(), installed);
    EXPECT_EQ(disabled(other), QStringList{u"Cartella"_s});
    folder.store().setSelectedID(std::nullopt);
    EXPECT_EQ(disabled(other), (QStringList{u"Invia a Solo…"_s, u"Cartella"_s}));
    folder.store().setSelectedFolder(u"Lavoro"_s);
    EXPECT_EQ(disabled(other), QStringList{u"Invia a Solo…"_s});
}

TEST_F(QuillaryCommandsTest, MoveTheActionTargetsToAFolder) {
    NotesStore& store = folder.store();
    store.setMultiSelection({folder.note(u"a"_s)->id(), folder.note(u"b"_s)->id()});
    Q_EMIT menu(u"Sposta in"_s)->aboutToShow();
    run(u"Sposta in"_s, u"Lavoro"_s);
    EXPECT_EQ(folder.note(u"a"_s)->folder(), u"Lavoro"_s);
    EXPECT_EQ(folder.note(u"b"_s)->folder(), u"Lavoro"_s);
}

TEST_F(QuillaryCommandsTest, ActOnTheSelectedFolderWhileThereIsOne) {
    NotesStore& store = folder.store();
    const QMenu* const items = menu(u"Cartella"_s);
    EXPECT_FALSE(items->menuAction()->isEnabled());
    store.setSelectedFolder(u"Lavoro"_s);
    EXPECT_TRUE(items->menuAction()->isEnabled());
    Q_EMIT menu(u"Cartella"_s)->aboutToShow();
    run(u"Cartella"_s, u"Rinomina"_s);
    EXPECT_EQ(store.renamingFolder(), u"Lavoro"_s);
    store.setSelectedFolder(std::nullopt);
    EXPECT_FALSE(items->menuAction()->isEnabled());
}

TEST_F(QuillaryCommandsTest, ReadTheClipboardWhenTheWindowHasTheKeyboard) {
    std::function<void()> kept;
    AppActions::shared().isApplicationActive = [] { return false; };
    AppActions::shared().keepUntilActive = [&kept](const std::function<void()>& command) { kept = command; };
    const qsizetype before = folder.store().notes().size();
    run(u"File"_s, u"Nuova nota dagli appunti"_s);
    EXPECT_EQ(folder.store().notes().size(), before);
    ASSERT_TRUE(kept);
    desktop.clipboard = u"dagli appunti"_s;
    kept();
    EXPECT_EQ(folder.store().notes().size(), before + 1);
    EXPECT_EQ(folder.store().selectedItem()->document()->storage().text(), u"dagli appunti"_s);
}

TEST_F(QuillaryCommandsTest, LeaveNothingOfAMenuBehindThatOpensAnew) {
    folder.store().setSelectedFolder(u"Lavoro"_s);
    QMenu* const items = menu(u"Cartella"_s);
    for (int opening = 0; opening < 3; ++opening) {
        Q_EMIT items->aboutToShow();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(items->findChildren<QMenu*>().size(), 1);
    }
    folder.store().setSelectedFolder(std::nullopt);
    Q_EMIT items->aboutToShow();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(items->findChildren<QMenu*>().size(), 0);
}

TEST_F(QuillaryCommandsTest, AskForTheSettings) {
    const QSignalSpy requests(&window, &MainWindow::settingsRequested);
    run(u"Modifica"_s, u"Impostazioni…"_s);
    EXPECT_EQ(requests.count(), 1);
}

TEST_F(QuillaryCommandsTest, NoWidgetClaimsTheirKeys) {
    window.show();
    folder.find().show(true);
    // Editing is the widgets', and the user's own keys are the dispatcher's.
    const QStringList others{u"Annulla"_s,         u"Ripristina"_s,
                             u"Taglia"_s,          u"Copia"_s,
                             u"Incolla"_s,         u"Seleziona tutto"_s,
                             u"Nota successiva"_s, u"Nota precedente"_s,
                             u"Cerca note"_s,      u"Mostra / nascondi anteprima"_s};
    QList<QWidget*> widgets;
    for (QWidget* const each : window.findChildren<QWidget*>()) {
        if ((each->focusPolicy() & Qt::TabFocus) != 0) {
            widgets.append(each);
        }
    }
    ASSERT_GT(widgets.size(), 10);
    int keys = 0;
    for (const QAction* const action : window.findChildren<QAction*>()) {
        if (action->shortcut().isEmpty() || others.contains(action->text())) {
            continue;
        }
        ++keys;
        const QKeyCombination key = action->shortcut()[0];
        for (QWidget* const widget : std::as_const(widgets)) {
            QKeyEvent event(QEvent::ShortcutOverride, key.key(), key.keyboardModifiers());
            event.ignore();
            QCoreApplication::sendEvent(widget, &event);
            EXPECT_FALSE(event.isAccepted())
                << action->text().toStdString() << " in " << widget->metaObject()->className();
        }
    }
    EXPECT_GT(keys, 30);
}

TEST_F(QuillaryCommandsTest, EditInTheWidgetThatHasTheKeyboard) {
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    auto* const field = window.findChild<QLineEdit*>();
    field->setFocus();
    QTest::keyClicks(field, u"uno"_s);
    run(u"Modifica"_s, u"Seleziona tutto"_s);
    EXPECT_EQ(field->selectedText(), u"uno"_s);
    run(u"Modifica"_s, u"Taglia"_s);
    EXPECT_EQ(field->text(), QString());
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"uno"_s);
    run(u"Modifica"_s, u"Incolla"_s);
    run(u"Modifica"_s, u"Incolla"_s);
    EXPECT_EQ(field->text(), u"unouno"_s);
    run(u"Modifica"_s, u"Annulla"_s);
    EXPECT_NE(field->text(), u"unouno"_s);
    run(u"Modifica"_s, u"Ripristina"_s);
    EXPECT_EQ(field->text(), u"unouno"_s);
    EXPECT_EQ(desktop.beeps, 0);

    field->clearFocus();
    run(u"Modifica"_s, u"Incolla"_s);
    EXPECT_EQ(desktop.beeps, 1);
}

TEST_F(QuillaryCommandsTest, EditingBeepsOnceWhereTheWidgetHasNoUseForIt) {
    QWidget other(&window);
    other.setFocusPolicy(Qt::StrongFocus);
    other.show();
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    other.setFocus();
    ASSERT_TRUE(other.hasFocus());
    // The key finds the command in the menu, and the command must not find itself there again.
    QTest::keyClick(&other, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(desktop.beeps, 1);
}
