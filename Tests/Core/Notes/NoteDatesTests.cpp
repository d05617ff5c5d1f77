#include "QuillaryCore/Notes/NoteDates.h"

#include "QuillaryCore/Unicode/DatePattern.h"

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono;

const QTimeZone rome("Europe/Rome");

/// A moment by the clock of Rome in winter.
Moment local(year_month_day date, nanoseconds time = 12h) {
    return Moment(sys_days(date)) + time - 1h;
}

struct DateCase {
    Moment date;
    Moment now;
    QString text;
};

} // namespace

TEST(NoteDateText, IsShort) {
    const Moment now = local(2026y / February / 20, 15h);
    const DateCase cases[] = {
        {local(2026y / February / 20, 9h + 7min), now, u"09:07"_s},
        {local(2026y / February / 20, 0h), now, u"00:00"_s},
        {local(2026y / February / 20, 23h + 59min), now, u"23:59"_s},
        {local(2026y / February / 19, 0h), now, u"ieri"_s},
        {local(2026y / February / 19, 23h + 59min), now, u"ieri"_s},
        {local(2026y / February / 18), now, u"mer"_s},
        {local(2026y / February / 14), now, u"sab"_s},
        {local(2026y / February / 14, 0h), now, u"sab"_s},
        {local(2026y / February / 13, 23h + 59min), now, u"13 feb"_s},
        {local(2026y / January / 1, 0h), now, u"1 gen"_s},
        {local(2025y / December / 31), now, u"31/12/25"_s},
        {local(2026y / February / 21, 0h), now, u"21 feb"_s},
        {local(2026y / December / 31), now, u"31 dic"_s},
        {local(2027y / January / 1, 0h), now, u"01/01/27"_s},
        {distantPast, now, u"21/09/77"_s},
        {Moment::max(), now, u"12/04/62"_s},
        {local(2025y / December / 28), local(2026y / January / 2), u"dom"_s},
        {local(2025y / December / 27), local(2026y / January / 2), u"sab"_s},
        {local(2025y / December / 26), local(2026y / January / 2), u"26/12/25"_s},
        {local(2025y / December / 20), local(2026y / January / 2), u"20/12/25"_s},
        {local(2025y / December / 31, 23h + 59min), local(2026y / January / 1, 1min), u"ieri"_s},
    };
    for (const DateCase& each : cases) {
        EXPECT_EQ(NoteDateText::shortText(each.date, each.now, rome, u"it"_s), each.text);
    }
}

TEST(NoteDateText, CountsDaysOfTheZone) {
    const Moment date = Moment(sys_days(2026y / February / 19)) + 23h + 30min;
    const Moment now = date + 1h;
    EXPECT_EQ(NoteDateText::shortText(date, now, rome, u"it"_s), u"00:30"_s);
    EXPECT_EQ(NoteDateText::shortText(date, now, QTimeZone::utc(), u"it"_s), u"ieri"_s);
    EXPECT_EQ(NoteDateText::shortText(date, now, QTimeZone(-3600), u"it"_s), u"22:30"_s);
}

TEST(NoteDateText, ADayOf23HoursIsOneDay) {
    // Summer time began in Rome on 29 March 2026.
    const Moment date = Moment(sys_days(2026y / March / 28)) + 23h + 30min;
    const Moment now = Moment(sys_days(2026y / March / 29)) + 22h + 15min;
    EXPECT_EQ(NoteDateText::shortText(date, now, rome, u"it"_s), u"ieri"_s);
    const Moment before = Moment(sys_days(2026y / March / 28)) + 22h + 30min;
    EXPECT_EQ(NoteDateText::shortText(before, now, rome, u"it"_s), u"sab"_s);
}

TEST(NoteDateText, NeverShowsAFullStop) {
    const Moment now = local(2026y / February / 20);
    EXPECT_EQ(NoteDateText::shortText(local(2026y / February / 18), now, rome, u"de"_s), u"Mi"_s);
    EXPECT_EQ(NoteDateText::shortText(local(2026y / January / 5), now, rome, u"de"_s), u"5 Jan"_s);
    EXPECT_EQ(NoteDateText::shortText(local(2026y / January / 5), now, rome, u"fr_CA"_s), u"5 janv"_s);
}

