#include "Quillary/Theme/Style.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <clocale>

using namespace Qt::StringLiterals;

/// Test programs of widgets run on the offscreen platform, with the style and the fonts of the application. Neither do
/// they find the preferences, the window's place and the trash that the user has, nor change them.
int main(int argc, char** argv) {
    qputenv("LC_ALL", "C.UTF-8");
    std::setlocale(LC_ALL, "C.UTF-8");
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QTemporaryDir userFiles;
    if (!userFiles.isValid()) {
        return 1;
    }
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(userFiles.filePath(u"config"_s)));
    qputenv("XDG_DATA_HOME", QFile::encodeName(userFiles.filePath(u"data"_s)));
    qputenv("XDG_STATE_HOME", QFile::encodeName(userFiles.filePath(u"state"_s)));
    QApplication application(argc, argv);
    QApplication::setStyle(new quillary::Style);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
