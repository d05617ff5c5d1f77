#pragma once

#include "QuillaryCore/Notes/Moment.h"

#include <QString>
#include <QTimeZone>

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

} // namespace quillary
