#include "QuillaryCore/Formats/MarkdownLinks.h"

#include "Tests/Core/Formats/FormatsTestSupport.h"

#include <QRegularExpression>

#include <gmock/gmock.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;
using namespace MarkdownLinks;

TEST(MarkdownLinks, MakesSlugs) {
    const std::vector<std::pair<QString, QString>> cases{
        {u""_s, u""_s},
        {u"Introduzione"_s, u"introduzione"_s},
        {u"Perché no?"_s, u"perché-no"_s},
        {u"A_b-c"_s, u"a_b-c"_s},
        {u"a  b"_s, u"a--b"_s},
        {u" a "_s, u"-a-"_s},
        {u"a\tb\nc\u00A0d"_s, u"abcd"_s},
        {u"1.2 Über *die* `Dinge`"_s, u"12-über-die-dinge"_s},
        {u"\u4E2D\u6587 \u0967\u0968 \u2167"_s, u"\u4E2D\u6587-\u0967\u0968-\u2177"_s},
        {u"e\u0301"_s, u"e\u0301"_s},
        {u"x\u00B2 \u00BD"_s, u"x\u00B2-\u00BD"_s},
        {u"!?\u2026\U0001F600"_s, u""_s},
        {u"\U00010400"_s, u"\U00010428"_s},
        {u"[testo](altra.md)"_s, u"testo"_s},
        {u"a [b c](d.md#e) f [g](h)"_s, u"a-b-c-f-g"_s},
        {u"[a](b"_s, u"ab"_s},
        {u"[a] (b)"_s, u"a-b"_s},
        {u"[[a](b)](c)"_s, u"ac"_s},
        {u"[a][b](c)"_s, u"ab"_s},
        {u"[](x)y"_s, u"y"_s},
        {u"![a](b.png)"_s, u"a"_s},
        {u"[a\nb](c\nd)"_s, u"ab"_s},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(slug(text), expected) << testing::PrintToString(text);
    }
    EXPECT_EQ(slug(QString(u"a"_s + QChar(0xD800))), u"a"_s);
}

TEST(MarkdownLinks, ReplacesLinksAsTheRegularExpressionDoes) {
    const QRegularExpression link(u"\\[([^\\]]*)\\]\\([^)]*\\)"_s);
    formats_test::RandomTexts texts({u"["_s, u"]"_s, u"("_s, u")"_s, u"]("_s, u"a"_s, u" "_s, u"\n"_s}, 23);
    for (int i = 0; i < 20'000; ++i) {
        const QString text = texts.next(24);
        QString replaced = text;
        replaced.replace(link, u"\\1"_s);
        // What is left of the brackets afterwards is dropped by both.
        QString expected;
        for (const QChar unit : replaced) {
            expected += unit == u'a' ? u"a"_s : (unit == u' ' ? u"-"_s : QString());
        }
        ASSERT_EQ(slug(text), expected) << testing::PrintToString(text);
    }
}

TEST(MarkdownLinks, MakesLongSlugsInOnePass) {
    EXPECT_EQ(slug(u"["_s.repeated(1'000'000)), u""_s);
    EXPECT_EQ(slug(u"[a]"_s.repeated(300'000)).size(), 300'000);
    EXPECT_EQ(slug(u"[a]("_s.repeated(300'000)).size(), 300'000);
    EXPECT_EQ(slug(u"[a](b)"_s.repeated(100'000)).size(), 100'000);
}

TEST(MarkdownLinks, NumbersRepeatedSlugs) {
    EXPECT_EQ(uniqueSlugs({}), QStringList());
    EXPECT_EQ(uniqueSlugs({u"T"_s, u"t"_s, u"t!"_s}), (QStringList{u"t"_s, u"t-1"_s, u"t-2"_s}));
    EXPECT_EQ(uniqueSlugs({u"?"_s, u"!"_s, u""_s}), (QStringList{u""_s, u"-1"_s, u"-2"_s}));
    EXPECT_EQ(uniqueSlugs({u"t"_s, u"t-1"_s, u"t"_s, u"t-1"_s}), (QStringList{u"t"_s, u"t-1"_s, u"t-1"_s, u"t-1-1"_s}));
}

TEST(MarkdownLinks, KnowsWhereALinkLeads) {
    struct Case {
        QString url;
        Target target;
    };

    const std::vector<Case> cases{
        {u"#Introduzione"_s, Anchor{u"introduzione"_s}},
        {u"#Due%20Parole"_s, Anchor{u"due-parole"_s}},
        {u"#"_s, Anchor{u""_s}},
        {u"#a#b"_s, Anchor{u"ab"_s}},
        {u"#50%"_s, Anchor{u"50"_s}},
        {u"#%C3%A8"_s, Anchor{u"è"_s}},
        {u"#%FF"_s, Anchor{u"ff"_s}},
        {u"https://a.it/b#c"_s, External{u"https://a.it/b#c"_s}},
        {u"HTTPS://A.it"_s, External{u"HTTPS://A.it"_s}},
        {u"mailto:a@b.it"_s, External{u"mailto:a@b.it"_s}},
        {u"x-a.b+1:c"_s, External{u"x-a.b+1:c"_s}},
        {u"file:///a/b.md#x"_s, File{u"/a/b.md"_s, std::nullopt}},
        {u"file:///a/b%20c.md?q#x"_s, File{u"/a/b c.md"_s, std::nullopt}},
        {u"file://localhost/a.md"_s, File{u"/a.md"_s, std::nullopt}},
        {u"file:a.md"_s, File{u"a.md"_s, std::nullopt}},
        {u"file:///a%23B"_s, File{u"/a"_s, u"b"_s}},
        {u"FILE:///a/b.md#X"_s, File{u"FILE:///a/b.md"_s, u"x"_s}},
        {u"File:a"_s, File{u"File:a"_s, std::nullopt}},
        {u"nota.md"_s, File{u"nota.md"_s, std::nullopt}},
        {u"nota.md#Sezione Uno"_s, File{u"nota.md"_s, u"sezione-uno"_s}},
        {u"nota.md#Sezione%20Uno"_s, File{u"nota.md"_s, u"sezione-uno"_s}},
        {u"altra-nota.md#parte"_s, File{u"altra-nota.md"_s, u"parte"_s}},
        {u"a%20b/c%23d.md#e#f"_s, File{u"a b/c#d.md"_s, u"ef"_s}},
        {u"a.md#"_s, File{u"a.md"_s, u""_s}},
        {u"100%.md#50%"_s, File{u"100%.md"_s, u"50"_s}},
        {u"a%2"_s, File{u"a%2"_s, std::nullopt}},
        {u"a%g0b"_s, File{u"a%g0b"_s, std::nullopt}},
        {u"%C3%28"_s, File{u"%C3%28"_s, std::nullopt}},
        {u"%EF%BB%BFa.md"_s, File{u"\ufeffa.md"_s, std::nullopt}},
        {u""_s, File{u""_s, std::nullopt}},
        {u"1a:b"_s, File{u"1a:b"_s, std::nullopt}},
        {u":b"_s, File{u":b"_s, std::nullopt}},
        {u"a b:c"_s, File{u"a b:c"_s, std::nullopt}},
        {u"/a:b"_s, File{u"/a:b"_s, std::nullopt}},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(target(each.url), each.target) << testing::PrintToString(each.url);
    }
    EXPECT_NE(Target(Anchor{u"a"_s}), Target(External{u"a"_s}));
    EXPECT_NE(Target(File{u"a"_s, u""_s}), Target(File{u"a"_s, std::nullopt}));
}

} // namespace

} // namespace quillary
