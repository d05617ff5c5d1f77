#include "QuillaryCore/Formats/SyntaxHighlighter.h"

#include "Tests/Core/Formats/FormatsTestSupport.h"
#include "Tests/Core/Formats/PatternHighlighter.h"

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

/// Long enough to hold whole rules and functions, short enough for the patterns with their quadratic look-aheads.
constexpr qsizetype sampleLength = 6'000;

/// Compares scanners and patterns on samples of the files that happen to be installed.
void expectEqualTokens(const QStringList& texts, SyntaxLanguage language) {
    for (const QString& text : texts) {
        for (qsizetype location = 0; location < text.size(); location += std::max(sampleLength, text.size() / 3)) {
            const TextRange sample{location, std::min(sampleLength, text.size() - location)};
            ASSERT_EQ(SyntaxHighlighter::tokens(text, language, sample), reference::tokens(text, language, sample))
                << "at " << location << " of " << text.first(std::min<qsizetype>(text.size(), 60)).toStdString();
        }
    }
    EXPECT_FALSE(reference::Pattern::overflowed);
}

class RealSources : public testing::TestWithParam<SyntaxLanguage> {};

TEST_P(RealSources, AreColouredAsThePatternsSay) {
    const QStringList names[] = {{u"*.css"_s},
                                 {u"*.js"_s, u"*.mjs"_s},
                                 {u"*.php"_s, u"*.phtml"_s},
                                 {u"*.html"_s, u"*.xml"_s, u"*.svg"_s},
                                 {u"*.json"_s}};
    const auto language = static_cast<std::size_t>(GetParam());
    const QStringList texts = formats_test::textsUnder(u"/usr/share"_s, names[language], 40);
    expectEqualTokens(texts, GetParam());
}

TEST_P(RealSources, OfAnotherLanguageAreColouredAsThePatternsSay) {
    expectEqualTokens(formats_test::textsUnder(u"/usr/share"_s, {u"*.md"_s, u"*.html"_s}, 12), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Languages, RealSources, testing::ValuesIn(allSyntaxLanguages),
                         [](const auto& each) { return std::string(rawValue(each.param).data()); });

} // namespace

} // namespace quillary
