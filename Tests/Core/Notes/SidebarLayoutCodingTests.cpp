#include "QuillaryCore/Notes/SidebarLayout.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

SidebarLayout fullLayout() {
    SidebarLayout layout;
    layout.folderOrder = {u"b"_s, u"a"_s};
    layout.collapsedFolders = {u"a"_s};
    layout.folderColors = {{u"b"_s, FolderColor::teal}, {u"a"_s, FolderColor::gray}};
    layout.noteOrder = {{u""_s, {u"Idee.md"_s}}, {u"a"_s, {}}, {u"b"_s, {u"2.txt"_s, u"1.txt"_s}}};
    return layout;
}

} // namespace

TEST(SidebarLayoutCoding, WritesSortedKeysInIndentedLines) {
    EXPECT_EQ(fullLayout().encoded(), QByteArray(R"({
  "collapsedFolders": [
    "a"
  ],
  "folderColors": {
    "a": "gray",
    "b": "teal"
  },
  "folderOrder": [
    "b",
    "a"
  ],
  "noteOrder": {
    "": [
      "Idee.md"
    ],
    "a": [],
    "b": [
      "2.txt",
      "1.txt"
    ]
  }
}
)"));
}

TEST(SidebarLayoutCoding, WritesAllFourKeysAlsoWhenEmpty) {
    EXPECT_EQ(SidebarLayout().encoded(), QByteArray(R"({
  "collapsedFolders": [],
  "folderColors": {},
  "folderOrder": [],
  "noteOrder": {}
}
)"));
}

TEST(SidebarLayoutCoding, EqualLayoutsGiveEqualBytes) {
    SidebarLayout other;
    other.noteOrder.insert(u"b"_s, {u"2.txt"_s, u"1.txt"_s});
    other.noteOrder.insert(u"a"_s, {});
    other.noteOrder.insert(u""_s, {u"Idee.md"_s});
    other.folderColors.insert(u"a"_s, FolderColor::gray);
    other.folderColors.insert(u"b"_s, FolderColor::teal);
    other.folderOrder = {u"b"_s, u"a"_s};
    other.collapsedFolders = {u"a"_s};
    EXPECT_EQ(other.encoded(), fullLayout().encoded());
    EXPECT_EQ(fullLayout().encoded(), fullLayout().encoded());
}

TEST(SidebarLayoutCoding, KeepsAByteOrderMarkAtTheStartOfAName) {
    SidebarLayout layout;
    layout.folderOrder = {u"\ufeffLavoro"_s, u"Vi\ufeffaggi"_s};
    layout.folderColors = {{u"\ufeffLavoro"_s, FolderColor::blue}};
    EXPECT_EQ(SidebarLayout::decode(layout.encoded()), layout);
    EXPECT_EQ(SidebarLayout::decode("{\"folderOrder\": [\"\uFEFFLavoro\", \"Vi\uFEFFaggi\"],"
                                    "\"folderColors\": {\"\uFEFFLavoro\": \"blue\"}}"),
              layout);
}

TEST(SidebarLayoutCoding, ReadsWhatItWrites) {
    EXPECT_EQ(SidebarLayout::decode(fullLayout().encoded()), fullLayout());
    EXPECT_EQ(SidebarLayout::decode(SidebarLayout().encoded()), SidebarLayout());
    SidebarLayout layout;
    const QString awkward =
        u"\"\\/\b\f\n\r\t\u0001\u007F\u2028 caff\u00E8 \U0001F600"_s + QChar(0xDCE8) + QChar(0xD800);
    layout.folderOrder = {awkward};
    layout.folderColors = {{awkward, FolderColor::red}};
    layout.noteOrder = {{awkward, {awkward}}};
    const std::optional<SidebarLayout> read = SidebarLayout::decode(layout.encoded());
    ASSERT_TRUE(read);
    EXPECT_EQ(read->folderOrder, layout.folderOrder);
    EXPECT_EQ(read->folderColors, layout.folderColors);
    EXPECT_EQ(read->noteOrder, layout.noteOrder);
    EXPECT_EQ(read->encoded(), layout.encoded());
}