TEST(NoteDateText, ANewLocaleOrZoneMakesOneMoreFormatter) {
    const Moment now = local(2026y / February / 20);
    const auto show = [&](const QTimeZone& zone, const QString& locale) {
        NoteDateText::shortText(local(2026y / February / 3), now, zone, locale);
    };
    const qsizetype before = keptDateFormatters();
    show(rome, u"nl"_s);
    EXPECT_EQ(keptDateFormatters(), before + 1);
    show(rome, u"nl_BE"_s);
    EXPECT_EQ(keptDateFormatters(), before + 2);
    show(QTimeZone("Asia/Tokyo"), u"nl"_s);
    EXPECT_EQ(keptDateFormatters(), before + 3);
    show(rome, u"nl"_s);
    EXPECT_EQ(keptDateFormatters(), before + 3);
}

TEST(NoteDateGroup, NamesTheGroup) {
    const Moment now = local(2026y / February / 20, 15h);
    const DateCase cases[] = {
        {local(2026y / February / 20, 0h), now, u"Oggi"_s},
        {local(2026y / February / 20, 23h), now, u"Oggi"_s},
        {local(2026y / February / 21), now, u"Oggi"_s},
        {local(2030y / February / 21), now, u"Oggi"_s},
        {Moment::max(), now, u"Oggi"_s},
        {local(2026y / February / 19, 0h), now, u"Ieri"_s},
        {local(2026y / February / 19, 23h + 59min), now, u"Ieri"_s},
        {local(2026y / February / 19, 23h + 59min), local(2026y / February / 20, 1min), u"Ieri"_s},
        {local(2026y / February / 18), now, u"Ultimi 7 giorni"_s},
        {local(2026y / February / 14), now, u"Ultimi 7 giorni"_s},
        {local(2026y / February / 13), now, u"Ultimi 30 giorni"_s},
        {local(2026y / January / 22, 0h), now, u"Ultimi 30 giorni"_s},
        {local(2026y / January / 21, 23h + 59min), now, u"Gennaio"_s},
        {local(2026y / January / 1, 0h), now, u"Gennaio"_s},
        {local(2025y / December / 31), now, u"Dicembre 2025"_s},
        {local(2026y / January / 11), now, u"Gennaio"_s},
        {local(2025y / December / 24), local(2026y / February / 2), u"Dicembre 2025"_s},
        {local(2025y / March / 3), now, u"Marzo 2025"_s},
        {distantPast, now, u"Settembre 1677"_s},
        {local(2025y / December / 31, 12h), local(2026y / January / 1, 1min), u"Ieri"_s},
        {local(2025y / December / 10), local(2026y / January / 2), u"Ultimi 30 giorni"_s},
    };
    for (const DateCase& each : cases) {
        EXPECT_EQ(NoteDateGroup::title(each.date, each.now, rome, u"it"_s), each.text);
    }
}

TEST(NoteDateGroup, TheFirstCharacterIsACapitalAndTheRestStays) {
    const Moment now = local(2026y / February / 20);
    const Moment longAgo = local(2024y / October / 3);
    EXPECT_EQ(NoteDateGroup::title(longAgo, now, rome, u"it_CH"_s), u"Ottobre 2024"_s);
    EXPECT_EQ(NoteDateGroup::title(longAgo, now, rome, u"ru"_s), u"\u041E\u043A\u0442\u044F\u0431\u0440\u044C 2024"_s);
    EXPECT_EQ(NoteDateGroup::title(longAgo, now, rome, u"ja"_s), u"10\u6708 2024"_s);
}

TEST(NoteDateGroups, GiveEveryDateTheHeadingThatItHasAlone) {
    // Day by day over the ends of weeks, months, years and of summer time, forward and back.
    const Moment now = local(2026y / April / 12, 15h);
    NoteDateGroups groups(now, rome, u"it"_s);
    const auto expectSame = [&](Moment date) {
        EXPECT_EQ(groups.title(date), NoteDateGroup::title(date, now, rome, u"it"_s))
            << date.time_since_epoch().count();
    };
    const Moment first = local(2024y / December / 20, 0h);
    const Moment last = local(2026y / April / 15, 0h);
    for (Moment date = first; date < last; date += 11h) {
        expectSame(date);
    }
    for (Moment date = last; date > first; date -= 11h) {
        expectSame(date);
    }
    for (const Moment date : {distantPast, Moment::max(), now, distantPast}) {
        expectSame(date);
    }
}

} // namespace quillary
