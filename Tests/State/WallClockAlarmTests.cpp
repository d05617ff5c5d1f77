#include "Quillary/Platform/WallClockAlarm.h"

#include "Tests/State/Waiting.h"

#include <QDateTime>

#include <gtest/gtest.h>

#include <chrono>

namespace quillary::test {

using namespace std::chrono_literals;

TEST(WallClockAlarm, RingsOnceAtItsMoment) {
    int rings = 0;
    WallClockAlarm alarm([&rings] { ++rings; });
    const QDateTime moment = QDateTime::currentDateTime().addMSecs(80);
    alarm.set(moment);

    ASSERT_TRUE(waitUntil([&rings] { return rings > 0; }));
    EXPECT_GE(QDateTime::currentDateTime(), moment);

    runEventLoop(50ms);
    EXPECT_EQ(rings, 1);
}

TEST(WallClockAlarm, RingsAtOnceForAMomentThatHasPassed) {
    for (const QDateTime& moment : {QDateTime::currentDateTime().addDays(-1), QDateTime::fromMSecsSinceEpoch(0)}) {
        int rings = 0;
        WallClockAlarm alarm([&rings] { ++rings; });
        alarm.set(moment);
        EXPECT_TRUE(waitUntil([&rings] { return rings > 0; }));
    }
}

TEST(WallClockAlarm, KnowsOnlyTheLastMomentAndCanBeSetByItsOwnAction) {
    int rings = 0;
    WallClockAlarm* own = nullptr;
    WallClockAlarm alarm([&] {
        if (++rings == 1) {
            own->set(QDateTime::currentDateTime().addMSecs(20));
        }
    });
    own = &alarm;
    alarm.set(QDateTime::currentDateTime().addMSecs(10));
    alarm.set(QDateTime::currentDateTime().addDays(1));
    runEventLoop(50ms);
    EXPECT_EQ(rings, 0);

    alarm.set(QDateTime::currentDateTime().addMSecs(10));
    EXPECT_TRUE(waitUntil([&rings] { return rings == 2; }));
}

TEST(WallClockAlarm, IsSilentAfterItsEnd) {
    int rings = 0;
    {
        WallClockAlarm alarm([&rings] { ++rings; });
        alarm.set(QDateTime::currentDateTime());
    }
    runEventLoop(20ms);
    EXPECT_EQ(rings, 0);
}

} // namespace quillary::test
