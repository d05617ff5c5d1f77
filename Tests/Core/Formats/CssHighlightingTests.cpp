#include "Tests/Core/Formats/HighlighterTestSupport.h"

namespace quillary {

namespace {

void expectCss(const std::vector<test::ColourCase>& cases) {
    test::expectColours(SyntaxLanguage::css, cases);
}

TEST(CssHighlighting, Comments) {
    expectCss({
        {u"/* a { b: c; } */", u"comment /* a { b: c; } */"},
        {u"/* 1 */2/* 3", u"comment /* 1 */ | number 2 | comment /* 3"},
        {u"/*/ 1", u"comment /*/ 1"},
        {u"/**/1", u"comment /**/ | number 1"},
        {u"/* \n\n 1 */", u"comment /* \n\n 1 */"},
        {u"// 1", u"number 1"},
        {u"/*", u"comment /*"},
    });
}

TEST(CssHighlighting, Strings) {
    expectCss({
        {u"\"a\" 'b'", u"string \"a\" | string 'b'"},
        {u"\"\"''", u"string \"\" | string ''"},
        {u"\"a\\\"b\" 1", u"string \"a\\\"b\" | number 1"},
        {u"'a\\'b' 1", u"string 'a\\'b' | number 1"},
        {u"\"it's\" 1", u"string \"it's\" | number 1"},
        {u"\"a\n1\" 2", u"number 1 | number 2"},
        {u"\"a\n\"b\"", u"string \"b\""},
        {u"\"a\\\nb\"", u""},
        {u"\"a\rb\u2028c\"", u"string \"a\rb\u2028c\""},
        {u"\"a\\\rb\"", u""},
        {u"\"a\\\u2028b\"", u""},
        {u"\"a\\\U0001F600\"", u"string \"a\\\U0001F600\""},
        {u"\"open", u""},
        {u"\"a\\", u""},
        {u"\"\\\\\"1", u"string \"\\\\\" | number 1"},
        {u"/* \"a */ \"b\"", u"comment /* \"a */"},
    });
}

TEST(CssHighlighting, AtRulesAndImportant) {
    expectCss({
        {u"@media", u"keyword @media"},
        {u"@-webkit-keyframes", u"keyword @-webkit-keyframes"},
        {u"@\u00E9t\u00E9 @", u"keyword @\u00E9t\u00E9"},
        {u"@@a", u"keyword @a"},
        {u"!important", u"keyword !important"},
        {u"!important;!importante !important-x", u"keyword !important | keyword !important"},
        {u"!IMPORTANT ! important", u""},
        {u"!important\u0301 !important\u00AD", u""},
    });
}

TEST(CssHighlighting, Properties) {
    expectCss({
        {u"color: red;", u"attribute color"},
        {u"color: red}", u"attribute color"},
        {u"color: red", u""},
        {u"a:hover {", u"tag a | keyword :hover"},
        {u"x{a:b;c:d}", u"tag x | attribute a | attribute c"},
        {u"{--main-color : red;}", u"attribute --main-color"},
        {u"{a\n\n:\n\nb;}", u"attribute a"},
        {u"{a,b:c;}", u""},
        {u"{a\u2028b:c;}", u"attribute b"},
        {u"{:c;}", u""},
        {u"(a:b;)", u""},
        {u"a:b c:d;", u"attribute a | attribute c"},
        {u"a:;", u"attribute a"},
    });
}

TEST(CssHighlighting, Colours) {
    expectCss({
        {u"#fff", u"number #fff"},
        {u"#FFF #abcd #12345678", u"number #FFF | number #abcd | number #12345678"},
        {u"#ff #123456789 #ggg", u""},
        {u"#fffg #fff\u00E9 #fff\u0301", u""},
        {u"#fff-x", u"number #fff"},
        {u"a: #fff; }", u"attribute a | number #fff"},
        {u"#fff { }", u"tag #fff"},
        {u"#fff a b, c {", u"tag #fff | tag a | tag b | tag c"},
        {u"#fff; {", u"number #fff"},
        {u"##fff", u"number #fff"},
    });
}

TEST(CssHighlighting, Numbers) {
    expectCss({
        {u"1 -1 .5 -.5 1.5 -1.5", u"number 1 | number -1 | number .5 | number -.5 | number 1.5 | number -1.5"},
        {u"1px 1em 1rem 1vh 1vw 1vmin 1vmax 1ms 1s 1deg 1fr 1pt 1ch 1%",
         u"number 1px | number 1em | number 1rem | number 1vh | number 1vw | number 1vmin | number 1vmax | number 1ms "
         u"| "
         u"number 1s | number 1deg | number 1fr | number 1pt | number 1ch | number 1%"},
        {u"1PX 1q 1vm 1pxx", u"number 1 | number 1 | number 1 | number 1px"},
        {u"1.", u"number 1"},
        {u"1.2.3", u"number 1.2"},
        {u"a1 #1 .a1 -a1 --1 a-1 \u00E91", u""},
        {u"50%3", u"number 50% | number 3"},
        {u"(1)/2*3+4", u"number 1 | number 2 | number 3 | number 4"},
        {u"\u0663px", u"number \u0663px"},
        {u"\U0001D7D9", u"number \U0001D7D9"},
        {u"\U00020000"
         u"1 \U0001F600"
         u"1",
         u"number 1"},
        {u"1\u0301", u"number 1"},
    });
}

TEST(CssHighlighting, Functions) {
    expectCss({
        {u"url(x)", u"function url"},
        {u"translate-x (", u""},
        {u"-webkit-calc(1px + var(--x))", u"function -webkit-calc | number 1px | function var"},
        {u"\u00E9(", u"function \u00E9"},
        {u"@media(", u"keyword @media"},
        {u"#abc(", u"number #abc"},
        {u"((a(", u"function a"},
    });
}

TEST(CssHighlighting, Selectors) {
    expectCss({
        {u".a #b {", u"tag .a | tag #b"},
        {u"._a .-a .1a {", u"tag ._a | tag a | number .1"},
        {u".a.b-c_d {", u"tag .a | tag .b-c_d"},
        {u"a:hover a::before {", u"tag a | keyword :hover | tag a | keyword ::before"},
        {u":::x :-moz-y :1 {", u"keyword ::x | keyword :-moz-y | number 1"},
        {u"div > p ~ h1, Ul {", u"tag div | tag p | tag h1"},
        {u"my-element a-B {", u"tag my-element | tag a-B"},
        {u"A-b {", u"tag b"},
        {u"a; b {", u"tag b"},
        {u"a } b {", u"tag b"},
        {u"a b", u""},
        {u"@media screen {", u"keyword @media | tag screen"},
        {u"a\u0301 \u0301a {", u"tag a\u0301 | tag a"},
        {u"x\u00ADa {", u"tag x"},
    });
}

TEST(CssHighlighting, AWholeRule) {
    expectCss({
        {u"@import \"a.css\";\n/* n */\n#nav .item:hover { margin: 0 -1.5em; color: #0a0 !important }\n",
         u"keyword @import | string \"a.css\" | comment /* n */ | tag #nav | tag .item | keyword :hover | "
         u"attribute margin | number 0 | number -1.5em | attribute color | number #0a0 | keyword !important"},
    });
}

} // namespace

} // namespace quillary
