#include "QuillaryCore/Formats/MarkdownParser.h"

#include "Tests/Core/Formats/FormatsTestSupport.h"
#include "Tests/Core/Formats/MarkdownReference.h"
#include "Tests/Core/Formats/MarkdownTelling.h"

#include <gmock/gmock.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

QString blocksTold(const QString& text) {
    return MarkdownTelling::tell(MarkdownParser::parse(text));
}

/// Blocks in the form of MarkdownTelling; "‹›" are around each text, "↵" stands for a line feed in it.
struct BlocksCase {
    const char* name;
    QString text;
    QString blocks;
};

void PrintTo(const BlocksCase& blocksCase, std::ostream* stream) {
    *stream << blocksCase.name;
}

class MarkdownParserReads : public testing::TestWithParam<BlocksCase> {};

TEST_P(MarkdownParserReads, TheBlocks) {
    EXPECT_EQ(blocksTold(GetParam().text), GetParam().blocks);
    EXPECT_EQ(MarkdownReference::parse(GetParam().text), GetParam().blocks);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, MarkdownParserReads,
    testing::Values(BlocksCase{"an empty text", u""_s, u""_s},
                    BlocksCase{"only blank lines", u"\n \n\t\n\r\n   \t  "_s, u""_s},
                    BlocksCase{"a paragraph", u"a\nb\n\nc"_s, u"p(‹a↵b›) p(‹c›)"_s},
                    BlocksCase{"carriage returns", u"a\rb\r\nc\r\r\nd"_s, u"p(‹a↵b↵c›) p(‹d›)"_s},
                    BlocksCase{"other line ends are text", u"a\u2028b\u0085c\vd"_s, u"p(‹a\u2028b\u0085c\vd›)"_s},
                    BlocksCase{"no trailing spaces in a paragraph", u"  a  \n\tb \t\nc"_s, u"p(‹a↵b↵c›)"_s},
                    BlocksCase{"indented lines go on with a paragraph", u"a\n      b"_s, u"p(‹a↵b›)"_s},
                    BlocksCase{"no reference definitions", u"[a]: b"_s, u"p(‹[a]: b›)"_s},
                    BlocksCase{"no blocks of HTML", u"<div>\n# a\n</div>"_s, u"p(‹<div>›) h1(‹a›) p(‹</div>›)"_s},
                    BlocksCase{"a tab in the text stays", u"a\tb"_s, u"p(‹a\tb›)"_s}));

INSTANTIATE_TEST_SUITE_P(
    Headings, MarkdownParserReads,
    testing::Values(BlocksCase{"six levels", u"# a\n## b\n### c\n#### d\n##### e\n###### f"_s,
                               u"h1(‹a›) h2(‹b›) h3(‹c›) h4(‹d›) h5(‹e›) h6(‹f›)"_s},
                    BlocksCase{"no seventh", u"####### a"_s, u"p(‹####### a›)"_s},
                    BlocksCase{"no space", u"#a"_s, u"p(‹#a›)"_s},
                    BlocksCase{"a tab is no space", u"#\ta"_s, u"p(‹#\ta›)"_s},
                    BlocksCase{"nothing behind the run", u"#\n##"_s, u"h1(‹›) h2(‹›)"_s},
                    BlocksCase{"only a space behind the run", u"# "_s, u"h1(‹›)"_s},
                    BlocksCase{"a tab behind the space", u"# \ta \t"_s, u"h1(‹a›)"_s},
                    BlocksCase{"indented by three", u"   # a"_s, u"h1(‹a›)"_s},
                    BlocksCase{"indented by four", u"    # a"_s, u"code(-‹# a›)"_s},
                    BlocksCase{"a closing run", u"# a ##"_s, u"h1(‹a›)"_s},
                    BlocksCase{"a closing run behind much whitespace", u"## a \t\u00A0 ##### "_s, u"h2(‹a›)"_s},
                    BlocksCase{"a closing run alone", u"# ##"_s, u"h1(‹›)"_s},
                    BlocksCase{"a run at the text belongs to it", u"# a#"_s, u"h1(‹a#›)"_s},
                    BlocksCase{"an escaped run", u"# a \\#"_s, u"h1(‹a \\#›)"_s},
                    BlocksCase{"text behind the run", u"# a # b"_s, u"h1(‹a # b›)"_s},
                    BlocksCase{"only the last run goes", u"# a # #"_s, u"h1(‹a #›)"_s},
                    BlocksCase{"a closing run before a line end of another kind", u"# a ##\u2028"_s, u"h1(‹a›)"_s},
                    BlocksCase{"a closing run that bears a mark", u"# a #\u0301"_s, u"h1(‹a #\u0301›)"_s},
                    BlocksCase{"a mark on the run", u"#\u0301 a"_s, u"p(‹#\u0301 a›)"_s},
                    BlocksCase{"a mark on the run's last", u"##\u0301 a"_s, u"p(‹##\u0301 a›)"_s},
                    BlocksCase{"a joiner on the run", u"#\u200D a"_s, u"p(‹#\u200D a›)"_s},
                    BlocksCase{"a keycap", u"#\uFE0F\u20E3 a"_s, u"p(‹#\uFE0F\u20E3 a›)"_s},
                    BlocksCase{"a mark on the space", u"# \u0301a"_s, u"p(‹# \u0301a›)"_s},
                    BlocksCase{"a mark on the last space of the indentation", u"  \u0301# a"_s,
                               u"p(‹\u00A0›)"_s.replace(u"\u00A0"_s, u" \u0301# a"_s)},
                    BlocksCase{"underlined by equals signs", u"a\n==="_s, u"h1(‹a›)"_s},
                    BlocksCase{"underlined by one", u"a\n=\nb\n-"_s, u"h1(‹a›) h2(‹b›)"_s},
                    BlocksCase{"underlined by hyphens", u"a\n---"_s, u"h2(‹a›)"_s},
                    BlocksCase{"two lines underlined", u"a\nb\n---"_s, u"h2(‹a↵b›)"_s},
                    BlocksCase{"an underline with blanks around", u"a\n  -- \t"_s, u"h2(‹a›)"_s},
                    BlocksCase{"an underline indented by four", u"a\n    ==="_s, u"p(‹a↵===›)"_s},
                    BlocksCase{"an underline with a blank inside", u"a\n= ="_s, u"p(‹a↵= =›)"_s},
                    BlocksCase{"an underline of two signs", u"a\n=-"_s, u"p(‹a↵=-›)"_s},
                    BlocksCase{"an underline under nothing", u"===\n\n---"_s, u"p(‹===›) rule"_s},
                    BlocksCase{"an underline under an underline", u"===\n==="_s, u"h1(‹===›)"_s},
                    BlocksCase{"an underline that bears a mark", u"a\n==\u0301"_s, u"p(‹a↵==\u0301›)"_s},
                    BlocksCase{"an underline behind a quote's mark and a tab", u"> a\n>\t==="_s, u"quote(h1(‹a›))"_s}));

