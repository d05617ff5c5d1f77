#pragma once

#include "QuillaryCore/Formats/Highlighting/Rule.h"

namespace quillary::highlighting {

/// `//[^\n]*`
template <Classes slash>
void scanLineComments(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    for (qsizetype p = text.next(slash, text.begin()); p < text.end(); p = text.next(slash, p)) {
        if (!text.holds(p + 1, u'/')) {
            ++p;
            continue;
        }
        qsizetype end = text.next(lineTerminator, p + 2);
        while (end < text.end() && text.unit(end) != u'\n') {
            end = text.next(lineTerminator, end + 1);
        }
        pass.add(kind, p, end);
        p = end;
    }
}

/// `/\*[\s\S]*?(?:\*/|\z)`
template <Classes slash, Classes star>
void scanBlockComments(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    for (qsizetype p = text.next(slash, text.begin()); p < text.end(); p = text.next(slash, p)) {
        if (!text.holds(p, u"/*")) {
            ++p;
            continue;
        }
        qsizetype close = text.next(star, p + 2);
        while (close < text.end() && !text.holds(close, u"*/")) {
            close = text.next(star, close + 1);
        }
        const qsizetype end = close < text.end() ? close + 2 : close;
        pass.add(kind, p, end);
        p = end;
    }
}

/// Where the reading of a quoted text ends: behind its closing quote, or at the unit that no quoted text may hold.
struct QuotedEnd {
    qsizetype position;
    bool isClosed;
};

/// Reads `(?:[^"\\\n]|\\.)*"`, or without the `\n` what may hold line ends, from behind the opening quote.
template <Classes quote, Classes backslash, bool holdsLineEnds>
QuotedEnd readQuoted(const ClassifiedText& text, qsizetype from) {
    constexpr Classes stops = quote | backslash | (holdsLineEnds ? 0 : lineTerminator);
    qsizetype p = text.next(stops, from);
    while (p < text.end()) {
        if (text.is(p, quote)) {
            return {p + 1, true};
        }
        if (text.is(p, backslash)) {
            if (p + 1 == text.end() || text.is(p + 1, lineTerminator)) {
                return {p, false};
            }
            ++p;
        } else if (text.unit(p) == u'\n') {
            return {p, false};
        }
        p = text.next(stops, p + 1);
    }
    return {p, false};
}

/// `"(?:[^"\\\n]|\\.)*"`, or without the `\n`, with any quote.
template <Classes quote, Classes backslash, bool holdsLineEnds>
void scanQuoted(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    for (qsizetype p = text.next(quote, text.begin()); p < text.end(); p = text.next(quote, p)) {
        const QuotedEnd end = readQuoted<quote, backslash, holdsLineEnds>(text, p + 1);
        if (end.isClosed) {
            pass.add(kind, p, end.position);
        }
        // Quotes passed on the way to a failure were escaped: read from there, the text fails at the same place.
        p = end.position;
    }
}

/// The end of `\d+(?:\.\d+)?(?:[eE][+-]?\d+)?\b` at a digit, or -1.
qsizetype decimalEnd(const ClassifiedText& text, qsizetype begin);

/// `\b(?:0[xX][\da-fA-F]+|\d+(?:\.\d+)?(?:[eE][+-]?\d+)?)\b`
void scanNumbers(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass);

/// `\b([A-Za-z_$][\w$]*)(?=\s*\()`
template <Classes dollar, Classes parenthesis>
void scanCalls(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    // A name stands right before a parenthesis and the blanks before it: looked for backwards, no unit is read twice.
    for (qsizetype p = text.next(parenthesis, text.begin()); p < text.end(); p = text.next(parenthesis, p + 1)) {
        const qsizetype end = text.runStart(space, p, text.begin());
        qsizetype begin = text.runStart(word | dollar, end, text.begin());
        while (begin < end) {
            if (text.is(begin, dollar)
                    ? text.is(begin, boundary)
                    : text.is(begin, wordStart) && (isAsciiLetter(text.unit(begin)) || text.unit(begin) == u'_')) {
                pass.add(kind, begin, end);
                break;
            }
            ++begin;
        }
    }
}

/// `\b(?:one|other|...)\b`, a word that `accepts` takes.
template <typename Accepts>
void scanWords(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass, Accepts accepts) {
    for (qsizetype p = text.next(wordStart, text.begin()); p < text.end(); p = text.next(wordStart, p)) {
        const qsizetype end = text.runEnd(word, p);
        if (text.is(end, boundary) && accepts(text.rest(p).first(end - p))) {
            pass.add(kind, p, end);
        }
        p = end;
    }
}

} // namespace quillary::highlighting
