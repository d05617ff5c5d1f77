#include "Quillary/Settings/SettingsView.h"

#include "../NotesFolder.h"
#include "Quillary/Editor/EditorFont.h"
#include "Quillary/Shell/KeyMonitor.h"
#include "Quillary/State/AppActions.h"

#include "Tests/State/FakeDesktop.h"
#include "Tests/State/Keyboard/FakeHotKeyBackend.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>
#include <QWindow>

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

class SettingsViewTest : public testing::Test {
protected:
    SettingsViewTest() {
        AppActions::shared().desktop = &desktop;
        keyboard.start();
    }

    ~SettingsViewTest() override { AppActions::shared() = {}; }

    /// The control on any tab that has a name for screen readers, or a text.
    template <typename Control>
    Control* control(const QString& name) {
        for (Control* const each : view.findChildren<Control*>()) {
            if (each->accessibleName() == name) {
                return each;
            }
            if constexpr (std::is_base_of_v<QAbstractButton, Control>) {
                if (each->text() == name) {
                    return each;
                }
            }
        }
        return nullptr;
    }

    /// A choice of the user's.
    void choose(const QString& picker, const QString& text) {
        auto* const box = control<QComboBox>(picker);
        const int index = box->findText(text);
        box->setCurrentIndex(index);
        Q_EMIT box->activated(index);
    }

    static QStringList entries(const QComboBox* picker) {
        QStringList texts;
        for (int i = 0; i < picker->count(); ++i) {
            texts.append(picker->itemText(i));
        }
        return texts;
    }

    QStringList shownLabels() {
        QStringList texts;
        for (const QLabel* const label : view.findChildren<QLabel*>()) {
            if (!label->isHidden() && !label->text().isEmpty()) {
                texts.append(label->text());
            }
        }
        return texts;
    }

    void press(QKeyCombination key) { QTest::keyClick(view.windowHandle(), key.key(), key.keyboardModifiers()); }

    void showShortcuts() {
        view.findChild<QTabWidget*>()->setCurrentIndex(2);
        view.present();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    }

    test::FakeDesktop desktop;
    test::HotKeyRecord hotKey;
    NotesFolder folder{{{u"a.md"_s, u"alfa"_s}}};
    AppSettings& settings = folder.settings();
    KeyboardController keyboard{&folder.store(), &settings, &folder.find(),
                                std::make_unique<test::FakeHotKeyBackend>(&hotKey)};
    KeyMonitor monitor{&keyboard};
    SettingsView view{&settings, &folder.store(), &keyboard};
};

const QString warningText = u"La scorciatoia globale è già usata da un'altra app: scegline un'altra."_s;

} // namespace

TEST_F(SettingsViewTest, HasThreeTabs) {
    const auto* const tabs = view.findChild<QTabWidget*>();
    ASSERT_EQ(tabs->count(), 3);
    EXPECT_EQ(tabs->tabText(0), u"Generale"_s);
    EXPECT_EQ(tabs->tabText(1), u"Editor"_s);
    EXPECT_EQ(tabs->tabText(2), u"Scorciatoie"_s);
    for (int i = 0; i < 3; ++i) {
        EXPECT_FALSE(tabs->tabIcon(i).isNull());
    }
}

TEST_F(SettingsViewTest, WriteThroughAndFollow) {
    EXPECT_EQ(entries(control<QComboBox>(u"Tema"_s)), (QStringList{u"Sistema"_s, u"Chiaro"_s, u"Scuro"_s}));
    choose(u"Tema"_s, u"Scuro"_s);
    EXPECT_EQ(settings.appearance(), AppAppearance::dark);
    settings.setAppearance(AppAppearance::light);
    EXPECT_EQ(control<QComboBox>(u"Tema"_s)->currentText(), u"Chiaro"_s);

    EXPECT_EQ(control<QComboBox>(u"Formato delle nuove note"_s)->count(), 8);
    choose(u"Formato delle nuove note"_s, u"JSON"_s);
    EXPECT_EQ(settings.defaultFormat(), NoteFormat::json);
    EXPECT_EQ(control<QComboBox>(u"Ordina per"_s)->count(), 4);
    choose(u"Ordina per"_s, displayName(NoteSortOrder::modified));
    EXPECT_EQ(settings.sortOrder(), NoteSortOrder::modified);
    choose(u"Carattere"_s, u"Sistema"_s);
    EXPECT_EQ(settings.fontStyle(), EditorFontStyle::system);

    control<QCheckBox>(u"Mostra Quillary nella barra dei menu"_s)->click();
    EXPECT_FALSE(settings.showsMenuBarExtra());
    control<QCheckBox>(u"Riconosci JSON e CSV incollati in una nota vuota"_s)->click();
    EXPECT_FALSE(settings.autoDetectFormat());
    control<QCheckBox>(u"A capo automatico"_s)->click();
    EXPECT_FALSE(settings.wrapLines());
    settings.setWrapLines(true);
    EXPECT_TRUE(control<QCheckBox>(u"A capo automatico"_s)->isChecked());
}

