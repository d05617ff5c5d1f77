#include "QuillaryCore/Formats/MarkdownInline.h"

#include "QuillaryCore/Formats/MarkdownEntities.h"

#include "Tests/Core/Formats/FormatsTestSupport.h"

#include <gmock/gmock.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

/// Runs in one line: texts in "‹›", behind each its marks (e emphasis, s strong, d struck out, c code) and its link.
QString runsTold(const QString& text) {
    QString result;
    for (const MarkdownRun& run : MarkdownInline::attributed(text)) {
        result += u"\u2039"_s + run.text + u"\u203A"_s;
        result += QLatin1StringView(run.emphasis ? "e" : "") + QLatin1StringView(run.strong ? "s" : "") +
                  QLatin1StringView(run.strike ? "d" : "") + QLatin1StringView(run.code ? "c" : "");
        if (run.link) {
            result += u'(' + *run.link + u')';
        }
    }
    return result;
}

QString plainText(const QString& text) {
    QString result;
    for (const MarkdownRun& run : MarkdownInline::attributed(text)) {
        result += run.text;
    }
    return result;
}

struct RunsCase {
    const char* name;
    QString text;
    QString runs;
};

void PrintTo(const RunsCase& runsCase, std::ostream* stream) {
    *stream << runsCase.name;
}

class MarkdownInlineReads : public testing::TestWithParam<RunsCase> {};

