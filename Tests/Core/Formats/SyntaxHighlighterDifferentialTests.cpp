#include "QuillaryCore/Formats/Highlighting/Rule.h"
#include "QuillaryCore/Formats/SyntaxHighlighter.h"

#include "Tests/Core/Formats/HighlighterTexts.h"
#include "Tests/Core/Formats/PatternHighlighter.h"

#include <gtest/gtest.h>

#include <random>

namespace quillary {

void PrintTo(const TextRange& range, std::ostream* out) {
    *out << '[' << range.location << ", " << range.length << ']';
}

void PrintTo(const SyntaxToken& token, std::ostream* out) {
    *out << rawValue(token.kind).data();
    PrintTo(token.range, out);
}

namespace {

using test::collidingText;

std::string readable(QStringView text) {
    std::string result;
    for (const QChar each : text) {
        char buffer[8];
        const auto unit = each.unicode();
        const bool isPlain = unit >= 0x20 && unit < 0x7F;
        std::snprintf(buffer, sizeof buffer, isPlain ? "%c" : "\\u%04X", unit);
        result += buffer;
    }
    return result;
}

/// The matches of one rule alone, before any other took its place.
std::vector<TextRange> scannedMatches(SyntaxLanguage language, std::size_t rule, QStringView text) {
    using namespace highlighting;
    const RuleList list = rulesOf(language);
    ClassifiedText classified(text);
    Pass pass(text.size());
    apply(RuleList{list.classes, list.rules.subspan(rule, 1)}, {0, text.size()}, classified, pass);
    std::vector<TextRange> result;
    for (const SyntaxToken& token : pass.tokens(0)) {
        result.push_back(token.range);
    }
    return result;
}

class Differential : public testing::TestWithParam<SyntaxLanguage> {};

TEST_P(Differential, EachScannerGivesTheMatchesOfItsPattern) {
    const SyntaxLanguage language = GetParam();
    const std::vector<reference::Pattern>& patterns = reference::compiledRules(language);
    ASSERT_EQ(patterns.size(), highlighting::rulesOf(language).rules.size());
    std::mt19937 random(20260305);
    for (int round = 0; round < 4000; ++round) {
        const QString text = collidingText(language, std::uniform_int_distribution(1, 60)(random), random);
        for (std::size_t rule = 0; rule < patterns.size(); ++rule) {
            ASSERT_EQ(scannedMatches(language, rule, text),
                      patterns[rule].matches(text, {0, text.size()}, reference::patternRules(language)[rule].group))
                << rawValue(language).data() << " rule " << rule + 1 << " in " << readable(text);
        }
    }
    EXPECT_FALSE(reference::Pattern::overflowed);
}

TEST_P(Differential, AllRulesTogetherGiveTheTokensOfThePatterns) {
    const SyntaxLanguage language = GetParam();
    std::mt19937 random(5032026);
    for (int round = 0; round < 6000; ++round) {
        const QString text = collidingText(language, std::uniform_int_distribution(1, 90)(random), random);
        ASSERT_EQ(SyntaxHighlighter::tokens(text, language), reference::tokens(text, language))
            << rawValue(language).data() << ": " << readable(text);
        const qsizetype location = std::uniform_int_distribution<qsizetype>(0, text.size())(random);
        const TextRange window{location, std::uniform_int_distribution<qsizetype>(0, text.size() - location)(random)};
        ASSERT_EQ(SyntaxHighlighter::tokens(text, language, window), reference::tokens(text, language, window))
            << rawValue(language).data() << " at " << window.location << ", " << window.length << ": "
            << readable(text);
    }
    EXPECT_FALSE(reference::Pattern::overflowed);
}

INSTANTIATE_TEST_SUITE_P(Languages, Differential, testing::ValuesIn(allSyntaxLanguages),
                         [](const auto& each) { return std::string(rawValue(each.param).data()); });

} // namespace

} // namespace quillary
