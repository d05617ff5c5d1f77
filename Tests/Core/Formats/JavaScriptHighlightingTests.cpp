#include "Tests/Core/Formats/HighlighterTestSupport.h"

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

void expectJavaScript(const std::vector<test::ColourCase>& cases) {
    test::expectColours(SyntaxLanguage::javascript, cases);
}

TEST(JavaScriptHighlighting, Comments) {
    expectJavaScript({
        {u"// if 1\n2", u"comment // if 1 | number 2"},
        {u"// a\r1\u20282\n3", u"comment // a\r1\u20282 | number 3"},
        {u"//", u"comment //"},
        {u"1//\n", u"number 1 | comment //"},
        {u"/ / 1", u"number 1"},
        {u"/* a */1", u"comment /* a */ | number 1"},
        {u"/* // */1", u"comment // */1"},
        {u"// /* \n 1 */", u"comment // /*  | number 1"},
        {u"/* if", u"comment /* if"},
        {u"\"http://a\" 1", u"comment //a\" 1"},
    });
}

TEST(JavaScriptHighlighting, Strings) {
    expectJavaScript({
        {u"`a\nb` 1", u"string `a\nb` | number 1"},
        {u"`a\\`b` 1", u"string `a\\`b` | number 1"},
        {u"`a\\\nb`", u""},
        {u"`open 1", u"number 1"},
        {u"\"a\" 'b'", u"string \"a\" | string 'b'"},
        {u"\"a\nif\"", u"keyword if"},
        {u"'a\\\\' + 'b'", u"string 'a\\\\' | string 'b'"},
        {u"`'` + '`' 1", u"string `'` | number 1"},
        {u"\"'\" '\"' 1", u"string \"'\" | number 1"},
    });
}

TEST(JavaScriptHighlighting, EveryKeywordAndConstant) {
    const QStringList keywords = u"async await break case catch class const continue debugger default delete do else "
                                 u"export extends finally for from function if import in instanceof let new of return "
                                 u"static super switch this throw try typeof var void while with yield"_s.split(u' ');
    ASSERT_EQ(keywords.size(), 39);
    for (const QString& each : keywords) {
        EXPECT_EQ(test::coloured(each, SyntaxLanguage::javascript), u"keyword "_s + each);
        EXPECT_EQ(test::coloured(each.toUpper(), SyntaxLanguage::javascript), QString()) << each.toStdString();
        EXPECT_EQ(test::coloured(each + u'x', SyntaxLanguage::javascript), QString()) << each.toStdString();
        EXPECT_EQ(test::coloured(each.chopped(1) + u'_', SyntaxLanguage::javascript), QString()) << each.toStdString();
    }
    for (const QString& each : u"true false null undefined NaN Infinity"_s.split(u' ')) {
        EXPECT_EQ(test::coloured(each, SyntaxLanguage::javascript), u"constant "_s + each);
        EXPECT_EQ(test::coloured(u'_' + each, SyntaxLanguage::javascript), QString()) << each.toStdString();
    }
    for (const QString& each : {u"TRUE"_s, u"True"_s, u"nan"_s, u"NAN"_s, u"infinity"_s, u"NULL"_s}) {
        EXPECT_EQ(test::coloured(each, SyntaxLanguage::javascript), QString()) << each.toStdString();
    }
}

TEST(JavaScriptHighlighting, KeywordsAreWholeWords) {
    expectJavaScript({
        {u"if(a)else{}", u"keyword if | keyword else"},
        {u"a.if $if if$", u"keyword if | keyword if | keyword if"},
        {u"iff _if if1 \u00E9if if\u00E9", u""},
        {u"if\u0301 if\u00AD if\u200D", u""},
        {u"\u0301if", u"keyword if"},
        {u"\U00020000if", u""},
        {u"\U0001F600if", u"keyword if"},
        {u"ca\u017Fe", u""},
    });
}

TEST(JavaScriptHighlighting, Numbers) {
    expectJavaScript({
        {u"0 42 1.5 1e5 1E+5 1e-5 1.5e10",
         u"number 0 | number 42 | number 1.5 | number 1e5 | number 1E+5 | number 1e-5 | "
         u"number 1.5e10"},
        {u"0xFF 0Xa1 0x 0xG 0xFFg", u"number 0xFF | number 0Xa1"},
        {u"00x1 1x 1_000", u""},
        {u".5 5. -5", u"number 5 | number 5 | number 5"},
        {u"1.5px", u"number 1"},
        {u"1.2.3", u"number 1.2 | number 3"},
        {u"1e", u""},
        {u"1.e5", u"number 1"},
        {u"1.5e5x 1.5e+5x", u"number 1 | number 1"},
        {u"a1 \u00E91 1\u0301", u""},
        {u"\u0661\u0662 0x\u0661", u"number \u0661\u0662 | number 0x\u0661"},
    });
}

TEST(JavaScriptHighlighting, Functions) {
    expectJavaScript({
        {u"f(", u"function f"},
        {u"f \n (", u"function f"},
        {u"f)", u""},
        {u"if (f())", u"keyword if | function f"},
        {u"$(", u""},
        {u"$f(", u"function f"},
        {u"a$b(", u"function a$b"},
        {u"$$a$(", u"function a$"},
        {u"9$a(", u"number 9 | function $a"},
        {u"9a(", u""},
        {u"\u00E9a(", u""},
        {u"a\u00E9(", u"function a\u00E9"},
        {u"a.b(c(", u"function b | function c"},
        {u"_(", u"function _"},
        {u"f((", u"function f"},
        {u"function (", u"keyword function"},
    });
}

} // namespace

} // namespace quillary
