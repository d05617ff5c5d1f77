#pragma once

#include <QStringView>

/// Questions about single characters of a line. A character is a grapheme cluster: a mark that a combining mark
/// follows, or that a prepended sign stands before, is a character of its own.
namespace quillary::MarkdownCharacters {

constexpr bool isBlank(QChar unit) {
    return unit == u' ' || unit == u'\t';
}

/// Whether the ASCII unit at `position`, no control character, is a whole character.
bool standsAlone(QStringView text, qsizetype position);

/// Whether the character at `position` is this ASCII unit and nothing more.
inline bool isAt(QStringView text, qsizetype position, char16_t unit) {
    return position < text.size() && text[position] == unit && standsAlone(text, position);
}

/// Where the first character that is this ASCII unit stands, from `position` on; -1 if there is none.
qsizetype find(QStringView text, char16_t unit, qsizetype position = 0);

/// The number of leading spaces of a text that begins with one.
qsizetype countIndentation(QStringView text);

/// The number of leading spaces.
inline qsizetype indentation(QStringView text) {
    return text.isEmpty() || text.front() != u' ' ? 0 : countIndentation(text);
}

/// Without the spaces and tabs at both ends, where there are some.
QStringView withoutOuterBlanks(QStringView text);

/// Without surrounding spaces and tabs.
inline QStringView trimmed(QStringView text) {
    return text.isEmpty() || (!isBlank(text.front()) && !isBlank(text.back())) ? text : withoutOuterBlanks(text);
}

/// Whether there are only spaces and tabs.
bool isBlank(QStringView text);

} // namespace quillary::MarkdownCharacters
