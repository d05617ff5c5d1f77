#pragma once

#include "QuillaryCore/Notes/Moment.h"
#include "QuillaryCore/Unicode/DayCalendar.h"

#include <QString>
#include <QTimeZone>

#include <chrono>
#include <optional>

namespace quillary {

/// The date in a row of the list.
struct NoteDateText {
    NoteDateText() = delete;

    /// The time of day for today, "ieri", the weekday up to six days back, then day and month, with the year if it is
    /// another one than that of `now`. Days are those of the time zone; `locale` is ICU's name of it.
    static QString shortText(Moment date, Moment now, const QTimeZone& timeZone, const QString& locale);
};

/// The headings of a list by date.
struct NoteDateGroup {
    NoteDateGroup() = delete;

    /// "Oggi" (also for the future), "Ieri", "Ultimi 7 giorni", "Ultimi 30 giorni", then the month, with the year if it
    /// is another one than that of `now`.
    static QString title(Moment date, Moment now, const QTimeZone& timeZone, const QString& locale);
};

/// The same headings for the notes of one list: neighbours in it mostly have the same one, which is made once.
class NoteDateGroups {
public:
    NoteDateGroups(Moment now, const QTimeZone& timeZone, QString locale);

    /// The heading of a date, as NoteDateGroup gives it.
    const QString& title(Moment date);

private:
    /// Days that have one heading, the last one included.
    struct Days {
        std::chrono::local_days first;
        std::chrono::local_days last;
    };

    Days daysAround(std::chrono::local_days day) const;
    QString titleOf(std::chrono::local_days day, Moment date) const;

    DayCalendar m_calendar;
    std::chrono::local_days m_today;
    QString m_locale;
    std::optional<Days> m_days;
    QString m_title;
};

} // namespace quillary
