#include "QuillaryCore/Formats/Highlighting/SharedScanners.h"

namespace quillary::highlighting {

namespace {

/// The end of `[eE][+-]?\d+`, or the position itself.
qsizetype exponentEnd(const ClassifiedText& text, qsizetype begin) {
    if (!text.holds(begin, u'e') && !text.holds(begin, u'E')) {
        return begin;
    }
    const qsizetype sign = begin + 1;
    const qsizetype digits = text.holds(sign, u'+') || text.holds(sign, u'-') ? sign + 1 : sign;
    return text.is(digits, digit) ? text.runEnd(digit, digits) : begin;
}

qsizetype hexadecimalEnd(const ClassifiedText& text, qsizetype digits) {
    qsizetype end = digits;
    while (end < text.end() && (text.is(end, digit) || isAsciiHexDigit(text.unit(end)))) {
        ++end;
    }
    return end > digits && text.is(end, boundary) ? end : -1;
}

} // namespace

qsizetype decimalEnd(const ClassifiedText& text, qsizetype begin) {
    const qsizetype whole = text.runEnd(digit, begin);
    if (text.holds(whole, u'.') && text.is(whole + 1, digit)) {
        const qsizetype end = exponentEnd(text, text.runEnd(digit, whole + 1));
        // A fraction that runs into a word is given back, and the full stop ends the number.
        return text.is(end, boundary) ? end : whole;
    }
    const qsizetype end = exponentEnd(text, whole);
    return text.is(end, boundary) ? end : -1;
}

void scanNumbers(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    for (qsizetype p = text.next(wordStart, text.begin()); p < text.end(); p = text.next(wordStart, p)) {
        if (!text.is(p, digit)) {
            ++p;
            continue;
        }
        const bool isHexadecimal = text.unit(p) == u'0' && (text.holds(p + 1, u'x') || text.holds(p + 1, u'X'));
        const qsizetype end = isHexadecimal ? hexadecimalEnd(text, p + 2) : decimalEnd(text, p);
        if (end > 0) {
            pass.add(kind, p, end);
        }
        p = std::max(end, p + 1);
    }
}

} // namespace quillary::highlighting
