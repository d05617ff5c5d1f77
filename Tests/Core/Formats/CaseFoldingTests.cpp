#include "QuillaryCore/Formats/Highlighting/CaseFolding.h"

#include <gtest/gtest.h>
#include <unicode/unistr.h>

#include <algorithm>

namespace quillary::highlighting {

namespace {

TEST(CaseFolding, AgreesWithIcuOnEveryCodePoint) {
    for (UChar32 c = 0; c < 0x110000; ++c) {
        icu::UnicodeString folded(c);
        folded.foldCase();
        const std::u16string_view expected(folded.getBuffer(), static_cast<std::size_t>(folded.length()));
        const bool isAscii = std::ranges::all_of(expected, [](char16_t unit) { return unit < 0x80; });
        if (c < 0x10000) {
            ASSERT_EQ(foldedToAscii(static_cast<char16_t>(c)), isAscii ? expected : std::u16string_view())
                << "U+" << std::hex << c;
        } else {
            ASSERT_FALSE(isAscii) << "U+" << std::hex << c;
        }
    }
}

TEST(CaseFolding, PrefixLengths) {
    struct Case {
        QStringView text;
        std::u16string_view literal;
        qsizetype length;
    };

    for (const Case& each : {
             Case{u"</script>", u"</script", 8},
             Case{u"</SCRIPT", u"</script", 8},
             Case{u"</\u017Fcript>", u"</script", 8},
             Case{u"<\uFB06yle", u"<style", 5},
             Case{u"<scrip", u"<script", 0},
             Case{u"<scrxpt", u"<script", 0},
             Case{u"", u"<script", 0},
             Case{u"<s\u0163yle", u"<style", 0},
             // A unit that folds to more than is left of the literal.
             Case{u"cla\u00DF", u"clas", 0},
             Case{u"cla\u00DF", u"class", 4},
         }) {
        EXPECT_EQ(foldedPrefixLength(each.text, each.literal), each.length) << each.text.toUtf8().constData();
    }
}

} // namespace

} // namespace quillary::highlighting
