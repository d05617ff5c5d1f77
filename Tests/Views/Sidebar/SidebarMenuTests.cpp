#include "Quillary/Sidebar/FolderMenuItems.h"
#include "Quillary/Sidebar/MoveToFolderMenuItems.h"
#include "Quillary/Sidebar/NoteContextMenu.h"
#include "Quillary/Sidebar/ShownName.h"
#include "SidebarTest.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPointer>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// The texts of a menu's items; a divider is a dash.
QStringList texts(const QMenu& menu) {
    QStringList texts;
    for (const QAction* const action : menu.actions()) {
        texts.append(action->isSeparator() ? u"-"_s : action->text());
    }
    return texts;
}

QAction* item(const QMenu& menu, const QString& text) {
    for (QAction* const action : menu.actions()) {
        if (action->text() == text) {
            return action;
        }
    }
    ADD_FAILURE() << "no item " << text.toStdString();
    return nullptr;
}

class SidebarMenuTest : public SidebarTest {
protected:
    SidebarMenuTest()
        : SidebarTest({{u"a.md"_s, u"alfa"_s},
                       {u"b & c.txt"_s, u"beta"_s},
                       {u"Casa/x.json"_s, u"{}"_s},
                       {u"Lavoro/y.md"_s, u"ipsilon"_s},
                       {u"Zeta/z.md"_s, {}}}) {}

    void choose(const QMenu& menu, const QString& text) {
        if (QAction* const action = item(menu, text)) {
            action->trigger();
        }
    }

    void choose(const QString& title, const QString& text) {
        const NoteContextMenu menu(store(), note(title));
        choose(menu, text);
    }

    void chooseOfFolder(const QString& folder, const QString& text) {
        QMenu menu;
        FolderMenuItems{store(), folder}.addTo(menu);
        choose(menu, text);
    }

    /// The menu on screen, or nothing.
    static QMenu* openMenu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
};

} // namespace

// A folder's menu

TEST_F(SidebarMenuTest, AFolderHasItsCommandsInOrder) {
    QMenu menu;
    FolderMenuItems{store(), u"Lavoro"_s}.addTo(menu);
    EXPECT_EQ(texts(menu), QStringList({u"Nuova nota qui"_s, u"Rinomina"_s, u"Colore"_s, u"-"_s, u"Sposta su"_s,
                                        u"Sposta giù"_s, u"Mostra nel Finder"_s, u"-"_s, u"Elimina cartella…"_s}));
    EXPECT_EQ(texts(*item(menu, u"Colore"_s)->menu()),
              QStringList({u"Nessuno"_s, u"Rosso"_s, u"Arancione"_s, u"Giallo"_s, u"Verde"_s, u"Verde acqua"_s,
                           u"Blu"_s, u"Viola"_s, u"Grigio"_s}));
}

TEST_F(SidebarMenuTest, AFolderMovesOnlyWhereThereIsRoom) {
    const auto enabled = [this](const QString& folder) {
        QMenu menu;
        FolderMenuItems{store(), folder}.addTo(menu);
        return std::pair(item(menu, u"Sposta su"_s)->isEnabled(), item(menu, u"Sposta giù"_s)->isEnabled());
    };
    EXPECT_EQ(enabled(u"Casa"_s), std::pair(false, true));
    EXPECT_EQ(enabled(u"Lavoro"_s), std::pair(true, true));
    EXPECT_EQ(enabled(u"Zeta"_s), std::pair(true, false));
    EXPECT_EQ(enabled(u"non c'è"_s), std::pair(false, false));
    chooseOfFolder(u"Lavoro"_s, u"Sposta su"_s);
    EXPECT_EQ(store().folders(), QStringList({u"Lavoro"_s, u"Casa"_s, u"Zeta"_s}));
    chooseOfFolder(u"Casa"_s, u"Sposta giù"_s);
    EXPECT_EQ(store().folders(), QStringList({u"Lavoro"_s, u"Zeta"_s, u"Casa"_s}));
}

