#include "QuillaryCore/Text/LineTerminators.h"

#include <algorithm>

namespace quillary {

namespace {

// Short enough for the counter to stay 16 bits wide, which lets the compiler count eight or more units at a time.
constexpr qsizetype countedAtOnce = 32'768;

// 1 if the unit ends a line, given its successor; else 0. In arithmetic of one width, which becomes vector code.
constexpr quint16 endsLine(quint16 unit, quint16 next) {
    const quint16 isTerminator = (static_cast<quint16>(unit - u'\n') <= u'\r' - u'\n') | (unit == u'\x85') |
                                 (static_cast<quint16>(unit | 1) == u'\u2029');
    const quint16 isWithinCrLf = (unit == u'\r') & (next == u'\n');
    return isTerminator & static_cast<quint16>(isWithinCrLf ^ 1);
}

} // namespace

qsizetype lineTerminatorCount(QStringView text) {
    if (text.isEmpty()) {
        return 0;
    }
    const char16_t* const units = text.utf16();
    const qsizetype last = text.size() - 1;
    qsizetype count = isLineTerminator(text.back().unicode()) ? 1 : 0;
    for (qsizetype from = 0; from < last; from += countedAtOnce) {
        const qsizetype to = std::min(from + countedAtOnce, last);
        quint16 counted = 0;
        for (qsizetype i = from; i < to; ++i) {
            counted = static_cast<quint16>(counted + endsLine(units[i], units[i + 1]));
        }
        count += counted;
    }
    return count;
}

void appendLineEnds(QStringView text, std::vector<qsizetype>& ends) {
    const char16_t* const units = text.utf16();
    const qsizetype size = text.size();
    for (qsizetype i = 0; i < size; ++i) {
        // Nearly all units of nearly all texts are told by this one comparison.
        const bool isOrdinary = static_cast<char16_t>(units[i] - (u'\r' + 1)) < u'\x85' - (u'\r' + 1);
        if (!isOrdinary && endsLine(units[i], i + 1 < size ? units[i + 1] : u'\0') != 0) {
            ends.push_back(i + 1);
        }
    }
}

qsizetype trailingTerminatorLength(QStringView text) {
    if (text.isEmpty() || !isLineTerminator(text.back().unicode())) {
        return 0;
    }
    return text.endsWith(u"\r\n") ? 2 : 1;
}

} // namespace quillary
