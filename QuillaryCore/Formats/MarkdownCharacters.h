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

/// The number of leading spaces.
qsizetype indentation(QStringView text);

/// Without surrounding spaces and tabs.
QStringView trimmed(QStringView text);

/// Whether there are only spaces and tabs.
bool isBlank(QStringView text);

} // namespace quillary::MarkdownCharacters
