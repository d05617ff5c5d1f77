#include "QuillaryCore/Find/ReplacementTemplate.h"

namespace quillary {

namespace {

bool isDigit(QChar unit) {
    return unit >= u'0' && unit <= u'9';
}

/// How many digits the highest group's number has.
qsizetype digitsOf(std::size_t groupCount) {
    qsizetype digits = 1;
    for (; groupCount >= 10; groupCount /= 10) {
        ++digits;
    }
    return digits;
}

QStringView groupText(std::size_t number, const SearchMatch& match, QStringView text) {
    if (number == 0) {
        return text.sliced(match.range.location, match.range.length);
    }
    if (number > match.groups.size() || !match.groups[number - 1]) {
        return {};
    }
    const TextRange range = *match.groups[number - 1];
    return text.sliced(range.location, range.length);
}

} // namespace

QString expandedTemplate(QStringView replacementTemplate, const SearchMatch& match, QStringView text) {
    const qsizetype mostDigits = digitsOf(match.groups.size());
    const qsizetype length = replacementTemplate.size();
    QString result;
    for (qsizetype i = 0; i < length; ++i) {
        const QChar unit = replacementTemplate[i];
        if (unit == u'\\') {
            ++i;
            if (i < length) {
                result += replacementTemplate[i];
            }
        } else if (unit == u'$' && i + 1 < length && isDigit(replacementTemplate[i + 1])) {
            std::size_t number = 0;
            for (qsizetype digits = 0; digits < mostDigits && i + 1 < length && isDigit(replacementTemplate[i + 1]);
                 ++digits) {
                ++i;
                number = number * 10 + (replacementTemplate[i].unicode() - u'0');
            }
            result += groupText(number, match, text);
        } else {
            result += unit;
        }
    }
    return result;
}

} // namespace quillary
