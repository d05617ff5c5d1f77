#include "QuillaryCore/Text/LineTerminators.h"

#include <algorithm>

namespace quillary {

namespace {

// Short enough for the counter to stay 16 bits wide, which lets the compiler count eight or more units at a time.
constexpr qsizetype countedAtOnce = 32'768;

// Whether the unit ends a line, given its successor.
constexpr bool endsLine(char16_t unit, char16_t next) {
    return isLineTerminator(unit) & !((unit == u'\r') & (next == u'\n'));
}

} // namespace

qsizetype lineTerminatorCount(QStringView text) {
    if (text.isEmpty()) {
        return 0;
    }
    const char16_t* const units = text.utf16();
    const qsizetype last = text.size() - 1;
    qsizetype count = isLineTerminator(units[last]) ? 1 : 0;
    for (qsizetype from = 0; from < last; from += countedAtOnce) {
        const qsizetype to = std::min(from + countedAtOnce, last);
        quint16 counted = 0;
        for (qsizetype i = from; i < to; ++i) {
            counted = static_cast<quint16>(counted + (endsLine(units[i], units[i + 1]) ? 1 : 0));
        }
        count += counted;
    }
    return count;
}

void appendLineEnds(QStringView text, std::vector<qsizetype>& ends) {
    const char16_t* const units = text.utf16();
    const qsizetype size = text.size();
    for (qsizetype i = 0; i < size; ++i) {
        if (isLineTerminator(units[i]) && (i + 1 == size || endsLine(units[i], units[i + 1]))) {
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
