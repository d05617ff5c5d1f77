#include "QuillaryCore/Unicode/LocalizedContainment.h"

#include "Tests/Core/Unicode/ContainmentReference.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iterator>

/// Reads the input as a query and a text, mostly of characters that are hard to tell from each other, and compares the
/// scan for signs with the comparison of forms and both with every stretch of clusters.

namespace {

using namespace quillary;

/// Letters of several cases and compositions, ligatures, marks that change places, and what makes clusters.
constexpr char32_t trickyCharacters[] = {
    U'a',    U'A',   U'e',   U'E',   U'i',   U'I',    U'k',    U'K',    U's',    U'S',    U't',    U'f',   U'F',
    U' ',    U'.',   U'\r',  U'\n',  0xC5,   0xE5,    0x212B,  0xC9,    0xE9,    0x301,   0x300,   0x323,  0x345,
    0x30A,   0xDF,   0x1E9E, 0x17F,  0x212A, 0xFB00,  0xFB01,  0xFB03,  0xFB05,  0xFB06,  0x149,   0x2BC,  U'n',
    0x1F0,   0x30C,  0x130,  0x131,  0x307,  0x391,   0x3B1,   0x399,   0x3B9,   0x3A3,   0x3C2,   0x1FB3, 0x1FB4,
    0x1FB7,  0x342,  0x390,  0x1112, 0x1161, 0x11AB,  0xD558,  0xD55C,  0x9C7,   0x9BE,   0x9CB,   0xDD9,  0xDCF,
    0xDCA,   0xDDD,  0x200D, 0xFE0F, 0x20E3, 0x1F1EE, 0x1F1F9, 0x1F468, 0x10400, 0x10428, 0x2F800, 0x4E3D, 0x11099,
    0x1109A, 0x1F60, 0x1F68, 0x1FA0, 0xF900, 0x8C48,  0x2126,  0x3C9,   0xB5,    0x3BC,   0x37E,   U';',   0x1FEF,
    U'`',    0xAD,   0x600,  0x903,  0x94D,  0x915,
};

QString textOf(const uint8_t* data, size_t size) {
    QString text;
    for (size_t i = 0; i < size; ++i) {
        if (data[i] < 0xF0 || i + 2 >= size) {
            text += QString::fromUcs4(&trickyCharacters[data[i] % std::size(trickyCharacters)], 1);
        } else {
            text += QChar(static_cast<char16_t>(data[i + 1] << 8 | data[i + 2]));
            i += 2;
        }
    }
    return text;
}

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) {
        return 0;
    }
    const size_t queryLength = std::min(size_t{data[0]} % 16, size - 1);
    const QString query = textOf(data + 1, queryLength);
    const QString text = textOf(data + 1 + queryLength, size - 1 - queryLength);
    const TextMatcher matcher(query, u"it");
    const bool found = matcher.matches(text);
    require(found == matcher.matchesByForms(text));
    if (text.size() <= 48) {
        require(found == (!query.isEmpty() && containsByStretches(text, query)));
    }
    const TextMatcher turkic(query, u"tr");
    require(turkic.matches(text) == turkic.matchesByForms(text));
    return 0;
}
