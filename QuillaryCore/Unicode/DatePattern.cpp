#include "QuillaryCore/Unicode/DatePattern.h"

#include "QuillaryCore/Unicode/DayCalendar.h"
#include "QuillaryCore/Unicode/Icu.h"

#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>

#include <mutex>
#include <unordered_map>

namespace quillary {

namespace {

struct FormatterCache {
    std::mutex mutex;
    std::unordered_map<QString, DateFormatter> formatters;
};

FormatterCache& formatterCache() {
    static FormatterCache cache;
    return cache;
}

} // namespace

class DateFormatter::Format {
public:
    Format(const QString& pattern, const icu::Locale& locale, const QString& timeZone, UErrorCode& status)
        : m_format(icu_support::readOnlyAlias(pattern), locale, status), m_calendar(timeZone) {
        auto calendar = std::make_unique<icu::GregorianCalendar>(locale, status);
        // It is given what clocks show, so that no rule of a time zone is asked from ICU.
        calendar->setTimeZone(*icu::TimeZone::getGMT());
        m_format.adoptCalendar(calendar.release());
    }

    QString text(Moment moment) const {
        icu::UnicodeString result;
        m_format.format(static_cast<double>(m_calendar.localTime(moment).time_since_epoch().count()), result);
        return icu_support::view(result).toString();
    }

private:
    icu::SimpleDateFormat m_format;
    DayCalendar m_calendar;
};

DateFormatter::DateFormatter(const QString& pattern, const QString& locale, const QString& timeZone) {
    UErrorCode status = U_ZERO_ERROR;
    m_format = std::make_unique<Format>(pattern, icu_support::locale(locale), timeZone, status);
    icu_support::require(status, "make a date formatter");
}

DateFormatter::~DateFormatter() = default;
DateFormatter::DateFormatter(DateFormatter&&) noexcept = default;
DateFormatter& DateFormatter::operator=(DateFormatter&&) noexcept = default;

QString DateFormatter::text(Moment moment) const {
    return m_format->text(moment);
}

QString formattedDate(Moment moment, const QString& pattern, const QString& locale, const QString& timeZone) {
    const QString key = pattern + u'|' + locale + u'|' + timeZone;
    FormatterCache& cache = formatterCache();
    // ICU's formatters change as they format, so the lock is held to the end.
    const std::scoped_lock lock(cache.mutex);
    auto found = cache.formatters.find(key);
    if (found == cache.formatters.end()) {
        found = cache.formatters.try_emplace(key, pattern, locale, timeZone).first;
    }
    return found->second.text(moment);
}

qsizetype keptDateFormatters() {
    FormatterCache& cache = formatterCache();
    const std::scoped_lock lock(cache.mutex);
    return static_cast<qsizetype>(cache.formatters.size());
}

} // namespace quillary