INSTANTIATE_TEST_SUITE_P(
    Rules, MarkdownParserReads,
    testing::Values(BlocksCase{"the three signs", u"---\n***\n___"_s, u"rule rule rule"_s},
                    BlocksCase{"spaces between and behind", u" - - -\n*  * **  \n   ___"_s, u"rule rule rule"_s},
                    BlocksCase{"two are too few", u"**\n\n- -"_s, u"p(‹**›) bullets(1[ bullets(1[ ])])"_s},
                    BlocksCase{"mixed signs", u"-*-"_s, u"p(‹-*-›)"_s},
                    BlocksCase{"a tab among them", u"*\t*\t*"_s, u"p(‹*\t*\t*›)"_s},
                    BlocksCase{"indented by four", u"    ***"_s, u"code(-‹***›)"_s},
                    BlocksCase{"a paragraph above", u"a\n- - -"_s, u"p(‹a›) rule"_s},
                    BlocksCase{"stars under a paragraph", u"a\n***"_s, u"p(‹a›) rule"_s},
                    BlocksCase{"nothing above", u"---"_s, u"rule"_s},
                    BlocksCase{"after a list, a marker is an item first", u"- a\n- - -"_s,
                               u"bullets(1[ p(‹a›)][ bullets(1[ bullets(1[ ])])])"_s},
                    BlocksCase{"after a list", u"- a\n***"_s, u"bullets(1[ p(‹a›)]) rule"_s},
                    BlocksCase{"a mark on a sign", u"---\u0301"_s, u"p(‹---\u0301›)"_s}));

INSTANTIATE_TEST_SUITE_P(
    Code, MarkdownParserReads,
    testing::Values(
        BlocksCase{"a fence", u"```\na\n\n b\n```\nc"_s, u"code(-‹a↵↵ b›) p(‹c›)"_s},
        BlocksCase{"tildes", u"~~~\na\n~~~"_s, u"code(-‹a›)"_s},
        BlocksCase{"an empty block", u"```\n```"_s, u"code(-‹›)"_s},
        BlocksCase{"two are too few", u"``\na\n``"_s, u"p(‹``↵a↵``›)"_s},
        BlocksCase{"a language", u"``` swift  x y \na\n```"_s, u"code(‹swift›‹a›)"_s},
        BlocksCase{"a language behind tabs and wide blanks", u"```\t\u3000 c++ \u00A0\na\n```"_s, u"code(‹c++›‹a›)"_s},
        BlocksCase{"a tab doesn't end the language", u"``` a\tb c\n```"_s, u"code(‹a\tb›‹›)"_s},
        BlocksCase{"a backtick in a backtick's info", u"``` a`b\nc"_s, u"p(‹``` a`b↵c›)"_s},
        BlocksCase{"a marked backtick in a backtick's info", u"``` a`\u0301b\nc"_s, u"code(‹a`\u0301b›‹c›)"_s},
        BlocksCase{"a backtick in a tilde's info", u"~~~ a`b\nc\n~~~"_s, u"code(‹a`b›‹c›)"_s},
        BlocksCase{"a longer closing line", u"```\na\n`````"_s, u"code(-‹a›)"_s},
        BlocksCase{"a shorter closing line", u"````\na\n```\nb"_s, u"code(-‹a↵```↵b›)"_s},
        BlocksCase{"the other sign doesn't close", u"```\n~~~\n```"_s, u"code(-‹~~~›)"_s},
        BlocksCase{"a closing line with info doesn't close", u"```\na\n``` x\n```"_s, u"code(-‹a↵``` x›)"_s},
        BlocksCase{"a closing line with blanks around", u"```\na\n  ``` \t"_s, u"code(-‹a›)"_s},
        BlocksCase{"a closing line indented by four", u"```\na\n    ```"_s, u"code(-‹a↵    ```›)"_s},
        BlocksCase{"a closing line that bears a mark", u"```\na\n```\u0301"_s, u"code(-‹a↵```\u0301›)"_s},
        BlocksCase{"a fence that bears a mark", u"```\u0301\na"_s, u"p(‹```\u0301↵a›)"_s},
        BlocksCase{"a fence of four that bears a mark", u"~~~~\u0301\na\n~~~"_s, u"code(‹~\u0301›‹a›)"_s},
        BlocksCase{"a block that stays open", u"```\na\n"_s, u"code(-‹a↵›)"_s},
        BlocksCase{"blank lines in a fence keep their spaces", u"```\n  \n\t\n```"_s, u"code(-‹  ↵    ›)"_s},
        BlocksCase{"an indented fence takes off as much", u"  ```\n   a\n  b\n c\nd\n    ```\n  ```"_s,
                   u"code(-‹ a↵b↵c↵d↵  ```›)"_s},
        BlocksCase{"a fence indented by four", u"    ```\n    a"_s, u"code(-‹```↵a›)"_s},
        BlocksCase{"indented code", u"    a\n      b\n\tc"_s, u"code(-‹a↵  b↵c›)"_s},
        BlocksCase{"blank lines in indented code", u"    a\n\n      \n    b\n\n  \nc"_s, u"code(-‹a↵↵↵b›) p(‹c›)"_s},
        BlocksCase{"indented code ends at a paragraph", u"    a\n   b"_s, u"code(-‹a›) p(‹b›)"_s},
        BlocksCase{"tabs go to the next multiple of four", u" \ta\n  \t b\n\t\tc"_s, u"code(-‹a↵ b↵    c›)"_s},
        BlocksCase{"a mark on the blank behind a tab", u"\t \u0301a"_s, u"code(-‹ \u0301a›)"_s},
        BlocksCase{"a mark on a tab's space", u"\t\u0301a"_s, u"p(‹ \u0301a›)"_s}));