TEST_F(SettingsViewTest, TheSizeIsAWholeNumberWithinItsBounds) {
    auto* const size = control<QSpinBox>(u"Dimensione"_s);
    EXPECT_EQ(size->text(), u"13 pt"_s);
    EXPECT_EQ(size->minimum(), 9);
    EXPECT_EQ(size->maximum(), 28);
    size->stepUp();
    EXPECT_EQ(settings.fontSize(), 14);
    settings.setFontSize(20.4);
    EXPECT_EQ(size->value(), 20);
    EXPECT_EQ(settings.fontSize(), 20.4);
}

TEST_F(SettingsViewTest, TheSampleFollowsTheFont) {
    const QString text = u"{ \"penna\": \"oca\", \"righe\": 42 }\nLa rapida volpe salta il cane pigro."_s;
    const QLabel* sample = nullptr;
    for (const QLabel* const label : view.findChildren<QLabel*>()) {
        sample = label->text() == text ? label : sample;
    }
    ASSERT_NE(sample, nullptr);
    settings.setFontSize(20);
    settings.setFontStyle(EditorFontStyle::system);
    EXPECT_EQ(sample->font(), editorFont(settings.editorStyle()));
}

TEST_F(SettingsViewTest, AnotherDirectoryIsChosenInAPanel) {
    const QString present = settings.notesDirectory().text();
    const auto* const path = control<QLineEdit>(u"Cartella"_s);
    EXPECT_EQ(path->text(), present);
    control<QPushButton>(u"Apri nel Finder"_s)->click();
    EXPECT_EQ(desktop.opened, QStringList{present});

    control<QPushButton>(u"Scegli…"_s)->click();
    EXPECT_EQ(desktop.panels, QList<QStringList>{(QStringList{present, u"Usa questa cartella"_s})});
    EXPECT_EQ(settings.notesDirectory().text(), present);

    desktop.chosenDirectory = FilePath::fromText(QString(present + u"2"_s));
    control<QPushButton>(u"Scegli…"_s)->click();
    EXPECT_EQ(settings.notesDirectory().text(), present + u"2"_s);
    EXPECT_EQ(path->text(), present + u"2"_s);
    EXPECT_TRUE(folder.store().notes().isEmpty());

    // The present directory is read anew.
    folder.write(u"../Note2/b.md"_s, u"beta"_s);
    control<QPushButton>(u"Scegli…"_s)->click();
    EXPECT_EQ(folder.store().notes().size(), 1);
}

TEST_F(SettingsViewTest, ListsTheFixedShortcutsAndTheNamesOfTheKeys) {
    const QStringList labels = shownLabels();
    const QStringList expected{u"Vai alla nota 1–9"_s,
                               u"⌘1 … ⌘9"_s,
                               u"Nuova nota / dagli appunti"_s,
                               u"⌘N  ⇧⌘N"_s,
                               u"Salva / Salva come…"_s,
                               u"⌘S  ⇧⌘S"_s,
                               u"Copia contenuto della nota"_s,
                               u"⌥⌘C"_s,
                               u"Seleziona più note"_s,
                               u"⌘-clic  ⇧-clic"_s,
                               u"Nuova cartella con le note selezionate"_s,
                               u"⌘G"_s,
                               u"Nuova cartella vuota"_s,
                               u"⌥⌘N"_s,
                               u"Confronta due note selezionate"_s,
                               u"⇧⌘D"_s,
                               u"Trova / Trova e sostituisci"_s,
                               u"⌘F  ⌥⌘F"_s,
                               u"Dimensione testo"_s,
                               u"⌘+  ⌘−  ⌘0"_s};
    for (const QString& text : expected) {
        EXPECT_TRUE(labels.contains(text)) << text.toStdString();
    }
    EXPECT_TRUE(labels.contains(u"⌘ Ctrl · ⌥ Alt · ⌃ Super · ⇧ Maiusc"_s));
    EXPECT_TRUE(
        labels.contains(u"Fai clic su una scorciatoia e premi la nuova combinazione. ⎋ annulla, ⌫ disattiva."_s));
}

