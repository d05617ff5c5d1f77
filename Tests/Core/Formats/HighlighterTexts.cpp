#include "Tests/Core/Formats/HighlighterTexts.h"

namespace quillary::test {

namespace {

using namespace std::string_view_literals;
using Pieces = std::vector<std::u16string_view>;

/// Blanks, line ends, words, marks and format characters, digits of other scripts, pairs and lone surrogates: what the
/// classes of the patterns tell apart.
const Pieces& commonPieces() {
    static const Pieces pieces = {
        u" ",      u" ",      u"  ",     u"\t",     u"\n",     u"\n",         u"\r\n",       u"\r",
        u"\u000B", u"\u0085", u"\u2028", u"\u00A0", u"a",      u"b",          u"Z",          u"_",
        u"foo",    u"x9",     u"0",      u"1",      u"42",     u"\u0663",     u"\u00E9",     u"\u0301",
        u"\u00AD", u"\u200D", u"\u200C", u"\u200B", u"\u4E2D", u"\U0001D7D9", u"\U0001F600", u"\U00020000",
        u"\xD83D", u"\xDE00", u"\0"sv,   u"\u017F", u"\u212A", u"\u00DF",     u"\uFB01",     u"\uFB06",
        u"-",      u".",      u";",      u",",      u"\\",     u"\\\\",       u"\\\n",       u"\\\r",
    };
    return pieces;
}

Pieces withCommonPieces(Pieces own) {
    own.insert(own.end(), own.begin(), own.end());
    own.insert(own.end(), commonPieces().begin(), commonPieces().end());
    return own;
}

Pieces cssPieces() {
    return {
        u"/*",       u"*/",          u"/",          u"*",   u"\"",   u"'",     u"\\\"",  u"\\'",
        u"@",        u"@media",      u"!important", u"!",   u"{",    u"}",     u";",     u":",
        u"::",       u"{",           u"}",          u";",   u":",    u"(",     u")",     u"#",
        u"#fff",     u"#12345678",   u"#123456789", u".",   u".cls", u"-",     u"--x",   u"a:hover",
        u"::before", u"color: red;", u"px",         u"em",  u"rem",  u"vh",    u"vw",    u"vmin",
        u"vmax",     u"ms",          u"s",          u"deg", u"fr",   u"pt",    u"ch",    u"%",
        u"12px",     u"-1.5em",      u".5",         u"1.",  u"url(", u"a-b-c", u"[a=b]", u">",
        u"+",        u"-webkit-x",
    };
}

Pieces javaScriptPieces() {
    return {
        u"//",   u"/*",   u"*/",       u"/",          u"*",    u"\"",          u"'",         u"`",        u"\\\"",
        u"\\'",  u"\\`",  u"(",        u" (",         u")",    u"$",           u"$x",        u"x$",       u"a$b(",
        u"if",   u"if (", u"in",       u"instanceof", u"of",   u"const",       u"let",       u"function", u"async",
        u"true", u"NaN",  u"Infinity", u"undefined",  u"null", u"False",       u"0x",        u"0xFF",     u"0Xg",
        u"1.5",  u"1.",   u".5",       u"1e5",        u"1E+5", u"1e-",         u"e",         u"E",        u"+",
        u"x",    u"==",   u"=>",       u"${",         u"}",    u"\u017Fwitch", u"ca\u017Fe",
    };
}

Pieces jsonPieces() {
    return {
        u"\"",  u"\"", u"\"", u":",   u":",    u" :",  u"\n:",  u"\\\"",  u"{",    u"}",         u"[",     u"]",
        u",",   u"//", u"/*", u"*/",  u"/",    u"*",   u"true", u"false", u"null", u"TRUE",      u"-",     u"-1",
        u"1.5", u"1.", u".5", u"1e5", u"1E+5", u"1e-", u"e",    u"E",     u"+",    u"\"a\": 1,", u"\"b\"", u"\\u00e9",
    };
}

Pieces htmlPieces() {
    return {
        u"<",
        u">",
        u"/>",
        u"</",
        u"<!--",
        u"-->",
        u"--",
        u"-",
        u"<!DOCTYPE",
        u"<!doctype html>",
        u"<!",
        u"=",
        u" = ",
        u"\"",
        u"'",
        u"=\"",
        u"='",
        u"<a",
        u"<a:b-c",
        u"</p>",
        u"<br/>",
        u" href",
        u" @click",
        u" :is",
        u" _x.y-z",
        u" 1x",
        u"@",
        u":",
        u"&",
        u"&amp;",
        u"&#39;",
        u"&#x",
        u"#",
        u";",
        u"<script>",
        u"<script",
        u"<SCRIPT src=\"a\">",
        u"<scripts>",
        u"</script>",
        u"</Script >",
        u"</script",
        u"<style>",
        u"<style type=x>",
        u"</style>",
        u"</STYLE\n>",
        u"</style",
        u"<\u017Fcript>",
        u"</\u017Fcript>",
        u"<\uFB06yle>",
        u"</\uFB05yle>",
        u"var a = 1;",
        u"a { b: c; }",
        u"// x",
        u"/* x */",
        u"if (",
        u"<?php",
        u"?>",
    };
}

Pieces phpPieces() {
    Pieces pieces = {
        u"<?php",    u"<?php ",    u"<?=",         u"<?",           u"<?PHP",   u"<?pHp", u"<?>",
        u"?>",       u"?>",        u"?",           u"//",           u"#",       u"#[",    u"/*",
        u"*/",       u"/",         u"*",           u"\"",           u"'",       u"\\\"",  u"\\'",
        u"$",        u"$a",        u"$_x",         u"$1",           u"$\u00E9", u"a$",    u"a$b(",
        u"(",        u" (",        u")",           u"echo",         u"Echo",    u"CLASS", u"cla\u00DF",
        u"li\uFB06", u"\uFB01nal", u"\uFB01nally", u"include_once", u"include", u"as",    u"a\u017F",
        u"TRUE",     u"nuLL",      u"fal\u017Fe",  u"true",         u"0xFF",    u"1.5",   u"1e5",
        u"1.",       u"->",        u"=>",          u"::",           u"if",      u"fn",    u"brea\u212A",
        u"e",        u"+",
    };
    const Pieces html = htmlPieces();
    pieces.insert(pieces.end(), html.begin(), html.end());
    return pieces;
}

} // namespace

const std::vector<std::u16string_view>& collidingPieces(SyntaxLanguage language) {
    static const Pieces lists[] = {withCommonPieces(cssPieces()), withCommonPieces(javaScriptPieces()),
                                   withCommonPieces(phpPieces()), withCommonPieces(htmlPieces()),
                                   withCommonPieces(jsonPieces())};
    return lists[static_cast<std::size_t>(language)];
}

QString collidingText(SyntaxLanguage language, int pieces, std::mt19937& random) {
    const Pieces& all = collidingPieces(language);
    // A small choice of pieces for each text: what collides must meet often.
    std::uniform_int_distribution<std::size_t> any(0, all.size() - 1);
    Pieces chosen;
    const int choice = std::uniform_int_distribution(2, 24)(random);
    for (int i = 0; i < choice; ++i) {
        chosen.push_back(all[any(random)]);
    }
    QString result;
    for (int i = 0; i < pieces; ++i) {
        result += QStringView(chosen[std::uniform_int_distribution<std::size_t>(0, chosen.size() - 1)(random)]);
    }
    return result;
}

} // namespace quillary::test
