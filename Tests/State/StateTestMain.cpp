#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include "Tests/Support/OwnMounts.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <clocale>

/// The state needs a clipboard, and directories of its own for preferences and trash.
int main(int argc, char** argv) {
    quillary::test::enterOwnMounts();
    qputenv("LC_ALL", "C.UTF-8");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    std::setlocale(LC_ALL, "C.UTF-8");
    const QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral("config")).toUtf8());
    qputenv("XDG_DATA_HOME", home.filePath(QStringLiteral("data")).toUtf8());

    QGuiApplication application(argc, argv);
    quillary::setInterfaceLocale(QStringLiteral("it_IT"));
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