TEST_F(SidebarMenuTest, AFoldersCommandsAreTheStores) {
    chooseOfFolder(u"Casa"_s, u"Nuova nota qui"_s);
    EXPECT_EQ(store().selectedItem()->folder(), std::optional(u"Casa"_s));
    chooseOfFolder(u"Casa"_s, u"Rinomina"_s);
    EXPECT_EQ(store().renamingFolder(), std::optional(u"Casa"_s));
    chooseOfFolder(u"Casa"_s, u"Mostra nel Finder"_s);
    EXPECT_EQ(m_desktop.revealed, QStringList(m_folder.path(u"Casa"_s)));
    chooseOfFolder(u"Casa"_s, u"Elimina cartella…"_s);
    EXPECT_EQ(store().pendingFolderDeletion(), std::optional(u"Casa"_s));
}

TEST_F(SidebarMenuTest, AFoldersColourIsChosenAndTakenAway) {
    const auto colors = [this] {
        auto* const menu = new QMenu(&m_view);
        FolderMenuItems{store(), u"Casa"_s}.addTo(*menu);
        return item(*menu, u"Colore"_s)->menu();
    };
    EXPECT_TRUE(item(*colors(), u"Nessuno"_s)->isChecked());
    choose(*colors(), u"Verde acqua"_s);
    EXPECT_EQ(store().folderColors().value(u"Casa"_s), FolderColor::teal);
    EXPECT_TRUE(item(*colors(), u"Verde acqua"_s)->isChecked());
    EXPECT_FALSE(item(*colors(), u"Nessuno"_s)->isChecked());
    EXPECT_FALSE(item(*colors(), u"Rosso"_s)->icon().pixmap(16).isNull());
    choose(*colors(), u"Nessuno"_s);
    EXPECT_TRUE(store().folderColors().isEmpty());
}

// A note's menu

TEST_F(SidebarMenuTest, ANoteHasItsCommandsInOrder) {
    select(u"a"_s);
    const QStringList all{u"Rinomina"_s,        u"Confronta con «a»"_s, u"Formato"_s, u"Sposta in"_s,
                          u"Copia contenuto"_s, u"Mostra nel Finder"_s, u"-"_s,       u"Sposta nel Cestino…"_s};
    EXPECT_EQ(texts(NoteContextMenu(store(), note(u"y"_s))), all);
    QStringList ofSelected = all;
    ofSelected.remove(1);
    EXPECT_EQ(texts(NoteContextMenu(store(), note(u"a"_s))), ofSelected);
    store().setSelectedID(std::nullopt);
    EXPECT_EQ(texts(NoteContextMenu(store(), note(u"y"_s))), ofSelected);
}

TEST_F(SidebarMenuTest, AnAmpersandInATitleIsNoMnemonic) {
    select(u"b & c"_s);
    EXPECT_EQ(texts(NoteContextMenu(store(), note(u"a"_s))).at(1), u"Confronta con «b && c»"_s);
    EXPECT_EQ(menuText(u"uno\ndue"_s), u"uno due"_s);
    EXPECT_EQ(menuText(QString(300, u'x')), QString(80, u'x') + u"…"_s);
}

TEST_F(SidebarMenuTest, AMenuTouchesNoSelectionUntilACommandRuns) {
    select(u"a"_s);
    store().setMultiSelection({note(u"a"_s)->id(), note(u"y"_s)->id()});
    const QList<NoteID> before = store().multiSelection();
    const NoteContextMenu menu(store(), note(u"x"_s));
    EXPECT_EQ(texts(menu).constFirst(), u"Rinomina"_s);
    EXPECT_EQ(store().multiSelection(), before);
    EXPECT_EQ(selectedTitle(), u"a"_s);
    choose(menu, u"Rinomina"_s);
    EXPECT_EQ(selectedTitle(), u"x"_s);
    EXPECT_TRUE(store().multiSelection().isEmpty());
}