TEST_F(SettingsViewTest, AShortcutIsRecordedByAClickAndKeys) {
    showShortcuts();
    auto* const button = control<QPushButton>(u"Cerca note: ⌘K"_s);
    ASSERT_NE(button, nullptr);
    button->click();
    EXPECT_EQ(button->text(), u"Premi i tasti…"_s);
    press(Qt::Key_A);
    EXPECT_TRUE(shownLabels().contains(u"Usa almeno uno tra ⌘ ⌥ ⌃"_s));
    press(Qt::CTRL | Qt::Key_Down);
    EXPECT_TRUE(shownLabels().contains(u"Già usata da «Nota successiva»"_s));
    // Also the keys that close the window.
    press(Qt::CTRL | Qt::Key_W);
    EXPECT_TRUE(view.isVisible());
    EXPECT_EQ(button->text(), u"⌘W"_s);
    EXPECT_FALSE(shownLabels().contains(u"Già usata da «Nota successiva»"_s));

    auto* const reset = control<QToolButton>(u"Ripristina predefinita (⌘K)"_s);
    EXPECT_TRUE(reset->isVisible());
    reset->click();
    EXPECT_EQ(button->text(), u"⌘K"_s);
    EXPECT_FALSE(reset->isVisible());
}

TEST_F(SettingsViewTest, TheKeyOfTheAmpersandIsShown) {
    settings.setShortcut(KeyShortcut(18, KeyShortcut::Modifiers::command, u"&"_s), ShortcutAction::search);
    const auto* const button = control<QPushButton>(u"Cerca note: ⌘&"_s);
    ASSERT_NE(button, nullptr);
    // A single one would be the mark of a mnemonic.
    EXPECT_EQ(button->text(), u"⌘&&"_s);
    EXPECT_TRUE(button->shortcut().isEmpty());
}

TEST_F(SettingsViewTest, NoMessageWidensTheWindow) {
    showShortcuts();
    const int width = view.width();
    control<QPushButton>(u"Cerca note: ⌘K"_s)->click();
    press(Qt::META | Qt::ALT | Qt::Key_N);
    const QString message = u"Già usata da «Mostra Quillary da qualsiasi app»"_s;
    ASSERT_TRUE(shownLabels().contains(message));
    hotKey.refuses = true;
    press(Qt::Key_Escape);
    ASSERT_TRUE(QTest::qWaitFor([&] { return shownLabels().contains(warningText); }));
    EXPECT_EQ(view.sizeHint().width(), width);

    control<QPushButton>(u"Cerca note: ⌘K"_s)->click();
    press(Qt::META | Qt::ALT | Qt::Key_N);
    ASSERT_TRUE(shownLabels().contains(message));
    EXPECT_EQ(view.sizeHint().width(), width);
    // All of both is there to be read.
    QCoreApplication::processEvents();
    for (const QLabel* const label : view.findChildren<QLabel*>()) {
        if (label->text() == message || label->text() == warningText) {
            EXPECT_GE(label->height(), label->heightForWidth(label->width()));
        }
    }
}

