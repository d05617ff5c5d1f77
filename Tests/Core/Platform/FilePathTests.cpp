#include "QuillaryCore/Platform/FilePath.h"

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

FilePath path(const char* bytes) {
    return FilePath::fromBytes(bytes);
}

TEST(FilePath, TakesAPathApart) {
    struct Case {
        const char* path;
        QString fileName, title, extension;
        const char* parent;
    };

    const Case cases[] = {
        {"/a/b.md", u"b.md"_s, u"b"_s, u"md"_s, "/a"},
        {"/a/b.c.MD", u"b.c.MD"_s, u"b.c"_s, u"MD"_s, "/a"},
        {"/a/b", u"b"_s, u"b"_s, u""_s, "/a"},
        {"/a/.profile", u".profile"_s, u".profile"_s, u""_s, "/a"},
        {"/a/.profile.md", u".profile.md"_s, u".profile"_s, u"md"_s, "/a"},
        {"/a/b.", u"b."_s, u"b."_s, u""_s, "/a"},
        {"/a/b.c d", u"b.c d"_s, u"b"_s, u"c d"_s, "/a"},
        {"/a.d/b", u"b"_s, u"b"_s, u""_s, "/a.d"},
        {"/a/b.md/", u"b.md"_s, u"b"_s, u"md"_s, "/a"},
        {"/a//b.md", u"b.md"_s, u"b"_s, u"md"_s, "/a"},
        {"/b", u"b"_s, u"b"_s, u""_s, "/"},
        {"/", u""_s, u""_s, u""_s, "/"},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.path);
        EXPECT_EQ(path(each.path).fileName(), each.fileName);
        EXPECT_EQ(path(each.path).title(), each.title);
        EXPECT_EQ(path(each.path).extension(), each.extension);
        EXPECT_EQ(path(each.path).parent().bytes(), each.parent);
    }
}

TEST(FilePath, AppendsOneComponent) {
    EXPECT_EQ(path("/a").appending(u"b c").bytes(), "/a/b c");
    EXPECT_EQ(path("/a/").appending(u"b").bytes(), "/a/b");
    EXPECT_EQ(path("/").appending(u"b").bytes(), "/b");
    EXPECT_EQ(path("/a").appending(u"è").bytes(), "/a/\xC3\xA8");
    EXPECT_EQ(path("/a").appending(QString(QChar(0xDCE8))).bytes(), "/a/\xE8");
}

TEST(FilePath, StandardizesWithoutLookingAtTheDisk) {
    const std::pair<const char*, const char*> cases[] = {
        {"/a/b", "/a/b"},     {"/a/b/", "/a/b"},    {"/a//b", "/a/b"},     {"/a/./b", "/a/b"},
        {"/a/../b", "/b"},    {"/a/b/..", "/a"},    {"/a/..", "/"},        {"/../a", "/a"},
        {"/", "/"},           {"//", "/"},          {"/.", "/"},           {"/a/b/../../..", "/"},
        {"/a/...", "/a/..."}, {"/a/..b", "/a/..b"}, {"/a/.b/./", "/a/.b"}, {"/a/x/../../b/c/.", "/b/c"},
    };
    for (const auto& [given, expected] : cases) {
        EXPECT_EQ(path(given).standardized().bytes(), expected) << given;
    }
}

TEST(FilePath, EqualsByBytesOnly) {
    EXPECT_EQ(path("/a"), path("/a"));
    EXPECT_NE(path("/a"), path("/A"));
    EXPECT_NE(path("/\xC3\xA8"), path("/e\xCC\x80"));
    EXPECT_EQ(qHash(path("/a")), qHash(path("/a")));
}

TEST(FilePath, KeepsEveryByteOfANameThroughItsText) {
    QList<QByteArray> names = {
        "plain",
        "\xC3\xA8",
        "e\xCC\x80",
        "\xE8",
        "caf\xE9.md",
        "\xF0\x9F\x98\x80",
        "a\nb",
        "-rf",
        "\xED\xA0\x80",
        "\xED\xB2\x80",
        "\xC0\xAF",
        "\xF4\x90\x80\x80",
        "\xEF\xBB\xBFmark",
        "\xE2\x82",
        "\xE2\x82.md",
        "\xF0\x9F\x98",
        "\x80\xFF",
        "\xEF\xBF\xBD",
        "\xE0\x80\xAF",
        "\xF0\x8F\xBF\xBF",
        "\xC3",
        "\xEF\xB7\x90",
    };
    for (int byte = 1; byte < 256; ++byte) {
        names.append(QByteArray(1, static_cast<char>(byte)));
        names.append(QByteArray("x") + static_cast<char>(byte) + "y");
        names.append(QByteArray("\xE2") + static_cast<char>(byte) + "\x80");
        names.append(QByteArray("\xF0\x90") + static_cast<char>(byte) + "\x80");
    }
    for (const QByteArray& name : names) {
        EXPECT_EQ(FilePath::bytesFromText(FilePath::textFromBytes(name)), name) << name.toHex().constData();
    }
}

TEST(FilePath, ShowsBytesThatAreNoTextAsLoneSurrogates) {
    EXPECT_EQ(FilePath::textFromBytes("caf\xE9"), u"caf"_s + QChar(0xDCE9));
    EXPECT_EQ(FilePath::textFromBytes("\xED\xA0\x80"), QString(QChar(0xDCED)) + QChar(0xDCA0) + QChar(0xDC80));
    EXPECT_EQ(FilePath::textFromBytes("\xF0\x9F\x98\x80"), u"😀"_s);
    EXPECT_EQ(FilePath::textFromBytes("\xC3\xA8"), u"è"_s);
}

TEST(FilePath, GivesUSomethingForASurrogateThatStandsForNoByte) {
    EXPECT_EQ(FilePath::bytesFromText(QString(QChar(0xD800))), "\xEF\xBF\xBD");
    EXPECT_EQ(FilePath::bytesFromText(QString(QChar(0xDC00))), "\xEF\xBF\xBD");
    EXPECT_EQ(FilePath::bytesFromText(QString(QChar(0xDD00))), "\xEF\xBF\xBD");
    EXPECT_EQ(FilePath::bytesFromText(QString(u"a"_s + QChar(0xD83D))), "a\xEF\xBF\xBD");
}

TEST(FilePath, DisplaysWhatCannotBeShownAsReplacementCharacters) {
    EXPECT_EQ(FilePath::displayText(FilePath::textFromBytes("caf\xE9.md")), u"caf\uFFFD.md"_s);
    EXPECT_EQ(FilePath::displayText(u"è 😀"), u"è 😀"_s);
    EXPECT_EQ(FilePath::displayText(QString(QChar(0xD83D))), u"\uFFFD"_s);
}

} // namespace

} // namespace quillary