TEST_F(SidebarMenuTest, ANotesCommandsAreTheStores) {
    select(u"a"_s);
    const qint64 rename = store().titleRenameToken();
    choose(u"y"_s, u"Rinomina"_s);
    EXPECT_EQ(selectedTitle(), u"y"_s);
    EXPECT_EQ(store().titleRenameToken(), rename + 1);

    select(u"a"_s);
    choose(u"y"_s, u"Copia contenuto"_s);
    EXPECT_EQ(selectedTitle(), u"y"_s);
    EXPECT_EQ(m_desktop.clipboard.value_or(QGuiApplication::clipboard()->text()), u"ipsilon"_s);

    choose(u"a"_s, u"Mostra nel Finder"_s);
    EXPECT_EQ(m_desktop.revealed, QStringList(m_folder.path(u"a.md"_s)));
    EXPECT_EQ(selectedTitle(), u"y"_s);

    choose(u"a"_s, u"Sposta nel Cestino…"_s);
    EXPECT_EQ(store().pendingNoteDeletion(), QList{note(u"a"_s)->id()});

    choose(u"a"_s, u"Confronta con «y»"_s);
    EXPECT_TRUE(store().isShowingDiff());
    EXPECT_EQ(store().multiSelection().size(), 2);
}

TEST_F(SidebarMenuTest, TheMenuOfTheSelectedNoteEndsAMultipleSelectionOfOthers) {
    for (const QString& command : {u"Rinomina"_s, u"Copia contenuto"_s}) {
        select(u"a"_s);
        store().setMultiSelection({note(u"x"_s)->id(), note(u"y"_s)->id()});
        choose(u"a"_s, command);
        EXPECT_EQ(selectedTitle(), u"a"_s);
        EXPECT_TRUE(store().multiSelection().isEmpty()) << command.toStdString();
    }
}

TEST_F(SidebarMenuTest, TheMenuOfANoteThatHasGoneDoesNothing) {
    select(u"a"_s);
    const NoteContextMenu menu(store(), note(u"y"_s));
    ASSERT_TRUE(QFile::remove(m_folder.path(u"Lavoro/y.md"_s)));
    store().refreshFromDisk();
    ASSERT_EQ(note(u"y"_s), nullptr);
    const qint64 rename = store().titleRenameToken();
    for (const QString& command : {u"Rinomina"_s, u"Confronta con «a»"_s, u"Copia contenuto"_s, u"Mostra nel Finder"_s,
                                   u"Sposta nel Cestino…"_s}) {
        choose(menu, command);
    }
    choose(*item(menu, u"Formato"_s)->menu(), displayName(NoteFormat::json));
    EXPECT_EQ(selectedTitle(), u"a"_s);
    EXPECT_EQ(store().titleRenameToken(), rename);
    EXPECT_TRUE(store().multiSelection().isEmpty());
    EXPECT_EQ(m_desktop.clipboard, std::nullopt);
    EXPECT_EQ(m_desktop.revealed, QStringList());
    EXPECT_TRUE(store().pendingNoteDeletion().isEmpty());
    EXPECT_EQ(store().errorMessage(), std::nullopt);
}

TEST_F(SidebarMenuTest, ANoteIsNotComparedWithOneThatHasGone) {
    select(u"y"_s);
    const NoteContextMenu menu(store(), note(u"a"_s));
    ASSERT_TRUE(QFile::remove(m_folder.path(u"Lavoro/y.md"_s)));
    store().refreshFromDisk();
    ASSERT_EQ(note(u"y"_s), nullptr);
    choose(menu, u"Confronta con «y»"_s);
    EXPECT_FALSE(store().isShowingDiff());
    EXPECT_TRUE(store().multiSelection().isEmpty());
}

TEST_F(SidebarMenuTest, ANotesFormatIsChosen) {
    NoteContextMenu menu(store(), note(u"x"_s));
    const QMenu& formats = *item(menu, u"Formato"_s)->menu();
    QStringList names;
    for (const NoteFormat format : allNoteFormats) {
        names.append(displayName(format));
    }
    EXPECT_EQ(texts(formats), names);
    EXPECT_TRUE(item(formats, displayName(NoteFormat::json))->isChecked());
    choose(formats, displayName(NoteFormat::markdown));
    EXPECT_EQ(note(u"x"_s)->format(), NoteFormat::markdown);
    EXPECT_TRUE(QFile::exists(m_folder.path(u"Casa/x.md"_s)));
}

