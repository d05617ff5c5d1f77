#include "QuillaryCore/Formats/JSONValue.h"

#include "QuillaryCore/Formats/JSONParser.h"

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

JSONValue read(QByteArrayView text) {
    return JSONParser::parse(text.toByteArray()).value();
}

TEST(JSONValue, IsNullByItself) {
    const JSONValue value;
    EXPECT_EQ(value.kind(), JSONValue::Kind::null);
    EXPECT_EQ(value.childCount(), 0);
    EXPECT_EQ(value, read("null"));
    EXPECT_EQ(value, JSONValue());
    EXPECT_NE(value, read("0"));
}

struct KindCase {
    const char* text;
    JSONValue::Kind kind;
    bool isContainer;
    qsizetype childCount;
};

class JSONValueKind : public testing::TestWithParam<KindCase> {};

TEST_P(JSONValueKind, IsKnown) {
    const JSONValue value = read(GetParam().text);
    EXPECT_EQ(value.kind(), GetParam().kind);
    EXPECT_EQ(value.isContainer(), GetParam().isContainer);
    EXPECT_EQ(value.childCount(), GetParam().childCount);
}

using enum JSONValue::Kind;

INSTANTIATE_TEST_SUITE_P(Table, JSONValueKind,
                         testing::Values(KindCase{"{}", object, true, 0},
                                         KindCase{R"({"a":1,"a":[1,2]})", object, true, 2},
                                         KindCase{"[]", array, true, 0}, KindCase{"[[1,2],{},3]", array, true, 3},
                                         KindCase{R"("[1]")", string, false, 0}, KindCase{"12", number, false, 0},
                                         KindCase{"true", boolean, false, 0}, KindCase{"false", boolean, false, 0},
                                         KindCase{"null", null, false, 0}));

TEST(JSONValue, AnswersForAnotherKindWithNothing) {
    EXPECT_EQ(read("1").string(), QString());
    EXPECT_EQ(read("\"1\"").number(), QString());
    EXPECT_FALSE(read("1").boolean());
    const JSONValue object = read(R"({"a":1})");
    EXPECT_EQ(object.elements().begin(), object.elements().end());
    const JSONValue array = read("[1]");
    EXPECT_EQ(array.members().begin(), array.members().end());
}

TEST(JSONValue, GoesThroughItsChildrenInOrder) {
    const JSONValue value = read(R"({"b":[1,[2,3],{"c":4}],"a":"x","b":{}})");
    std::vector<JSONMember> members(value.members().begin(), value.members().end());
    ASSERT_EQ(members.size(), 3U);
    EXPECT_EQ(members[0], (JSONMember{u"b"_s, read(R"([1,[2,3],{"c":4}])")}));
    EXPECT_EQ(members[1], (JSONMember{u"a"_s, read(R"("x")")}));
    EXPECT_EQ(members[2], (JSONMember{u"b"_s, read("{}")}));

    std::vector<JSONValue> elements(members[0].value.elements().begin(), members[0].value.elements().end());
    ASSERT_EQ(elements.size(), 3U);
    EXPECT_EQ(elements[0], read("1"));
    EXPECT_EQ(elements[1], read("[2,3]"));
    EXPECT_EQ(elements[2], read(R"({"c":4})"));
}

struct EqualityCase {
    const char* a;
    const char* b;
    bool areEqual;
};

class JSONValueEquality : public testing::TestWithParam<EqualityCase> {};

TEST_P(JSONValueEquality, IsByKindAndContent) {
    EXPECT_EQ(read(GetParam().a) == read(GetParam().b), GetParam().areEqual);
    EXPECT_EQ(read(GetParam().b) == read(GetParam().a), GetParam().areEqual);
}

INSTANTIATE_TEST_SUITE_P(
    Table, JSONValueEquality,
    testing::Values(EqualityCase{"1", "1", true}, EqualityCase{"1.0", "1", false}, EqualityCase{"1e2", "100", false},
                    EqualityCase{"1", "\"1\"", false}, EqualityCase{"null", "\"\"", false},
                    EqualityCase{"true", "true", true}, EqualityCase{"true", "false", false},
                    EqualityCase{"[]", "{}", false}, EqualityCase{"[]", "[ ]", true}, EqualityCase{"[[]]", "[]", false},
                    EqualityCase{"[1,2]", "[1 , 2]", true}, EqualityCase{"[1,2]", "[2,1]", false},
                    EqualityCase{"[[1],2]", "[[1,2]]", false}, EqualityCase{"[[1],[2]]", "[[1],[2]]", true},
                    EqualityCase{R"("a")", R"("\u0061")", true}, EqualityCase{R"("\u0061")", R"("\u0061")", true},
                    EqualityCase{R"("a")", R"("b")", false}, EqualityCase{R"("/")", R"("\/")", true},
                    EqualityCase{R"("\n")", R"("n")", false}, EqualityCase{"\"\xC3\xA0\"", R"("\u00e0")", true},
                    EqualityCase{"\"\xFF\"", R"("\uFFFD")", true}, EqualityCase{"\"\xC3\xA0\"", R"("a\u0300")", false},
                    EqualityCase{R"({"a":1})", R"({"\u0061":1})", true},
                    EqualityCase{R"({"a":1})", R"({"b":1})", false},
                    EqualityCase{R"({"a":1,"b":2})", R"({"b":2,"a":1})", false},
                    EqualityCase{R"({"a":1,"a":1})", R"({"a":1})", false},
                    EqualityCase{R"({"a":{"b":[null]}})", R"({ "a" : { "b" : [ null ] } })", true}));

TEST(JSONValue, OfAPlaceWithinATextComparesAsAWhole) {
    const JSONValue value = read(R"([[1,{"a":2}], 3, [1,{"a":2}]])");
    const std::vector<JSONValue> elements(value.elements().begin(), value.elements().end());
    EXPECT_EQ(elements[0], elements[2]);
    EXPECT_NE(elements[0], elements[1]);
    EXPECT_EQ(elements[2], read(R"([1,{"a":2}])"));
}

} // namespace

} // namespace quillary
