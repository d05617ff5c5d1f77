#pragma once

#include "QuillaryCore/Notes/Moment.h"

#include <QString>
#include <QTimeZone>

namespace quillary {

/// The days of a place: the Gregorian calendar in one time zone.
class DayCalendar {
public:
    /// A time zone by its IANA name ("Europe/Rome"). An unknown name counts as UTC.
    explicit DayCalendar(QString timeZone) : m_timeZone(std::move(timeZone)) {}

    explicit DayCalendar(const QTimeZone& timeZone);

    /// That of the time zone which the system is set to.
    static DayCalendar current();

    /// The name of the time zone.
    const QString& timeZone() const { return m_timeZone; }

    /// What clocks show at a moment, cut to the millisecond below.
    std::chrono::local_time<std::chrono::milliseconds> localTime(Moment moment) const;

    /// The day that holds a moment; the next day is one more, whatever the length of a day.
    std::chrono::local_days day(Moment moment) const;

    /// The calendar year that holds a moment.
    std::chrono::year year(Moment moment) const;

private:
    QString m_timeZone;
};

} // namespace quillary
