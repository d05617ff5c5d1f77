#include "QuillaryCore/Notes/TextDecoder.h"

#include <QStringEncoder>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

struct DecoderCase {
    const char* name;
    QByteArray bytes;
    QString text;
};

void PrintTo(const DecoderCase& each, std::ostream* stream) {
    *stream << each.name;
}

class TextDecoderCase : public testing::TestWithParam<DecoderCase> {};

TEST_P(TextDecoderCase, Reads) {
    EXPECT_EQ(TextDecoder::decode(GetParam().bytes), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(UTF8, TextDecoderCase,
                         testing::Values(DecoderCase{"Nothing", "", u""_s}, DecoderCase{"ASCII", "abc", u"abc"_s},
                                         DecoderCase{"AllLengths", "a\xC3\xA8\xE2\x82\xAC\xF0\x9F\x98\x80", u"aè€😀"_s},
                                         DecoderCase{"Mark",
                                                     "\xEF\xBB\xBF"
                                                     "abc",
                                                     u"abc"_s},
                                         DecoderCase{"MarkAlone", "\xEF\xBB\xBF", u""_s},
                                         DecoderCase{"SecondMarkStays", "\xEF\xBB\xBF\xEF\xBB\xBFx", u"\uFEFFx"_s},
                                         DecoderCase{"MarkWithinStays", "a\xEF\xBB\xBF", u"a\uFEFF"_s},
                                         DecoderCase{"NUL", QByteArray("a\0b", 3), QString(u"a"_s + QChar() + u"b"_s)},
                                         DecoderCase{"Noncharacters", "\xEF\xB7\x90\xEF\xBF\xBE\xEF\xBF\xBF",
                                                     u"\uFDD0\uFFFE\uFFFF"_s},
                                         DecoderCase{"LineEnds",
                                                     "a\nb\r\nc\rd\xE2\x80\xA8"
                                                     "e\xC2\x85"
                                                     "f",
                                                     u"a\nb\r\nc\rd\u2028e\u0085f"_s},
                                         DecoderCase{"Decomposed", "e\xCC\x80", u"e\u0300"_s}),
                         [](const auto& each) { return each.param.name; });

INSTANTIATE_TEST_SUITE_P(UTF16, TextDecoderCase,
                         testing::Values(DecoderCase{"Little",
                                                     QByteArray("\xFF\xFE"
                                                                "a\0\xE8\0=\xD8\0\xDE",
                                                                10),
                                                     u"aè😀"_s},
                                         DecoderCase{"Big",
                                                     QByteArray("\xFE\xFF"
                                                                "\0a\0\xE8\xD8=\xDE\0",
                                                                10),
                                                     u"aè😀"_s},
                                         DecoderCase{"MarkAlone", "\xFF\xFE", u""_s},
                                         DecoderCase{"SecondMarkStays", "\xFE\xFF\xFE\xFF", u"\uFEFF"_s},
                                         // What is no UTF-16 goes down the ladder to code page 1252.
                                         DecoderCase{"OddLength",
                                                     QByteArray("\xFF\xFE"
                                                                "a\0b",
                                                                5),
                                                     QString(u"ÿþa"_s + QChar() + u"b"_s)},
                                         DecoderCase{"LoneHigh",
                                                     QByteArray("\xFF\xFE"
                                                                "=\xD8"
                                                                "a\0",
                                                                6),
                                                     QString(u"ÿþ=Øa"_s + QChar())},
                                         DecoderCase{"HighAtTheEnd", "\xFF\xFE=\xD8", u"ÿþ=Ø"_s},
                                         DecoderCase{"LoneLow", QByteArray("\xFF\xFE\0\xDE", 4),
                                                     QString(u"ÿþ"_s + QChar() + u"Þ"_s)},
                                         DecoderCase{"SwappedPair", QByteArray("\xFE\xFF\xDE\0\xD8=", 6),
                                                     QString(u"þÿÞ"_s + QChar() + u"Ø="_s)}),
                         [](const auto& each) { return each.param.name; });

INSTANTIATE_TEST_SUITE_P(
    CodePage1252, TextDecoderCase,
    testing::Values(
        DecoderCase{"Latin", "perch\xE9 \xE8", u"perché è"_s},
        DecoderCase{"Punctuation", "\x80\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8E", u"€‚ƒ„…†‡ˆ‰Š‹ŒŽ"_s},
        DecoderCase{"MorePunctuation", "\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9E\x9F", u"‘’“”•–—˜™š›œžŸ"_s},
        DecoderCase{"UpperHalf", "\xA0\xBF\xC0\xFF", u"\u00A0¿Àÿ"_s},
        DecoderCase{"TruncatedUTF8", "a\xE2\x82", u"aâ‚"_s},
        DecoderCase{"MarkBeforeWhatIsNoUTF8", "\xEF\xBB\xBF\xE8", u"ï»¿è"_s},
        DecoderCase{"Overlong", "\xC0\xAF", u"À¯"_s}),
    [](const auto& each) { return each.param.name; });

// A byte that code page 1252 doesn't have leaves the last rung: one U+FFFD for each beginning of a sequence that goes
// no further.
INSTANTIATE_TEST_SUITE_P(
    Replacing, TextDecoderCase,
    testing::Values(DecoderCase{"Byte81", "a\x81z", u"a\uFFFDz"_s}, DecoderCase{"Byte8D", "a\x8Dz", u"a\uFFFDz"_s},
                    DecoderCase{"Byte8F", "a\x8Fz", u"a\uFFFDz"_s}, DecoderCase{"Byte90", "a\x90z", u"a\uFFFDz"_s},
                    DecoderCase{"Byte9D", "a\x9Dz", u"a\uFFFDz"_s},
                    DecoderCase{"KeepsWhatIsWellFormed", "\xC3\xA8\x81\xE2\x82\xAC\xF0\x9F\x98\x80", u"è\uFFFD€😀"_s},
                    DecoderCase{"TruncatedSequenceIsOne", "\x81\xE2\x82z\xF0\x9F\x98", u"\uFFFD\uFFFDz\uFFFD"_s},
                    DecoderCase{"EachWrongByteIsOne", "\x81\xC0\xAF\xF5\xFF", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"_s},
                    DecoderCase{"EncodedSurrogate", "\x81\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"_s},
                    DecoderCase{"OverlongOfThree", "\x81\xE0\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"_s},
                    DecoderCase{"BeyondUnicode", "\x81\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"_s},
                    DecoderCase{"MarkStays", "\xEF\xBB\xBF\x81", u"\uFEFF\uFFFD"_s},
                    DecoderCase{"NULStays", QByteArray("\x81\0x", 3), QString(u"\uFFFD"_s + QChar() + u"x"_s)}),
    [](const auto& each) { return each.param.name; });

TEST(TextDecoder, ReadsEveryScalarInUTF8AndInUTF16) {
    QString all;
    for (char32_t scalar = 0; scalar <= 0x10FFFF; ++scalar) {
        if (scalar < 0xD800 || scalar > 0xDFFF) {
            all += QChar::fromUcs4(scalar);
        }
    }
    EXPECT_EQ(TextDecoder::decode(all.toUtf8()), all);
    for (const auto encoding : {QStringEncoder::Utf16LE, QStringEncoder::Utf16BE}) {
        QStringEncoder encoder(encoding, QStringEncoder::Flag::WriteBom);
        const QByteArray bytes = encoder(all);
        EXPECT_EQ(TextDecoder::decode(bytes), all);
    }
}

TEST(TextDecoder, ReadsTheSameWhereverTheWrongByteStands) {
    // Long runs take fast paths; none may step over an error.
    for (qsizetype at = 0; at < 100; ++at) {
        QByteArray bytes(100, 'x');
        bytes[at] = '\xE8';
        EXPECT_EQ(TextDecoder::decode(bytes), QString::fromLatin1(bytes)) << at;
        bytes[at] = '\x81';
        QString expected(100, u'x');
        expected[at] = QChar::ReplacementCharacter;
        EXPECT_EQ(TextDecoder::decode(bytes), expected) << at;
    }
}

} // namespace

} // namespace quillary
