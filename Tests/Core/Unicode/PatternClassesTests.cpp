#include "QuillaryCore/Unicode/PatternClasses.h"

#include <gtest/gtest.h>
#include <unicode/regex.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>

#include <vector>

namespace quillary {

namespace {

constexpr char32_t codePointCount = 0x110000;

/// Whether ICU's pattern matches a text that holds the code point in the place of `@`, for each code point.
std::vector<bool> whatMatches(const char16_t* pattern, const char16_t* frame) {
    UErrorCode status = U_ZERO_ERROR;
    icu::RegexMatcher matcher(icu::UnicodeString(pattern), UREGEX_MULTILINE, status);
    std::vector<bool> result;
    for (char32_t c = 0; c < codePointCount; ++c) {
        icu::UnicodeString text(frame);
        text.findAndReplace(icu::UnicodeString(u"@"), icu::UnicodeString(static_cast<UChar32>(c)));
        matcher.reset(text);
        result.push_back(matcher.find(status));
    }
    EXPECT_TRUE(U_SUCCESS(status));
    return result;
}

struct ClassCase {
    const char* name;
    quint8 mask;
    const char16_t* pattern;
    const char16_t* frame;
    bool matchesWithout;
};

class PatternClasses : public testing::TestWithParam<ClassCase> {};

TEST_P(PatternClasses, AgreeWithIcuOnEveryCodePoint) {
    const ClassCase& each = GetParam();
    const std::vector<bool> matches = whatMatches(each.pattern, each.frame);
    for (char32_t c = 0; c < codePointCount; ++c) {
        const bool has = (patternClasses(c) & each.mask) != 0;
        ASSERT_EQ(has, matches[c] != each.matchesWithout) << "U+" << std::hex << static_cast<quint32>(c);
    }
}

INSTANTIATE_TEST_SUITE_P(All, PatternClasses,
                         testing::Values(ClassCase{"word", patternWord, u"\\w", u"@", false},
                                         ClassCase{"digit", patternDigit, u"\\d", u"@", false},
                                         ClassCase{"space", patternSpace, u"\\s", u"@", false},
                                         ClassCase{"lineTerminator", patternLineTerminator, u".", u"@", true},
                                         // Before a word there is a boundary behind a hyphen, before anything else
                                         // behind a letter; before what is looked
                                         // through there is one in neither place.
                                         ClassCase{"ignoredAtBoundary", patternIgnoredAtBoundary,
                                                   u"a(?!\\b)[\\s\\S] -(?!\\b)", u"a@ -@", false}),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(PatternClassesTable, HoldsTheBasicPlane) {
    for (char32_t c = 0; c < 0x10000; ++c) {
        ASSERT_EQ(basicPlanePatternClasses()[c], patternClasses(c)) << "U+" << std::hex << static_cast<quint32>(c);
    }
}

} // namespace

} // namespace quillary
