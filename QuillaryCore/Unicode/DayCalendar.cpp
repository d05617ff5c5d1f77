#include "QuillaryCore/Unicode/DayCalendar.h"

#include "QuillaryCore/Unicode/Icu.h"

#include <QHash>

#include <unicode/timezone.h>

#include <memory>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

std::unique_ptr<icu::TimeZone> newTimeZone(const QString& name) {
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(icu_support::readOnlyAlias(name)));
    if (*zone == icu::TimeZone::getUnknown()) {
        zone.reset(icu::TimeZone::createTimeZone(u"UTC"));
    }
    return zone;
}

const icu::TimeZone& timeZoneFor(const QString& name) {
    thread_local QHash<QString, std::shared_ptr<const icu::TimeZone>> zones;
    std::shared_ptr<const icu::TimeZone>& zone = zones[name];
    if (!zone) {
        zone = newTimeZone(name);
    }
    return *zone;
}

} // namespace

DayCalendar::DayCalendar(const QTimeZone& timeZone) : m_timeZone(QString::fromLatin1(timeZone.id())) {
    // Qt calls the zones that are a mere offset "UTC+02:00", ICU "GMT+02:00".
    if (m_timeZone.size() > 3 && m_timeZone.startsWith("UTC"_L1)) {
        m_timeZone.replace(0, 3, "GMT"_L1);
    }
}

DayCalendar DayCalendar::current() {
    return DayCalendar(QTimeZone::systemTimeZone());
}

bool DayCalendar::isTimeZone(const QString& name) {
    const std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(icu_support::readOnlyAlias(name)));
    return *zone != icu::TimeZone::getUnknown();
}

std::chrono::local_days DayCalendar::day(Moment moment) const {
    using namespace std::chrono;
    const auto elapsed = floor<milliseconds>(moment).time_since_epoch();
    UErrorCode status = U_ZERO_ERROR;
    int32_t standard = 0;
    int32_t daylight = 0;
    timeZoneFor(m_timeZone).getOffset(static_cast<double>(elapsed.count()), false, standard, daylight, status);
    icu_support::require(status, "find the offset of a time zone");
    return floor<days>(local_time<milliseconds>(elapsed + milliseconds(standard) + milliseconds(daylight)));
}

std::chrono::year DayCalendar::year(Moment moment) const {
    return std::chrono::year_month_day(day(moment)).year();
}

} // namespace quillary