TEST_F(SettingsViewTest, TheWindowHasOneSizeAndNoButtonsForOthers) {
    EXPECT_TRUE(view.isWindow());
    EXPECT_EQ(view.windowType(), Qt::Dialog);
    EXPECT_TRUE(view.windowFlags().testFlag(Qt::MSWindowsFixedSizeDialogHint));
    EXPECT_FALSE(view.windowFlags() & Qt::WindowMinMaxButtonsHint);
    showShortcuts();
    EXPECT_EQ(view.size(), view.sizeHint());
    // Where there is room for all of it nothing scrolls.
    for (const QScrollArea* const page : view.findChildren<QScrollArea*>()) {
        if (page->isVisible()) {
            EXPECT_EQ(page->verticalScrollBar()->maximum(), 0);
            EXPECT_EQ(page->horizontalScrollBar()->maximum(), 0);
        }
    }
}

TEST_F(SettingsViewTest, WithLargeTextsTheWindowStaysOnTheScreenAndThePageFollowsTheKeyboard) {
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPointSizeF(before.pointSizeF() * 2.5);
    QApplication::setFont(large);
    SettingsView settingsView(&settings, &folder.store(), &keyboard);
    settingsView.present();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&settingsView));
    auto* const tabs = settingsView.findChild<QTabWidget*>();
    tabs->setCurrentIndex(2);
    EXPECT_LE(settingsView.height(), settingsView.screen()->availableSize().height());
    EXPECT_LE(settingsView.width(), settingsView.screen()->availableSize().width());
    auto* const page = qobject_cast<QScrollArea*>(tabs->currentWidget());
    ASSERT_NE(page, nullptr);
    EXPECT_GT(page->verticalScrollBar()->maximum(), 0);
    const QList<QPushButton*> buttons = page->findChildren<QPushButton*>();
    tabs->setFocus();
    for (qsizetype i = 0; i < buttons.size(); ++i) {
        QTest::keyClick(&settingsView, Qt::Key_Tab);
        ASSERT_EQ(QApplication::focusWidget(), buttons[i]);
        const QRect place(buttons[i]->mapTo(page->viewport(), QPoint()), buttons[i]->size());
        EXPECT_GE(place.top(), 0);
        EXPECT_LE(place.bottom(), page->viewport()->height());
    }
    QApplication::setFont(before);
}

TEST_F(SettingsViewTest, ADisabledActionHasNoShortcutAndCanBeReset) {
    showShortcuts();
    auto* const button = control<QPushButton>(u"Mostra Quillary da qualsiasi app: ⌃⌥N"_s);
    button->click();
    press(Qt::Key_Backspace);
    EXPECT_EQ(button->text(), u"Nessuna"_s);
    EXPECT_EQ(hotKey.held, std::nullopt);
    auto* const reset = control<QToolButton>(u"Ripristina predefinita (⌃⌥N)"_s);
    EXPECT_TRUE(reset->isVisible());
    reset->click();
    EXPECT_EQ(hotKey.held, defaultShortcut(ShortcutAction::summon));
}

TEST_F(SettingsViewTest, RecordingEndsWithEscapeWithTheTabAndWithTheWindow) {
    showShortcuts();
    auto* const button = control<QPushButton>(u"Cerca note: ⌘K"_s);
    button->click();
    press(Qt::Key_Escape);
    EXPECT_EQ(button->text(), u"⌘K"_s);
    EXPECT_TRUE(view.isVisible());

    button->click();
    view.findChild<QTabWidget*>()->setCurrentIndex(0);
    EXPECT_EQ(keyboard.recordingAction(), std::nullopt);

    view.findChild<QTabWidget*>()->setCurrentIndex(2);
    button->click();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !keyboard.recordingAction(); }));
    EXPECT_EQ(hotKey.held, defaultShortcut(ShortcutAction::summon));

    view.present();
    button->click();
    view.close();
    EXPECT_EQ(keyboard.recordingAction(), std::nullopt);
}

TEST_F(SettingsViewTest, WarnsWhileTheHotKeyIsTaken) {
    EXPECT_FALSE(shownLabels().contains(warningText));
    hotKey.refuses = true;
    settings.setShortcut(KeyShortcut(38, KeyShortcut::Modifiers::command, u"j"_s), ShortcutAction::summon);
    EXPECT_TRUE(shownLabels().contains(warningText));
    hotKey.refuses = false;
    settings.resetShortcut(ShortcutAction::summon);
    EXPECT_FALSE(shownLabels().contains(warningText));
}
