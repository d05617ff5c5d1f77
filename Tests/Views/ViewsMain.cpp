#include "Quillary/Theme/Style.h"

#include <QApplication>

#include <gmock/gmock.h>

#include <clocale>

/// Test programs of widgets run on the offscreen platform, with the style and the fonts of the application.
int main(int argc, char** argv) {
    qputenv("LC_ALL", "C.UTF-8");
    std::setlocale(LC_ALL, "C.UTF-8");
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    QApplication::setStyle(new quillary::Style);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
