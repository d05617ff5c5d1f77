#include "QuillaryCore/Formats/SyntaxHighlighter.h"

#include "Tests/Core/Formats/HostileSources.h"
#include "Tests/Core/Formats/PatternHighlighter.h"

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

QList<SyntaxToken> tokensOf(const QString& text, SyntaxLanguage language) {
    return SyntaxHighlighter::tokens(text, language);
}

TEST(HostileHighlighting, ShortOnesAreColouredAsThePatternsSay) {
    for (const test::HostileSource& source : test::hostileSources()) {
        const QString text = source.text(700);
        EXPECT_EQ(SyntaxHighlighter::tokens(text, source.language), reference::tokens(text, source.language))
            << source.name;
    }
    EXPECT_FALSE(reference::Pattern::overflowed);
}

TEST(HostileHighlighting, LongOnesAreColouredInTheSameWay) {
    // What repeats in the text repeats in the tokens: their number grows with the text, and the whole ends.
    for (const test::HostileSource& source : test::hostileSources()) {
        const auto count = [&](qsizetype length) {
            return SyntaxHighlighter::tokens(source.text(length), source.language).size();
        };
        const qsizetype few = count(3'000);
        const qsizetype more = count(30'000);
        const qsizetype most = count(SyntaxHighlighter::maxLength);
        const qsizetype step = more - few;
        EXPECT_NEAR(static_cast<double>(most - more), static_cast<double>(10 * step), 20.0) << source.name;
    }
}

/// ICU's own stack ends its list of matches at about 290,000 blanks; no list may end early here.
TEST(HostileHighlighting, BlanksWithoutEndHideNothing) {
    const QString blanks = u" "_s.repeated(299'000);
    EXPECT_EQ(tokensOf(u"a"_s + blanks + u":b;c:d;"_s, SyntaxLanguage::css),
              (QList<SyntaxToken>{{SyntaxTokenKind::attribute, {0, 1}}, {SyntaxTokenKind::attribute, {299'004, 1}}}));
    EXPECT_EQ(tokensOf(u"="_s + blanks + u"\"a\"='b'"_s, SyntaxLanguage::html),
              (QList<SyntaxToken>{{SyntaxTokenKind::string, {299'001, 3}}, {SyntaxTokenKind::string, {299'005, 3}}}));
    EXPECT_EQ(tokensOf(u"\"a\""_s + blanks + u":"_s, SyntaxLanguage::json),
              (QList<SyntaxToken>{{SyntaxTokenKind::attribute, {0, 3}}}));
    EXPECT_EQ(tokensOf(u"f"_s + blanks + u"("_s, SyntaxLanguage::javascript),
              (QList<SyntaxToken>{{SyntaxTokenKind::function, {0, 1}}}));
    EXPECT_EQ(tokensOf(u" a"_s + blanks + u"="_s, SyntaxLanguage::html),
              (QList<SyntaxToken>{{SyntaxTokenKind::attribute, {1, 1}}}));
}

TEST(HostileHighlighting, LongStringsAndCommentsAreOneToken) {
    const QString escapes = u"\\\""_s.repeated(149'000);
    const QString letters = u"a"_s.repeated(299'000);
    const auto whole = [](const QString& text, SyntaxLanguage language) {
        const QList<SyntaxToken> tokens = tokensOf(text, language);
        return tokens.size() == 1 && tokens.first().range == TextRange{0, text.size()};
    };
    for (const SyntaxLanguage language : {SyntaxLanguage::css, SyntaxLanguage::javascript, SyntaxLanguage::json}) {
        EXPECT_TRUE(whole(u'"' + escapes + u'"', language));
        EXPECT_TRUE(whole(u"/*"_s + letters, language));
        EXPECT_TRUE(whole(u'"' + letters + u'"', language));
    }
}

} // namespace

} // namespace quillary
