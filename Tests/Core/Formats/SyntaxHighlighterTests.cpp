#include "QuillaryCore/Text/TextStorage.h"

#include "Tests/Core/Formats/HighlighterTestSupport.h"

#include <limits>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;
using test::coloured;

TEST(SyntaxHighlighter, AnEmptyTextHasNoTokens) {
    for (const SyntaxLanguage language : allSyntaxLanguages) {
        EXPECT_TRUE(SyntaxHighlighter::tokens(QStringView(), language).isEmpty());
        EXPECT_TRUE(SyntaxHighlighter::tokens(u"", language, TextRange{0, 0}).isEmpty());
    }
}

TEST(SyntaxHighlighter, GivesKindAndRange) {
    EXPECT_EQ(SyntaxHighlighter::tokens(u" \U0001F600 1", SyntaxLanguage::json),
              (QList<SyntaxToken>{{SyntaxTokenKind::number, {4, 1}}}));
}

TEST(SyntaxHighlighter, TokensAreSortedByLocation) {
    // The rules find the comment first, then the string, then the keyword.
    EXPECT_EQ(coloured(u"if \"a\" // b"_s, SyntaxLanguage::javascript), u"keyword if | string \"a\" | comment // b"_s);
}

TEST(SyntaxHighlighter, TheLimitIsARefusal) {
    const QString most = u"1 "_s.repeated(SyntaxHighlighter::maxLength / 2);
    EXPECT_EQ(SyntaxHighlighter::maxLength, 300'000);
    EXPECT_EQ(SyntaxHighlighter::tokens(most, SyntaxLanguage::json).size(), 150'000);
    const QString tooLong = most + u'1';
    EXPECT_TRUE(SyntaxHighlighter::tokens(tooLong, SyntaxLanguage::json).isEmpty());
    EXPECT_TRUE(SyntaxHighlighter::tokens(tooLong, SyntaxLanguage::json, TextRange{0, 300'001}).isEmpty());
    EXPECT_EQ(SyntaxHighlighter::tokens(tooLong, SyntaxLanguage::json, TextRange{1, 300'000}).size(), 150'000);
}

TEST(SyntaxHighlighter, RefusesRangesThatAreNotInTheText) {
    constexpr qsizetype highest = std::numeric_limits<qsizetype>::max();
    const TextRange bad[] = {{-1, 2}, {-1, 5}, {0, 0},  {0, -1},      {0, 5},       {1, 4},
                             {4, 1},  {5, 1},  {5, -2}, {1, highest}, {highest, 1}, {highest, highest}};
    for (const TextRange& range : bad) {
        EXPECT_TRUE(SyntaxHighlighter::tokens(u"1 23", SyntaxLanguage::json, range).isEmpty())
            << range.location << ", " << range.length;
    }
    EXPECT_EQ(coloured(u"1 23"_s, SyntaxLanguage::json, TextRange{3, 1}), u"number 3"_s);
}

TEST(SyntaxHighlighter, ARangeOfTheWholeTextIsNoWindow) {
    for (const SyntaxLanguage language : allSyntaxLanguages) {
        const QString text = u"<script>a { b: 1; } </script> \"c\": true"_s;
        EXPECT_EQ(SyntaxHighlighter::tokens(text, language, TextRange{0, text.size()}),
                  SyntaxHighlighter::tokens(text, language));
    }
}

TEST(SyntaxHighlighter, AWindowIsAllThatItsRulesSee) {
    const QString text = u"/* 12 */ \"3\" 45"_s;
    EXPECT_EQ(coloured(text, SyntaxLanguage::json, TextRange{4, 8}), u"number 2 | string \"3\""_s);
    EXPECT_EQ(coloured(text, SyntaxLanguage::json, TextRange{10, 4}), u"number 3 | number 4"_s);
    EXPECT_EQ(coloured(text, SyntaxLanguage::json, TextRange{13, 1}), u"number 4"_s);
    EXPECT_EQ(coloured(u"\U0001F600"_s
                       u"1"_s,
                       SyntaxLanguage::json, TextRange{1, 2}),
              u"number 1"_s);
}

TEST(SyntaxHighlighter, AMatchThatTouchesAnOwnedUnitIsDroppedWhole) {
    // The comment owns "//", and the string that begins before it is not cut.
    EXPECT_EQ(coloured(u"'a//b'"_s, SyntaxLanguage::javascript), u"comment //b'"_s);
    // A match that is dropped has still been read over.
    EXPECT_EQ(coloured(u"//\"\n\" 1 \""_s, SyntaxLanguage::php), QString());
    EXPECT_EQ(coloured(u"/* \" */ \"a\""_s, SyntaxLanguage::json), u"comment /* \" */"_s);
}

struct WindowCase {
    const char16_t* before;
    const char16_t* window;
    const char16_t* expected;
};

void expectWindows(SyntaxLanguage language, const std::vector<WindowCase>& cases) {
    for (const WindowCase& each : cases) {
        const QString before = QString::fromUtf16(each.before);
        const QString window = QString::fromUtf16(each.window);
        const QString text = before + window + u"</script></style>"_s;
        const TextRange range{before.size(), window.size()};
        EXPECT_EQ(coloured(text, language, range).toStdString(), QString::fromUtf16(each.expected).toStdString())
            << before.toStdString() << " || " << window.toStdString();
        EXPECT_EQ(SyntaxHighlighter::tokens(TextStorage(text), language, range),
                  SyntaxHighlighter::tokens(text, language, range));
    }
}

const std::vector<WindowCase> openBlocks = {
    {u"<style>", u"a { b: 1; } </style><b>", u"tag a | attribute b | number 1 | tag </style | tag > | tag <b | tag >"},
    {u"<style>", u"a { b: 1; }", u"tag a | attribute b | number 1"},
    {u"<script>", u"if (1) </script><b>", u"keyword if | number 1 | tag </script | tag > | tag <b | tag >"},
    {u"<script>", u"if </script\n > if", u"keyword if | tag </script | tag >"},
    {u"<script>", u"if </scriptx> 1", u"keyword if | number 1"},
    {u"<script>x</script>", u"if <b>", u"tag <b | tag >"},
    {u"<style>x</style>", u"a { b: 1; } <b>", u"tag <b | tag >"},
    {u"<!-- <script> -->", u"if <b>", u"keyword if"},
    {u"<SCRIPT x", u"if", u"keyword if"},
    {u"<\u017FTYLE>", u"a {", u"tag a"},
    {u"<scripts>", u"if", u"keyword if"},
    {u"<style><script>", u"if a {", u"keyword if"},
    {u"<script><style>", u"if a {", u"keyword if"},
    {u"<style><script></script>", u"if a {", u"tag if | tag a"},
    {u"<script></script><style></style>", u"if a {", u""},
    {u"</script><script>", u"if", u"keyword if"},
    {u"</style><style>", u"a {", u"tag a"},
    {u"<scrip", u"t>if", u"tag >"},
    {u"<", u"script>if", u"tag >"},
    {u"<script>", u"</script>if", u"tag </script | tag >"},
    {u"<script>", u"/* <script>if</script> 1 */", u"comment /* <script>if | tag </script | tag >"},
};

TEST(SyntaxHighlighter, AWindowOfHtmlKnowsTheOpenElement) {
    expectWindows(SyntaxLanguage::html, openBlocks);
}

TEST(SyntaxHighlighter, AWindowOfPhpKnowsTheOpenElement) {
    expectWindows(SyntaxLanguage::php, openBlocks);
    expectWindows(SyntaxLanguage::php, {{u"<script>", u"if <?= $a ?> else",
                                         u"keyword if | tag <?= | variable $a | tag ?> | "
                                         u"keyword else"}});
}

TEST(SyntaxHighlighter, NoOtherLanguageLooksBack) {
    for (const SyntaxLanguage language : {SyntaxLanguage::css, SyntaxLanguage::javascript, SyntaxLanguage::json}) {
        EXPECT_EQ(SyntaxHighlighter::tokens(u"<style>a { b: 1; }", language, TextRange{7, 11}).size(),
                  SyntaxHighlighter::tokens(u"a { b: 1; }", language).size());
    }
}

TEST(SyntaxHighlighter, LooksBackAcrossThePagesOfAStoredText) {
    // Each offset puts the opening text at another place about the pieces in which the text is searched.
    const QString window = u"if </script>"_s;
    for (qsizetype gap = (1 << 16) - 12; gap < (1 << 16) + 4; ++gap) {
        const QString text = u"<b></b><script>"_s + u" "_s.repeated(gap) + window;
        const TextRange range{text.size() - window.size(), window.size()};
        const QList<SyntaxToken> tokens = SyntaxHighlighter::tokens(TextStorage(text), SyntaxLanguage::html, range);
        ASSERT_EQ(tokens.size(), 3) << gap;
        EXPECT_EQ(tokens.first(), (SyntaxToken{SyntaxTokenKind::keyword, {range.location, 2}}));
    }
}

TEST(SyntaxHighlighter, AStoredTextRefusesTheSameRanges) {
    const TextStorage text(u"1 23"_s);
    for (const TextRange& range : {TextRange{-1, 2}, TextRange{0, 0}, TextRange{1, 4}, TextRange{5, 1}}) {
        EXPECT_TRUE(SyntaxHighlighter::tokens(text, SyntaxLanguage::json, range).isEmpty());
    }
    EXPECT_EQ(SyntaxHighlighter::tokens(text, SyntaxLanguage::json, {2, 2}).size(), 1);
}

} // namespace

} // namespace quillary
