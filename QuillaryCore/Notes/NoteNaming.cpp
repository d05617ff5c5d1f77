#include "QuillaryCore/Notes/NoteNaming.h"

#include "QuillaryCore/Notes/Blanks.h"
#include "QuillaryCore/Unicode/DatePattern.h"
#include "QuillaryCore/Unicode/DayCalendar.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <QCoreApplication>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

constexpr qsizetype longestTitle = 120;

bool isForbidden(char32_t scalar) {
    switch (scalar) {
    case U'/':
    case U':':
    case U'\\':
        return true;
    default:
        break;
    }
    switch (QChar::category(scalar)) {
    case QChar::Other_Control:
    case QChar::Other_Format:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        return false;
    }
}

QString withHyphensForForbidden(QStringView title) {
    QString result;
    result.reserve(title.size());
    for (qsizetype i = 0; i < title.size(); ++i) {
        const bool isPair = title[i].isHighSurrogate() && i + 1 < title.size() && title[i + 1].isLowSurrogate();
        const char32_t scalar = isPair ? QChar::surrogateToUcs4(title[i], title[i + 1]) : title[i].unicode();
        if (isForbidden(scalar)) {
            result += u'-';
        } else {
            result += title.sliced(i, isPair ? 2 : 1);
        }
        i += isPair;
    }
    return result;
}

} // namespace

QString NoteNaming::defaultTitle(Moment date, const QTimeZone& timeZone) {
    const DateFormatter formatter(u"yyyy-MM-dd HH.mm"_s, u"en_US_POSIX"_s, DayCalendar(timeZone).timeZone());
    return QCoreApplication::translate("NoteNaming", "Nota ") + formatter.text(date);
}

QString NoteNaming::sanitizedTitle(QStringView title) {
    const QString hyphenated = withHyphensForForbidden(title);
    QStringView result = trimmedOfBlanks(hyphenated);
    // A full stop with a mark on it hides a file just as well, so the test is of the unit.
    while (result.startsWith(u'.')) {
        result = result.sliced(nextClusterBoundary(result, 0));
    }
    if (clusterCount(result, longestTitle) > longestTitle) {
        result = trimmedOfBlanks(clusterPrefix(result, longestTitle));
    }
    return result.toString();
}

} // namespace quillary
