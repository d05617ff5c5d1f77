#pragma once

#include "QuillaryCore/Formats/Highlighting/CharacterClasses.h"

#include <QStringView>

#include <string_view>

namespace quillary::highlighting {

/// The lowercase ASCII letters that a unit becomes by full case folding ("K" and U+212A become "k", U+00DF "ss",
/// U+FB01 "fi"); an ASCII unit that is no capital stays. Empty for a unit whose folding is not all ASCII. No code
/// point beyond U+FFFF folds to ASCII.
std::u16string_view foldedToAscii(char16_t unit);

/// The length of what stands at the start of the text and equals a lowercase ASCII literal by full case folding; 0 if
/// nothing does. A unit that folds to two letters matches whole or not at all.
qsizetype foldedPrefixLengthBeyondAscii(QStringView text, std::u16string_view literal);

/// The same, quick where the first difference is between ASCII units.
inline qsizetype foldedPrefixLength(QStringView text, std::u16string_view literal) {
    const auto size = static_cast<qsizetype>(literal.size());
    for (qsizetype i = 0; i < size; ++i) {
        if (i == text.size()) {
            return 0;
        }
        const char16_t unit = text.utf16()[i];
        if (unit >= 0x80) {
            return foldedPrefixLengthBeyondAscii(text, literal);
        }
        if (asciiLowercase(unit) != literal[static_cast<std::size_t>(i)]) {
            return 0;
        }
    }
    return size;
}

} // namespace quillary::highlighting