INSTANTIATE_TEST_SUITE_P(
    Quotes, MarkdownParserReads,
    testing::Values(BlocksCase{"a quote", u"> a\n>b\n>  c"_s, u"quote(p(‹a↵b↵c›))"_s},
                    BlocksCase{"an indented mark", u"   > a\n    > b"_s, u"quote(p(‹a↵> b›))"_s},
                    BlocksCase{"an empty quote", u">\n> "_s, u"quote()"_s},
                    BlocksCase{"nested", u"> > a\n> b\n>> > c"_s, u"quote(quote(p(‹a↵b›) quote(p(‹c›))))"_s},
                    BlocksCase{"a lazy line", u"> a\nb\n\nc"_s, u"quote(p(‹a↵b›)) p(‹c›)"_s},
                    BlocksCase{"a lazy line after a blank quote line", u"> a\n>\nb"_s, u"quote(p(‹a›)) p(‹b›)"_s},
                    BlocksCase{"a blank line ends a quote", u"> a\n\n> b"_s, u"quote(p(‹a›)) quote(p(‹b›))"_s},
                    BlocksCase{"a lazy line that underlines", u"> a\n==="_s, u"quote(h1(‹a›))"_s},
                    BlocksCase{"a rule ends a quote", u"> a\n---"_s, u"quote(p(‹a›)) rule"_s},
                    BlocksCase{"a heading ends a quote", u"> a\n# b"_s, u"quote(p(‹a›)) h1(‹b›)"_s},
                    BlocksCase{"a fence ends a quote", u"> a\n~~~\nb"_s, u"quote(p(‹a›)) code(-‹b›)"_s},
                    BlocksCase{"a marker ends a quote", u"> a\n2. b"_s, u"quote(p(‹a›)) ordered(2[ p(‹b›)])"_s},
                    BlocksCase{"a lazy line within a fence", u"> ```\na"_s, u"quote(code(-‹a›))"_s},
                    BlocksCase{"a lazy line keeps its indentation", u"> ```\n    a"_s, u"quote(code(-‹    a›))"_s},
                    BlocksCase{"a lazy fence that is indented too far for the quote", u"> - a\n    ```\nb"_s,
                               u"quote(bullets(1[ p(‹a›) code(-‹b›)]))"_s},
                    BlocksCase{"a list in a quote", u"> - a\n>   b\n>\n> c"_s,
                               u"quote(bullets(1[ p(‹a↵b›)]) p(‹c›))"_s},
                    BlocksCase{"code in a quote", u">     a\n>\tb"_s, u"quote(code(-‹a›) p(‹b›))"_s},
                    BlocksCase{"a tab after the mark is no space", u">\ta"_s, u"quote(p(‹a›))"_s},
                    BlocksCase{"a mark on the mark", u">\u0301 a"_s, u"p(‹>\u0301 a›)"_s},
                    BlocksCase{"a mark on the space behind", u"> \u0301a"_s, u"quote(p(‹ \u0301a›))"_s},
                    BlocksCase{"a lazy line through many quotes", u">>>> a\nb\n>> c\nd"_s,
                               u"quote(quote(quote(quote(p(‹a↵b↵c↵d›)))))"_s},
                    BlocksCase{"a table's row is no lazy line's business", u"> a|b\n> -|-\nc|d\ne"_s,
                               u"quote(table(ll;‹a›‹b›;‹c›‹d›) p(‹e›))"_s}));

