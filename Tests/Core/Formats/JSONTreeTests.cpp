#include "QuillaryCore/Formats/JSONTree.h"

#include "QuillaryCore/Formats/JSONExpansion.h"
#include "QuillaryCore/Formats/JSONParser.h"

#include <gmock/gmock.h>

#include <limits>
#include <optional>
#include <set>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

JSONValue treeValue(const QByteArray& text) {
    return JSONParser::parse(text).value();
}

JSONTreeRows rowsOf(const JSONValue& value, const JSONExpansion& expansion) {
    return JSONTree::rows(value, [&](const JSONPath& path, qint64 depth) { return expansion.isExpanded(path, depth); });
}

JSONExpansion everything() {
    JSONExpansion expansion;
    expansion.expandAll();
    return expansion;
}

std::string labelText(const JSONTreeRow::Label& label) {
    if (const auto* key = std::get_if<QString>(&label)) {
        return "key " + key->toStdString();
    }
    if (const auto* index = std::get_if<qint64>(&label)) {
        return "index " + std::to_string(*index);
    }
    return "root";
}

/// A row as one line: depth, id, label, and "open" if it is.
std::vector<std::string> lines(const JSONTreeRows& rows) {
    std::vector<std::string> result;
    result.reserve(static_cast<std::size_t>(rows.size()));
    for (const JSONTreeRow row : rows) {
        result.push_back(std::to_string(row.depth()) + ' ' + row.id().toStdString() + ' ' + labelText(row.label()) +
                         (row.isExpanded() ? " open" : ""));
    }
    return result;
}

std::vector<std::string> ids(const JSONTreeRows& rows) {
    std::vector<std::string> result;
    result.reserve(static_cast<std::size_t>(rows.size()));
    for (const JSONTreeRow row : rows) {
        result.push_back(row.id().toStdString());
    }
    return result;
}

TEST(JSONTree, OfAScalarIsOneRow) {
    for (const char* text : {"1", "\"a\"", "true", "null"}) {
        const JSONValue value = treeValue(text);
        const auto rows = JSONTree::rows(value, [](const JSONPath&, qint64) {
            ADD_FAILURE() << "scalars are not asked about";
            return true;
        });
        EXPECT_THAT(lines(rows), ElementsAre("0 $ root"));
        EXPECT_EQ(rows[0].value(), value);
    }
    EXPECT_THAT(lines(rowsOf(JSONValue(), everything())), ElementsAre("0 $ root"));
}

TEST(JSONTree, OpensAnEmptyContainerWithoutRows) {
    EXPECT_THAT(lines(rowsOf(treeValue("[]"), everything())), ElementsAre("0 $ root open"));
    EXPECT_THAT(lines(rowsOf(treeValue("[{},[]]"), everything())),
                ElementsAre("0 $ root open", "1 $[0] index 0 open", "1 $[1] index 1 open"));
}

TEST(JSONTree, GoesThroughMembersAndElementsInOrder) {
    const JSONValue value = treeValue(R"({"b":[10,{"x y":null}],"a":{"c":[]},"d":"s"})");
    const auto rows = rowsOf(value, everything());
    EXPECT_THAT(lines(rows),
                ElementsAre("0 $ root open", "1 $.b key b open", "2 $.b[0] index 0", "2 $.b[1] index 1 open",
                            R"(3 $.b[1]["x y"] key x y)", "1 $.a key a open", "2 $.a.c key c open", "1 $.d key d"));
    EXPECT_EQ(rows[0].value(), value);
    EXPECT_EQ(rows[2].value(), treeValue("10"));
    EXPECT_EQ(rows[3].value(), treeValue(R"({"x y":null})"));
    EXPECT_EQ(rows[7].value(), treeValue(R"("s")"));
}

