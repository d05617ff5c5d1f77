#include <QApplication>
#include <QStyleFactory>

#include <gmock/gmock.h>

#include <clocale>

/// Test programs of widgets run on the offscreen platform, with the style and the fonts of the application.
int main(int argc, char** argv) {
    using namespace Qt::StringLiterals;
    qputenv("LC_ALL", "C.UTF-8");
    std::setlocale(LC_ALL, "C.UTF-8");
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
