#include "QuillaryCore/Formats/Highlighting/SharedScanners.h"

namespace quillary::highlighting {

namespace {

constexpr Classes cssDoubleQuote = languageClass(0);
constexpr Classes cssSingleQuote = languageClass(1);
constexpr Classes cssBackslash = languageClass(2);
constexpr Classes cssHyphen = languageClass(3);
constexpr Classes cssColon = languageClass(4);
/// A brace or a semicolon.
constexpr Classes cssBrace = languageClass(5);
constexpr Classes cssParenthesis = languageClass(6);
/// A full stop or a number sign.
constexpr Classes cssSelectorMark = languageClass(7);
/// A slash, a star, an at sign or an exclamation mark.
constexpr Classes cssRareMark = languageClass(8);

constexpr Classes cssName = word | cssHyphen;

constexpr ClassTable cssClasses = makeClassTable({
    {"\"", cssDoubleQuote},
    {"'", cssSingleQuote},
    {"\\", cssBackslash},
    {"-", cssHyphen},
    {":", cssColon},
    {"{};", cssBrace},
    {"(", cssParenthesis},
    {".#", cssSelectorMark},
    {"/*@!", cssRareMark},
});

/// Finds the next brace or semicolon for positions that only grow, reading the text once in all.
class BraceCursor {
public:
    explicit BraceCursor(const ClassifiedText& text) : m_text(text), m_brace(text.next(cssBrace, text.begin())) {}

    /// The first brace or semicolon at or behind a position, or the end.
    qsizetype from(qsizetype position) {
        if (m_brace < position) {
            m_brace = m_text.next(cssBrace, position);
        }
        return m_brace;
    }