INSTANTIATE_TEST_SUITE_P(
    Lists, MarkdownParserReads,
    testing::Values(
        BlocksCase{"the three bullets are one list", u"- a\n* b\n+ c"_s, u"bullets(1[ p(‹a›)][ p(‹b›)][ p(‹c›)])"_s},
        BlocksCase{"numbers", u"3. a\n1) b\n9. c"_s, u"ordered(3[ p(‹a›)][ p(‹b›)][ p(‹c›)])"_s},
        BlocksCase{"zero starts at one", u"0. a"_s, u"ordered(1[ p(‹a›)])"_s},
        BlocksCase{"nine digits", u"123456789. a"_s, u"ordered(123456789[ p(‹a›)])"_s},
        BlocksCase{"ten digits", u"1234567890. a"_s, u"p(‹1234567890. a›)"_s},
        BlocksCase{"no space behind the marker", u"-a\n1.a"_s, u"p(‹-a↵1.a›)"_s},
        BlocksCase{"a tab behind the marker", u"-\ta"_s, u"p(‹-\ta›)"_s},
        BlocksCase{"other digits", u"\u0661. a"_s, u"p(‹\u0661. a›)"_s},
        BlocksCase{"bullets and numbers are two lists", u"- a\n1. b\n- c"_s,
                   u"bullets(1[ p(‹a›)]) ordered(1[ p(‹b›)]) bullets(1[ p(‹c›)])"_s},
        BlocksCase{"indented by four is a list", u"    - a\n    - b"_s, u"bullets(1[ p(‹a›)][ p(‹b›)])"_s},
        BlocksCase{"a marker ends a paragraph", u"a\n2. b\nc\n-"_s, u"p(‹a›) ordered(2[ p(‹b↵c›)]) bullets(1[ ])"_s},
        BlocksCase{"an underline before a bare marker", u"a\n-"_s, u"h2(‹a›)"_s},
        BlocksCase{"a bare marker ends a paragraph", u"a\n*"_s, u"p(‹a›) bullets(1[ ])"_s},
        BlocksCase{"content at its column", u"- a\n  b\n\n  c"_s, u"bullets(1[ p(‹a↵b›) p(‹c›)])"_s},
        BlocksCase{"wide markers", u"10.  a\n\n     b\n    c"_s, u"ordered(10[ p(‹a›) p(‹b↵c›)])"_s},
        BlocksCase{"four spaces belong to the marker", u"-    a\n\n     b"_s, u"bullets(1[ p(‹a›) p(‹b›)])"_s},
        BlocksCase{"five make code", u"-     a\n\n  b"_s, u"bullets(1[ code(-‹a›) p(‹b›)])"_s},
        BlocksCase{"many spaces and nothing", u"-      \n  a"_s, u"bullets(1[ p(‹a›)])"_s},
        BlocksCase{"a blank line ends an item that nothing continues", u"- a\n\nb"_s, u"bullets(1[ p(‹a›)]) p(‹b›)"_s},
        BlocksCase{"blank lines between items", u"- a\n\n\n- b"_s, u"bullets(1[ p(‹a›)][ p(‹b›)])"_s},
        BlocksCase{"blank lines at the end", u"- a\n\n\n"_s, u"bullets(1[ p(‹a›)])"_s},
        BlocksCase{"nested at the content column", u"- a\n  - b\n    - c\n  - d"_s,
                   u"bullets(1[ p(‹a›) bullets(1[ p(‹b›) bullets(1[ p(‹c›)])][ p(‹d›)])])"_s},
        BlocksCase{"nested left of the content column", u"1. a\n  - b\n  - c"_s,
                   u"ordered(1[ p(‹a›) bullets(1[ p(‹b›)][ p(‹c›)])])"_s},
        BlocksCase{"indented by one is the next item", u"- a\n - b"_s, u"bullets(1[ p(‹a›)][ p(‹b›)])"_s},
        BlocksCase{"after a blank line, left of the content column is the next item", u"1. a\n\n  2. b"_s,
                   u"ordered(1[ p(‹a›)][ p(‹b›)])"_s},
        BlocksCase{"the next item's indentation is measured by the first", u"- a\n\n - b\n\n  - c"_s,
                   u"bullets(1[ p(‹a›)][ p(‹b›)]) bullets(1[ p(‹c›)])"_s},
        BlocksCase{"a wide first item takes indented markers", u"-    a\n\n    - b"_s,
                   u"bullets(1[ p(‹a›)][ p(‹b›)])"_s},
        BlocksCase{"markers in one line", u"- 1. * a"_s, u"bullets(1[ ordered(1[ bullets(1[ p(‹a›)])])])"_s},
        BlocksCase{"a lazy line", u"- a\nb"_s, u"bullets(1[ p(‹a↵b›)])"_s},
        BlocksCase{"no lazy line after a blank one", u"-\nfoo"_s, u"bullets(1[ ]) p(‹foo›)"_s},
        BlocksCase{"content under an empty marker", u"-\n  foo"_s, u"bullets(1[ p(‹foo›)])"_s},
        BlocksCase{"an empty marker and blank lines", u"-\n\n  foo"_s, u"bullets(1[ p(‹foo›)])"_s},
        BlocksCase{"a marker under an empty marker", u"-\n  - a"_s, u"bullets(1[ bullets(1[ p(‹a›)])])"_s},
        BlocksCase{"a heading ends an item", u"- a\n# b"_s, u"bullets(1[ p(‹a›)]) h1(‹b›)"_s},
        BlocksCase{"a quote ends an item", u"- a\n> b"_s, u"bullets(1[ p(‹a›)]) quote(p(‹b›))"_s},
        BlocksCase{"a fence ends an item", u"- a\n```\nb"_s, u"bullets(1[ p(‹a›)]) code(-‹b›)"_s},
        BlocksCase{"a lazy line underlines", u"- a\n==="_s, u"bullets(1[ h1(‹a›)])"_s},
        BlocksCase{"a lazy line is trimmed into a marker", u"- a\n-\t"_s, u"bullets(1[ h2(‹a›)])"_s},
        BlocksCase{"a lazy line is trimmed into a heading", u"- a\n#\t"_s, u"bullets(1[ p(‹a›) h1(‹›)])"_s},
        BlocksCase{"a lazy line is trimmed into a quote line", u"-    > a\n    > b"_s,
                   u"bullets(1[ quote(p(‹a↵b›))])"_s},
        BlocksCase{"a lazy line is trimmed into a rule", u"-   > a\n_ _ _\t"_s, u"bullets(1[ quote(p(‹a›)) rule])"_s},
        BlocksCase{"a fence in an item", u"- ```\n  a\n\n   b\n  ```\n  c"_s, u"bullets(1[ code(-‹a↵↵ b›) p(‹c›)])"_s},
        BlocksCase{"blank lines of an item lose their spaces", u"- ```\n       \n  a"_s, u"bullets(1[ code(-‹↵a›)])"_s},
        BlocksCase{"blank lines at an item's end aren't its own", u"- ```\n  a\n\n\nb"_s,
                   u"bullets(1[ code(-‹a›)]) p(‹b›)"_s},
        BlocksCase{"code in an item", u"- a\n\n      b\n\n\n      c\n\n  d"_s,
                   u"bullets(1[ p(‹a›) code(-‹b↵↵↵c›) p(‹d›)])"_s},
        BlocksCase{"blank lines through two items", u"- - a\n\n\n    b\n\n  c"_s,
                   u"bullets(1[ bullets(1[ p(‹a›) p(‹b›)]) p(‹c›)])"_s},
        BlocksCase{"a blank line ends a quote in an item", u"- > a\n\n  > b\n\n  c"_s,
                   u"bullets(1[ quote(p(‹a›)) quote(p(‹b›)) p(‹c›)])"_s},
        BlocksCase{"a blank quote line within a list in it", u"> - a\n>\n>   b\n>\nc"_s,
                   u"quote(bullets(1[ p(‹a›) p(‹b›)])) p(‹c›)"_s},
        BlocksCase{"a mark on the bullet", u"-\u0301 a"_s, u"p(‹-\u0301 a›)"_s},
        BlocksCase{"a mark on the number's dot", u"1.\u0301 a"_s, u"p(‹1.\u0301 a›)"_s},
        BlocksCase{"a mark on the digit", u"1\u0301. a"_s, u"p(‹1\u0301. a›)"_s},
        BlocksCase{"a mark on the only space", u"- \u0301a"_s, u"p(‹- \u0301a›)"_s},
        BlocksCase{"a mark on the second space", u"-  \u0301a"_s, u"bullets(1[ p(‹ \u0301a›)])"_s}));

