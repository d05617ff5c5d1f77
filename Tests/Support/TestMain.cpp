#include "Tests/Support/OwnMounts.h"
#include "Tests/Support/TemporaryFiles.h"

#include <QCoreApplication>

#include <gmock/gmock.h>

#include <clocale>

/// Test programs without a display need an event loop and a fixed locale, and nothing more; those of the views bring
/// their own main.
int main(int argc, char** argv) {
    quillary::test::enterOwnMounts();
    quillary::test::useTemporaryFilesWithAttributes();
    qputenv("LC_ALL", "C.UTF-8");
    std::setlocale(LC_ALL, "C.UTF-8");
    QCoreApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}