TEST_F(SidebarMenuTest, TwoNotesHaveTheirCommandsInOrder) {
    select(u"a"_s);
    click(u"y"_s, Qt::ControlModifier);
    const NoteContextMenu menu(store(), note(u"y"_s));
    EXPECT_EQ(texts(menu), QStringList({u"Raggruppa in nuova cartella"_s, u"Confronta"_s, u"Sposta in"_s, u"-"_s,
                                        u"Sposta 2 note nel Cestino…"_s}));
    const QList<NoteID> both = store().multiSelection();
    choose(menu, u"Sposta 2 note nel Cestino…"_s);
    EXPECT_EQ(store().pendingNoteDeletion(), both);
    choose(menu, u"Confronta"_s);
    EXPECT_TRUE(store().isShowingDiff());
    EXPECT_EQ(store().multiSelection(), both);
}

TEST_F(SidebarMenuTest, ThreeNotesCanNotBeCompared) {
    select(u"a"_s);
    click(u"y"_s, Qt::ControlModifier);
    click(u"x"_s, Qt::ControlModifier);
    const NoteContextMenu menu(store(), note(u"x"_s));
    EXPECT_EQ(texts(menu),
              QStringList({u"Raggruppa in nuova cartella"_s, u"Sposta in"_s, u"-"_s, u"Sposta 3 note nel Cestino…"_s}));
    choose(menu, u"Raggruppa in nuova cartella"_s);
    EXPECT_EQ(store().folders().size(), 4);
    EXPECT_EQ(store().notes(store().folders().constFirst()).size(), 3);
}

TEST_F(SidebarMenuTest, TheMenuOfSeveralNotesMovesThemAll) {
    select(u"a"_s);
    click(u"y"_s, Qt::ControlModifier);
    click(u"x"_s, Qt::ControlModifier);
    const NoteContextMenu menu(store(), note(u"x"_s));
    choose(*item(menu, u"Sposta in"_s)->menu(), u"Zeta"_s);
    for (const QString& title : {u"a"_s, u"x"_s, u"y"_s}) {
        EXPECT_EQ(note(title)->folder(), std::optional(u"Zeta"_s)) << title.toStdString();
    }
}

TEST_F(SidebarMenuTest, TheMenuOfAComparedNoteAsksAboutBoth) {
    store().compare(*note(u"a"_s), *note(u"y"_s));
    choose(u"y"_s, u"Sposta 2 note nel Cestino…"_s);
    EXPECT_EQ(store().pendingNoteDeletion(), store().multiSelection());
    EXPECT_TRUE(store().isShowingDiff());
}

TEST_F(SidebarMenuTest, ANoteOfASelectionWhoseOthersHaveGoneStandsAlone) {
    select(u"a"_s);
    click(u"y"_s, Qt::ControlModifier);
    QFile::remove(m_folder.path(u"Lavoro/y.md"_s));
    store().refreshFromDisk();
    EXPECT_EQ(texts(NoteContextMenu(store(), note(u"a"_s))).constFirst(), u"Rinomina"_s);
}

// Moving to folders