TEST_P(MarkdownInlineReads, TheRuns) {
    EXPECT_EQ(runsTold(GetParam().text), GetParam().runs);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, MarkdownInlineReads,
    testing::Values(RunsCase{"nothing", u""_s, u""_s}, RunsCase{"plain text", u"a b"_s, u"‹a b›"_s},
                    RunsCase{"emphasis", u"*a* _b_"_s, u"‹a›e‹ ›‹b›e"_s},
                    RunsCase{"strong", u"**a** __b__"_s, u"‹a›s‹ ›‹b›s"_s}, RunsCase{"both", u"***a***"_s, u"‹a›es"_s},
                    RunsCase{"one in the other", u"**a *b* c**"_s, u"‹a ›s‹b›es‹ c›s"_s},
                    RunsCase{"emphasis over two lines", u"*a\nb*"_s, u"‹a\nb›e"_s},
                    RunsCase{"within a word", u"a*b*c a_b_c"_s, u"‹a›‹b›e‹c a_b_c›"_s},
                    RunsCase{"no emphasis", u"* a* 2 * 3 * 4"_s, u"‹* a* 2 * 3 * 4›"_s},
                    RunsCase{"beside guards", u" *a* \n **b** "_s, u"‹ ›‹a›e‹ \n ›‹b›s‹ ›"_s},
                    RunsCase{"struck out", u"~~a~~ ~b~ ~~~c~~~"_s, u"‹a›d‹ ›‹b›d‹ ~~~c~~~›"_s},
                    RunsCase{"code", u"`a` ``b`c``"_s, u"‹a›c‹ ›‹b`c›c"_s},
                    RunsCase{"code keeps marks", u"`*a* &amp; <b>`"_s, u"‹*a* &amp; <b>›c"_s},
                    RunsCase{"code over two lines", u"`a\nb`"_s, u"‹a\nb›c"_s},
                    RunsCase{"code that begins with a line end", u"`\na` b"_s, u"‹\na›c‹ b›"_s},
                    RunsCase{"code that ends with a line end", u"a `b\n`"_s, u"‹a ›‹b\n›c"_s},
                    RunsCase{"code between line ends", u"a ``\r\n`b`\r\n``"_s, u"‹a ›‹\r\n`b`\r\n›c"_s},
                    RunsCase{"code of a line end alone", u"a `\n` b"_s, u"‹a ›‹\n›c‹ b›"_s},
                    RunsCase{"code at the end of a line", u"`a`\n*`b`*\nc"_s, u"‹a›c‹\n›‹b›ec‹\nc›"_s},
                    RunsCase{"code keeps blanks", u"`a  b \n\t c`"_s, u"‹a  b \n\t c›c"_s},
                    RunsCase{"code that begins with a backtick", u"`` `a` ``"_s, u"‹`a`›c"_s},
                    RunsCase{"code in emphasis", u"*a `b`*"_s, u"‹a ›e‹b›ec"_s},
                    RunsCase{"a link", u"[a](b.md)"_s, u"‹a›(b.md)"_s},
                    RunsCase{"a link with a title", u"[a](b.md \"t\")"_s, u"‹a›(b.md)"_s},
                    RunsCase{"a link with a title in the next line", u"[a](b.md\n\"t\") c"_s, u"‹a›(b.md)‹ c›"_s},
                    RunsCase{"a link with its destination in the next line", u"[a](\nb.md) [c](\n#d) [e](\n<1. f>)"_s,
                             u"‹a›(b.md)‹ ›‹c›(#d)‹ ›‹e›(1. f)"_s},
                    RunsCase{"a link over two lines", u"[a\nb](c)"_s, u"‹a\nb›(c)"_s},
                    RunsCase{"a destination with blanks", u"[a](<b c>)"_s, u"‹a›(b c)"_s},
                    RunsCase{"a destination with entities and escapes", u"[a](b&amp;c\\*\\d)"_s, u"‹a›(b&c*\\d)"_s},
                    RunsCase{"an empty destination", u"[a]()"_s, u"‹a›()"_s},
                    RunsCase{"a link without a text", u"a[](b)c"_s, u"‹ac›"_s},
                    RunsCase{"two links in a row", u"[a](x)[b](x)[c](y)"_s, u"‹ab›(x)‹c›(y)"_s},
                    RunsCase{"emphasis in a link", u"[*a* b](c)"_s, u"‹a›e(c)‹ b›(c)"_s},
                    RunsCase{"brackets without a link", u"[a] [b][c] (d)"_s, u"‹[a] [b][c] (d)›"_s},
                    RunsCase{"a reference definition is text", u"[a]: b\n\n[a]"_s, u"‹[a]: b\n\n[a]›"_s},
                    RunsCase{"an image is its text", u"![a *b*](c.png) d"_s, u"‹a ›‹b›e‹ d›"_s},
                    RunsCase{"an image in a link", u"[![a](b)](c)"_s, u"‹a›(c)"_s},
                    RunsCase{"an autolink", u"<https://a.it/b>"_s, u"‹https://a.it/b›(https://a.it/b)"_s},
                    RunsCase{"an address", u"<a@b.it>"_s, u"‹a@b.it›(mailto:a@b.it)"_s},
                    RunsCase{"a bare URL", u"a https://a.it/b, c"_s, u"‹a ›‹https://a.it/b›(https://a.it/b)‹, c›"_s},
                    RunsCase{"a bare URL at a line's start", u"a\nhttp://a.it"_s, u"‹a\n›‹http://a.it›(http://a.it)"_s},
                    RunsCase{"no scheme, no link", u"www.a.it a@b.it"_s, u"‹www.a.it a@b.it›"_s},
                    RunsCase{"a Markdown link in a code span", u"`[a](b)`"_s, u"‹[a](b)›c"_s},
                    RunsCase{"HTML stays text", u"<b>*a*</b> <i title='*x*'>"_s, u"‹<b>›‹a›e‹</b> <i title='*x*'>›"_s},
                    RunsCase{"HTML over two lines", u"<b\n c='*d*'>"_s, u"‹<b\n c='*d*'>›"_s},
                    RunsCase{"escapes", u"\\*a\\* \\\\ \\a"_s, u"‹*a* \\ \\a›"_s},
                    RunsCase{"an escaped line end", u"a\\\nb"_s, u"‹a\nb›"_s},
                    RunsCase{"an escape at the end", u"a\\"_s, u"‹a\\›"_s},
                    RunsCase{"entities", u"&amp;&lt;&egrave;&nbsp;&#42;&#x1F600;&AMP"_s,
                             u"‹&<è\u00A0*\U0001F600&AMP›"_s},
                    RunsCase{"unknown entities", u"&nosuch; & &;"_s, u"‹&nosuch; & &;›"_s},
                    RunsCase{"numbers that are no scalars", u"&#0;&#xD800;&#x110000;"_s, u"‹\uFFFD\uFFFD\uFFFD›"_s},
                    RunsCase{"an entity is no mark", u"&#42;a&#42;"_s, u"‹*a*›"_s},
                    RunsCase{"other scripts", u"è *ö* \U0001F600 **中文**"_s, u"‹è ›‹ö›e‹ \U0001F600 ›‹中文›s"_s},
                    RunsCase{"marks that stay open", u"**a *b `c [d](e"_s, u"‹**a *b `c [d](e›"_s}));

