#include "Quillary/Platform/StartupNotification.h"

#include <QByteArray>
#include <QString>

#include <gtest/gtest.h>

#include <optional>

using namespace quillary;
using namespace Qt::StringLiterals;

TEST(StartupNotification, AStartupIdEndsWithItsTime) {
    EXPECT_EQ(StartupNotification::time(u"launcher-4711-host-quillary-0_TIME123456"_s), 123'456U);
    EXPECT_EQ(StartupNotification::time(u"a_TIME1/b_TIME4294967295"_s), 4'294'967'295U);
}

TEST(StartupNotification, AnIdMayNotTellItsTime) {
    for (const QString& id : {u""_s, u"launcher"_s, u"launcher_TIME"_s, u"launcher_TIME0"_s, u"launcher_TIME-1"_s,
                              u"launcher_TIME12a"_s, u"launcher_TIME4294967296"_s}) {
        EXPECT_EQ(StartupNotification::time(id), std::nullopt) << id.toStdString();
    }
}

TEST(StartupNotification, TheEndOfAStartIsToldByItsQuotedId) {
    EXPECT_EQ(StartupNotification::endMessage(u"launcher_TIME1"_s), QByteArray(R"(remove: ID="launcher_TIME1")"));
    EXPECT_EQ(StartupNotification::endMessage(uR"(a "b" \c è)"_s), QByteArray(R"(remove: ID="a \"b\" \\c è")"));
}
