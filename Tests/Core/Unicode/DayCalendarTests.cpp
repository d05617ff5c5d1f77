#include "QuillaryCore/Unicode/DayCalendar.h"

#include <QTimeZone>

#include <gtest/gtest.h>

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

TEST(DayCalendar, AnUnknownZoneCountsAsUtc) {
    EXPECT_FALSE(DayCalendar::isTimeZone(u"Middle/Earth"_s));
    EXPECT_FALSE(DayCalendar::isTimeZone(QString()));
    EXPECT_TRUE(DayCalendar::isTimeZone(u"Europe/Rome"_s));
    EXPECT_TRUE(DayCalendar::isTimeZone(u"UTC"_s));
    EXPECT_EQ(DayCalendar(u"Middle/Earth"_s).day(utc(2026y / March / 5)), local_days(2026y / March / 5));
    EXPECT_EQ(DayCalendar(u"Middle/Earth"_s).day(utc(2026y / March / 5) - 1ns), local_days(2026y / March / 4));
}

TEST(DayCalendar, TheCurrentOneIsOfTheSystemsZone) {
    EXPECT_EQ(DayCalendar::current().timeZone(), QString::fromLatin1(QTimeZone::systemTimeZoneId()));
}

} // namespace quillary
