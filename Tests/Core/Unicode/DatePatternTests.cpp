#include "QuillaryCore/Unicode/DatePattern.h"

#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <QDateTime>
#include <QTimeZone>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono;

const Moment afternoon = Moment(sys_days(2026y / March / 5)) + 14h + 7min + 59s + 999ms;

} // namespace

TEST(DatePattern, PrintsByPatternLocaleAndZone) {
    const struct {
        QString pattern;
        QString locale;
        QString timeZone;
        QString text;
    } cases[] = {
        {u"HH:mm"_s, u"it"_s, u"Europe/Rome"_s, u"15:07"_s},
        {u"HH:mm"_s, u"it"_s, u"America/New_York"_s, u"09:07"_s},
        {u"d MMM"_s, u"it_IT"_s, u"UTC"_s, u"5 mar"_s},
        {u"EEE"_s, u"it"_s, u"UTC"_s, u"gio"_s},
        {u"dd/MM/yy"_s, u"it"_s, u"UTC"_s, u"05/03/26"_s},
        {u"LLLL yyyy"_s, u"it"_s, u"UTC"_s, u"marzo 2026"_s},
        {u"LLLL"_s, u"en_US"_s, u"UTC"_s, u"March"_s},
        {u"yyyy-MM-dd HH.mm"_s, u"en_US_POSIX"_s, u"Asia/Tokyo"_s, u"2026-03-05 23.07"_s},
        {u"HH:mm"_s, u"it"_s, u"Middle/Earth"_s, u"14:07"_s},
        {u"yyyy"_s, u"th_TH"_s, u"UTC"_s, u"2026"_s},
    };

    for (const auto& each : cases) {
        SCOPED_TRACE(each.text.toStdString());
        EXPECT_EQ(formattedDate(afternoon, each.pattern, each.locale, each.timeZone), each.text);
        EXPECT_EQ(DateFormatter(each.pattern, each.locale, each.timeZone).text(afternoon), each.text);
    }
}

TEST(DatePattern, FollowsTheRulesOfTheSystem) {
    // The rules of this zone changed after the release of the ICU that is in use.
    const QTimeZone zone("America/Mexico_City");
    const Moment july = Moment(sys_days(2026y / July / 14)) + 3h;
    const QDateTime date = QDateTime::fromSecsSinceEpoch(floor<seconds>(july).time_since_epoch().count(), zone);
    EXPECT_EQ(formattedDate(july, u"dd HH:mm"_s, u"it"_s, u"America/Mexico_City"_s), date.toString(u"dd HH:mm"_s));
}

TEST(DatePattern, CutsToTheMillisecondBelowAlsoBeforeTheEpoch) {
    EXPECT_EQ(formattedDate(Moment(-1ns), u"yyyy HH:mm:ss.SSS"_s, u"it"_s, u"UTC"_s), u"1969 23:59:59.999"_s);
}

TEST(DatePattern, KeepsOneFormatterForEachCombination) {
    const auto print = [](const QString& pattern, const QString& locale, const QString& timeZone) {
        return formattedDate(afternoon, pattern, locale, timeZone);
    };
    const qsizetype before = keptDateFormatters();
    EXPECT_EQ(print(u"yy"_s, u"it"_s, u"Asia/Tokyo"_s), u"26"_s);
    EXPECT_EQ(keptDateFormatters(), before + 1);
    EXPECT_EQ(print(u"yy"_s, u"it"_s, u"Asia/Tokyo"_s), u"26"_s);
    EXPECT_EQ(keptDateFormatters(), before + 1);
    print(u"yy"_s, u"it_CH"_s, u"Asia/Tokyo"_s);
    EXPECT_EQ(keptDateFormatters(), before + 2);
    print(u"yy"_s, u"it_CH"_s, u"Asia/Seoul"_s);
    EXPECT_EQ(keptDateFormatters(), before + 3);
    print(u"M"_s, u"it_CH"_s, u"Asia/Seoul"_s);
    EXPECT_EQ(keptDateFormatters(), before + 4);
    print(u"yy"_s, u"it"_s, u"Asia/Tokyo"_s);
    EXPECT_EQ(keptDateFormatters(), before + 4);
}

TEST(DatePattern, ServesManyThreadsAtOnce) {
    std::vector<std::thread> threads;
    std::vector<int> wrong(4, 0);
    for (std::size_t thread = 0; thread < wrong.size(); ++thread) {
        threads.emplace_back([&mistakes = wrong[thread]] {
            for (int i = 0; i < 500; ++i) {
                const Moment moment = Moment(sys_days(2026y / January / 1)) + minutes(i);
                const QString expected = u"%1:%2"_s.arg(i / 60, 2, 10, QChar(u'0')).arg(i % 60, 2, 10, QChar(u'0'));
                mistakes += formattedDate(moment, u"HH:mm"_s, u"it"_s, u"UTC"_s) != expected;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_THAT(wrong, testing::Each(0));
}

TEST(InterfaceLocale, IsItalianWithTheUsersRegion) {
    // The test programs run in the C locale, which has no region.
    EXPECT_EQ(interfaceLocale(), u"it"_s);
    const std::pair<QString, QString> cases[] = {
        {u"it_IT"_s, u"it_IT"_s}, {u"it_CH"_s, u"it_CH"_s}, {u"de_CH"_s, u"it_CH"_s},
        {u"en_US"_s, u"it_US"_s}, {u"C"_s, u"it"_s},
    };
    for (const auto& [user, locale] : cases) {
        EXPECT_EQ(interfaceLocaleOf(QLocale(user)), locale) << user.toStdString();
    }
}

TEST(InterfaceLocale, CanBeAnother) {
    const QString before = interfaceLocale();
    setInterfaceLocale(u"de_CH"_s);
    EXPECT_EQ(interfaceLocale(), u"de_CH"_s);
    setInterfaceLocale(before);
    EXPECT_EQ(interfaceLocale(), before);
}

} // namespace quillary