TEST(MarkdownInline, MarksThatEndABareURLLeaveThoseBehindItAlone) {
    for (const QString& url : {u"http://a.it/b**c**"_s, u"http://a.it/_b_"_s, u"http://a.it/~~b~~"_s}) {
        EXPECT_TRUE(runsTold(url + u" d *e* **f** ~~g~~ h"_s).endsWith(u"‹ d ›‹e›e‹ ›‹f›s‹ ›‹g›d‹ h›"_s))
            << runsTold(url + u" d *e* **f** ~~g~~ h"_s).toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(
    LinksWithin, MarkdownInlineReads,
    testing::Values(RunsCase{"a bare URL", u"[a http://b.it (c)](d)"_s, u"‹a http://b.it (c)›(d)"_s},
                    RunsCase{"a bare URL with emphasis", u"[*http://a.it* b](c)"_s, u"‹http://a.it›e(c)‹ b›(c)"_s},
                    RunsCase{"a bare URL that is its strong text", u"[**http://a.it/**](b) c"_s,
                             u"‹http://a.it/›s(b)‹ c›"_s},
                    RunsCase{"a bare URL that is its text", u"[http://a.it](b) [http://a.it/?b&c;](d)"_s,
                             u"‹http://a.it›(b)‹ ›‹http://a.it/?b&c;›(d)"_s},
                    RunsCase{"an autolink", u"[a <https://b.it> c](d)"_s, u"‹a https://b.it c›(d)"_s},
                    RunsCase{"an autolink in an image", u"[![<https://a.it>](b) http://c.it d](e) f"_s,
                             u"‹https://a.it http://c.it d›(e)‹ f›"_s}));

INSTANTIATE_TEST_SUITE_P(
    URLEnds, MarkdownInlineReads,
    testing::Values(
        RunsCase{"a bare URL in brackets", u"[a: http://b.it/c] [[http://d.it/e]] {f http://g.it/}."_s,
                 u"‹[a: ›‹http://b.it/c›(http://b.it/c)‹] [[›‹http://d.it/e›(http://d.it/e)‹]] {f ›"
                 "‹http://g.it/›(http://g.it/)‹}.›"_s},
        RunsCase{"a bare URL before brackets of other kinds", u"[(http://a.it/b)] ([http://a.it/c]). <a http://b.it>"_s,
                 u"‹[(›‹http://a.it/b›(http://a.it/b)‹)] ([›‹http://a.it/c›(http://a.it/c)‹]). <a ›"
                 "‹http://b.it›(http://b.it)‹>›"_s},
        RunsCase{"a bare URL with brackets of its own", u"http://a.it/b[1] [http://a.it/{c}(d)[2]]."_s,
                 u"‹http://a.it/b[1]›(http://a.it/b[1])‹ [›‹http://a.it/{c}(d)[2]›(http://a.it/{c}(d)[2])"
                 "‹].›"_s},
        RunsCase{"a bare URL before punctuation", u"http://a.it; http://b.it… «c http://d.it/e»?). http://f.it/]. G"_s,
                 u"‹http://a.it›(http://a.it)‹; ›‹http://b.it›(http://b.it)‹… «c ›"
                 "‹http://d.it/e›(http://d.it/e)‹»?). ›‹http://f.it/›(http://f.it/)‹]. G›"_s},
        RunsCase{"a bare URL with punctuation in it", u"http://a.it/b;c…d]e'f"_s,
                 u"‹http://a.it/b;c…d]e'f›(http://a.it/b;c…d]e'f)"_s},
        RunsCase{"a bare URL in emphasis in brackets", u"*[a http://b.it/c]* **http://d.it/;**"_s,
                 u"‹[a ›e‹http://b.it/c›e(http://b.it/c)‹]›e‹ ›‹http://d.it/›s(http://d.it/)‹;›s"_s},
        RunsCase{"a bare URL and entities", u"http://a.it/?b=1&c=2; http://a.it/&amp;d; http://a.it/?b&c;"_s,
                 u"‹http://a.it/?b=1&c=2›(http://a.it/?b=1&c=2)‹; ›‹http://a.it/›(http://a.it/)‹&d; ›"
                 "‹http://a.it/?b&c›(http://a.it/?b&c)‹;›"_s},
        RunsCase{"marks within a bare URL", u"http://a.it/b**c**d *e* **f** g"_s,
                 u"‹http://a.it/b**c**d›(http://a.it/b**c**d)‹ ›‹e›e‹ ›‹f›s‹ g›"_s},
        RunsCase{"a bare URL in an image", u"![a [http://b.it/c;] d](e)"_s,
                 u"‹a [›‹http://b.it/c›(http://b.it/c)‹;] d›"_s},
        RunsCase{"an autolink with punctuation", u"<http://a.it/b];>"_s, u"‹http://a.it/b];›(http://a.it/b];)"_s},
        RunsCase{"a link that ends with punctuation",
                 u"[http://a.it/b;](http://a.it/b;) [http://a.it/b;<b>](http://a.it/b;)"_s,
                 u"‹http://a.it/b;›(http://a.it/b;)‹ ›‹http://a.it/b;<b>›(http://a.it/b;)"_s},
        RunsCase{"a link that is punctuation", u"[\\;](;) [*](*) [;](;)"_s, u"‹;›(;)‹ ›‹*›(*)‹ ›‹;›(;)"_s}));

/// Texts that would be other blocks, or would lose whitespace, if their lines were read as lines of a document.
TEST(MarkdownInline, LetsEveryLineBeItself) {
    for (const QString& line : {u"# x"_s,
                                u"#"_s,
                                u"- x"_s,
                                u"-"_s,
                                u"+ x"_s,
                                u"> x"_s,
                                u">"_s,
                                u"1. x"_s,
                                u"1) x"_s,
                                u"a|b\n-|-\nc|d"_s,
                                u"***"_s,
                                u"* * *"_s,
                                u"---"_s,
                                u"a\n---"_s,
                                u"a\n==="_s,
                                u"==="_s,
                                u"    x"_s,
                                u"\tx"_s,
                                u"\t\tx\ty\t"_s,
                                u"a  b"_s,
                                u"a  \nb"_s,
                                u"a \t \n \t b"_s,
                                u"  "_s,
                                u"\t"_s,
                                u"\n"_s,
                                u"a\n"_s,
                                u"\na"_s,
                                u"a\n\nb"_s,
                                u"a\n \nb"_s,
                                u"a\n\n\n\nb\n\n"_s,
                                u"a\rb"_s,
                                u"a\r\nb\r\n\r\nc\rd"_s,
                                u"~~~"_s,
                                u"~~~ x"_s,
                                u"<div>"_s,
                                u"<!-- x\ny -->"_s,
                                u"<?php x ?>"_s,
                                u"[x]: y"_s,
                                u"[ ] x"_s,
                                u"- [x] y"_s,
                                u"\fx\f"_s,
                                u"\va"_s,
                                u"\u00A0x\u00A0"_s,
                                u"a\u2028b\u0085c"_s,
                                u"\uFEFFx"_s,
                                u"| a |"_s,
                                u"\0x\0"_s,
                                u"\1"_s}) {
        // Alone it may be so plain that nobody reads it; with a mark in sight somebody does.
        EXPECT_EQ(plainText(line), line) << testing::PrintToString(line);
        EXPECT_EQ(plainText(line + u"\n&amp;"_s), QString(line + u"\n&"_s)) << testing::PrintToString(line);
        EXPECT_EQ(plainText(u"&amp;\n"_s + line), QString(u"&\n"_s + line)) << testing::PrintToString(line);
        EXPECT_EQ(plainText(u"&amp;\n"_s + line + u"\n&amp;"_s), QString(u"&\n"_s + line + u"\n&"_s))
            << testing::PrintToString(line);
    }
}

TEST(MarkdownInline, KeepsLoneSurrogates) {
    const QString text = u"a"_s + QChar(0xD800) + u"*b"_s + QChar(0xDC00) + u"*"_s;
    const QList<MarkdownRun> runs = MarkdownInline::attributed(text);
    ASSERT_EQ(runs.size(), 2);
    EXPECT_EQ(runs[0].text, QString(u"a"_s + QChar(0xD800)));
    EXPECT_EQ(runs[1].text, QString(u"b"_s + QChar(0xDC00)));
    EXPECT_TRUE(runs[1].emphasis);
}

TEST(MarkdownInline, JoinsNeighboursThatLookAlike) {
    formats_test::RandomTexts texts({u"*"_s,   u"**"_s,         u"_"_s,  u"~~"_s,         u"`"_s,    u"``"_s,
                                     u"["_s,   u"]"_s,          u"("_s,  u")"_s,          u"](x)"_s, u"a"_s,
                                     u"b c"_s, u" "_s,          u"  "_s, u"\n"_s,         u"\r\n"_s, u"\t"_s,
                                     u"\\"_s,  u"&lt;"_s,       u"&"_s,  u"<b>"_s,        u"<"_s,    u">"_s,
                                     u"!["_s,  u"http://a.b"_s, u"è"_s,  u"\U0001F600"_s, u"\""_s},
                                    17);
    for (int i = 0; i < 20'000; ++i) {
        const QString text = texts.next(30);
        const QList<MarkdownRun> runs = MarkdownInline::attributed(text);
        for (qsizetype r = 0; r < runs.size(); ++r) {
            ASSERT_FALSE(runs[r].text.isEmpty()) << testing::PrintToString(text);
            ASSERT_TRUE(r == 0 || !runs[r].looksLike(runs[r - 1])) << testing::PrintToString(text);
        }
        ASSERT_EQ(text.isEmpty(), runs.isEmpty() && !text.contains(u'[')) << testing::PrintToString(text);
    }
}

/// Takes the marks out of a text by hand, where they are of one kind only.
TEST(MarkdownInline, KeepsAllThatIsNoMark) {
    formats_test::RandomTexts texts({u"a"_s,     u"b c"_s, u" "_s,          u"  "_s,     u"\n"_s,  u"\n\n"_s,
                                     u"\r\n"_s,  u"\r"_s,  u"\t"_s,         u"# "_s,     u"- "_s,  u"> "_s,
                                     u"1. "_s,   u"|"_s,   u"-|-"_s,        u"==="_s,    u"---"_s, u"    "_s,
                                     u"&amp;"_s, u"è"_s,   u"\U0001F600"_s, u"\u2003"_s, u"\0"_s,  u"\f"_s},
                                    19);
    for (int i = 0; i < 20'000; ++i) {
        const QString text = texts.next(30);
        ASSERT_EQ(plainText(text), QString(text).replace(u"&amp;"_s, u"&"_s)) << testing::PrintToString(text);
    }
}

TEST(MarkdownInline, KeepsEveryLineEndWhateverStandsAroundIt) {
    formats_test::RandomTexts texts({u"*"_s, u"_"_s, u"~~"_s, u"`"_s, u"``"_s, u"a"_s, u" "_s, u"\n"_s, u"\\"_s}, 23);
    for (int i = 0; i < 20'000; ++i) {
        const QString text = texts.next(12);
        ASSERT_EQ(plainText(text).count(u'\n'), text.count(u'\n')) << testing::PrintToString(text);
    }
}

TEST(MarkdownInline, ReadsLongHostileTexts) {
    for (const QString& piece : {u"*"_s,  u"*a "_s,  u"*a* "_s,    u"**a*b "_s,      u"_a*b "_s,
                                 u"["_s,  u"[a]"_s,  u"[a]("_s,    u"[\n"_s,         u"![["_s,
                                 u"]"_s,  u"`a``"_s, u"<a "_s,     u"<!--"_s,        u"<?"_s,
                                 u"&"_s,  u"&a;"_s,  u"~a ~~b "_s, u"http://a.b "_s, u"*http://a.b "_s,
                                 u"\\"_s, u"a\n"_s,  u"[a](<b"_s,  u"[a](b \"c"_s,   u"\0"_s}) {
        for (const int length : {15'000, 200'000}) {
            const QString text = piece.repeated(length / piece.size());
            EXPECT_LE(plainText(text).size(), text.size());
            const QString closed = text + QString(length / piece.size(), u']');
            EXPECT_LE(plainText(closed).size(), closed.size());
        }
    }
}

TEST(MarkdownInline, ReadsTheFilesOfTheMachine) {
    for (const QString& text : formats_test::textsUnder(u"/usr/share"_s, {u"*.md"_s, u"*.markdown"_s}, 100)) {
        for (const QString& paragraph : text.split(u"\n\n"_s)) {
            EXPECT_LE(plainText(paragraph).size(), paragraph.size());
        }
    }
}

TEST(MarkdownInline, SeesThatATextMayHoldALink) {
    for (const QString& text : {u"[a](b)"_s, u"<http"_s, u"a <https://b>"_s, u"x://y"_s, u"`]( `"_s, u"]("_s}) {
        EXPECT_TRUE(MarkdownInline::containsLink(text)) << testing::PrintToString(text);
    }
    for (const QString& text : {u""_s, u"[a]"_s, u"] ("_s, u"<a>"_s, u"a:b"_s, u":/ /"_s, u"<HTTP"_s, u"<a@b.it>"_s}) {
        EXPECT_FALSE(MarkdownInline::containsLink(text)) << testing::PrintToString(text);
    }
}

TEST(MarkdownEntities, KnowsTheNamesOfTheStandard) {
    EXPECT_EQ(MarkdownEntities::text(u"&AElig;"), u"\u00C6"_s);
    EXPECT_EQ(MarkdownEntities::text(u"&zwnj;"), u"\u200C"_s);
    EXPECT_EQ(MarkdownEntities::text(u"&Afr;"), u"\U0001D504"_s);
    EXPECT_EQ(MarkdownEntities::text(u"&NotEqualTilde;"), u"\u2242\u0338"_s);
    EXPECT_EQ(MarkdownEntities::text(u"&CounterClockwiseContourIntegral;"), u"\u2233"_s);
    EXPECT_EQ(MarkdownEntities::text(u"&aelig;"), u"\u00E6"_s);
    EXPECT_EQ(MarkdownEntities::text(u"&aElig;"), std::nullopt);
    EXPECT_EQ(MarkdownEntities::text(u"&zzz;"), std::nullopt);
    EXPECT_EQ(MarkdownEntities::text(u"&#65;"), u"A"_s);
    EXPECT_EQ(MarkdownEntities::text(u"&#X41;"), u"A"_s);
    EXPECT_EQ(MarkdownEntities::text(u"&#99999999999;"), u"\uFFFD"_s);
}

} // namespace

} // namespace quillary