TEST(SidebarLayoutCoding, WritesValidJson) {
    SidebarLayout layout;
    layout.folderOrder = {u"\"\\\u0001"_s, QString(QChar(0xDC80))};
    QJsonParseError error;
    EXPECT_TRUE(QJsonDocument::fromJson(layout.encoded(), &error).isObject()) << error.errorString().toStdString();
}

TEST(SidebarLayoutCoding, KeysMayBeAbsentNullOrUnknown) {
    for (const char* const file :
         {"{}", " \n{ }\t", "\xEF\xBB\xBF{}",
          R"({"collapsedFolders":null,"folderColors":null,"folderOrder":null,"noteOrder":null})",
          R"({"altro":[{"x":[1,2,{}]}],"version":7})", R"({"folderOrder":[],"folderColors":{},"noteOrder":{}})"}) {
        EXPECT_EQ(SidebarLayout::decode(file), SidebarLayout()) << file;
    }
}

TEST(SidebarLayoutCoding, ReadsEveryFormOfJson) {
    const std::optional<SidebarLayout> layout = SidebarLayout::decode(
        R"({"noteOrder":{"":["Idee.md"],"\u0061":["\/"]},"folderOrder":["\ud83d\ude00","è"],"folderColors":{"è":"blue"},"collapsedFolders":["x"]})");
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->folderOrder, QStringList({u"\U0001F600"_s, u"\u00E8"_s}));
    EXPECT_EQ(layout->collapsedFolders, QStringList({u"x"_s}));
    EXPECT_EQ(layout->folderColors, (QMap<QString, FolderColor>{{u"\u00E8"_s, FolderColor::blue}}));
    EXPECT_EQ(layout->noteOrder, (QMap<QString, QStringList>{{u""_s, {u"Idee.md"_s}}, {u"a"_s, {u"/"_s}}}));
}

TEST(SidebarLayoutCoding, OneWrongThingMakesTheWholeFileUnreadable) {
    for (const char* const file : {
             "",
             "nonsense",
             "[]",
             "null",
             "\"x\"",
             "{",
             R"({"folderOrder":["a"]} x)",
             R"({"folderOrder":["a"],})",
             R"({"folderOrder":["a",]})",
             "{\"folderOrder\":[\"\xFF\"]}",
             R"({"folderOrder":"a"})",
             R"({"folderOrder":{}})",
             R"({"folderOrder":[1]})",
             R"({"folderOrder":[null]})",
             R"({"folderOrder":true})",
             R"({"folderOrder":["a"],"collapsedFolders":[["a"]]})",
             R"({"folderOrder":["a"],"collapsedFolders":0})",
             R"({"folderOrder":["a"],"folderColors":[]})",
             R"({"folderOrder":["a"],"folderColors":{"a":"fuchsia"}})",
             R"({"folderOrder":["a"],"folderColors":{"a":"Red"}})",
             R"({"folderOrder":["a"],"folderColors":{"a":null}})",
             R"({"folderOrder":["a"],"folderColors":{"a":3}})",
             R"({"folderOrder":["a"],"noteOrder":[]})",
             R"({"folderOrder":["a"],"noteOrder":{"":null}})",
             R"({"folderOrder":["a"],"noteOrder":{"":"x"}})",
             R"({"folderOrder":["a"],"noteOrder":{"":["x",2]}})",
         }) {
        EXPECT_EQ(SidebarLayout::decode(file), std::nullopt) << file;
    }
}

TEST(SidebarLayoutCoding, DeepNestingDoesNoHarm) {
    const QByteArray deep = R"({"altro":)" + QByteArray(1'000'000, '[') + QByteArray(1'000'000, ']') + '}';
    EXPECT_EQ(SidebarLayout::decode(deep), std::nullopt);
}

} // namespace quillary
