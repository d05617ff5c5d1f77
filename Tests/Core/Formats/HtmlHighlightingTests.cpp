#include "Tests/Core/Formats/HighlighterTestSupport.h"

namespace quillary {

namespace {

void expectHtml(const std::vector<test::ColourCase>& cases) {
    test::expectColours(SyntaxLanguage::html, cases);
}

TEST(HtmlHighlighting, Comments) {
    expectHtml({
        {u"<!-- <b> -->", u"comment <!-- <b> -->"},
        {u"<!-- <b>", u"comment <!-- <b>"},
        {u"<!-->-->", u"comment <!-->-->"},
        {u"<!---->>", u"comment <!----> | tag >"},
        {u"<!- -->", u"tag >"},
        {u"<!-- a --- -->", u"comment <!-- a --- -->"},
    });
}

TEST(HtmlHighlighting, Doctypes) {
    expectHtml({
        {u"<!DOCTYPE html>", u"keyword <!DOCTYPE html>"},
        {u"<!doctype\nx>y>", u"keyword <!doctype\nx> | tag >"},
        {u"<!DocTypes>", u"keyword <!DocTypes>"},
        {u"<!DOCTYPE", u""},
        {u"<! DOCTYPE>", u"tag >"},
    });
}

TEST(HtmlHighlighting, Values) {
    expectHtml({
        {u"=\"a\" = 'b'", u"string \"a\" | string 'b'"},
        {u"=\n\"a\nb\"", u"string \"a\nb\""},
        {u"=\"it's\"", u"string \"it's\""},
        {u"=\"\"", u"string \"\""},
        {u"=\"open", u""},
        {u"\"a\"", u""},
        {u"==\"a\"", u"string \"a\""},
        {u"=a\"b\"", u""},
        {u"='a\" =\"b'", u"string 'a\" =\"b'"},
    });
}

TEST(HtmlHighlighting, Tags) {
    expectHtml({
        {u"<b></b>", u"tag <b | tag > | tag </b | tag >"},
        {u"<br/>", u"tag <br | tag />"},
        {u"<svg:a-b_c1\u00E9>", u"tag <svg:a-b_c1\u00E9 | tag >"},
        {u"< b <1 <\u00E9 </ b", u""},
        {u"//>", u"tag />"},
        {u">>", u"tag > | tag >"},
        {u"<<a", u"tag <a"},
    });
}

TEST(HtmlHighlighting, Attributes) {
    expectHtml({
        {u"<a href=\"x\" id = y>", u"tag <a | attribute href | string \"x\" | attribute id | tag >"},
        {u" @click.once-x:y=1", u"attribute @click.once-x:y"},
        {u" :is=1 _a=2", u"attribute :is | attribute _a"},
        {u" @=1", u"attribute @"},
        {u" a@b=1 -a=1 1a=1 .a=1", u""},
        {u"a=1", u""},
        {u"\na\n=", u"attribute a"},
        {u"\u00A0a\u2003=", u"attribute a"},
        {u" a b", u""},
        {u" a\u00E9=", u"attribute a\u00E9"},
        {u" \u00E9a=", u""},
    });
}

TEST(HtmlHighlighting, Entities) {
    expectHtml({
        {u"&amp; &#39; &#x1F; &\u00E9;", u"constant &amp; | constant &#39; | constant &#x1F; | constant &\u00E9;"},
        {u"&; & amp; &amp &a-b;", u""},
        {u"&&a;", u"constant &a;"},
        {u"&##;", u"constant &##;"},
    });
}

TEST(HtmlHighlighting, ScriptsAndStyles) {
    expectHtml({
        {u"<script>if (a)</script>", u"tag <script | tag > | keyword if | tag </script | tag >"},
        {u"<SCRIPT src=\"a\">if</Script>",
         u"tag <SCRIPT | attribute src | string \"a\" | tag > | keyword if | tag </Script | tag >"},
        {u"<style>a { b: c; }</style>", u"tag <style | tag > | tag a | attribute b | tag </style | tag >"},
        {u"<script></script>", u"tag <script | tag > | tag </script | tag >"},
        {u"<script>if", u"tag <script | tag >"},
        {u"<scripts>if</script>", u"tag <scripts | tag > | tag </script | tag >"},
        {u"<script\u0301>if</script>", u"tag <script\u0301 | tag > | tag </script | tag >"},
        {u"<script>if</script >", u"tag <script | tag > | tag </script | tag >"},
        {u"<script>'</script>' if</script>", u"tag <script | tag > | tag </script | tag > | tag </script | tag >"},
        {u"<script>\"<b>\" < 1</script>", u"tag <script | tag > | string \"<b>\" | number 1 | tag </script | tag >"},
        {u"<script a='>'>if</script>", u"tag <script | attribute a | tag > | keyword if | tag </script | tag >"},
        {u"<\u017Fcript>if</\u017FCRIPT>", u"tag > | keyword if | tag >"},
        {u"<\uFB06yle>a{}</\uFB05yle>", u"tag > | tag a | tag >"},
    });
}

TEST(HtmlHighlighting, AScriptEndsAtItsRegionForLookAheadsAndComments) {
    expectHtml({
        {u"<script>// if</script>(", u"tag <script | tag > | comment // if | tag </script | tag >"},
        {u"<script>f</script>(", u"tag <script | tag > | tag </script | tag >"},
        {u"<script>/* if</script> */", u"tag <script | tag > | comment /* if | tag </script | tag >"},
        {u"<style>a</style>{", u"tag <style | tag > | tag </style | tag >"},
        {u"<style>1px</style>", u"tag <style | tag > | number 1px | tag </style | tag >"},
    });
}

TEST(HtmlHighlighting, AStyleWithinAScriptAddsNothing) {
    expectHtml({
        {u"<script>'<style>a{}</style>'</script>",
         u"tag <script | tag > | string '<style>a{}</style>' | tag </script | "
         u"tag >"},
    });
}

} // namespace

} // namespace quillary
