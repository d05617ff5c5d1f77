#include "Tests/Core/Formats/HighlighterTestSupport.h"

namespace quillary {

namespace {

void expectJson(const std::vector<test::ColourCase>& cases) {
    test::expectColours(SyntaxLanguage::json, cases);
}

TEST(JsonHighlighting, KeysAndValues) {
    expectJson({
        {u"{\"a\": \"b\"}", u"attribute \"a\" | string \"b\""},
        {u"\"a\"\n :", u"attribute \"a\""},
        {u"\"a\\\"b\": 1", u"attribute \"a\\\"b\" | number 1"},
        {u"[\"a\", \"b\"]", u"string \"a\" | string \"b\""},
        {u"[\"a\", \"b\": 1]", u"string \"a\" | attribute \"b\" | number 1"},
        {u"\"a", u""},
        {u"\"a\n\": 1", u"number 1"},
        {u"\"\": \"\"", u"attribute \"\" | string \"\""},
        {u"'a': 1", u"number 1"},
    });
}

TEST(JsonHighlighting, AClosingQuoteMayOpenAKey) {
    // Read from the quote that closes the value, `": "` is followed by a colon.
    expectJson({{u"\"a\" \": \":", u"attribute \" \""}});
}

TEST(JsonHighlighting, CommentsAreTolerated) {
    expectJson({
        {u"// true\ntrue", u"comment // true | constant true"},
        {u"/* 1 */ 2 /* 3", u"comment /* 1 */ | number 2 | comment /* 3"},
        {u"\"http://a\": 1", u"comment //a\": 1"},
    });
}

TEST(JsonHighlighting, ConstantsMindCase) {
    expectJson({
        {u"true false null", u"constant true | constant false | constant null"},
        {u"True FALSE nulls _null null\u0301", u""},
        {u"-true", u"constant true"},
    });
}

TEST(JsonHighlighting, Numbers) {
    expectJson({
        {u"0 -1 1.5 -1.5e+5 1E5", u"number 0 | number -1 | number 1.5 | number -1.5e+5 | number 1E5"},
        {u"--5", u"number -5"},
        {u"5-5", u"number 5 | number -5"},
        {u"a-5", u"number -5"},
        {u"1.5px -1x .5 5.", u"number 1 | number 5 | number 5"},
        {u"1e-5x", u""},
        {u"- 5", u"number 5"},
        {u"0x1F a1 1a", u""},
    });
}

} // namespace

} // namespace quillary
