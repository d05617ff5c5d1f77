#include "Quillary/Shell/QuillaryCommands.h"

#include "Quillary/Find/FindController.h"
#include "Quillary/Keyboard/KeyboardController.h"
#include "Quillary/Keyboard/MenuShortcut.h"
#include "Quillary/Shell/MainWindow.h"
#include "Quillary/Shell/StandardEditing.h"
#include "Quillary/Sidebar/FolderMenuItems.h"
#include "Quillary/Sidebar/MoveToFolderMenuItems.h"
#include "Quillary/Solo/SoloController.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/Theme/Symbol.h"

#include <QAction>
#include <QActionGroup>
#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>

namespace quillary {

QuillaryCommands::QuillaryCommands(NotesStore* store, AppSettings* settings, FindController* find,
                                   KeyboardController* keyboard, SoloController* solo, MainWindow* window)
    : QObject(window),
      m_store(*store),
      m_settings(*settings),
      m_find(*find),
      m_keyboard(*keyboard),
      m_solo(*solo),
      m_window(*window),
      m_menuBar(new QMenuBar(window)) {
    addFileMenu();
    addEditMenu();
    addViewMenu();
    addNoteMenu();
    addWindowMenu();
    connect(settings, &AppSettings::shortcutsChanged, this, &QuillaryCommands::updateShortcuts);
    updateShortcuts();
}

QMenu& QuillaryCommands::addMenu(const QString& title) {
    return *m_menuBar->addMenu(title);
}

QAction* QuillaryCommands::add(QMenu& menu, const QString& text, const QKeySequence& keys, const Command& command) {
    QAction* const action = menu.addAction(text);
    action->setShortcut(keys);
    connect(action, &QAction::triggered, this, command);
    return action;
}

void QuillaryCommands::addStandard(QMenu& menu, const QString& text, QKeySequence::StandardKey key) {
    add(menu, text, key, [key] { StandardEditing::perform(key); });
}

void QuillaryCommands::addCustom(QMenu& menu, ShortcutAction action) {
    m_customActions.insert(action, add(menu, displayName(action), {}, [this, action] { m_keyboard.perform(action); }));
}

void QuillaryCommands::addFileMenu() {
    QMenu& menu = addMenu(tr("&File"));
    m_newNote = add(menu, tr("Nuova nota"), Qt::CTRL | Qt::Key_N, [this] { m_store.makeNoteBesideSelected(); });
    m_newNote->setToolTip(tr("Nuova nota (⌘N)"));
    m_newNote->setIcon(symbolIcon(Symbol::newNote));
    m_newNote->setIconVisibleInMenu(false);
    add(menu, tr("Nuova nota dagli appunti"), Qt::SHIFT | Qt::CTRL | Qt::Key_N,
        // The menu may be shown by a panel, which has the keyboard then.
        [this] { AppActions::shared().runWhenActive([this] { m_store.createNoteFromClipboard(); }); });
    add(menu, tr("Nuova cartella"), Qt::ALT | Qt::CTRL | Qt::Key_N, [this] { m_store.createFolder({}); });
    add(menu, tr("Importa file…"), Qt::CTRL | Qt::Key_O, [this] { m_store.importFiles(); });
    menu.addSeparator();
    add(menu, tr("Salva"), Qt::CTRL | Qt::Key_S,
        [this] { withSelectedNote([this](NoteItem& note) { m_store.save(note); }); });
    add(menu, tr("Salva come…"), Qt::SHIFT | Qt::CTRL | Qt::Key_S, [this] { m_store.saveSelectedAs(); });
    add(menu, tr("Rinomina…"), Qt::CTRL | Qt::Key_R, [this] { m_store.raiseTitleRenameToken(); });
    add(menu, tr("Mostra nel Finder"), Qt::SHIFT | Qt::CTRL | Qt::Key_R, [this] {
        withSelectedNote([](const NoteItem& note) {
            if (Desktop* const desktop = AppActions::shared().desktop) {
                desktop->reveal(note.url());
            }
        });
    });
    add(menu, tr("Apri cartella delle note"), {}, [this] {
        if (Desktop* const desktop = AppActions::shared().desktop) {
            desktop->open(m_settings.notesDirectory());
        }
    });
    add(menu, tr("Sposta nel Cestino…"), Qt::SHIFT | Qt::CTRL | Qt::Key_Backspace, [this] { m_store.requestTrash(); });
    menu.addSeparator();
    add(menu, tr("Chiudi finestra"), Qt::CTRL | Qt::Key_W, [this] { m_window.close(); });
    add(menu, tr("Esci da Quillary"), Qt::CTRL | Qt::Key_Q, [] { QCoreApplication::quit(); });
}

void QuillaryCommands::addEditMenu() {
    QMenu& menu = addMenu(tr("&Modifica"));
    addStandard(menu, tr("Annulla"), QKeySequence::Undo);
    addStandard(menu, tr("Ripristina"), QKeySequence::Redo);
    menu.addSeparator();
    addStandard(menu, tr("Taglia"), QKeySequence::Cut);
    addStandard(menu, tr("Copia"), QKeySequence::Copy);
    addStandard(menu, tr("Incolla"), QKeySequence::Paste);
    addStandard(menu, tr("Seleziona tutto"), QKeySequence::SelectAll);
    menu.addSeparator();
    addFindItems(*menu.addMenu(tr("Trova")));
    menu.addSeparator();
    add(menu, tr("Impostazioni…"), Qt::CTRL | Qt::Key_Comma, [this] { Q_EMIT settingsRequested(); });
}

void QuillaryCommands::addFindItems(QMenu& menu) {
    add(menu, tr("Trova…"), Qt::CTRL | Qt::Key_F, [this] { m_find.show(false); });
    add(menu, tr("Trova e sostituisci…"), Qt::ALT | Qt::CTRL | Qt::Key_F, [this] { m_find.show(true); });
    add(menu, tr("Trova successivo (⌘G con la ricerca aperta)"), {}, [this] { m_find.step(1); });
    add(menu, tr("Trova precedente"), Qt::SHIFT | Qt::CTRL | Qt::Key_G, [this] { m_find.step(-1); });
    add(menu, tr("Usa selezione per trovare"), Qt::CTRL | Qt::Key_E, [this] { m_find.useSelectionForFind(); });
}

void QuillaryCommands::addViewMenu() {
    QMenu& menu = addMenu(tr("&Vista"));
    add(menu, tr("Mostra / nascondi barra laterale"), Qt::META | Qt::CTRL | Qt::Key_S,
        [this] { m_window.toggleSidebar(); });
    menu.addSeparator();
    add(menu, tr("Ingrandisci testo"), Qt::CTRL | Qt::Key_Plus, [this] { zoom(1); });
    add(menu, tr("Riduci testo"), Qt::CTRL | Qt::Key_Minus, [this] { zoom(-1); });
    add(menu, tr("Dimensione predefinita"), Qt::CTRL | Qt::Key_0,
        [this] { m_settings.setFontSize(AppSettings::defaultFontSize); });
    menu.addSeparator();
    addAppearances(*menu.addMenu(tr("Aspetto")));
}

void QuillaryCommands::addAppearances(QMenu& menu) {
    auto* const group = new QActionGroup(&menu);
    for (const AppAppearance appearance : allAppAppearances) {
        QAction* const action =
            add(menu, displayName(appearance), {}, [this, appearance] { m_settings.setAppearance(appearance); });
        action->setCheckable(true);
        group->addAction(action);
        const auto update = [this, action, appearance] { action->setChecked(m_settings.appearance() == appearance); };
        connect(&m_settings, &AppSettings::appearanceChanged, action, update);
        update();
    }
}

void QuillaryCommands::addNoteMenu() {
    QMenu& menu = addMenu(tr("&Nota"));
    addCustom(menu, ShortcutAction::nextNote);
    addCustom(menu, ShortcutAction::previousNote);
    addCustom(menu, ShortcutAction::search);
    addCustom(menu, ShortcutAction::togglePreview);
    menu.addSeparator();
    addFormats(*menu.addMenu(tr("Formato")));
    add(menu, tr("Formatta JSON"), Qt::ALT | Qt::SHIFT | Qt::CTRL | Qt::Key_F, [this] { m_store.reformatJSON(true); });
    add(menu, tr("Compatta JSON"), {}, [this] { m_store.reformatJSON(false); });
    menu.addSeparator();
    add(menu, tr("Confronta note selezionate"), Qt::SHIFT | Qt::CTRL | Qt::Key_D, [this] { m_store.showDiff(); });
    add(menu, tr("Raggruppa in nuova cartella"), Qt::CTRL | Qt::Key_G,
        [this] { m_store.createFolder(m_store.actionTargets()); });
    addMoveItems(*menu.addMenu(tr("Sposta in")));
    add(menu, tr("Sposta nota in su"), Qt::ALT | Qt::CTRL | Qt::Key_Up, [this] { m_store.shiftSelectedNote(-1); });
    add(menu, tr("Sposta nota in giù"), Qt::ALT | Qt::CTRL | Qt::Key_Down, [this] { m_store.shiftSelectedNote(1); });
    menu.addSeparator();
    addSoloItem(menu);
    add(menu, tr("Copia contenuto della nota"), Qt::ALT | Qt::CTRL | Qt::Key_C,
        [this] { m_store.copySelectedContent(); });
    menu.addSeparator();
    addFolderItems(*menu.addMenu(tr("Cartella")));
}

void QuillaryCommands::addFormats(QMenu& menu) {
    int digit = Qt::Key_1;
    for (const NoteFormat format : allNoteFormats) {
        add(menu, displayName(format), Qt::META | Qt::CTRL | static_cast<Qt::Key>(digit++), [this, format] {
            withSelectedNote([this, format](NoteItem& note) { m_store.changeFormat(note, format); });
        });
    }
}

void QuillaryCommands::addMoveItems(QMenu& menu) {
    connect(&menu, &QMenu::aboutToShow, this, [this, &menu] {
        menu.clear();
        MoveToFolderMenuItems{m_store, m_store.actionTargets()}.addTo(menu);
    });
}

void QuillaryCommands::addFolderItems(QMenu& menu) {
    connect(&menu, &QMenu::aboutToShow, this, [this, &menu] {
        menu.clear();
        // Submenus are not among what clear() deletes.
        for (QMenu* const submenu : menu.findChildren<QMenu*>(Qt::FindDirectChildrenOnly)) {
            submenu->deleteLater();
        }
        if (m_store.selectedFolder()) {
            FolderMenuItems{m_store, *m_store.selectedFolder()}.addTo(menu);
        }
    });
    const auto update = [this, &menu] { menu.menuAction()->setEnabled(m_store.selectedFolder().has_value()); };
    connect(&m_store, &NotesStore::selectedFolderChanged, &menu, update);
    update();
}

void QuillaryCommands::addSoloItem(QMenu& menu) {
    QAction* const action =
        add(menu, tr("Invia a Solo…"), Qt::SHIFT | Qt::CTRL | Qt::Key_Return, [this] { m_solo.showPanel(); });
    const auto update = [this, action] {
        action->setEnabled(m_solo.client().cliPath().has_value() && m_store.selectedItem() != nullptr);
    };
    connect(&m_store, &NotesStore::selectedIDChanged, action, update);
    connect(&m_store, &NotesStore::notesChanged, action, update);
    update();
}

void QuillaryCommands::addWindowMenu() {
    QMenu& menu = addMenu(tr("Finest&ra"));
    add(menu, tr("Riduci a icona"), Qt::CTRL | Qt::Key_M, [this] { m_window.showMinimized(); });
    add(menu, tr("Ingrandisci / ripristina"), {},
        [this] { m_window.setWindowState(m_window.windowState() ^ Qt::WindowMaximized); });
    add(menu, tr("Schermo intero"), Qt::Key_F11,
        [this] { m_window.setWindowState(m_window.windowState() ^ Qt::WindowFullScreen); });
}

void QuillaryCommands::withSelectedNote(const std::function<void(NoteItem&)>& command) const {
    if (const NoteItemPtr note = m_store.selectedItem()) {
        command(*note);
    }
}

void QuillaryCommands::zoom(int steps) const {
    m_settings.setFontSize(AppSettings::clampedFontSize(m_settings.fontSize() + steps));
}

void QuillaryCommands::updateShortcuts() {
    for (auto each = m_customActions.cbegin(); each != m_customActions.cend(); ++each) {
        const std::optional<KeyShortcut> shortcut = m_settings.shortcut(each.key());
        each.value()->setShortcut(shortcut ? menuShortcut(*shortcut) : QKeySequence());
    }
}

} // namespace quillary
