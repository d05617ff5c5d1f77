#pragma once

#include <QStringView>

#include <vector>

namespace quillary {

/// Whether a unit ends a line: LF, VT, FF, CR, U+0085, U+2028 or U+2029. Of CR LF, which is one terminator, it is the
/// LF that ends the line.
constexpr bool isLineTerminator(char16_t unit) {
    return static_cast<char16_t>(unit - u'\n') <= u'\r' - u'\n' || unit == u'\x85' || (unit | 1) == u'\u2029';
}

/// The number of terminators in a text, CR LF counting once. A CR at the very end counts.
qsizetype lineTerminatorCount(QStringView text);

/// Appends the positions behind each terminator of a text, in units from its start, in ascending order.
void appendLineEnds(QStringView text, std::vector<qsizetype>& ends);

/// The length of the terminator with which a text ends: 2 for CR LF, 1 for any other, 0 if it ends with none.
qsizetype trailingTerminatorLength(QStringView text);

} // namespace quillary
