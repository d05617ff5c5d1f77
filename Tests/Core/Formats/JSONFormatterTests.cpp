#include "QuillaryCore/Formats/JSONFormatter.h"

#include "QuillaryCore/Formats/JSONParser.h"

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

JSONValue valueOf(QByteArrayView text) {
    return JSONParser::parse(text.toByteArray()).value();
}

struct QuotedCase {
    const char* name;
    QString text;
    QString literal;
};

class QuotedJSON : public testing::TestWithParam<QuotedCase> {};

TEST_P(QuotedJSON, IsALiteral) {
    const QString literal = JSONFormatter::quoted(GetParam().text);
    EXPECT_EQ(literal.toStdString(), GetParam().literal.toStdString());
    EXPECT_EQ(JSONParser::parse(literal).value().string().toStdU16String(), GetParam().text.toStdU16String());
}

const QuotedCase quotedCases[] = {
    {"Nothing", u""_s, u"\"\""_s},
    {"PlainText", u"abc"_s, u"\"abc\""_s},
    {"Backspace", u"\b"_s, uR"("\b")"_s},
    {"Tab", u"\t"_s, uR"("\t")"_s},
    {"LineFeed", u"a\nb"_s, uR"("a\nb")"_s},
    {"FormFeed", u"\f"_s, uR"("\f")"_s},
    {"CarriageReturn", u"\r"_s, uR"("\r")"_s},
    {"Quote", u"a\"b"_s, uR"("a\"b")"_s},
    {"Backslash", u"a\\b"_s, uR"("a\\b")"_s},
    {"Nul", QString(QChar(0)), uR"("\u0000")"_s},
    {"OtherControls", u"\u0001\u000b\u001f"_s, uR"("\u0001\u000b\u001f")"_s},
    {"Slash", u"a/b"_s, uR"("a/b")"_s},
    {"Delete", u"\u007f"_s, u"\"\u007f\""_s},
    {"BeyondASCII", u"città € 😀 \u2028\uFEFF"_s, u"\"città € 😀 \u2028\uFEFF\""_s},
};

INSTANTIATE_TEST_SUITE_P(Table, QuotedJSON, testing::ValuesIn(quotedCases),
                         [](const auto& each) { return each.param.name; });

struct LayoutCase {
    const char* name;
    QByteArray text;
    qint64 indent;
    QString pretty;
    QString minified;
};

class JSONLayout : public testing::TestWithParam<LayoutCase> {};

TEST_P(JSONLayout, IsWritten) {
    const JSONValue value = valueOf(GetParam().text);
    EXPECT_EQ(JSONFormatter::prettyPrinted(value, GetParam().indent).toStdString(), GetParam().pretty.toStdString());
    EXPECT_EQ(JSONFormatter::minified(value).toStdString(), GetParam().minified.toStdString());
}

