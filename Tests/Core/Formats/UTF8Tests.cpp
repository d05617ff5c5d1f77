#include "QuillaryCore/Formats/UTF8.h"

#include "QuillaryCore/Formats/UTF8BlockCheck.h"

#include <gtest/gtest.h>

#include <random>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

struct DecodingCase {
    const char* name;
    QByteArray bytes;
    QString text;
};

class UTF8Decoding : public testing::TestWithParam<DecodingCase> {};

TEST_P(UTF8Decoding, GivesTheText) {
    EXPECT_EQ(UTF8::decoded(GetParam().bytes).toStdU16String(), GetParam().text.toStdU16String());
}

// Where the replacement characters stand is as in the Unicode Standard, section 3.9, tables 3-8 to 3-11.
const DecodingCase decodingCases[] = {
    {"Nothing", "", u""_s},
    {"ASCII", "Quillary", u"Quillary"_s},
    {"ASCIIBeyondOneBlock", QByteArray(37, 'a'), QString(37, u'a')},
    {"TwoBytes", "citt\xC3\xA0", u"città"_s},
    {"ThreeBytes", "\xE2\x82\xAC", u"€"_s},
    {"FourBytes", "\xF0\x9F\x98\x80", u"😀"_s},
    {"ASCIIAgainAfterOthers", QByteArray("\xC3\xA0") + QByteArray(40, 'x') + "\xC3\xA0",
     u'à' + QString(40, u'x') + u'à'},
    {"Nul", QByteArray("a\0b", 3), u"a\0b"_s},
    {"AMarkAtTheStartStays",
     "\xEF\xBB\xBF"
     "a",
     u"\uFEFFa"_s},
    {"AMarkInsideStays", "a\xEF\xBB\xBF", u"a\uFEFF"_s},
    {"Noncharacters", "\xEF\xBF\xBE\xEF\xBF\xBF", QString(QChar(0xFFFE)) + QChar(0xFFFF)},
    {"OverlongForms",
     "\xC0\xAF\xE0\x80\xBF\xF0\x81\x82"
     "A",
     QString(8, u'\uFFFD') + u'A'},
    {"Surrogates",
     "\xED\xA0\x80\xED\xBF\xBF\xED\xAF"
     "A",
     QString(8, u'\uFFFD') + u'A'},
    {"BeyondTheLastPlane",
     "\xF4\x91\x92\x93\xFF"
     "A\x80\xBF"
     "B",
     QString(5, u'\uFFFD') + u"A\uFFFD\uFFFDB"_s},
    {"TruncatedSequences",
     "\xE1\x80\xE2\xF0\x91\x92\xF1\xBF"
     "A",
     QString(4, u'\uFFFD') + u'A'},
    {"TruncatedAtTheEnd", "a\xF0\x9F\x98", u"a\uFFFD"_s},
    {"ALeadByteAtTheEnd", "a\xC3", u"a\uFFFD"_s},
};

INSTANTIATE_TEST_SUITE_P(Table, UTF8Decoding, testing::ValuesIn(decodingCases),
                         [](const auto& each) { return each.param.name; });

TEST(UTF8Encoding, KeepsEveryScalar) {
    const QString text = u"a\0à€😀\uFEFF"_s;
    EXPECT_EQ(UTF8::encoded(text), QByteArray("a\0\xC3\xA0\xE2\x82\xAC\xF0\x9F\x98\x80\xEF\xBB\xBF", 14));
    EXPECT_EQ(UTF8::decoded(UTF8::encoded(text)), text);
}

TEST(UTF8Encoding, ReplacesLoneSurrogates) {
    const char16_t units[] = {0xD83D, u'a', 0xDE00, 0xD83D};
    EXPECT_EQ(UTF8::encoded(QStringView(units, 4)), QByteArray("\xEF\xBF\xBD"
                                                               "a\xEF\xBF\xBD\xEF\xBF\xBD"));
}

