#include "Tests/Core/Formats/HighlighterTestSupport.h"

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

void expectPhp(const std::vector<test::ColourCase>& cases) {
    test::expectColours(SyntaxLanguage::php, cases);
}

/// What a text is coloured as within a region, whose opening mark is left out.
QString within(const QString& text) {
    return test::coloured(u"<?php "_s + text, SyntaxLanguage::php).sliced(9).mid(3);
}

TEST(PhpHighlighting, OutsideOfRegionsIsHtml) {
    expectPhp({
        {u"<b>if $a</b>", u"tag <b | tag > | tag </b | tag >"},
        {u"<b><?php if ?></b>", u"tag <b | tag > | tag <?php | keyword if | tag ?> | tag </b | tag >"},
        {u"if <?= $a ?> if", u"tag <?= | variable $a | tag ?>"},
        {u"<a b=\"<?= 1 ?>\">", u"tag <a | attribute b | tag <?= | number 1 | tag ?> | tag >"},
        {u"<!-- <? 1 ?> -->", u"tag <? | number 1 | tag ?> | tag >"},
        {u"<script>if <?php else ?></script>",
         u"tag <script | tag > | keyword if | tag <?php | keyword else | tag ?> | tag </script | tag >"},
    });
}

TEST(PhpHighlighting, ARegionWithoutAClosingMarkRunsToTheEnd) {
    expectPhp({
        {u"<?php if <b>", u"tag <?php | keyword if"},
        {u"<?", u"tag <?"},
        {u"<?> if", u"tag <? | keyword if"},
        {u"<?\?>if", u"tag <? | tag ?>"},
    });
}

TEST(PhpHighlighting, MarksOfRegions) {
    expectPhp({
        {u"<?php ?>", u"tag <?php | tag ?>"},
        {u"<?PHP ?><?pHp ?>", u"tag <?PHP | tag ?> | tag <?pHp | tag ?>"},
        {u"<?phpx", u"tag <?php"},
        {u"<?=", u"tag <?="},
        {u"<?ph", u"tag <?"},
    });
}

TEST(PhpHighlighting, AClosingMarkEndsARegionEvenInAString) {
    expectPhp({{u"<?php \"a ?>\" ?>", u"tag <?php | tag ?> | tag >"}});
}

TEST(PhpHighlighting, Comments) {
    EXPECT_EQ(within(u"// if\n1"_s), u"comment // if | number 1"_s);
    EXPECT_EQ(within(u"# if\r1"_s), u"comment # if | number 1"_s);
    EXPECT_EQ(within(u"# if\r\n1"_s), u"comment # if | number 1"_s);
    EXPECT_EQ(within(u"// if\u20281"_s), u"comment // if | number 1"_s);
    EXPECT_EQ(within(u"// if\u00851\u000B2"_s), u"comment // if | number 1 | number 2"_s);
    EXPECT_EQ(within(u"// if ?>"_s), u"comment // if  | tag ?>"_s);
    EXPECT_EQ(within(u"// if ? >"_s), u"comment // if ? >"_s);
    EXPECT_EQ(within(u"#"_s), u"comment #"_s);
    EXPECT_EQ(within(u"//"_s), u"comment //"_s);
    EXPECT_EQ(within(u"#[if]"_s), u"keyword if"_s);
    EXPECT_EQ(within(u"##[if]"_s), u"comment ##[if]"_s);
    EXPECT_EQ(within(u"//[if]"_s), u"comment //[if]"_s);
    EXPECT_EQ(within(u"/* if\n */ 1"_s), u"comment /* if\n */ | number 1"_s);
    EXPECT_EQ(within(u"/* if"_s), u"comment /* if"_s);
}

TEST(PhpHighlighting, StringsHoldLineEnds) {
    EXPECT_EQ(within(u"\"a\nb\" 1"_s), u"string \"a\nb\" | number 1"_s);
    EXPECT_EQ(within(u"'a\nb' 1"_s), u"string 'a\nb' | number 1"_s);
    EXPECT_EQ(within(u"\"a\\\"b\" 'c\\'d'"_s), u"string \"a\\\"b\" | string 'c\\'d'"_s);
    EXPECT_EQ(within(u"\"a\\\nb\""_s), QString());
    EXPECT_EQ(within(u"\"$a\""_s), u"string \"$a\""_s);
    EXPECT_EQ(within(u"'open"_s), QString());
}

TEST(PhpHighlighting, Variables) {
    EXPECT_EQ(within(u"$a $_b $C9 $\u00E9 $1 $$d"_s),
              u"variable $a | variable $_b | variable $C9 | number 1 | variable $d"_s);
    EXPECT_EQ(within(u"$a\u00E9\u0301-"_s), u"variable $a\u00E9\u0301"_s);
    EXPECT_EQ(within(u"$if $f("_s), u"variable $if | variable $f"_s);
}

TEST(PhpHighlighting, EveryKeywordAndConstantInAnyCase) {
    const QStringList keywords =
        u"abstract and array as break callable case catch class clone const continue declare default do echo else "
        u"elseif "
        u"empty enum extends final finally fn for foreach function global if implements include include_once "
        u"instanceof "
        u"interface isset list match namespace new or print private protected public readonly require require_once "
        u"return static switch throw trait try unset use var while xor yield"_s.split(u' ');
    ASSERT_EQ(keywords.size(), 59);
    for (const QString& each : keywords) {
        EXPECT_EQ(within(each), u"keyword "_s + each);
        EXPECT_EQ(within(each.toUpper()), u"keyword "_s + each.toUpper());
        EXPECT_EQ(within(each + u'x'), QString()) << each.toStdString();
    }
    EXPECT_EQ(within(u"TRUE False nUll"_s), u"constant TRUE | constant False | constant nUll"_s);
    EXPECT_EQ(within(u"Echo truer"_s), u"keyword Echo"_s);
}

TEST(PhpHighlighting, CaseFoldsBeyondAscii) {
    EXPECT_EQ(within(u"ca\u017Fe brea\u212A cla\u00DF cla\u1E9E \uFB01nal li\uFB06 li\uFB05 fal\u017Fe"_s),
              u"keyword ca\u017Fe | keyword brea\u212A | keyword cla\u00DF | keyword cla\u1E9E | keyword \uFB01nal | "
              u"keyword li\uFB06 | keyword li\uFB05 | constant fal\u017Fe"_s);
    EXPECT_EQ(within(u"\u00E9lse i\uFB00 \uFB01nal\u00E9 \u0130f"_s), QString());
}

TEST(PhpHighlighting, NumbersAndFunctions) {
    EXPECT_EQ(within(u"0xFF 1.5 1e5"_s), u"number 0xFF | number 1.5 | number 1e5"_s);
    EXPECT_EQ(within(u"strlen ($a)"_s), u"function strlen | variable $a"_s);
    EXPECT_EQ(within(u"if (a$b("_s), u"keyword if | variable $b"_s);
    EXPECT_EQ(within(u"$a->run(1)"_s), u"variable $a | function run | number 1"_s);
}

} // namespace

} // namespace quillary
