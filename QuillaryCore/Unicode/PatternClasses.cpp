#include "QuillaryCore/Unicode/PatternClasses.h"

#include <unicode/uchar.h>

#include <array>

namespace quillary {

namespace {

bool isLineTerminator(char32_t codePoint) {
    return (codePoint >= 0x0A && codePoint <= 0x0D) || codePoint == 0x85 || codePoint == 0x2028 || codePoint == 0x2029;
}

} // namespace

quint8 patternClasses(char32_t codePoint) {
    constexpr quint32 wordCategories = U_GC_M_MASK | U_GC_ND_MASK | U_GC_PC_MASK;
    const auto c = static_cast<UChar32>(codePoint);
    const int category = u_charType(c);
    quint8 result = 0;
    if ((U_MASK(category) & wordCategories) != 0 || u_isUAlphabetic(c) || c == 0x200C || c == 0x200D) {
        result |= patternWord;
    }
    if (category == U_DECIMAL_DIGIT_NUMBER) {
        result |= patternDigit;
    }
    if (u_isUWhiteSpace(c)) {
        result |= patternSpace;
    }
    if (isLineTerminator(codePoint)) {
        result |= patternLineTerminator;
    }
    if (category == U_FORMAT_CHAR || u_hasBinaryProperty(c, UCHAR_GRAPHEME_EXTEND)) {
        result |= patternIgnoredAtBoundary;
    }
    return result;
}

std::span<const quint8, 0x10000> basicPlanePatternClasses() {
    static const std::array<quint8, 0x10000> classes = [] {
        std::array<quint8, 0x10000> result;
        for (char32_t c = 0; c < result.size(); ++c) {
            result[c] = patternClasses(c);
        }
        return result;
    }();
    return classes;
}

} // namespace quillary