TEST(JSONTree, ShowsTwoLevelsAtFirst) {
    EXPECT_THAT(lines(rowsOf(treeValue(R"([[[1]],{"a":[2]}])"), JSONExpansion())),
                ElementsAre("0 $ root open", "1 $[0] index 0 open", "2 $[0][0] index 0", "1 $[1] index 1 open",
                            "2 $[1].a key a"));
}

TEST(JSONTree, AsksForEachShownContainerOnceWithItsPathAndDepth) {
    std::vector<std::string> asked;
    JSONTree::rows(treeValue(R"({"a":[[1],2],"b":{"c":{"d":[]}},"a":[]})"), [&](const JSONPath& path, qint64 depth) {
        asked.push_back(path.text().toStdString() + ' ' + std::to_string(depth));
        return path != JSONPath::fromText(u"$.b");
    });
    EXPECT_THAT(asked, ElementsAre("$ 0", "$.a 1", "$.a[0] 2", "$.b 1", "$.a#2 1"));
}

TEST(JSONTree, KnowsTheContainerOfEachRow) {
    const auto rows = rowsOf(treeValue(R"([[[1],[]],{"a":[2,{}],"b":3},4])"), everything());
    std::vector<qsizetype> containers;
    for (qsizetype row = 0; row < rows.size(); ++row) {
        containers.push_back(rows.containerOf(row));
    }
    EXPECT_THAT(containers, ElementsAre(-1, 0, 1, 2, 1, 0, 5, 6, 6, 5, 0));
    EXPECT_EQ(rows.greatestDepth(), 3);
    EXPECT_EQ(rowsOf(treeValue("[[]]"), everything()).greatestDepth(), 1);
    EXPECT_EQ(rowsOf(treeValue("[]"), everything()).greatestDepth(), 0);
    EXPECT_EQ(JSONTreeRows().greatestDepth(), 0);
    EXPECT_EQ(JSONTreeRows().size(), 0);
}

TEST(JSONTree, FindsTheRowOfAPlaceInTheText) {
    const JSONValue value = treeValue(R"([[[1]],2])");
    const auto all = rowsOf(value, everything());
    const auto few = rowsOf(value, JSONExpansion{1, {}});
    ASSERT_EQ(few.size(), 3);
    for (qsizetype row = 0; row < all.size(); ++row) {
        EXPECT_EQ(all.rowAt(all[row].value().position()), row);
    }
    EXPECT_EQ(few.rowAt(all[3].value().position()), 1) << "what isn't on show lies in the row above";
    EXPECT_EQ(few.rowAt(all[4].value().position()), 2);
    EXPECT_EQ(few.rowAt(1'000'000), 2);
    EXPECT_EQ(few.rowAt(-1), 0);
    EXPECT_EQ(JSONTreeRows().rowAt(0), 0);
}

TEST(JSONTree, ARowOutlivesTheRows) {
    std::optional<JSONTreeRows> rows = rowsOf(treeValue(R"({"a":[1]})"), everything());
    const JSONTreeRow last = (*rows)[2];
    rows.reset();
    EXPECT_EQ(last.id(), u"$.a[0]"_s);
    EXPECT_EQ(last.value(), treeValue("1"));
}

TEST(JSONTree, MarksDuplicatesWithTheirPosition) {
    EXPECT_THAT(ids(rowsOf(treeValue(R"({"a":1,"a":2})"), everything())), ElementsAre("$", "$.a", "$.a#1"));
    EXPECT_THAT(ids(rowsOf(treeValue(R"({"k":0,"l":0,"k":0,"m":0,"n":0,"k":0})"), everything())),
                ElementsAre("$", "$.k", "$.l", "$.k#2", "$.m", "$.n", "$.k#5"));
    EXPECT_THAT(lines(rowsOf(treeValue(R"({"a b":1,"a b":2})"), everything())),
                ElementsAre("0 $ root open", R"(1 $["a b"] key a b)", R"(1 $["a b"]#1 key a b)"));
}

