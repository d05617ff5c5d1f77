#pragma once

#include "QuillaryCore/Formats/Highlighting/CharacterClasses.h"

namespace quillary::highlighting {

// What the rules of HTML and the finders of its embedded regions look for.
inline constexpr Classes htmlLess = languageClass(0);
inline constexpr Classes htmlGreater = languageClass(1);
inline constexpr Classes htmlEquals = languageClass(2);
inline constexpr Classes htmlAmpersand = languageClass(3);
inline constexpr Classes htmlDoubleQuote = languageClass(4);
inline constexpr Classes htmlSingleQuote = languageClass(5);
inline constexpr Classes htmlHyphen = languageClass(6);
inline constexpr Classes htmlColon = languageClass(7);
inline constexpr Classes htmlPeriod = languageClass(8);

inline constexpr ClassTable htmlClasses = makeClassTable({
    {"<", htmlLess},
    {">", htmlGreater},
    {"=", htmlEquals},
    {"&", htmlAmpersand},
    {"\"", htmlDoubleQuote},
    {"'", htmlSingleQuote},
    {"-", htmlHyphen},
    {":", htmlColon},
    {".", htmlPeriod},
});

} // namespace quillary::highlighting
