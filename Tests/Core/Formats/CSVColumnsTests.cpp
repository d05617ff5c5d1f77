#include "QuillaryCore/Formats/CSVColumns.h"

#include "QuillaryCore/Formats/CSVParser.h"

#include "Tests/Core/Formats/FormatsTestSupport.h"

#include <gmock/gmock.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

QList<double> widthsOf(const QString& text, double baseSize = 10) {
    return CSVColumns::widths(CSVParser::parse(text, U','), baseSize);
}

QList<qsizetype> numericOf(const QString& text) {
    return CSVColumns::numeric(CSVParser::parse(text, U';'));
}

TEST(CSVColumns, WidensAColumnToItsLongestCell) {
    EXPECT_EQ(widthsOf(u""_s), QList<double>{});
    EXPECT_EQ(widthsOf(u"a"_s), (QList<double>{56}));
    EXPECT_EQ(widthsOf(u"aaaaa"_s), (QList<double>{56}));
    EXPECT_EQ(widthsOf(u"aaaaaaaaaa,b\nc,dddddddddddddddddddd"_s),
              (QList<double>{10 * 10 * 0.62 + 20, 20 * 10 * 0.62 + 20}));
    EXPECT_EQ(widthsOf(QString(1000, u'a')), (QList<double>{360}));
    EXPECT_EQ(widthsOf(QString(54, u'a')), (QList<double>{54 * 10.0 * 0.62 + 20}));
    EXPECT_EQ(widthsOf(QString(55, u'a')), (QList<double>{360}));
    EXPECT_EQ(widthsOf(QString(10, u'a'), 13), (QList<double>{10 * 13.0 * 0.62 + 20}));
}

TEST(CSVColumns, PassesOverRowsThatAreTooShort) {
    EXPECT_EQ(widthsOf(u"a\nb,cccccccccccccccccccc\nd"_s), (QList<double>{56, 20 * 10 * 0.62 + 20}));
}

TEST(CSVColumns, MeasuresACellInCharacters) {
    EXPECT_EQ(widthsOf(u"e\u0301"_s.repeated(20)), (QList<double>{20 * 10 * 0.62 + 20}));
    EXPECT_EQ(widthsOf(u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s.repeated(10)),
              (QList<double>{10 * 10 * 0.62 + 20}));
    EXPECT_EQ(widthsOf(u"a"_s + u"\u0301"_s.repeated(1000)), (QList<double>{56}));
}

TEST(CSVColumns, LooksAtThreeHundredRows) {
    const QString rows = u"a\n"_s.repeated(299);
    EXPECT_EQ(widthsOf(rows + u"aaaaaaaaaa"_s), (QList<double>{10 * 10 * 0.62 + 20}));
    EXPECT_EQ(widthsOf(rows + u"a\naaaaaaaaaa"_s), (QList<double>{56}));
    const QString numbers = u"h\n"_s + u"1\n"_s.repeated(298);
    EXPECT_EQ(numericOf(numbers + u"x"_s), QList<qsizetype>{});
    EXPECT_EQ(numericOf(numbers + u"2\nx"_s), QList<qsizetype>{0});
}

TEST(CSVColumns, StaysWithinTheLimitsForAnySize) {
    for (const double size : {-5.0, 0.0, 1e-300, 1e300}) {
        const QList<double> widths = widthsOf(QString(100, u'a'), size);
        EXPECT_EQ(widths, (QList<double>{size > 1 ? 360.0 : 56.0})) << size;
    }
}

TEST(CSVColumns, FindsNumericColumnsBelowTheFirstRow) {
    EXPECT_EQ(numericOf(u""_s), QList<qsizetype>{});
    EXPECT_EQ(numericOf(u"1"_s), QList<qsizetype>{});
    EXPECT_EQ(numericOf(u"x\n1,5\n2.5"_s), QList<qsizetype>{0});
    EXPECT_EQ(numericOf(u"x\n1.000,5"_s), QList<qsizetype>{});
    EXPECT_EQ(numericOf(u"x;y\n;1\n;2"_s), QList<qsizetype>{1});
    EXPECT_EQ(numericOf(u"x;y\n1;\n;2\n3"_s), (QList<qsizetype>{0, 1}));
    EXPECT_EQ(numericOf(u"x;y\n1;a\n2;3"_s), QList<qsizetype>{0});
    EXPECT_EQ(numericOf(u"x\n1;2\n3;4;x"_s), (QList<qsizetype>{0, 1}));
    EXPECT_EQ(numericOf(u"1\nx"_s), QList<qsizetype>{});
}

TEST(CSVColumns, KnowsNumbers) {
    for (const QString& text :
         {u"0"_s,        u"12"_s,  u"-1"_s,        u"+1"_s,      u"1.5"_s,     u"1,5"_s,  u".5"_s,
          u"5."_s,       u"1e5"_s, u"1E-5"_s,      u"1.5e+10"_s, u"1e400"_s,   u"0x1F"_s, u"0X1.8p3"_s,
          u"-0x.8P-1"_s, u"inf"_s, u"-Infinity"_s, u"NaN"_s,     u"nan(12)"_s, u"007"_s}) {
        EXPECT_TRUE(CSVColumns::isNumber(text)) << testing::PrintToString(text);
    }
    for (const QString& text :
         {u""_s,     u" 1"_s,   u"1 "_s,    u"1\t"_s,    u"1.2.3"_s,   u"1,2,3"_s,   u"."_s,     u","_s,
          u"+"_s,    u"-"_s,    u"--1"_s,   u"e5"_s,     u"1e"_s,      u"1e+"_s,     u"1e5.5"_s, u"0x"_s,
          u"0xg"_s,  u"0x1p"_s, u"x1"_s,    u"1a"_s,     u"1 000"_s,   u"1'000"_s,   u"1_000"_s, u"€1"_s,
          u"infi"_s, u"nan("_s, u"nan(1"_s, u"\u0661"_s, u"1\u0301"_s, u"\u22121"_s, u"1\0"_s}) {
        EXPECT_FALSE(CSVColumns::isNumber(text)) << testing::PrintToString(text);
    }
}

TEST(CSVColumns, SumsUpTheTable) {
    struct Case {
        QString text;
        QString withHeader;
        QString withoutHeader;
    };

    const std::vector<Case> cases{
        {u""_s, u"0 righe · 0 colonne · separatore «,»"_s, u"0 righe · 0 colonne · separatore «,»"_s},
        {u"a;b"_s, u"0 righe · 2 colonne · separatore «;»"_s, u"1 righe · 2 colonne · separatore «;»"_s},
        {u"a\tb\nc\td\te"_s, u"1 righe · 3 colonne · separatore «tab»"_s, u"2 righe · 3 colonne · separatore «tab»"_s},
        {u"a|b\nc|d\ne|f"_s, u"2 righe · 2 colonne · separatore «|»"_s, u"3 righe · 2 colonne · separatore «|»"_s},
    };
    for (const Case& each : cases) {
        const CSVTable table = CSVParser::parse(each.text);
        EXPECT_EQ(CSVColumns::summary(table, true), each.withHeader);
        EXPECT_EQ(CSVColumns::summary(table, false), each.withoutHeader);
    }
    EXPECT_EQ(CSVColumns::summary(CSVParser::parse(u"a"_s, U'\U0001F600'), true),
              u"0 righe · 1 colonne · separatore «\U0001F600»"_s);
}

} // namespace

} // namespace quillary
