#include "QuillaryCore/Formats/MarkdownLineForms.h"

#include <algorithm>

namespace quillary::MarkdownLineForms {

namespace {

using MarkdownCharacters::find;
using MarkdownCharacters::isAt;
using MarkdownCharacters::standsAlone;

/// Lines that are indented further are code or go on with a paragraph.
constexpr qsizetype greatestIndent = 3;

/// The first unit of a line that isn't indented too far; NUL if there is none.
char16_t leadingUnit(const MarkdownLine& line) {
    return line.indent() <= greatestIndent && line.indent() < line.text().size() ? line.text()[line.indent()].unicode()
                                                                                 : u'\0';
}

qsizetype runLength(QStringView text, char16_t unit) {
    qsizetype length = 0;
    while (length < text.size() && text[length] == unit) {
        ++length;
    }
    return length;
}

bool isWhitespace(QChar unit) {
    return unit == u'\t' || unit.category() == QChar::Separator_Space;
}

QStringView withoutWhitespace(QStringView text) {
    while (!text.isEmpty() && isWhitespace(text.front())) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && isWhitespace(text.back())) {
        text.chop(1);
    }
    return text;
}

/// What a regular expression of ICU takes for whitespace and for the end of a line.
bool isRegexWhitespace(QChar unit) {
    return unit.isSpace();
}

bool isLineEnd(QChar unit) {
    return (unit >= u'\n' && unit <= u'\r') || unit == u'\u0085' || unit == u'\u2028' || unit == u'\u2029';
}

/// What stands before the first match of "(^|\s+)#+$", where "$" also matches before a line end at the end.
QStringView withoutClosingRun(QStringView text) {
    QStringView rest = text;
    if (!rest.isEmpty() && isLineEnd(rest.back())) {
        rest.chop(1);
    }
    qsizetype end = rest.size();
    while (end > 0 && rest[end - 1] == u'#') {
        --end;
    }
    if (end == rest.size() || (end > 0 && !isRegexWhitespace(rest[end - 1]))) {
        return text;
    }
    while (end > 0 && isRegexWhitespace(rest[end - 1])) {
        --end;
    }
    return text.first(end);
}

} // namespace

std::optional<Fence> fence(const MarkdownLine& line) {
    const char16_t marker = leadingUnit(line);
    if (marker != u'`' && marker != u'~') {
        return std::nullopt;
    }
    const QStringView content = line.content();
    qsizetype length = runLength(content, marker);
    if (!standsAlone(content, length - 1)) {
        --length;
    }
    if (length < 3) {
        return std::nullopt;
    }
    const QStringView info = withoutWhitespace(content.sliced(length));
    if (marker == u'`' && find(info, u'`') >= 0) {
        return std::nullopt;
    }
    return Fence{marker, length, line.indent(), info};
}

bool closesFence(const MarkdownLine& line, char16_t marker, qsizetype length) {
    if (line.indent() > greatestIndent) {
        return false;
    }
    const QStringView text = MarkdownCharacters::trimmed(line.content());
    return text.size() >= length && runLength(text, marker) == text.size();
}

std::optional<QStringView> language(QStringView info) {
    if (info.isEmpty()) {
        return std::nullopt;
    }
    const qsizetype end = find(info, u' ');
    return end < 0 ? info : info.first(end);
}

std::optional<Heading> atxHeading(const MarkdownLine& line) {
    if (leadingUnit(line) != u'#') {
        return std::nullopt;
    }
    const QStringView content = line.content();
    const qsizetype level = runLength(content.first(std::min<qsizetype>(content.size(), 7)), u'#');
    if (level > 6 || (level < content.size() && !isAt(content, level, u' '))) {
        return std::nullopt;
    }
    return Heading{static_cast<int>(level), withoutClosingRun(MarkdownCharacters::trimmed(content.sliced(level)))};
}

bool isThematicBreak(const MarkdownLine& line, ThematicMemo& memo) {
    const char16_t marker = leadingUnit(line);
    if (marker != u'-' && marker != u'*' && marker != u'_') {
        return false;
    }
    const QStringView content = line.content();
    // A trimmed line may end before the unit that stopped the search.
    if (memo.marker == marker && content.utf16() < memo.stop && memo.stop < content.utf16() + content.size()) {
        return false;
    }
    qsizetype count = 0;
    for (qsizetype i = 0; i < content.size(); ++i) {
        if (content[i] == marker) {
            ++count;
        } else if (content[i] != u' ') {
            memo = {marker, content.utf16() + i};
            return false;
        }
    }
    return count >= 3;
}

bool isQuoteLine(const MarkdownLine& line) {
    return leadingUnit(line) == u'>' && standsAlone(line.text(), line.indent());
}

MarkdownLine quoteContent(const MarkdownLine& line) {
    const QStringView rest = line.content().sliced(1);
    return MarkdownLine(isAt(rest, 0, u' ') ? rest.sliced(1) : rest);
}

std::optional<ListMarker> listMarker(const MarkdownLine& line) {
    constexpr qsizetype mostDigits = 9;
    constexpr qsizetype greatestWidth = 4;

    const QStringView content = line.content();
    if (content.isEmpty()) {
        return std::nullopt;
    }
    const QChar first = content.front();
    ListMarker marker{line.indent(), first != u'-' && first != u'*' && first != u'+', 0, 0, {}};
    qsizetype length = 1;
    if (marker.ordered) {
        qsizetype digits = 0;
        while (digits < content.size() && digits <= mostDigits && content[digits] >= u'0' && content[digits] <= u'9') {
            if (digits < mostDigits) {
                marker.number = marker.number * 10 + (content[digits].unicode() - u'0');
            }
            ++digits;
        }
        if (digits == 0 || digits > mostDigits || digits == content.size() ||
            (content[digits] != u'.' && content[digits] != u')')) {
            return std::nullopt;
        }
        length = digits + 1;
    }

    // A combining mark behind the marker is no space, so that such a marker falls out here.
    const QStringView rest = content.sliced(length);
    const qsizetype spaces = MarkdownCharacters::indentation(rest);
    if (spaces == 0 && !rest.isEmpty()) {
        return std::nullopt;
    }
    const qsizetype width = spaces >= 1 && spaces <= greatestWidth ? spaces : 1;
    marker.contentOffset = line.indent() + length + width;
    marker.content = MarkdownLine(rest.sliced(std::min(spaces, width)));
    return marker;
}

int setextLevel(const MarkdownLine& line) {
    const char16_t marker = leadingUnit(line);
    if (marker != u'=' && marker != u'-' && marker != u'\t') {
        return 0;
    }
    const QStringView text = MarkdownCharacters::trimmed(line.content());
    if (text.isEmpty()) {
        return 0;
    }
    if (runLength(text, u'=') == text.size()) {
        return 1;
    }
    return runLength(text, u'-') == text.size() ? 2 : 0;
}

std::optional<Task> task(const MarkdownLine& line) {
    const QStringView text = line.text();
    if (text.size() < 3 || text[0] != u'[' || (text[1] != u' ' && text[1] != u'x' && text[1] != u'X') ||
        !isAt(text, 2, u']') || (text.size() > 3 && !isAt(text, 3, u' '))) {
        return std::nullopt;
    }
    return Task{text[1] != u' ', MarkdownLine(text.sliced(3)).trimmed()};
}

} // namespace quillary::MarkdownLineForms
