#include "QuillaryCore/Formats/UTF8.h"

#include <gtest/gtest.h>

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

} // namespace

} // namespace quillary
