#include "../NotesFolder.h"
#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/Shell/ErrorAlert.h"
#include "Quillary/Shell/MainWindow.h"
#include "Quillary/Sidebar/InlineTextField.h"
#include "Quillary/Sidebar/NoteContextMenu.h"
#include "Quillary/Sidebar/SidebarList.h"
#include "Quillary/State/NoteDocument.h"
#include "Quillary/Theme/Palettes.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QImage>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScopeGuard>
#include <QScreen>
#include <QSignalSpy>
#include <QSplitter>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>

#include <algorithm>
#include <functional>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// The alert of a window, once it is on screen; null if it doesn't come.
QMessageBox* shownBox(const QWidget& window) {
    const auto isShown = [&window] {
        const auto* const box = window.findChild<QMessageBox*>();
        return box != nullptr && box->isVisible();
    };
    return QTest::qWaitFor(isShown) ? window.findChild<QMessageBox*>() : nullptr;
}

/// The stops of the keyboard, round a window with a key from wherever it is.
QStringList stops(Qt::Key key) {
    QStringList names;
    constexpr int most = 60;
    const QWidget* const first = QApplication::focusWidget();
    for (QWidget* stop = QApplication::focusWidget(); names.size() < most && (names.isEmpty() || stop != first);
         stop = QApplication::focusWidget()) {
        const auto* const button = qobject_cast<QAbstractButton*>(stop);
        names.append(button != nullptr && !button->text().isEmpty() ? button->text() : stop->accessibleName());
        QTest::keyClick(stop, key);
    }
    return names;
}

} // namespace

TEST(ErrorAlert, IsOnScreenExactlyWhileThereIsAMessage) {
    NotesFolder folder({});
    QWidget window;
    ErrorAlert alert(folder.store(), &window);
    EXPECT_EQ(window.findChild<QMessageBox*>(), nullptr);

    folder.store().setErrorMessage(u"Impossibile creare la nota.\nDisco pieno"_s);
    QMessageBox* const box = shownBox(window);
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), u"Si è verificato un problema"_s);
    EXPECT_EQ(box->informativeText(), u"Impossibile creare la nota.\nDisco pieno"_s);
    ASSERT_EQ(box->buttons().size(), 1);
    EXPECT_EQ(box->buttons().constFirst()->text(), u"OK"_s);

    folder.store().setErrorMessage(u"Un'altra"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return box->informativeText() == u"Un'altra"_s; }));

    QTest::mouseClick(box->buttons().constFirst(), Qt::LeftButton);
    EXPECT_FALSE(box->isVisible());
    EXPECT_EQ(folder.store().errorMessage(), std::nullopt);
}

TEST(ErrorAlert, ShowsAMessageThatWasThereBefore) {
    NotesFolder folder({});
    folder.store().setErrorMessage(u"Impossibile leggere la cartella «/note».\nDisco guasto"_s);
    QWidget window;
    const ErrorAlert alert(folder.store(), &window);
    const QMessageBox* const box = shownBox(window);
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->informativeText(), *folder.store().errorMessage());
}

TEST(ErrorAlert, ShowsAMessageThatLooksLikeMarkupAsItStands) {
    NotesFolder folder({});
    QWidget window;
    const ErrorAlert alert(folder.store(), &window);
    const QString message = u"Impossibile salvare «<b>a</b>».\nDisco pieno"_s;
    ASSERT_TRUE(Qt::mightBeRichText(message));

    folder.store().setErrorMessage(message);
    const QMessageBox* const box = shownBox(window);
    ASSERT_NE(box, nullptr);

    const QList<QLabel*> labels = box->findChildren<QLabel*>();
    const auto shown = std::ranges::find(labels, message, &QLabel::text);
    ASSERT_NE(shown, labels.end());
    EXPECT_EQ((*shown)->textFormat(), Qt::PlainText);
}

TEST(ErrorAlert, ItsImageFollowsTheAppearance) {
    const auto restored = qScopeGuard([before = QApplication::palette()] { QApplication::setPalette(before); });
    QApplication::setPalette(lightPalette());
    NotesFolder folder({});
    QWidget window;
    const ErrorAlert alert(folder.store(), &window);
    folder.store().setErrorMessage(u"uno"_s);
    const QMessageBox* const box = shownBox(window);
    ASSERT_NE(box, nullptr);

    // The strongest colour of the image, which otherwise is nothing.
    const auto ink = [box] {
        const QImage image = box->iconPixmap().toImage();
        QColor strongest(0, 0, 0, 0);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor color = image.pixelColor(x, y);
                strongest = color.alpha() > strongest.alpha() ? color : strongest;
            }
        }
        return strongest;
    };
    EXPECT_EQ(ink(), lightPalette().color(QPalette::WindowText));
    QApplication::setPalette(darkPalette());
    EXPECT_TRUE(QTest::qWaitFor([&] { return ink() == darkPalette().color(QPalette::WindowText); }));
}

