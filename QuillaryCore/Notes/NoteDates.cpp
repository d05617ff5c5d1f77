#include "QuillaryCore/Notes/NoteDates.h"

#include "QuillaryCore/Unicode/DatePattern.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono;

/// How many days back the last week and the last month go.
constexpr int lastOfWeek = 6;
constexpr int lastOfMonth = 29;

/// A date by a pattern, without full stops, so that short names of months and weekdays never show one.
QString format(Moment date, const QString& pattern, const DayCalendar& calendar, const QString& locale) {
    return formattedDate(date, pattern, locale, calendar.timeZone()).remove(u'.');
}

int daysBetween(Moment date, Moment now, const DayCalendar& calendar) {
    return static_cast<int>((calendar.day(now) - calendar.day(date)).count());
}

bool areInOneYear(Moment date, Moment now, const DayCalendar& calendar) {
    return calendar.year(date) == calendar.year(now);
}

QString withCapital(const QString& text) {
    const QStringView first = clusterPrefix(text, 1);
    return first.toString().toUpper() + QStringView(text).sliced(first.size());
}

} // namespace

QString NoteDateText::shortText(Moment date, Moment now, const QTimeZone& timeZone, const QString& locale) {
    const DayCalendar calendar(timeZone);
    const int days = daysBetween(date, now, calendar);
    if (days == 0) {
        return format(date, u"HH:mm"_s, calendar, locale);
    }
    if (days == 1) {
        return QCoreApplication::translate("NoteDateText", "ieri");
    }
    if (days >= 2 && days <= 6) {
        return format(date, u"EEE"_s, calendar, locale);
    }
    return format(date, areInOneYear(date, now, calendar) ? u"d MMM"_s : u"dd/MM/yy"_s, calendar, locale);
}

QString NoteDateGroup::title(Moment date, Moment now, const QTimeZone& timeZone, const QString& locale) {
    return NoteDateGroups(now, timeZone, locale).title(date);
}

NoteDateGroups::NoteDateGroups(Moment now, const QTimeZone& timeZone, QString locale)
    : m_calendar(timeZone), m_today(m_calendar.day(now)), m_locale(std::move(locale)) {}

const QString& NoteDateGroups::title(Moment date) {
    const local_days day = m_calendar.day(date);
    if (!m_days || day < m_days->first || day > m_days->last) {
        m_days = daysAround(day);
        m_title = titleOf(day, date);
    }
    return m_title;
}

NoteDateGroups::Days NoteDateGroups::daysAround(local_days day) const {
    if (day >= m_today) {
        return {m_today, local_days::max()};
    }
    if (day == m_today - days(1)) {
        return {day, day};
    }
    if (day >= m_today - days(lastOfWeek)) {
        return {m_today - days(lastOfWeek), m_today - days(2)};
    }
    if (day >= m_today - days(lastOfMonth)) {
        return {m_today - days(lastOfMonth), m_today - days(lastOfWeek + 1)};
    }
    const year_month_day date(day);
    const local_days monthEnd(date.year() / date.month() / last);
    return {local_days(date.year() / date.month() / 1), std::min(monthEnd, m_today - days(lastOfMonth + 1))};
}

QString NoteDateGroups::titleOf(local_days day, Moment date) const {
    const auto age = (m_today - day).count();
    if (age <= 0) {
        return QCoreApplication::translate("NoteDateGroup", "Oggi");
    }
    if (age == 1) {
        return QCoreApplication::translate("NoteDateGroup", "Ieri");
    }
    if (age <= lastOfWeek) {
        return QCoreApplication::translate("NoteDateGroup", "Ultimi 7 giorni");
    }
    if (age <= lastOfMonth) {
        return QCoreApplication::translate("NoteDateGroup", "Ultimi 30 giorni");
    }
    const bool isOfThisYear = year_month_day(day).year() == year_month_day(m_today).year();
    return withCapital(format(date, isOfThisYear ? u"LLLL"_s : u"LLLL yyyy"_s, m_calendar, m_locale));
}

} // namespace quillary