INSTANTIATE_TEST_SUITE_P(
    Tasks, MarkdownParserReads,
    testing::Values(
        BlocksCase{"open and done", u"- [ ] a\n- [x] b\n- [X] c"_s, u"bullets(1[-p(‹a›)][+p(‹b›)][+p(‹c›)])"_s},
        BlocksCase{"in an ordered list", u"1. [x] a"_s, u"ordered(1[+p(‹a›)])"_s},
        BlocksCase{"a box alone", u"- [ ]\n- [x] \t"_s, u"bullets(1[-][+])"_s},
        BlocksCase{"a lazy line under a box alone", u"- [ ]\nfoo"_s, u"bullets(1[-p(‹foo›)])"_s},
        BlocksCase{"no space behind", u"- [ ]a\n- [x]\ta"_s, u"bullets(1[ p(‹[ ]a›)][ p(‹[x]\ta›)])"_s},
        BlocksCase{"no box", u"- []\n- [y] a\n- [  ] b"_s, u"bullets(1[ p(‹[]›)][ p(‹[y] a›)][ p(‹[  ] b›)])"_s},
        BlocksCase{"not in a paragraph", u"[ ] a"_s, u"p(‹[ ] a›)"_s},
        BlocksCase{"a block behind the box", u"- [ ] # a\n- [x]   - b"_s,
                   u"bullets(1[-h1(‹a›)][+bullets(1[ p(‹b›)])])"_s},
        BlocksCase{"in code it is text", u"-     [ ] a"_s, u"bullets(1[ code(-‹[ ] a›)])"_s},
        BlocksCase{"a mark on the bracket", u"- [x]\u0301 a"_s, u"bullets(1[ p(‹[x]\u0301 a›)])"_s},
        BlocksCase{"a mark on the space behind", u"- [x] \u0301a"_s, u"bullets(1[ p(‹[x] \u0301a›)])"_s}));

