#include "QuillaryCore/Formats/JSONPath.h"

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

struct KeyCase {
    const char* name;
    QString key;
    bool isIdentifier;
    QString path;
};

class JSONPathKey : public testing::TestWithParam<KeyCase> {};

TEST_P(JSONPathKey, IsAppended) {
    EXPECT_EQ(JSONPath::isIdentifier(GetParam().key), GetParam().isIdentifier);
    EXPECT_EQ(JSONPath().appending(GetParam().key).text().toStdString(), GetParam().path.toStdString());
}

const KeyCase keyCases[] = {
    {"AWord", u"abc"_s, true, u"$.abc"_s},
    {"ACapital", u"Abc"_s, true, u"$.Abc"_s},
    {"OneLetter", u"z"_s, true, u"$.z"_s},
    {"ALeadingUnderscore", u"_x"_s, true, u"$._x"_s},
    {"ALeadingDollar", u"$x"_s, true, u"$.$x"_s},
    {"DigitsBehind", u"a09"_s, true, u"$.a09"_s},
    {"DollarAndUnderscoreBehind", u"a$_"_s, true, u"$.a$_"_s},
    {"Nothing", u""_s, false, uR"($[""])"_s},
    {"ADot", u"a.b"_s, false, uR"($["a.b"])"_s},
    {"AQuote", u"a\"b"_s, false, uR"($["a\"b"])"_s},
    {"ABackslash", u"a\\b"_s, false, uR"($["a\\b"])"_s},
    {"ALineFeed", u"a\nb"_s, false, uR"($["a\nb"])"_s},
    {"ANul", QString(QChar(0)), false, uR"($["\u0000"])"_s},
    {"AnAccent", u"città"_s, false, u"$[\"città\"]"_s},
    {"AForeignDigit", u"a\u0663"_s, false, u"$[\"a\u0663\"]"_s},
    {"AnEmoji", u"😀"_s, false, u"$[\"😀\"]"_s},
    {"ALeadingDigit", u"1a"_s, false, uR"($["1a"])"_s},
    {"AHyphen", u"a-b"_s, false, uR"($["a-b"])"_s},
    {"ABlank", u"a b"_s, false, uR"($["a b"])"_s},
    {"AtSign", u"@"_s, false, uR"($["@"])"_s},
    {"Bracket", u"["_s, false, uR"($["["])"_s},
    {"Grave", u"`"_s, false, uR"($["`"])"_s},
    {"Brace", u"{"_s, false, uR"($["{"])"_s},
};

INSTANTIATE_TEST_SUITE_P(Table, JSONPathKey, testing::ValuesIn(keyCases),
                         [](const auto& each) { return each.param.name; });

TEST(JSONPath, OfTheWholeIsADollar) {
    EXPECT_EQ(JSONPath().text(), u"$"_s);
}

TEST(JSONPath, TakesIndices) {
    EXPECT_EQ(JSONPath().appending(qint64(0)).text(), u"$[0]"_s);
    EXPECT_EQ(JSONPath().appending(std::numeric_limits<qint64>::max()).text(), u"$[9223372036854775807]"_s);
    EXPECT_EQ(JSONPath::fromText(u"x.y").appending(17).appending(u"z").text(), u"x.y[17].z"_s);
}

TEST(JSONPath, MarksDuplicates) {
    EXPECT_EQ(JSONPath().appendingDuplicate(u"k", 2).text(), u"$.k#2"_s);
    EXPECT_EQ(JSONPath().appendingDuplicate(u"a b", 5).appending(0).text(), u"$[\"a b\"]#5[0]"_s);
}

struct CopyCase {
    const char* id;
    const char* copied;
};

class CopiedJSONPath : public testing::TestWithParam<CopyCase> {};

TEST_P(CopiedJSONPath, LosesTheMarkAtItsEnd) {
    EXPECT_EQ(JSONPath::fromText(QString::fromUtf8(GetParam().id)).textToCopy().toStdString(), GetParam().copied);
}

INSTANTIATE_TEST_SUITE_P(Table, CopiedJSONPath,
                         testing::Values(CopyCase{"$", "$"}, CopyCase{"$.k#2", "$.k"},
                                         CopyCase{"$.k#1234567890", "$.k"}, CopyCase{"$.k2", "$.k2"},
                                         CopyCase{"$[\"a#7\"]", "$[\"a#7\"]"}, CopyCase{"$[\"a\"]#7", "$[\"a\"]"},
                                         CopyCase{"$.k#2.a", "$.k#2.a"}, CopyCase{"$.k#2[3]", "$.k#2[3]"},
                                         CopyCase{"$.k#2.a#3", "$.k#2.a"}, CopyCase{"$.k#", "$.k#"}, CopyCase{"#1", ""},
                                         CopyCase{"12", "12"}, CopyCase{"", ""}, CopyCase{"$#1#2", "$#1"}));

TEST(JSONPath, EqualsByTextHoweverItWasMade) {
    const JSONPath made = JSONPath().appending(u"a").appending(1).appending(u"b c");
    const JSONPath read = JSONPath::fromText(u"$.a[1][\"b c\"]");
    EXPECT_EQ(made, read);
    EXPECT_EQ(made, JSONPath(JSONPath(JSONPath::fromText(u"$.a").appending(1).shared()).appending(u"b c").shared()));
    EXPECT_EQ(qHash(made, 7), qHash(read, 7));
    EXPECT_EQ(JSONPath::fromText(u""), JSONPath(JSONPath::fromText(u"").shared()));
}

TEST(JSONPath, DiffersByText) {
    const JSONPath path = JSONPath().appending(u"abc").appending(1);
    EXPECT_NE(path, JSONPath().appending(u"abc").appending(2));
    EXPECT_NE(path, JSONPath().appending(u"abd").appending(1));
    EXPECT_NE(path, JSONPath().appending(u"abc"));
    EXPECT_NE(path, JSONPath());
    EXPECT_NE(JSONPath(path.shared()), JSONPath(JSONPath::fromText(u"$.abc[2]").shared()));
}

TEST(JSONPath, SharesItsBeginning) {
    // A copy of the key in each would need 200 GB.
    const JSONPath parent(JSONPath().appending(QString(1'000'000, u'k')).shared());
    std::vector<JSONPath> paths;
    for (qint64 i = 0; i < 100'000; ++i) {
        paths.push_back(parent.appending(i));
    }
    EXPECT_EQ(paths.back().text().size(), 2 + 1'000'000 + 7);
    EXPECT_TRUE(paths.back().text().endsWith(u"kk[99999]"));
}

TEST(JSONPath, ReplacedByAnotherLeaksNothing) {
    // What the leak sanitizer looks at: steps too long to lie in the path itself, each taken from the one before.
    JSONPath path;
    for (int i = 0; i < 3; ++i) {
        path = path.appending(u"aKeyThatIsLongerThanMost");
    }
    EXPECT_EQ(path.text(), u"$.aKeyThatIsLongerThanMost.aKeyThatIsLongerThanMost.aKeyThatIsLongerThanMost"_s);
}

TEST(JSONPath, OfAnyLengthEndsWithoutDeepCalls) {
    JSONPath path;
    for (qint64 i = 0; i < 300'000; ++i) {
        path = path.appending(0);
    }
    EXPECT_EQ(path.text().size(), 1 + 900'000);
    const JSONPath kept = path.appending(u"x");
    path = JSONPath();
    EXPECT_TRUE(kept.text().endsWith(u"[0].x"));
}

} // namespace

} // namespace quillary
