#include "Quillary/Shell/SystemDesktop.h"

#include "Tests/State/Platform/PrivateBus.h"
#include "Tests/Views/Shell/DesktopPrograms.h"

#include <QApplication>
#include <QClipboard>
#include <QDBusConnection>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// Answers the next panel as the user would.
void inPanel(const std::function<void(QFileDialog&)>& answer) {
    QTimer::singleShot(0, qApp, [answer] {
        auto* const panel = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(panel, nullptr);
        answer(*panel);
    });
}

void writeFile(const QString& path) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
}

class SystemDesktopTest : public testing::Test {
protected:
    SystemDesktopTest() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    QString path(const QString& name) const { return directory.filePath(name); }

    QTemporaryDir directory;
    PrivateBus bus;
    SystemDesktop desktop{bus.connection()};
};

} // namespace

TEST_F(SystemDesktopTest, TheClipboardHoldsPlainText) {
    desktop.setClipboardText(u"riga\r\n\u00A0fine"_s);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"riga\r\n\u00A0fine"_s);
    EXPECT_EQ(desktop.clipboardText(), u"riga\r\n\u00A0fine"_s);

    auto* const image = new QMimeData;
    image->setData(u"image/png"_s, "x");
    QGuiApplication::clipboard()->setMimeData(image);
    EXPECT_EQ(desktop.clipboardText(), std::nullopt);
}

TEST_F(SystemDesktopTest, FilesAreChosenInAPanelThatSaysWhatFor) {
    writeFile(path(u"a.md"_s));
    writeFile(path(u"b.md"_s));
    inPanel([this](QFileDialog& panel) {
        EXPECT_EQ(panel.windowTitle(), u"Saranno copiati"_s);
        EXPECT_EQ(panel.labelText(QFileDialog::Accept), u"Importa"_s);
        EXPECT_EQ(panel.fileMode(), QFileDialog::ExistingFiles);
        EXPECT_EQ(panel.acceptMode(), QFileDialog::AcceptOpen);
        panel.setDirectory(directory.path());
        panel.findChild<QLineEdit*>()->setText(u"\"b.md\" \"a.md\""_s);
        static_cast<QDialog&>(panel).accept();
    });

    // The panel's order is its own.
    EXPECT_THAT(
        desktop.chooseFiles(u"Saranno copiati"_s, u"Importa"_s),
        testing::UnorderedElementsAre(FilePath::fromText(path(u"a.md"_s)), FilePath::fromText(path(u"b.md"_s))));

    inPanel([this](QFileDialog& panel) {
        EXPECT_EQ(panel.directory().path(), directory.path());
        panel.reject();
    });
    EXPECT_TRUE(desktop.chooseFiles(u"Saranno copiati"_s, u"Importa"_s).isEmpty());
}

TEST_F(SystemDesktopTest, ADestinationHasItsNameFilledIn) {
    inPanel([this](QFileDialog& panel) {
        EXPECT_EQ(panel.acceptMode(), QFileDialog::AcceptSave);
        EXPECT_EQ(panel.selectedFiles().constFirst().section(u'/', -1), u"nota.md"_s);
        panel.setDirectory(directory.path());
        panel.selectFile(u"copia.txt"_s);
        static_cast<QDialog&>(panel).accept();
    });
    EXPECT_EQ(desktop.chooseDestination(u"nota.md"_s), FilePath::fromText(path(u"copia.txt"_s)));

    inPanel([](QFileDialog& panel) { panel.reject(); });
    EXPECT_EQ(desktop.chooseDestination(u"nota.md"_s), std::nullopt);
}

TEST_F(SystemDesktopTest, ADirectoryIsChosenFromWhereThePresentOneIs) {
    ASSERT_TRUE(QDir(directory.path()).mkdir(u"Note"_s));
    inPanel([this](QFileDialog& panel) {
        EXPECT_EQ(panel.fileMode(), QFileDialog::Directory);
        EXPECT_EQ(panel.directory().path(), directory.path());
        EXPECT_EQ(panel.labelText(QFileDialog::Accept), u"Usa"_s);
        panel.selectFile(u"Note"_s);
        static_cast<QDialog&>(panel).accept();
    });
    EXPECT_EQ(desktop.chooseDirectory(FilePath::fromText(directory.path()), u"Usa"_s),
              FilePath::fromText(path(u"Note"_s)));

    inPanel([](QFileDialog& panel) { panel.reject(); });
    EXPECT_EQ(desktop.chooseDirectory(FilePath::fromText(directory.path()), u"Usa"_s), std::nullopt);
}

TEST_F(SystemDesktopTest, FilesAreOpenedByTheirExactBytes) {
    Opener opener;

    desktop.open(FilePath::fromBytes("/tmp/due parole #1?.md"));
    desktop.open(FilePath::fromBytes("/tmp/\xFF.md"));

    EXPECT_EQ(opener.opened, QList<QByteArray>({"file:///tmp/due%20parole%20%231%3F.md", "file:///tmp/%FF.md"}));
}

TEST_F(SystemDesktopTest, AFileIsShownInTheFileManager) {
    Opener opener;
    FileManager manager(bus.connection());

    desktop.reveal(FilePath::fromBytes("/tmp/due parole.md"));

    ASSERT_TRUE(QTest::qWaitFor([&] { return !manager.shown.isEmpty(); }));
    EXPECT_EQ(manager.shown, QStringList(u"file:///tmp/due%20parole.md"_s));
    EXPECT_TRUE(opener.opened.isEmpty());
}

TEST_F(SystemDesktopTest, WithoutAFileManagerOnTheBusTheDirectoryIsOpened) {
    Opener opener;

    desktop.reveal(FilePath::fromBytes("/tmp/Note/a.md"));

    ASSERT_TRUE(QTest::qWaitFor([&] { return !opener.opened.isEmpty(); }));
    EXPECT_EQ(opener.opened, QList<QByteArray>({"file:///tmp/Note"}));
}

TEST_F(SystemDesktopTest, WithoutABusTheDirectoryIsOpened) {
    Opener opener;

    SystemDesktop(QDBusConnection(u"no such connection"_s)).reveal(FilePath::fromBytes("/tmp/Note/a.md"));

    EXPECT_EQ(opener.opened, QList<QByteArray>({"file:///tmp/Note"}));
}
