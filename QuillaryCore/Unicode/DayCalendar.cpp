#include "QuillaryCore/Unicode/DayCalendar.h"

#include <QDateTime>

#include <map>

namespace quillary {

namespace {

using namespace std::chrono;

QDateTime utcDate(milliseconds elapsed) {
    return QDateTime::fromMSecsSinceEpoch(elapsed.count(), Qt::UTC);
}

/// A time zone with what it last answered, since one moment mostly follows another of the same season. The rules come
/// from the system's own database, which is kept up to date; ICU brings one that is as old as ICU.
class ZoneClock {
public:
    explicit ZoneClock(const QString& name) : m_zone(name.toLatin1()) {
        if (!m_zone.isValid()) {
            m_zone = QTimeZone::utc();
        }
    }

    /// How far clocks are before UTC at a moment.
    seconds offset(milliseconds elapsed) {
        if (elapsed < m_from || elapsed >= m_until) {
            const QDateTime date = utcDate(elapsed);
            const QDateTime change = m_zone.previousTransition(date.addMSecs(1)).atUtc;
            const QDateTime nextChange = m_zone.nextTransition(date).atUtc;
            m_offset = seconds(m_zone.offsetFromUtc(date));
            m_from = change.isValid() ? milliseconds(change.toMSecsSinceEpoch()) : milliseconds::min();
            m_until = nextChange.isValid() ? milliseconds(nextChange.toMSecsSinceEpoch()) : milliseconds::max();
        }
        return m_offset;
    }

private:
    QTimeZone m_zone;
    seconds m_offset{};
    // The moments for which that holds: none at first.
    milliseconds m_from = milliseconds::max();
    milliseconds m_until = milliseconds::min();
};

/// The clock of a zone. Mostly the zone of the last one is asked for again, ten thousand times in a row where notes
/// come under the headings of their dates.
ZoneClock& zoneClock(const QString& name) {
    thread_local std::map<QString, ZoneClock> clocks;
    thread_local auto last = clocks.end();
    if (last == clocks.end() || last->first != name) {
        last = clocks.try_emplace(name, name).first;
    }
    return last->second;
}

} // namespace

DayCalendar::DayCalendar(const QTimeZone& timeZone) : m_timeZone(QString::fromLatin1(timeZone.id())) {}

DayCalendar DayCalendar::current() {
    return DayCalendar(QTimeZone::systemTimeZone());
}

std::chrono::local_time<std::chrono::milliseconds> DayCalendar::localTime(Moment moment) const {
    const auto elapsed = floor<milliseconds>(moment).time_since_epoch();
    return local_time<milliseconds>(elapsed + zoneClock(m_timeZone).offset(elapsed));
}

std::chrono::local_days DayCalendar::day(Moment moment) const {
    return std::chrono::floor<std::chrono::days>(localTime(moment));
}

std::chrono::year DayCalendar::year(Moment moment) const {
    return std::chrono::year_month_day(day(moment)).year();
}

} // namespace quillary