TEST_F(SidebarMenuTest, NotesMoveToTheTopLevelToAFolderOrToANewOne) {
    const auto items = [this](const QList<NoteItemPtr>& notes) {
        auto* const menu = new QMenu(&m_view);
        MoveToFolderMenuItems{store(), notes}.addTo(*menu);
        return menu;
    };
    const auto disabled = [](const QMenu& menu) {
        QStringList texts;
        for (const QAction* const action : menu.actions()) {
            if (!action->isEnabled()) {
                texts.append(action->text());
            }
        }
        return texts;
    };
    EXPECT_EQ(texts(*items({note(u"a"_s)})),
              QStringList({u"Note (nessuna cartella)"_s, u"Casa"_s, u"Lavoro"_s, u"Zeta"_s, u"Nuova cartella…"_s}));
    EXPECT_EQ(disabled(*items({note(u"a"_s)})), QStringList(u"Note (nessuna cartella)"_s));
    EXPECT_EQ(disabled(*items({note(u"a"_s), note(u"x"_s)})), QStringList());
    EXPECT_EQ(disabled(*items({note(u"x"_s)})), QStringList(u"Casa"_s));

    choose(*items({note(u"a"_s), note(u"x"_s)}), u"Lavoro"_s);
    EXPECT_EQ(note(u"a"_s)->folder(), std::optional(u"Lavoro"_s));
    EXPECT_EQ(note(u"x"_s)->folder(), std::optional(u"Lavoro"_s));
    choose(*items({note(u"a"_s)}), u"Note (nessuna cartella)"_s);
    EXPECT_EQ(note(u"a"_s)->folder(), std::nullopt);
    choose(*items({note(u"a"_s)}), u"Nuova cartella…"_s);
    EXPECT_EQ(note(u"a"_s)->folder(), std::optional(store().folders().constFirst()));
    EXPECT_EQ(store().folders().size(), 4);
}

TEST_F(SidebarMenuTest, TheMenuListsTheFoldersAsTheyAreWhenItOpens) {
    const NoteContextMenu menu(store(), note(u"a"_s));
    QMenu& folders = *item(menu, u"Sposta in"_s)->menu();
    store().deleteFolder(u"Zeta"_s, true);
    Q_EMIT folders.aboutToShow();
    EXPECT_EQ(texts(folders),
              QStringList({u"Note (nessuna cartella)"_s, u"Casa"_s, u"Lavoro"_s, u"Nuova cartella…"_s}));
}

// How menus open

TEST_F(SidebarMenuTest, ARightClickOpensTheMenuOfTheRow) {
    select(u"a"_s);
    const auto openAt = [this](const QString& title) {
        const QPoint place = placeOf(title);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, m_list->viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(m_list->viewport(), &event);
    };
    openAt(u"x"_s);
    const QPointer<QMenu> menu = openMenu();
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(texts(*menu).at(1), u"Confronta con «a»"_s);
    EXPECT_EQ(selectedTitle(), u"a"_s);
    QTest::keyClick(menu, Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return menu.isNull(); }));

    openAt(u"Casa"_s);
    ASSERT_NE(openMenu(), nullptr);
    EXPECT_EQ(texts(*openMenu()).constFirst(), u"Nuova nota qui"_s);
    EXPECT_EQ(store().selectedFolder(), std::nullopt);
    openMenu()->close();

    openAt(u"Note"_s);
    EXPECT_EQ(openMenu(), nullptr);
}

TEST_F(SidebarMenuTest, TheMenuKeyOpensTheMenuOfTheCursorsRowAndArrowsWorkIt) {
    select(u"y"_s);
    m_list->setFocus();
    const auto openByKey = [this] {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, m_list->rect().center(),
                                m_list->mapToGlobal(m_list->rect().center()));
        QCoreApplication::sendEvent(m_list, &event);
    };
    openByKey();
    ASSERT_NE(openMenu(), nullptr);
    EXPECT_TRUE(m_list->rowRect(rowOf(u"y"_s)).contains(m_list->viewport()->mapFromGlobal(openMenu()->pos())));
    const qint64 rename = store().titleRenameToken();
    QTest::keyClick(openMenu(), Qt::Key_Down);
    QTest::keyClick(openMenu(), Qt::Key_Return);
    EXPECT_EQ(store().titleRenameToken(), rename + 1);

    store().setSelectedFolder(u"Casa"_s);
    openByKey();
    ASSERT_NE(openMenu(), nullptr);
    EXPECT_EQ(texts(*openMenu()).constFirst(), u"Nuova nota qui"_s);
    openMenu()->close();

    store().setSelectedID(std::nullopt);
    store().setSelectedFolder(std::nullopt);
    openByKey();
    EXPECT_EQ(openMenu(), nullptr);
}