const LayoutCase layoutCases[] = {
    {"AString", R"( "a" )", 2, u"\"a\""_s, u"\"a\""_s},
    {"ANumber", "1E+2", 2, u"1E+2"_s, u"1E+2"_s},
    {"ALongNumber", "-123456789012345678901234567890.50", 2, u"-123456789012345678901234567890.50"_s,
     u"-123456789012345678901234567890.50"_s},
    {"True", "true", 2, u"true"_s, u"true"_s},
    {"False", "false", 2, u"false"_s, u"false"_s},
    {"Null", "null", 2, u"null"_s, u"null"_s},
    {"AnEmptyArray", "[ ]", 2, u"[]"_s, u"[]"_s},
    {"AnEmptyObject", "{ }", 2, u"{}"_s, u"{}"_s},
    {"EmptyContainersWithin", R"({"k":[],"l":{}})", 2, u"{\n  \"k\": [],\n  \"l\": {}\n}"_s, uR"({"k":[],"l":{}})"_s},
    {"OneElement", "[1]", 2, u"[\n  1\n]"_s, u"[1]"_s},
    {"SomeElements", "[1 ,2, 3]", 2, u"[\n  1,\n  2,\n  3\n]"_s, u"[1,2,3]"_s},
    {"Nesting", R"({"a":[1,{"b":null}],"c":true})", 2,
     u"{\n  \"a\": [\n    1,\n    {\n      \"b\": null\n    }\n  ],\n  \"c\": true\n}"_s,
     uR"({"a":[1,{"b":null}],"c":true})"_s},
    {"SeveralContainersEndingTogether", "[[[1]],[2]]", 1, u"[\n [\n  [\n   1\n  ]\n ],\n [\n  2\n ]\n]"_s,
     u"[[[1]],[2]]"_s},
    {"NoIndent", R"({"a":[1]})", 0, u"{\n\"a\": [\n1\n]\n}"_s, uR"({"a":[1]})"_s},
    {"ANegativeIndent", "[1]", -3, u"[\n1\n]"_s, u"[1]"_s},
    {"FourSpaces", "[[1]]", 4, u"[\n    [\n        1\n    ]\n]"_s, u"[[1]]"_s},
    {"DuplicatesAndOrder", R"({"z":1,"a":2,"z":3})", 2, u"{\n  \"z\": 1,\n  \"a\": 2,\n  \"z\": 3\n}"_s,
     uR"({"z":1,"a":2,"z":3})"_s},
    {"Escapes", R"(["\u0041\/\u00e8","\u001F\"\\\b","\uD83D\u0041"])", 0,
     u"[\n\"A/è\",\n\"\\u001f\\\"\\\\\\b\",\n\"\uFFFD\"\n]"_s, u"[\"A/è\",\"\\u001f\\\"\\\\\\b\",\"\uFFFD\"]"_s},
    {"EscapedKeys", R"({"\u000a":1})", 2, u"{\n  \"\\n\": 1\n}"_s, uR"({"\n":1})"_s},
    {"BeyondASCII", "{\"citt\xC3\xA0\":\"\xF0\x9F\x98\x80\"}", 2, u"{\n  \"città\": \"😀\"\n}"_s,
     u"{\"città\":\"😀\"}"_s},
    {"IllFormedBytes", "\"\xFF\"", 2, u"\"\uFFFD\""_s, u"\"\uFFFD\""_s},
};

INSTANTIATE_TEST_SUITE_P(Table, JSONLayout, testing::ValuesIn(layoutCases),
                         [](const auto& each) { return each.param.name; });

TEST(JSONFormatter, WritesAValueThatWasNotRead) {
    EXPECT_EQ(JSONFormatter::prettyPrinted(JSONValue(), 2), u"null"_s);
    EXPECT_EQ(JSONFormatter::minified(JSONValue()), u"null"_s);
}

TEST(JSONFormatter, WritesAPartOfATextAsIfItStoodAlone) {
    const JSONValue value = valueOf(R"([0,{"a":[1]},2])");
    const JSONValue second = *std::next(value.elements().begin());
    EXPECT_EQ(JSONFormatter::prettyPrinted(second, 2), u"{\n  \"a\": [\n    1\n  ]\n}"_s);
    EXPECT_EQ(JSONFormatter::minified(second), uR"({"a":[1]})"_s);
}

TEST(JSONFormatter, GivesADeepTextAllItsSpaces) {
    constexpr qsizetype elements = 5'000;
    const QByteArray text = QByteArray(100, '[') + QByteArray("1,").repeated(elements - 1) + '1' + QByteArray(100, ']');
    const JSONValue value = valueOf(text);
    const QString pretty = JSONFormatter::prettyPrinted(value, 2);
    // Each element has its line: 200 spaces, a digit, a comma but for the last, a line feed. The 200 brackets have
    // lines of their own, the last of them without a line feed, behind two spaces a level.
    EXPECT_EQ(pretty.size(), elements * 203 - 1 + 200 + 199 + 2 * (2 * (0 + 99) * 100 / 2));
    EXPECT_EQ(JSONParser::parse(pretty).value(), value);
    EXPECT_EQ(JSONFormatter::minified(value).toLatin1(), text);
}

} // namespace

} // namespace quillary
