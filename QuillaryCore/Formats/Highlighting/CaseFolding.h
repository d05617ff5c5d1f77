#pragma once

#include <QStringView>

#include <string_view>

namespace quillary::highlighting {

/// The lowercase ASCII letters that a unit becomes by full case folding ("K" and U+212A become "k", U+00DF "ss",
/// U+FB01 "fi"); an ASCII unit that is no capital stays. Empty for a unit whose folding is not all ASCII. No code
/// point beyond U+FFFF folds to ASCII.
std::u16string_view foldedToAscii(char16_t unit);

/// The length of what stands at the start of the text and equals a lowercase ASCII literal by full case folding; 0 if
/// nothing does. A unit that folds to two letters matches whole or not at all.
qsizetype foldedPrefixLength(QStringView text, std::u16string_view literal);

} // namespace quillary::highlighting