TEST(JSONTree, HangsTheChildrenOfADuplicateUnderItsMark) {
    EXPECT_THAT(ids(rowsOf(treeValue(R"({"a":[1],"a":[2,{"b":3}]})"), everything())),
                ElementsAre("$", "$.a", "$.a[0]", "$.a#1", "$.a#1[0]", "$.a#1[1]", "$.a#1[1].b"));
}

TEST(JSONTree, ComparesKeysByTheirTextWithinOneObject) {
    EXPECT_THAT(ids(rowsOf(treeValue(R"([{"a":1},{"a":2},{"\u0061":1,"a":2,"A":3}])"), everything())),
                ElementsAre("$", "$[0]", "$[0].a", "$[1]", "$[1].a", "$[2]", "$[2].a", "$[2].a#1", "$[2].A"));
    EXPECT_THAT(ids(rowsOf(treeValue(R"({"":1,"":2})"), everything())), ElementsAre("$", R"($[""])", R"($[""]#1)"));
}

TEST(JSONTree, TakesCanonicallyEquivalentKeysForTheSame) {
    EXPECT_THAT(ids(rowsOf(treeValue(R"({"\u00e8":1,"e\u0300":2})"), everything())),
                ElementsAre("$", "$[\"\u00e8\"]", "$[\"e\u0300\"]#1"));
}