INSTANTIATE_TEST_SUITE_P(
    Tables, MarkdownParserReads,
    testing::Values(
        BlocksCase{"a table", u"a|b\n-|-\n1|2"_s, u"table(ll;‹a›‹b›;‹1›‹2›)"_s},
        BlocksCase{"outer bars and blanks", u" | a | b |\t\n|--|--|\n| 1 |\t2\t|"_s, u"table(ll;‹a›‹b›;‹1›‹2›)"_s},
        BlocksCase{"alignments", u"a|b|c|d|e\n:-|-:|:-:|---|:-:-:"_s, u"table(ltclc;‹a›‹b›‹c›‹d›‹e›)"_s},
        BlocksCase{"a colon inside does no harm", u"a|b\n-:-|-"_s, u"table(ll;‹a›‹b›)"_s},
        BlocksCase{"a separator without a bar underlines", u"a|b\n---"_s, u"h2(‹a|b›)"_s},
        BlocksCase{"a separator of another count", u"a|b\n-|-|-"_s, u"p(‹a|b↵-|-|-›)"_s},
        BlocksCase{"a separator of colons", u"a|b\n:|-"_s, u"p(‹a|b↵:|-›)"_s},
        BlocksCase{"an empty cell in the separator", u"a|b|c\n-||-"_s, u"p(‹a|b|c↵-||-›)"_s},
        BlocksCase{"one column", u"|a|\n|-|"_s, u"table(l;‹a›)"_s},
        BlocksCase{"one column by a bar at one end", u"a|\n-|\nb|\nc"_s, u"table(l;‹a›;‹b›) p(‹c›)"_s},
        BlocksCase{"a bar alone", u"|\n|-|\n|"_s, u"table(l;‹›;‹›)"_s},
        BlocksCase{"empty cells between others", u"a|b|c|d\n-|-|-|-\n|||3|\n||\n1|2|3|4"_s,
                   u"table(llll;‹a›‹b›‹c›‹d›;‹›‹›‹3›‹›;‹›‹›‹›‹›;‹1›‹2›‹3›‹4›)"_s},
        BlocksCase{"two bars", u"||\n-|"_s, u"table(l;‹›)"_s},
        BlocksCase{"too many and too few cells", u"a|b\n-|-\n1|2|3\n4|\n|5"_s,
                   u"table(ll;‹a›‹b›;‹1›‹2›;‹4›‹›;‹5›‹›)"_s},
        BlocksCase{"a blank line ends it", u"a|b\n-|-\n\n1|2"_s, u"table(ll;‹a›‹b›) p(‹1|2›)"_s},
        BlocksCase{"a line without a bar ends it", u"a|b\n-|-\n1|2\nc"_s, u"table(ll;‹a›‹b›;‹1›‹2›) p(‹c›)"_s},
        BlocksCase{"rows that look like other blocks", u"a|b\n-|-\n# 1|2\n> 3|4\n- 5|6\n```|7\n    8|9"_s,
                   u"table(ll;‹a›‹b›;‹# 1›‹2›;‹> 3›‹4›;‹- 5›‹6›;‹```›‹7›;‹8›‹9›)"_s},
        BlocksCase{"escaped bars", u"a\\|b|c\n-|-\n\\||d\\|"_s, u"table(ll;‹a|b›‹c›;‹|›‹d|›)"_s},
        BlocksCase{"other backslashes stay", u"a\\b|\\\\\n-|-\n\\\\|c|\\"_s, u"table(ll;‹a\\b›‹\\\\›;‹\\|c›‹\\›)"_s},
        BlocksCase{"an escaped bar at a row's end", u"a|b\n-|-\n1|2\\|"_s, u"table(ll;‹a›‹b›;‹1›‹2|›)"_s},
        BlocksCase{"an escaped bar in the separator", u"a|b\n-\\|-"_s, u"p(‹a|b↵-\\|-›)"_s},
        BlocksCase{"a table ends a paragraph", u"x\na|b\n-|-\n1|2"_s, u"p(‹x›) table(ll;‹a›‹b›;‹1›‹2›)"_s},
        BlocksCase{"a paragraph of bars first", u"x|y\na|b\n-|-"_s, u"p(‹x|y›) table(ll;‹a›‹b›)"_s},
        BlocksCase{"a separator that is a marker", u"a|b\n- | -"_s, u"table(ll;‹a›‹b›)"_s},
        BlocksCase{"a separator that is indented", u"a|b\n      -|-"_s, u"table(ll;‹a›‹b›)"_s},
        BlocksCase{"a header that is indented", u"    a|b\n-|-\n1|2"_s, u"table(ll;‹a›‹b›;‹1›‹2›)"_s},
        BlocksCase{"bars in the second line of code", u"    x\n    a|b\n    -|-"_s, u"code(-‹x↵a|b↵-|-›)"_s},
        BlocksCase{"a header that is a heading", u"# a|b\n-|-"_s, u"h1(‹a|b›) p(‹-|-›)"_s},
        BlocksCase{"a header that is an item", u"- a|b\n  -|-"_s, u"bullets(1[ table(ll;‹a›‹b›)])"_s},
        BlocksCase{"a separator that the item doesn't take", u"- a|b\n- | -"_s, u"bullets(1[ p(‹a|b›)][ p(‹| -›)])"_s},
        BlocksCase{"a lazy separator", u"- a|b\n|-|-|"_s, u"bullets(1[ table(ll;‹a›‹b›)])"_s},
        BlocksCase{"in a quote", u"> a|b\n> -|-\n> 1|2"_s, u"quote(table(ll;‹a›‹b›;‹1›‹2›))"_s},
        BlocksCase{"a separator twice", u"-|-\n-|-\n-|-"_s, u"table(ll;‹-›‹-›;‹-›‹-›)"_s},
        BlocksCase{"carriage returns", u"x\r\na|b\r\n-|-\r\n1|2\r\n"_s, u"p(‹x›) table(ll;‹a›‹b›;‹1›‹2›)"_s},
        BlocksCase{"two lines before it with carriage returns", u"x\r\ny\r\na\\||b\r\n-|-"_s,
                   u"p(‹x↵y›) table(ll;‹a|›‹b›)"_s},
        BlocksCase{"tabs before it", u"\ta|b\n\t-|-\n\t1|2"_s, u"table(ll;‹a›‹b›;‹1›‹2›)"_s},
        BlocksCase{"a mark on the bar", u"a|\u0301b\n-|-"_s, u"p(‹a|\u0301b↵-|-›)"_s},
        BlocksCase{"a mark on one of two bars", u"a|\u0301b|c\n-|-\nd|\u0301e"_s,
                   u"table(ll;‹a|\u0301b›‹c›) p(‹d|\u0301e›)"_s},
        BlocksCase{"a prepended sign before a bar", u"a\u0600|b|c\n-|-"_s, u"table(ll;‹a\u0600|b›‹c›)"_s},
        BlocksCase{"a mark on the backslash", u"a\\\u0301|b\n-|-"_s, u"table(ll;‹a\\\u0301›‹b›)"_s},
        BlocksCase{"a mark on the escaped bar", u"a\\|\u0301|b\n-|-"_s, u"table(ll;‹a\\|\u0301›‹b›)"_s},
        BlocksCase{"a mark on the last bar", u"a|b|\u0301\n-|-"_s, u"table(ll;‹a›‹b|\u0301›)"_s},
        BlocksCase{"a prepended sign before the last blank", u"a|b\u0600 \n-|-"_s, u"table(ll;‹a›‹b\u0600 ›)"_s}));

