#include "QuillaryCore/Notes/NoteDates.h"

#include "QuillaryCore/Unicode/DatePattern.h"
#include "QuillaryCore/Unicode/DayCalendar.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <QCoreApplication>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

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
    const DayCalendar calendar(timeZone);
    const int days = daysBetween(date, now, calendar);
    if (days <= 0) {
        return QCoreApplication::translate("NoteDateGroup", "Oggi");
    }
    if (days == 1) {
        return QCoreApplication::translate("NoteDateGroup", "Ieri");
    }
    if (days <= 6) {
        return QCoreApplication::translate("NoteDateGroup", "Ultimi 7 giorni");
    }
    if (days <= 29) {
        return QCoreApplication::translate("NoteDateGroup", "Ultimi 30 giorni");
    }
    return withCapital(format(date, areInOneYear(date, now, calendar) ? u"LLLL"_s : u"LLLL yyyy"_s, calendar, locale));
}

} // namespace quillary
