#include "Quillary/Shell/AppDelegate.h"

#include "Quillary/Settings/SettingsView.h"
#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Text/TextStorage.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QPalette>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

using namespace quillary;
using namespace Qt::StringLiterals;

/// The application as it starts, on a folder and with preferences of its own: it neither asks for the hot key nor for a
/// place in the panel of the desktop that the tests run on.
class AppDelegateTest : public testing::Test {
protected:
    AppDelegateTest() {
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_directory.filePath(u"config"_s)));
        QDir(m_directory.path()).mkdir(u"Note"_s);
        Preferences(Preferences::defaultFile())
            .set({{u"notesDirectory"_s, m_directory.filePath(u"Note"_s)},
                  {u"sortOrder"_s, u"title"_s},
                  {u"showsMenuBarExtra"_s, false},
                  {u"disabledShortcuts"_s, QJsonArray{u"summon"_s}}});
    }

    ~AppDelegateTest() override {
        m_delegate.reset();
        QApplication::setPalette(m_palette);
        qputenv("XDG_CONFIG_HOME", m_configuration);
    }

    /// Starts the application, which is in use from then on.
    void start() {
        m_delegate = std::make_unique<AppDelegate>(true);
        m_delegate->applicationDidFinishLaunching();
        applicationBecomes(Qt::ApplicationActive);
    }

    /// Says what the window system says when the user comes and goes.
    static void applicationBecomes(Qt::ApplicationState state) { Q_EMIT qGuiApp->applicationStateChanged(state); }

    AppDelegate& delegate() { return *m_delegate; }

    NotesStore& store() { return m_delegate->store(); }

    NoteItemPtr note(const QString& title) {
        const auto& notes = store().notes();
        const auto found = std::ranges::find(notes, title, [](const NoteItemPtr& item) { return item->title(); });
        return found == notes.end() ? nullptr : *found;
    }

    /// Changes the text of a note as the editor would.
    void type(const QString& title, const QString& text) {
        const NoteItemPtr item = note(title);
        store().ensureLoaded(*item);
        TextStorage& storage = item->document()->storage();
        storage.replace({0, storage.length()}, text);
        store().textDidChange(*item, *item->document(), false);
    }

    void write(const QString& name, const QByteArray& bytes) const {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QByteArray read(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static bool areSettingsOnScreen() {
        return std::ranges::any_of(QApplication::topLevelWidgets(), [](const QWidget* window) {
            return window->isVisible() && qobject_cast<const SettingsView*>(window) != nullptr;
        });
    }

private:
    QString path(const QString& name) const { return m_directory.filePath(u"Note/"_s + name); }

    const QPalette m_palette = QApplication::palette();
    const QByteArray m_configuration = qgetenv("XDG_CONFIG_HOME");
    const QTemporaryDir m_directory;
    std::unique_ptr<AppDelegate> m_delegate;
};

TEST_F(AppDelegateTest, SavesWhatIsUnsavedWhenTheUserGoesElsewhere) {
    write(u"a.md"_s, "prima");
    write(u"b.md"_s, "prima");
    start();
    type(u"a"_s, u"dopo"_s);
    type(u"b"_s, u"dopo"_s);

    applicationBecomes(Qt::ApplicationInactive);

    EXPECT_EQ(read(u"a.md"_s), "dopo");
    EXPECT_EQ(read(u"b.md"_s), "dopo");
}

TEST_F(AppDelegateTest, ShowsWhatOthersDidWhenTheUserComesBack) {
    write(u"a.md"_s, "prima");
    start();
    applicationBecomes(Qt::ApplicationInactive);
    write(u"b.md"_s, "da fuori");

    // At once: the watcher of the directory had no turn to tell of it.
    applicationBecomes(Qt::ApplicationActive);

    EXPECT_NE(note(u"b"_s), nullptr);
}

TEST_F(AppDelegateTest, ReadsTheClipboardForANewNoteWhenItHasTheKeyboard) {
    start();
    bool isActive = false;
    AppActions::shared().isApplicationActive = [&isActive] { return isActive; };
    QGuiApplication::clipboard()->clear();

    delegate().activate({}, {});
    delegate().performAction(u"new-note-from-clipboard"_s);
    EXPECT_TRUE(store().notes().isEmpty());

    QGuiApplication::clipboard()->setText(u"dagli appunti"_s);
    isActive = true;
    applicationBecomes(Qt::ApplicationActive);
    ASSERT_EQ(store().notes().size(), 1);
    EXPECT_EQ(store().selectedItem()->document()->storage().text(), u"dagli appunti"_s);

    delegate().performAction(u"new-note-from-clipboard"_s);
    EXPECT_EQ(store().notes().size(), 2);
}

TEST_F(AppDelegateTest, ANewNoteNeedsNoKeyboard) {
    start();
    AppActions::shared().isApplicationActive = [] { return false; };
    delegate().performAction(u"new-note"_s);
    EXPECT_EQ(store().notes().size(), 1);
}

TEST_F(AppDelegateTest, HidesAllItsWindowsAndComesBackWithTheFocusInTheText) {
    start();
    const AppActions& actions = AppActions::shared();
    auto* const window = dynamic_cast<MainWindow*>(actions.mainWindow.get());
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isVisible());
    Q_EMIT window->settingsRequested();
    EXPECT_TRUE(areSettingsOnScreen());

    actions.hideApplication();
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(areSettingsOnScreen());

    const qint64 focus = store().editorFocusToken();
    actions.showMainWindow();
    EXPECT_TRUE(window->isVisible());
    EXPECT_GT(store().editorFocusToken(), focus);
}