TEST(ErrorAlert, EscapeDismissesItAndAMessageTakenBackHidesIt) {
    NotesFolder folder({});
    QWidget window;
    ErrorAlert alert(folder.store(), &window);
    folder.store().setErrorMessage(u"uno"_s);
    QMessageBox* const box = shownBox(window);
    ASSERT_NE(box, nullptr);
    QTest::keyClick(box, Qt::Key_Escape);
    EXPECT_EQ(folder.store().errorMessage(), std::nullopt);

    folder.store().setErrorMessage(u"due"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return box->isVisible(); }));
    folder.store().setErrorMessage(std::nullopt);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !box->isVisible(); }));
}

TEST(MainWindow, HasItsFirstSizeUnlessTheScreenIsSmaller) {
    const QByteArray before = qgetenv("XDG_STATE_HOME");
    const auto restored = qScopeGuard([&] { qputenv("XDG_STATE_HOME", before); });
    const QTemporaryDir nothingRemembered;
    qputenv("XDG_STATE_HOME", QFile::encodeName(nothingRemembered.path()));
    NotesFolder folder({});
    const MainWindow window(folder.store(), folder.settings(), folder.find(), folder.keyboard(), folder.solo());
    EXPECT_EQ(window.size(), QSize(940, 620).boundedTo(window.screen()->availableSize()));
}

TEST(MainWindow, IsTitledByTheSelectedNote) {
    NotesFolder folder({{u"a.md"_s, u"alfa"_s}});
    const MainWindow window(folder.store(), folder.settings(), folder.find(), folder.keyboard(), folder.solo());
    EXPECT_EQ(window.windowTitle(), u"a"_s);
    folder.store().rename(*folder.note(u"a"_s), u"Altro"_s);
    EXPECT_EQ(window.windowTitle(), u"Altro"_s);
    folder.store().setSelectedID(std::nullopt);
    EXPECT_EQ(window.windowTitle(), u"Quillary"_s);
}

TEST(MainWindow, ARequestForTheSearchFieldShowsAClosedSidebar) {
    NotesFolder folder({{u"a.md"_s, u"alfa"_s}});
    MainWindow window(folder.store(), folder.settings(), folder.find(), folder.keyboard(), folder.solo());
    window.show();
    auto* const splitter = window.findChild<QSplitter*>();
    splitter->setSizes({0, window.width()});
    ASSERT_EQ(splitter->sizes().constFirst(), 0);
    folder.store().raiseSearchFocusToken();
    EXPECT_GT(splitter->sizes().constFirst(), 0);
}

TEST(MainWindow, AFolderThatGetsItsNameShowsAClosedSidebar) {
    NotesFolder folder({{u"a.md"_s, u"alfa"_s}});
    MainWindow window(folder.store(), folder.settings(), folder.find(), folder.keyboard(), folder.solo());
    window.show();
    auto* const splitter = window.findChild<QSplitter*>();
    window.toggleSidebar();
    ASSERT_EQ(splitter->sizes().constFirst(), 0);
    folder.store().createFolder({});
    EXPECT_GT(splitter->sizes().constFirst(), 0);
    window.toggleSidebar();
    folder.store().setRenamingFolder(std::nullopt);
    EXPECT_EQ(splitter->sizes().constFirst(), 0);
}

TEST(MainWindow, AClosedSidebarGivesTheKeyboardToTheText) {
    NotesFolder folder({{u"a.md"_s, u"alfa"_s}});
    MainWindow window(folder.store(), folder.settings(), folder.find(), folder.keyboard(), folder.solo());
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    auto* const list = window.findChild<SidebarList*>();
    list->setFocus();
    ASSERT_TRUE(list->hasFocus());
    window.toggleSidebar();
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.findChild<ZoomableTextView*>()->hasFocus(); }));
}

TEST(MainWindow, ATitleIsEditedFromTheMenuOfANoteWhileOthersAreSelected) {
    for (const QString& title : {u"a"_s, u"d"_s}) {
        NotesFolder folder(
            {{u"a.md"_s, u"alfa"_s}, {u"b.md"_s, u"beta"_s}, {u"c.md"_s, u"gamma"_s}, {u"d.md"_s, u"delta"_s}});
        NotesStore& store = folder.store();
        MainWindow window(store, folder.settings(), folder.find(), folder.keyboard(), folder.solo());
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        store.setSelectedID(folder.note(u"a"_s)->id());
        store.setMultiSelection({folder.note(u"b"_s)->id(), folder.note(u"c"_s)->id()});
        NoteContextMenu menu(store, folder.note(title));
        ASSERT_EQ(menu.actions().constFirst()->text(), u"Rinomina"_s);
        menu.actions().constFirst()->trigger();
        // Whoever else asked for the keyboard has had a turn.
        QTest::qWait(0);
        const auto* const field = window.findChild<InlineTextField*>();
        ASSERT_NE(field, nullptr);
        EXPECT_TRUE(field->hasFocus());
        EXPECT_EQ(field->text(), title);
    }
}