TEST(JSONTree, FindsDuplicatesAmongManyKeys) {
    QByteArray text = "{";
    for (int i = 0; i < 5'000; ++i) {
        text += "\"k" + QByteArray::number(i % 3'000) + "\":0,";
    }
    text += "\"last\":[]}";
    std::set<std::string> unique;
    qsizetype marked = 0;
    for (const std::string& id : ids(rowsOf(treeValue(text), everything()))) {
        EXPECT_TRUE(unique.insert(id).second) << id;
        marked += id.find('#') != std::string::npos ? 1 : 0;
    }
    EXPECT_EQ(unique.size(), 5'002U);
    EXPECT_EQ(marked, 2'000);
    EXPECT_TRUE(unique.contains("$.k2999"));
    EXPECT_TRUE(unique.contains("$.k0#3000"));
}

TEST(JSONTree, ComesBackToAnObjectWhoseChildHadDuplicates) {
    EXPECT_THAT(ids(rowsOf(treeValue(R"({"a":{"x":1,"x":2},"x":3,"a":{"x":4},"x":5})"), everything())),
                ElementsAre("$", "$.a", "$.a.x", "$.a.x#1", "$.x", "$.a#2", "$.a#2.x", "$.x#3"));
}

TEST(JSONTree, OfAHundredLevelsIsWhole) {
    const auto rows = rowsOf(treeValue(QByteArray(100, '[') + QByteArray(100, ']')), everything());
    ASSERT_EQ(rows.size(), 100);
    EXPECT_EQ(rows[rows.size() - 1].depth(), 99);
    EXPECT_EQ(rows[rows.size() - 1].id(), u'$' + u"[0]"_s.repeated(99));
}

// A path of its own in each row would need 140 GB.
TEST(JSONTree, KeepsALongKeyAboveManyRowsOnce) {
    constexpr int containers = 100'000;
    const QByteArray text =
        "{\"" + QByteArray(700'000, 'k') + "\":[" + QByteArray("[],").repeated(containers - 1) + "[]]}";
    JSONExpansion expansion = everything();
    auto rows = rowsOf(treeValue(text), expansion);
    ASSERT_EQ(rows.size(), containers + 2);
    expansion.toggle(rows[5]);
    expansion.toggle(rows[rows.size() - 1]);
    rows = rowsOf(treeValue(text), expansion);
    EXPECT_EQ(std::count_if(rows.begin(), rows.end(), [](const JSONTreeRow& row) { return !row.isExpanded(); }), 2);
    EXPECT_FALSE(rows[5].isExpanded());
    EXPECT_FALSE(rows[rows.size() - 1].isExpanded());
}

TEST(JSONExpansion, BeginsWithTwoLevels) {
    const JSONExpansion expansion;
    EXPECT_EQ(expansion.defaultDepth, 2);
    EXPECT_TRUE(expansion.overrides.isEmpty());
    EXPECT_TRUE(expansion.isExpanded(JSONPath(), 0));
    EXPECT_TRUE(expansion.isExpanded(JSONPath(), 1));
    EXPECT_FALSE(expansion.isExpanded(JSONPath(), 2));
}

TEST(JSONExpansion, ClosesOneContainerOfAnOpenTree) {
    const JSONValue value = treeValue(R"({"a":[[1],[2]],"b":[3]})");
    JSONExpansion expansion = everything();
    EXPECT_EQ(expansion.defaultDepth, std::numeric_limits<qint64>::max());
    expansion.toggle(rowsOf(value, expansion)[1]);
    EXPECT_THAT(lines(rowsOf(value, expansion)),
                ElementsAre("0 $ root open", "1 $.a key a", "1 $.b key b open", "2 $.b[0] index 0"));
    expansion.toggle(rowsOf(value, expansion)[1]);
    EXPECT_EQ(rowsOf(value, expansion).size(), 8);
}

TEST(JSONExpansion, OpensOneContainerOfAClosedTree) {
    const JSONValue value = treeValue("[[[1]],[[2]]]");
    JSONExpansion expansion;
    expansion.collapse();
    EXPECT_EQ(expansion.defaultDepth, 1);
    EXPECT_THAT(ids(rowsOf(value, expansion)), ElementsAre("$", "$[0]", "$[1]"));
    expansion.toggle(rowsOf(value, expansion)[2]);
    EXPECT_THAT(ids(rowsOf(value, expansion)), ElementsAre("$", "$[0]", "$[1]", "$[1][0]"));
}

TEST(JSONExpansion, ForgetsTheUsersChoicesWhenAllIsOpenedOrClosed) {
    const JSONValue value = treeValue("[[1]]");
    JSONExpansion expansion;
    expansion.toggle(rowsOf(value, expansion)[0]);
    EXPECT_THAT(ids(rowsOf(value, expansion)), ElementsAre("$"));
    expansion.expandAll();
    EXPECT_THAT(ids(rowsOf(value, expansion)), ElementsAre("$", "$[0]", "$[0][0]"));
    expansion.toggle(rowsOf(value, expansion)[1]);
    expansion.collapse();
    EXPECT_TRUE(expansion.overrides.isEmpty());
    EXPECT_THAT(ids(rowsOf(value, expansion)), ElementsAre("$", "$[0]"));
}

TEST(JSONExpansion, TellsDuplicatesApart) {
    const JSONValue value = treeValue(R"({"a":[1],"a":[2]})");
    JSONExpansion expansion;
    expansion.toggle(rowsOf(value, expansion)[3]);
    EXPECT_THAT(ids(rowsOf(value, expansion)), ElementsAre("$", "$.a", "$.a[0]", "$.a#1"));
}

struct ValueCopyCase {
    const char* text;
    const char* copied;
};

class CopiedJSONValue : public testing::TestWithParam<ValueCopyCase> {};

TEST_P(CopiedJSONValue, IsText) {
    EXPECT_EQ(JSONTree::valueToCopy(treeValue(GetParam().text)).toStdString(), GetParam().copied);
}

INSTANTIATE_TEST_SUITE_P(Table, CopiedJSONValue,
                         testing::Values(ValueCopyCase{R"({"a":[1]})", "{\n  \"a\": [\n    1\n  ]\n}"},
                                         ValueCopyCase{"[ ]", "[]"}, ValueCopyCase{R"("a\"b\n")", "a\"b\n"},
                                         ValueCopyCase{"1.50", "1.50"}, ValueCopyCase{"true", "true"},
                                         ValueCopyCase{"null", "null"}));

} // namespace

} // namespace quillary
