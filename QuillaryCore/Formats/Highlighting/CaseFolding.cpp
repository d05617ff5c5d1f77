#include "QuillaryCore/Formats/Highlighting/CaseFolding.h"

namespace quillary::highlighting {

namespace {

constexpr std::array<char16_t, 128> foldedAscii = [] {
    std::array<char16_t, 128> result{};
    for (std::size_t c = 0; c < result.size(); ++c) {
        result[c] = asciiLowercase(static_cast<char16_t>(c));
    }
    return result;
}();

} // namespace

std::u16string_view foldedToAscii(char16_t unit) {
    if (unit < foldedAscii.size()) {
        return {&foldedAscii[unit], 1};
    }
    // All lines of Unicode's CaseFolding.txt of status C and F that map a code point beyond ASCII into ASCII.
    switch (unit) {
    case 0x00DF:
    case 0x1E9E:
        return u"ss";
    case 0x017F:
        return u"s";
    case 0x212A:
        return u"k";
    case 0xFB00:
        return u"ff";
    case 0xFB01:
        return u"fi";
    case 0xFB02:
        return u"fl";
    case 0xFB03:
        return u"ffi";
    case 0xFB04:
        return u"ffl";
    case 0xFB05:
    case 0xFB06:
        return u"st";
    default:
        return {};
    }
}

qsizetype foldedPrefixLengthBeyondAscii(QStringView text, std::u16string_view literal) {
    qsizetype length = 0;
    while (!literal.empty()) {
        if (length == text.size()) {
            return 0;
        }
        const std::u16string_view folded = foldedToAscii(text.utf16()[length]);
        if (folded.empty() || !literal.starts_with(folded)) {
            return 0;
        }
        literal.remove_prefix(folded.size());
        ++length;
    }
    return length;
}

} // namespace quillary::highlighting