TEST(MainWindow, TheTabKeyGoesToEveryControlOfThePane) {
    NotesFolder folder({{u"a.md"_s, u"alfa"_s},
                        {u"b.md"_s, u"beta"_s},
                        {u"c.md"_s, u"gamma"_s},
                        {u"d.json"_s, u"[1]"_s},
                        {u"e.csv"_s, u"nome,età\nAnna,30"_s}});
    NotesStore& store = folder.store();
    MainWindow window(store, folder.settings(), folder.find(), folder.keyboard(), folder.solo());
    window.resize(1000, 700);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const auto id = [&folder](const QString& title) { return folder.note(title)->id(); };

    struct Case {
        std::function<void()> show;
        QStringList controls;
    };

    const Case cases[] = {
        {[&] {
             store.setMultiSelection({id(u"a"_s), id(u"b"_s)});
         },
         {u"Scambia A e B"_s, u"Annulla"_s, u"Sposta in"_s, u"Nuova cartella"_s, u"Confronta differenze"_s}},
        {[&] { store.showDiff(); },
         {u"Scambia i lati"_s, u"Affiancato"_s, u"Tutte le righe"_s, u"Chiudi il confronto (⎋)"_s, u"Confronto"_s}},
        {[&] {
             store.setMultiSelection({id(u"a"_s), id(u"b"_s), id(u"c"_s)});
         },
         {u"Annulla"_s, u"Sposta in"_s, u"Nuova cartella"_s}},
        {[&] {
             store.clearMultiSelection();
             store.reveal(*folder.note(u"d"_s), true);
         },
         {u"Formatta testo"_s, u"Espandi tutto"_s, u"Comprimi"_s, u"Albero JSON"_s}},
        {[&] { store.reveal(*folder.note(u"e"_s), true); }, {u"Prima riga come intestazione"_s, u"Tabella"_s}},
    };
    for (const auto& [show, controls] : cases) {
        show();
        QTest::qWait(0);
        ASSERT_NE(QApplication::focusWidget(), nullptr);
        const QStringList forwards = stops(Qt::Key_Tab);
        QStringList found = forwards;
        found.removeIf([&controls = controls](const QString& name) { return !controls.contains(name); });
        // The walk begins somewhere among them.
        const qsizetype start = std::max<qsizetype>(0, controls.indexOf(found.value(0)));
        EXPECT_EQ(found, controls.mid(start) + controls.mid(0, start)) << forwards.join(u", "_s).toStdString();
        QStringList backwards = stops(Qt::Key_Backtab);
        std::reverse(backwards.begin() + 1, backwards.end());
        EXPECT_EQ(backwards, forwards);
    }
}

TEST(MainWindow, TheSidebarComesBackAsWideAsItWas) {
    NotesFolder folder({{u"a.md"_s, u"alfa"_s}});
    MainWindow window(folder.store(), folder.settings(), folder.find(), folder.keyboard(), folder.solo());
    window.show();
    auto* const splitter = window.findChild<QSplitter*>();
    splitter->setSizes({310, window.width() - 310});
    const QList<int> before = splitter->sizes();
    window.toggleSidebar();
    ASSERT_EQ(splitter->sizes().constFirst(), 0);
    window.toggleSidebar();
    EXPECT_EQ(splitter->sizes(), before);
}

TEST(MainWindow, EachTimeItAppearsItAsksForTheFocusInTheTextAndSaysHowToOpenIt) {
    NotesFolder folder({{u"a.md"_s, u"alfa"_s}});
    int openings = 0;
    MainWindow window(folder.store(), folder.settings(), folder.find(), folder.keyboard(), folder.solo(),
                      [&openings] { ++openings; });
    AppActions& actions = AppActions::shared();
    const auto forgotten = qScopeGuard([&actions] { actions.openMainWindow = nullptr; });
    for (int appearance = 1; appearance <= 2; ++appearance) {
        actions.openMainWindow = nullptr;
        const qint64 focus = folder.store().editorFocusToken();
        window.makeKeyAndOrderFront();
        EXPECT_EQ(folder.store().editorFocusToken(), focus + 1);
        ASSERT_TRUE(actions.openMainWindow);
        actions.openMainWindow();
        EXPECT_EQ(openings, appearance);
        window.close();
    }
}

TEST(MainWindow, ClosingHidesItAndSavesNothing) {
    NotesFolder folder({{u"a.md"_s, u"alfa"_s}});
    MainWindow window(folder.store(), folder.settings(), folder.find(), folder.keyboard(), folder.solo());
    window.makeKeyAndOrderFront();
    EXPECT_TRUE(window.isVisibleOnScreen());
    folder.note(u"a"_s)->setDirty(true);
    window.close();
    EXPECT_FALSE(window.isVisibleOnScreen());
    EXPECT_FALSE(window.isMiniaturized());
    EXPECT_TRUE(folder.note(u"a"_s)->isDirty());
}