QStringList piecesOfMarkdown() {
    return {u"a"_s,      u"b c"_s,    u" "_s,      u"  "_s,     u"    "_s, u"\t"_s,  u"\n"_s,         u"\n"_s,
            u"\n"_s,     u"\n\n"_s,   u"\r\n"_s,   u"- "_s,     u"-"_s,    u"* "_s,  u"1. "_s,        u"10) "_s,
            u"> "_s,     u">"_s,      u"# "_s,     u"##"_s,     u"```"_s,  u"~~~"_s, u"---"_s,        u"==="_s,
            u"|"_s,      u"|-|"_s,    u"a|b"_s,    u"-|-"_s,    u":-:"_s,  u"\\"_s,  u"[ ] "_s,       u"[x]"_s,
            u"\u0301"_s, u"\u0600"_s, u"\u00A0"_s, u"\u4E2D"_s, u"_"_s,    u"***"_s, u"\U0001F600"_s, u"\u2028"_s};
}

TEST(MarkdownParser, AgreesWithTheRulesOnRandomTexts) {
    formats_test::RandomTexts texts(piecesOfMarkdown(), 11);
    for (int i = 0; i < 20'000; ++i) {
        const QString text = texts.next(i % 50 == 0 ? 120 : 24);
        ASSERT_EQ(blocksTold(text), MarkdownReference::parse(text)) << testing::PrintToString(text);
    }
}

TEST(MarkdownParser, AgreesWithTheRulesOnRandomNesting) {
    formats_test::RandomTexts texts({u"- "_s, u"> "_s, u"1.   "_s, u"  "_s, u"    "_s, u" "_s, u"\n"_s, u"\n"_s,
                                     u"\n\n"_s, u"a"_s, u"> "_s, u">"_s, u"-"_s, u"```\n"_s, u"#"_s, u"\t"_s,
                                     u"[ ] "_s},
                                    13);
    for (int i = 0; i < 40'000; ++i) {
        const QString text = texts.next(i % 50 == 0 ? 100 : 30);
        ASSERT_EQ(blocksTold(text), MarkdownReference::parse(text)) << testing::PrintToString(text);
    }
}

TEST(MarkdownParser, ReadsTheFilesOfTheMachine) {
    for (const QString& text : formats_test::textsUnder(u"/usr/share"_s, {u"*.md"_s, u"*.markdown"_s}, 60)) {
        ASSERT_EQ(blocksTold(text), MarkdownReference::parse(text));
    }
}

/// Texts whose nesting, or whose need to look again, grows with their length.
QStringList hostileTexts(int size) {
    QString stairs;
    for (int indent = 0; stairs.size() < size; indent += 2) {
        stairs += QString(indent, u' ') + u"- a\n"_s;
    }
    const QString lazy = u"a\n"_s.repeated(size / 4);
    const QString blank = u"\n"_s.repeated(size / 4);
    const QString deepQuote = u">"_s.repeated(size / 2);
    const QString deepList = u"- "_s.repeated(size / 4);
    const QString mixed = u"> - "_s.repeated(size / 8);
    return {QString(size, u'>'),
            deepQuote + u"a\n"_s + lazy,
            deepQuote + u"\n"_s + lazy,
            deepQuote + u"\n"_s + deepQuote,
            deepList + u"a\n"_s + lazy,
            deepList + u"\n"_s + lazy,
            deepList + u"a\n"_s + blank + QString(size / 2, u' ') + u"b"_s,
            deepList + u"a\n"_s + blank + lazy,
            deepList + u"a\n"_s + u"- "_s.repeated(size / 4),
            mixed + u"a\n"_s + lazy,
            mixed + u"\n"_s + lazy,
            mixed + u"a\n"_s + (u"         b\n"_s).repeated(size / 20),
            u"1. "_s.repeated(size / 3),
            u"- "_s.repeated(size / 4) + u"* "_s.repeated(size / 4) + u"x"_s,
            stairs,
            u"- a\n"_s.repeated(size / 4),
            u"- a\n\n"_s.repeated(size / 5),
            u"> a\n\n"_s.repeated(size / 5),
            u"a|b\n"_s.repeated(size / 4),
            u"a|b\n-|-|-\n"_s.repeated(size / 10),
            u"|"_s.repeated(size / 2) + u"\n"_s + u"-|"_s.repeated(size / 4),
            u"    a|b\n"_s.repeated(size / 8),
            u"\\|"_s.repeated(size / 2),
            u"```"_s.repeated(size / 3),
            u"``` `\n"_s.repeated(size / 6),
            u"#"_s.repeated(size),
            u"# a "_s + u"# "_s.repeated(size / 2),
            u"- "_s + QString(size, u' ') + u"a"_s,
            QString(size, u' ') + u"- a"_s,
            u"\t"_s.repeated(size / 4) + u"- a"_s,
            u">\t"_s.repeated(size / 2),
            u"|\u0301"_s.repeated(size / 2),
            QString(size, QChar(0x301)),
            u"\r\n"_s.repeated(size / 2),
            QString(size, QChar(0)),
            QString(size, QChar(0xD800))};
}

/// What comes out of a tree that no recursion could walk: how deep its first branch goes, with the first block of each.
qsizetype depthOf(MarkdownBlocks blocks) {
    qsizetype depth = 0;
    while (!blocks.isEmpty()) {
        const MarkdownBlock block = *blocks.begin();
        if (block.kind() == MarkdownBlock::Kind::quote) {
            blocks = block.blocks();
        } else if (block.kind() == MarkdownBlock::Kind::list) {
            blocks = (*block.list().items().begin()).blocks();
        } else {
            break;
        }
        ++depth;
    }
    return depth;
}

