#pragma once

#include "QuillaryCore/Notes/Moment.h"

#include <QString>

#include <memory>

namespace quillary {

/// Prints moments by one of Unicode's date patterns ("d MMM", "yyyy-MM-dd HH.mm") with the names of a locale, in the
/// Gregorian calendar and one time zone. Costly to make; not for two threads at once.
class DateFormatter {
public:
    /// `locale` is ICU's name of it, `timeZone` an IANA name; an unknown one counts as UTC.
    DateFormatter(const QString& pattern, const QString& locale, const QString& timeZone);
    ~DateFormatter();

    DateFormatter(DateFormatter&&) noexcept;
    DateFormatter& operator=(DateFormatter&&) noexcept;

    QString text(Moment moment) const;

private:
    class Format;
    std::unique_ptr<Format> m_format;
};

/// The same through a formatter that the process keeps for good: one for each combination of pattern, locale and time
/// zone. Safe in every thread.
QString formattedDate(Moment moment, const QString& pattern, const QString& locale, const QString& timeZone);

/// How many formatters the process keeps by now.
qsizetype keptDateFormatters();

} // namespace quillary