    /// Whether `(?=[^{};]*\{)` holds at a position.
    bool opensBlock(qsizetype position) { return m_text.holds(from(position), u'{'); }

private:
    const ClassifiedText& m_text;
    qsizetype m_brace;
};

/// `@[\w-]+`
void scanCssAtRules(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    for (qsizetype p = text.next(cssRareMark, text.begin()); p < text.end(); p = text.next(cssRareMark, p)) {
        const qsizetype end = text.unit(p) == u'@' ? text.runEnd(cssName, p + 1) : p;
        if (end > p + 1) {
            pass.add(kind, p, end);
        }
        p = std::max(end, p + 1);
    }
}

/// `!important\b`
void scanCssImportant(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    constexpr std::u16string_view important = u"!important";
    for (qsizetype p = text.next(cssRareMark, text.begin()); p < text.end(); p = text.next(cssRareMark, p + 1)) {
        const qsizetype end = p + static_cast<qsizetype>(important.size());
        if (text.holds(p, important) && text.is(end, boundary)) {
            pass.add(kind, p, end);
        }
    }
}

/// `(?:^|[{;\s])([\w-]+)\s*:(?=[^;{}]*[;}])`, the property
void scanCssProperties(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    BraceCursor braces(text);
    for (qsizetype p = text.next(cssColon, text.begin()); p < text.end(); p = text.next(cssColon, p + 1)) {
        const qsizetype end = text.runStart(space, p, text.begin());
        const qsizetype begin = text.runStart(cssName, end, text.begin());
        if (begin == end) {
            continue;
        }
        // A line's start behind a line terminator needs no look of its own: the terminator is a space.
        const bool isFirst = begin == text.begin() || text.is(begin - 1, space) || text.unit(begin - 1) == u'{' ||
                             text.unit(begin - 1) == u';';
        if (isFirst) {
            const qsizetype brace = braces.from(p + 1);
            if (brace < text.end() && text.unit(brace) != u'{') {
                pass.add(kind, begin, end);
            }
        }
    }
}

/// `#[0-9a-fA-F]{3,8}\b(?![^{};]*\{)`
void scanCssColors(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    constexpr qsizetype fewest = 3;
    constexpr qsizetype most = 8;
    BraceCursor braces(text);
    for (qsizetype p = text.next(cssSelectorMark, text.begin()); p < text.end(); p = text.next(cssSelectorMark, p)) {
        if (text.unit(p) != u'#') {
            ++p;
            continue;
        }
        const qsizetype digits = p + 1;
        qsizetype end = digits;
        while (end < text.end() && end - digits < most && isAsciiHexDigit(text.unit(end))) {
            ++end;
        }
        if (end - digits >= fewest && text.is(end, boundary) && !braces.opensBlock(end)) {
            pass.add(kind, p, end);
        }
        p = end;
    }
}

/// The length of `(?:px|em|rem|vh|vw|vmin|vmax|ms|s|deg|fr|pt|ch|%)?` at a position. No unit begins another.
qsizetype cssUnitLength(const ClassifiedText& text, qsizetype position) {
    if (position == text.end()) {
        return 0;
    }
    const auto lengthOf = [&](std::u16string_view name) {
        return text.holds(position, name) ? static_cast<qsizetype>(name.size()) : 0;
    };
    switch (text.unit(position)) {
    case u'%':
    case u's':
        return 1;
    case u'p':
        return std::max(lengthOf(u"px"), lengthOf(u"pt"));
    case u'e':
        return lengthOf(u"em");
    case u'r':
        return lengthOf(u"rem");
    case u'v':
        return std::max({lengthOf(u"vh"), lengthOf(u"vw"), lengthOf(u"vmin"), lengthOf(u"vmax")});
    case u'm':
        return lengthOf(u"ms");
    case u'd':
        return lengthOf(u"deg");
    case u'f':
        return lengthOf(u"fr");
    case u'c':
        return lengthOf(u"ch");
    default:
        return 0;
    }
}

/// The end of `-?\d*\.?\d+` at a position, or the position itself.
qsizetype cssNumberEnd(const ClassifiedText& text, qsizetype begin) {
    const qsizetype digits = text.holds(begin, u'-') ? begin + 1 : begin;
    const qsizetype whole = text.runEnd(digit, digits);
    if (text.holds(whole, u'.') && text.is(whole + 1, digit)) {
        return text.runEnd(digit, whole + 1);
    }
    return whole > digits ? whole : begin;
}

/// `(?<![\w#.-])-?\d*\.?\d+(?:px|em|rem|vh|vw|vmin|vmax|ms|s|deg|fr|pt|ch|%)?`
void scanCssNumbers(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    constexpr Classes starts = digit | cssHyphen | cssSelectorMark;
    for (qsizetype p = text.next(starts, text.begin()); p < text.end(); p = text.next(starts, p)) {
        const bool isBehindName = p > text.begin() && text.is(p - 1, cssName | cssSelectorMark);
        const qsizetype number = isBehindName ? p : cssNumberEnd(text, p);
        if (number == p) {
            ++p;
            continue;
        }
        const qsizetype end = number + cssUnitLength(text, number);
        pass.add(kind, p, end);
        p = end;
    }
}

/// `([\w-]+)(?=\()`
void scanCssFunctions(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    for (qsizetype p = text.next(cssParenthesis, text.begin()); p < text.end(); p = text.next(cssParenthesis, p + 1)) {
        const qsizetype begin = text.runStart(cssName, p, text.begin());
        if (begin < p) {
            pass.add(kind, begin, p);
        }
    }
}

/// What the three selector rules share: a match starts at a unit of class `starts`; `beginning` gives the end of what
/// it must begin with, or the position itself, and `continuation` the end of the whole. The next brace opens a block.
/// No match holds a brace, so that the brace is looked for first and rules out all starts before it.
template <typename Beginning, typename Continuation>
void scanCssSelectors(const ClassifiedText& text, Classes starts, SyntaxTokenKind kind, Pass& pass, Beginning beginning,
                      Continuation continuation) {
    BraceCursor braces(text);
    for (qsizetype p = text.next(starts, text.begin()); p < text.end(); p = text.next(starts, p)) {
        const qsizetype brace = braces.from(p);
        if (!text.holds(brace, u'{')) {
            p = std::min(brace + 1, text.end());
            continue;
        }
        const qsizetype begun = beginning(p);
        if (begun == p) {
            ++p;
            continue;
        }
        const qsizetype end = continuation(begun);
        pass.add(kind, p, end);
        p = end;
    }
}

/// `[.#][A-Za-z_][\w-]*(?=[^{};]*\{)`
void scanCssClasses(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    const auto beginning = [&](qsizetype p) {
        return p + 1 < text.end() && (isAsciiLetter(text.unit(p + 1)) || text.unit(p + 1) == u'_') ? p + 2 : p;
    };
    scanCssSelectors(text, cssSelectorMark, kind, pass, beginning,
                     [&](qsizetype begun) { return text.runEnd(cssName, begun); });
}

/// `::?[A-Za-z-]+(?=[^{};]*\{)`
void scanCssPseudoClasses(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    const auto nameEnd = [&](qsizetype p) {
        while (p < text.end() && (isAsciiLetter(text.unit(p)) || text.unit(p) == u'-')) {
            ++p;
        }
        return p;
    };
    const auto beginning = [&](qsizetype p) {
        const qsizetype name = text.holds(p + 1, u':') ? p + 2 : p + 1;
        return nameEnd(name) > name ? name + 1 : p;
    };
    scanCssSelectors(text, cssColon, kind, pass, beginning, nameEnd);
}

/// `\b[a-z][\w-]*(?=[^{};]*\{)`
void scanCssElements(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass) {
    scanCssSelectors(
        text, wordStart, kind, pass, [&](qsizetype p) { return isAsciiLowercase(text.unit(p)) ? p + 1 : p; },
        [&](qsizetype begun) { return text.runEnd(cssName, begun); });
}

constexpr std::array cssRuleArray = {
    Rule{SyntaxTokenKind::comment, cssRareMark, scanBlockComments<cssRareMark, cssRareMark>},
    Rule{SyntaxTokenKind::string, cssDoubleQuote, scanQuoted<cssDoubleQuote, cssBackslash, false>},
    Rule{SyntaxTokenKind::string, cssSingleQuote, scanQuoted<cssSingleQuote, cssBackslash, false>},
    Rule{SyntaxTokenKind::keyword, cssRareMark, scanCssAtRules},
    Rule{SyntaxTokenKind::keyword, cssRareMark, scanCssImportant},
    Rule{SyntaxTokenKind::attribute, cssColon, scanCssProperties},
    Rule{SyntaxTokenKind::number, cssSelectorMark, scanCssColors},
    Rule{SyntaxTokenKind::number, digit, scanCssNumbers},
    Rule{SyntaxTokenKind::function, cssParenthesis, scanCssFunctions},
    Rule{SyntaxTokenKind::tag, cssSelectorMark, scanCssClasses},
    Rule{SyntaxTokenKind::keyword, cssColon, scanCssPseudoClasses},
    Rule{SyntaxTokenKind::tag, wordStart, scanCssElements},
};

} // namespace

RuleList cssRules() {
    return {cssClasses, cssRuleArray};
}

} // namespace quillary::highlighting