TEST(MarkdownParser, AgreesWithTheRulesOnSmallHostileTexts) {
    for (const int size : {40, 120}) {
        for (const QString& text : hostileTexts(size)) {
            ASSERT_EQ(blocksTold(text), MarkdownReference::parse(text)) << testing::PrintToString(text);
        }
    }
}

/// Were any of these quadratic, this would take minutes; did any of them recurse, it would crash.
TEST(MarkdownParser, ReadsLongHostileTexts) {
    for (const QString& text : hostileTexts(200'000)) {
        MarkdownBlocks blocks = MarkdownParser::parse(text);
        const MarkdownBlocks copy = blocks;
        EXPECT_TRUE(copy == MarkdownParser::parse(text + u'\n'));
        blocks = MarkdownBlocks();
        EXPECT_GE(depthOf(copy), 0);
    }
}

TEST(MarkdownParser, NestsWithoutALimit) {
    EXPECT_EQ(depthOf(MarkdownParser::parse(QString(500'000, u'>'))), 500'000);
    EXPECT_EQ(depthOf(MarkdownParser::parse(u"- "_s.repeated(250'000) + u'a')), 250'000);
    EXPECT_EQ(depthOf(MarkdownParser::parse(u"> 1) "_s.repeated(100'000) + u'a')), 200'000);
}

TEST(MarkdownTable, KeepsOfARowNoMoreThanIsWrittenInIt) {
    // Filled up, these would be 20 thousand million cells.
    constexpr qsizetype columns = 100'000;
    constexpr qsizetype rows = 200'000;
    const QString text = QString(columns + 1, u'|') + u"\n|" + QString(u"-|"_s).repeated(columns) + u'\n' +
                         QString(u"|\n"_s).repeated(rows - 1) + u"||a||"_s;
    const MarkdownBlocks blocks = MarkdownParser::parse(text);
    ASSERT_EQ(blocks.size(), 1);
    const MarkdownTable table = (*blocks.begin()).table();
    EXPECT_EQ(table.columnCount(), columns);
    EXPECT_EQ(table.rowCount(), rows);
    EXPECT_EQ(table.filledCount(0), 0);
    EXPECT_EQ(table.filledCount(rows - 1), 0);
    EXPECT_EQ(table.filledCount(rows), 2);
    EXPECT_EQ(table.cell(rows - 1, 1), u"a"_s);
    EXPECT_EQ(table.cell(rows - 1, columns - 1), QString());
    EXPECT_TRUE(blocks == MarkdownParser::parse(text));
}

TEST(MarkdownBlock, IsEqualByItsFields) {
    const auto equal = [](const QString& a, const QString& b) {
        return MarkdownParser::parse(a) == MarkdownParser::parse(b);
    };
    EXPECT_TRUE(equal(u""_s, u"\n"_s));
    EXPECT_FALSE(equal(u""_s, u"a"_s));
    EXPECT_TRUE(equal(u"# a\n\n- b\n- c"_s, u"a\r\n===\r\n* b\r\n\r\n+   c"_s));
    EXPECT_FALSE(equal(u"# a"_s, u"## a"_s));
    EXPECT_FALSE(equal(u"# a"_s, u"a"_s));
    EXPECT_FALSE(equal(u"# a"_s, u"# b"_s));
    EXPECT_FALSE(equal(u"- a"_s, u"1. a"_s));
    EXPECT_FALSE(equal(u"1. a"_s, u"2. a"_s));
    EXPECT_FALSE(equal(u"- a"_s, u"- [ ] a"_s));
    EXPECT_FALSE(equal(u"- [x] a"_s, u"- [ ] a"_s));
    EXPECT_FALSE(equal(u"- a\n- b"_s, u"- a\n\nb"_s));
    EXPECT_FALSE(equal(u"> a\n\nb"_s, u"> a\n>\n> b"_s));
    EXPECT_FALSE(equal(u"``` x\n```"_s, u"```\n```"_s));
    EXPECT_FALSE(equal(u"``` x\n```"_s, u"``` y\n```"_s));
    EXPECT_TRUE(equal(u"``` x y\na\n```"_s, u"~~~ x\na\n~~~"_s));
    EXPECT_TRUE(equal(u"a|b\n-|-"_s, u"|a|b|\n|---|---|"_s));
    EXPECT_FALSE(equal(u"a|b\n-|-"_s, u"a|b\n-|-:"_s));
    EXPECT_FALSE(equal(u"a|b\n-|-"_s, u"a|c\n-|-"_s));
    EXPECT_FALSE(equal(u"a|b\n-|-"_s, u"a|b\n-|-\n|"_s));
}

TEST(MarkdownBlock, IsEqualWhereverItStands) {
    const MarkdownBlocks blocks = MarkdownParser::parse(u"> - a\n\n# x\n\n> - a\n\n> - b"_s);
    std::vector<MarkdownBlock> all;
    for (const MarkdownBlock& block : blocks) {
        all.push_back(block);
    }
    ASSERT_EQ(all.size(), 4U);
    EXPECT_EQ(blocks.size(), 4);
    EXPECT_TRUE(all[0] == all[2]);
    EXPECT_FALSE(all[0] == all[1]);
    EXPECT_FALSE(all[0] == all[3]);
}

TEST(MarkdownBlock, OutlivesTheTextItWasReadFrom) {
    QString text = u"a\nb\n\n> c \n> d\n"_s;
    std::optional<MarkdownBlock> block;
    {
        const MarkdownBlocks blocks = MarkdownParser::parse(text);
        block = *blocks.begin();
    }
    text.fill(u'x');
    EXPECT_EQ(block->text().toString(), u"a\nb"_s);
}

} // namespace

} // namespace quillary
