#include "QuillaryCore/Unicode/DayCalendar.h"

#include <QDateTime>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <random>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono;

Moment utc(year_month_day date, nanoseconds time = {}) {
    return Moment(sys_days(date)) + time;
}

} // namespace

TEST(DayCalendar, DaysChangeAtMidnightOfTheZone) {
    const DayCalendar rome(u"Europe/Rome"_s);
    const local_days fifth{2026y / March / 5};
    EXPECT_EQ(rome.day(utc(2026y / March / 4, 23h)), fifth);
    EXPECT_EQ(rome.day(utc(2026y / March / 4, 23h) - 1ns), fifth - days(1));
    EXPECT_EQ(rome.day(utc(2026y / March / 5, 23h) - 1ns), fifth);
    EXPECT_EQ(DayCalendar(u"America/New_York"_s).day(utc(2026y / March / 5, 4h)), fifth - days(1));
}

TEST(DayCalendar, DaysOf23And25HoursAreOneDay) {
    const DayCalendar rome(u"Europe/Rome"_s);
    EXPECT_EQ(rome.day(utc(2026y / March / 29, 22h)) - rome.day(utc(2026y / March / 28, 23h)), days(1));
    EXPECT_EQ(rome.day(utc(2026y / October / 25, 22h) + 59min), local_days(2026y / October / 25));
    EXPECT_EQ(rome.day(utc(2026y / October / 25, 23h)), local_days(2026y / October / 26));
}

TEST(DayCalendar, YearsChangeAtMidnightOfTheZone) {
    const DayCalendar rome(u"Europe/Rome"_s);
    EXPECT_EQ(rome.year(utc(2025y / December / 31, 23h)), 2026y);
    EXPECT_EQ(rome.year(utc(2025y / December / 31, 22h)), 2025y);
}

TEST(DayCalendar, KnowsTheDayOfEveryMoment) {
    const DayCalendar calendar(u"UTC"_s);
    EXPECT_EQ(calendar.day(Moment{}), local_days(1970y / January / 1));
    EXPECT_EQ(calendar.day(Moment(-1ns)), local_days(1969y / December / 31));
    EXPECT_EQ(calendar.day(distantPast), local_days(1677y / September / 21));
    EXPECT_EQ(calendar.day(Moment::max()), local_days(2262y / April / 11));
}

TEST(DayCalendar, FollowsTheRulesOfTheSystemAtEveryMoment) {
    // The rules of the first three changed after the release of the ICU that is in use.
    for (const char* const id : {"America/Mexico_City", "Africa/Cairo", "Asia/Almaty", "Europe/Rome",
                                 "Australia/Lord_Howe", "Africa/Casablanca", "UTC", "UTC+02:00"}) {
        SCOPED_TRACE(id);
        const QTimeZone zone(id);
        ASSERT_TRUE(zone.isValid());
        const DayCalendar calendar(QString::fromLatin1(id));
        std::mt19937 random(7);
        std::uniform_int_distribution<qint64> anyHour(-1'200'000, 1'200'000);
        int wrong = 0;
        for (int i = 0; i < 2'000; ++i) {
            // Here and there, and then from hour to hour.
            const qint64 first = anyHour(random);
            for (qint64 hour = first; hour < first + 5; ++hour) {
                const Moment moment = Moment(hours(hour)) + 1ms;
                const qint64 elapsed = hour * 3'600'000 + 1;
                const int offset = zone.offsetFromUtc(QDateTime::fromMSecsSinceEpoch(elapsed, Qt::UTC));
                wrong += calendar.localTime(moment).time_since_epoch() != milliseconds(elapsed) + seconds(offset);
            }
        }
        EXPECT_EQ(wrong, 0);
        EXPECT_EQ(DayCalendar(zone).localTime(Moment()), calendar.localTime(Moment()));
    }
}

TEST(DayCalendar, ChangesItsClocksAtTheVeryMoment) {
    const DayCalendar rome(u"Europe/Rome"_s);
    const Moment change = utc(2026y / March / 29, 1h);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(rome.localTime(change - 1ms), local_days(2026y / March / 29) + 2h - 1ms);
        EXPECT_EQ(rome.localTime(change), local_days(2026y / March / 29) + 3h);
        EXPECT_EQ(rome.localTime(utc(2026y / October / 25, 1h)), local_days(2026y / October / 25) + 2h);
        EXPECT_EQ(rome.localTime(utc(2026y / October / 25, 1h) - 1ms), local_days(2026y / October / 25) + 3h - 1ms);
    }
}

TEST(DayCalendar, AnUnknownZoneCountsAsUtc) {
    EXPECT_EQ(DayCalendar(u"Middle/Earth"_s).day(utc(2026y / March / 5)), local_days(2026y / March / 5));
    EXPECT_EQ(DayCalendar(u"Middle/Earth"_s).day(utc(2026y / March / 5) - 1ns), local_days(2026y / March / 4));
    EXPECT_EQ(DayCalendar(QString()).localTime(utc(2026y / July / 5)), local_days(2026y / July / 5));
}

TEST(DayCalendar, TheCurrentOneIsOfTheSystemsZone) {
    EXPECT_EQ(DayCalendar::current().timeZone(), QString::fromLatin1(QTimeZone::systemTimeZoneId()));
}

} // namespace quillary