TEST(UTF8Encoding, OfNothingIsNothing) {
    EXPECT_EQ(UTF8::encoded(QStringView()), QByteArray());
}

TEST(UTF8, TellsWhatIsWellFormed) {
    EXPECT_TRUE(UTF8::isWellFormed(""));
    EXPECT_TRUE(UTF8::isWellFormed("a\xC3\xA0\xE0\xA4\x85\xED\x95\x9C\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF"));
    for (const char* bytes : {"\xC3", "\xA0", "\xC0\xAF", "\xE0\x9F\xBF", "\xED\xA0\x80", "\xF0\x8F\xBF\xBF",
                              "\xF4\x90\x80\x80", "\xF5", "\xE2\x82", "\xF0\x9F\x98", "\xC3\xA0\xA0"}) {
        EXPECT_FALSE(UTF8::isWellFormed(bytes)) << QByteArray(bytes).toHex().toStdString();
    }
}

/// Adds a text in blocks, each of which ends anywhere.
UTF8BlockCheck checkInBlocks(const QByteArray& text, std::mt19937& random) {
    const QByteArray padded = text + QByteArray(ByteBlock::size, 'x');
    UTF8BlockCheck check;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype longest = std::min(ByteBlock::size, text.size() - at);
        const qsizetype size = random() % 2 == 0 ? longest : 1 + static_cast<qsizetype>(random()) % longest;
        check.add(ByteBlock(padded.constData() + at), static_cast<int>(size));
        at += size;
    }
    check.end();
    return check;
}

TEST(UTF8BlockCheck, IsCertainOnlyOfWhatIsWellFormed) {
    const std::vector<QByteArray> pieces = {
        "a",    "abcdefghijk", "\xC3\xA0", "\xDF\xBF",    "\xE2\x82\xAC", "\xE1\x80\x80",
        "\xC3", "\x80",        "\xE2\x82", "\xEF\xBF\xBD"};
    const std::vector<QByteArray> rare = {"\xE0\xA4\x85",     "\xE0\x80\x80", "\xED\x95\x9C", "\xED\xA0\x80",
                                          "\xF0\x9F\x98\x80", "\xC0\xAF",     "\xFF"};
    std::mt19937 random(5);
    int certain = 0;
    for (int i = 0; i < 20'000; ++i) {
        // The first six pieces alone are well-formed.
        const std::size_t choice = random() % 2 == 0 ? 6 : pieces.size();
        QByteArray text;
        for (unsigned count = random() % 12; count > 0; --count) {
            text += random() % 40 == 0 ? rare[random() % rare.size()] : pieces[random() % choice];
        }
        const UTF8BlockCheck check = checkInBlocks(text, random);
        const bool isWellFormed = UTF8::isWellFormed(text);
        ASSERT_TRUE(!check.isCertain() || isWellFormed) << text.toHex().toStdString();
        ASSERT_EQ(check.isASCII(), std::all_of(text.begin(), text.end(), [](char byte) { return (byte & 0x80) == 0; }));
        certain += check.isCertain() && !check.isASCII() ? 1 : 0;
    }
    EXPECT_GT(certain, 4'000);
}

TEST(UTF8BlockCheck, KnowsTheCommonScriptsForCertain) {
    std::mt19937 random(6);
    const UTF8BlockCheck check = checkInBlocks(u"perché città — Ελληνικά, русский, 中文, 日本語 …"_s.toUtf8(), random);
    EXPECT_TRUE(check.isCertain());
    EXPECT_FALSE(check.isASCII());
    EXPECT_TRUE(checkInBlocks("plain", random).isASCII());
}

TEST(UTF8BlockCheck, IsNotCertainOfASequenceThatIsCutOff) {
    UTF8BlockCheck check;
    check.add(ByteBlock("aaaaaaaaaaaaaa\xE2\x82"), ByteBlock::size);
    EXPECT_TRUE(check.isCertain());
    check.end();
    EXPECT_FALSE(check.isCertain());
}

} // namespace

} // namespace quillary
