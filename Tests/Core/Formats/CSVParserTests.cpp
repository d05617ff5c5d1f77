#include "QuillaryCore/Formats/CSVParser.h"

#include "Tests/Core/Formats/CSVReference.h"
#include "Tests/Core/Formats/FormatsTestSupport.h"

#include <gmock/gmock.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

using Rows = QList<QStringList>;

Rows rowsOf(const CSVTable& table) {
    Rows rows;
    for (qsizetype r = 0; r < table.rowCount(); ++r) {
        QStringList row;
        for (const QStringView cell : table.row(r)) {
            row.append(cell.toString());
        }
        rows.append(row);
    }
    return rows;
}

struct ParseCase {
    const char* name;
    QString text;
    Rows rows;
    char32_t delimiter = U',';
};

void PrintTo(const ParseCase& parseCase, std::ostream* stream) {
    *stream << parseCase.name;
}

class CSVParserReads : public testing::TestWithParam<ParseCase> {};

TEST_P(CSVParserReads, TheRows) {
    const CSVTable table = CSVParser::parse(GetParam().text);
    EXPECT_EQ(rowsOf(table), GetParam().rows);
    EXPECT_EQ(table.delimiter(), GetParam().delimiter);
    qsizetype longest = 0;
    for (const QStringList& row : GetParam().rows) {
        longest = std::max(longest, row.size());
    }
    EXPECT_EQ(table.columnCount(), longest);
    EXPECT_EQ(CSVReference::parse(GetParam().text, GetParam().delimiter), GetParam().rows);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, CSVParserReads,
    testing::Values(
        ParseCase{"an empty text", u""_s, {}}, ParseCase{"only blank lines", u"\n\r\n\r\n\n"_s, {}},
        ParseCase{"one column", u"a\nb"_s, {{u"a"_s}, {u"b"_s}}},
        ParseCase{"a text without a delimiter in some line", u"a;b\nc"_s, {{u"a;b"_s}, {u"c"_s}}},
        ParseCase{"an empty last field", u"a,b,\n"_s, {{u"a"_s, u"b"_s, u""_s}}},
        ParseCase{"an empty last field at the end of the text", u"a,"_s, {{u"a"_s, u""_s}}},
        ParseCase{"a comma alone", u","_s, {{u""_s, u""_s}}},
        ParseCase{"a blank line between rows", u"a,b\n\nc,d"_s, {{u"a"_s, u"b"_s}, {u"c"_s, u"d"_s}}},
        ParseCase{"a line of blanks is no blank line", u"a\n \nb"_s, {{u"a"_s}, {u" "_s}, {u"b"_s}}},
        ParseCase{"a line of an empty quoted field", u"a\n\"\"\nb"_s, {{u"a"_s}, {u"b"_s}}},
        ParseCase{"an empty quoted field at the end", u"a\n\"\""_s, {{u"a"_s}}},
        ParseCase{"an empty quoted field beside another", u"\"\",\"\""_s, {{u""_s, u""_s}}},
        ParseCase{"a quote alone", u"\""_s, {}},
        ParseCase{"a quote alone behind a comma", u"a,\""_s, {{u"a"_s, u""_s}}},
        ParseCase{"a doubled quote", u"\"a\"\"b\""_s, {{u"a\"b"_s}}},
        ParseCase{"four quotes", u"\"\"\"\""_s, {{u"\""_s}}}, ParseCase{"three quotes", u"\"\"\""_s, {{u"\""_s}}},
        ParseCase{"many doubled quotes", u"\"a\"\"b\"\"c\"\"\",d"_s, {{u"a\"b\"c\""_s, u"d"_s}}},
        ParseCase{"a quote within a field", u"a\"b"_s, {{u"a\"b"_s}}},
        ParseCase{"a quote behind a blank", u"a \"b"_s, {{u"a \"b"_s}}},
        ParseCase{"a quote behind a blank at the start", u" \"b\""_s, {{u" \"b\""_s}}},
        ParseCase{"text behind a closing quote", u"\"ab\"cd"_s, {{u"abcd"_s}}},
        ParseCase{"quotes behind a closing quote", u"\"ab\"c\"d\"\"e"_s, {{u"abc\"d\"\"e"_s}}},
        ParseCase{"an empty quoted field and text", u"\"\"x\"y"_s, {{u"x\"y"_s}}},
        ParseCase{"text behind a closing quote up to a comma", u"\"a\"b,c"_s, {{u"ab"_s, u"c"_s}}},
        ParseCase{"line ends in quotes", u"\"a\r\nb\rc\nd\",e"_s, {{u"a\r\nb\rc\nd"_s, u"e"_s}}},
        ParseCase{"a delimiter in quotes", u"\"a,b\",c\n1,2"_s, {{u"a,b"_s, u"c"_s}, {u"1"_s, u"2"_s}}},
        ParseCase{"a quote that stays open", u"a,\"b\nc,d"_s, {{u"a"_s, u"b\nc,d"_s}}},
        ParseCase{
            "carriage returns alone", u"a,b\rc,d\r\re,f"_s, {{u"a"_s, u"b"_s}, {u"c"_s, u"d"_s}, {u"e"_s, u"f"_s}}},
        ParseCase{"carriage returns with line feeds", u"a,b\r\nc,d\r\n"_s, {{u"a"_s, u"b"_s}, {u"c"_s, u"d"_s}}},
        ParseCase{"line feed before carriage return", u"a,b\n\rc,d"_s, {{u"a"_s, u"b"_s}, {u"c"_s, u"d"_s}}},
        ParseCase{"other line ends are part of a field",
                  u"a,b\u2028c,d\u0085e,f"_s,
                  {{u"a"_s, u"b\u2028c"_s, u"d\u0085e"_s, u"f"_s}}},
        ParseCase{"ragged rows",
                  u"a,b,c\nd,e\nf,g,h,i"_s,
                  {{u"a"_s, u"b"_s, u"c"_s}, {u"d"_s, u"e"_s}, {u"f"_s, u"g"_s, u"h"_s, u"i"_s}}},
        ParseCase{
            "a carriage return and a combining mark", u"a,b\r\u0301c,d"_s, {{u"a"_s, u"b"_s}, {u"\u0301c"_s, u"d"_s}}},
        ParseCase{"a delimiter and a combining mark", u"a,\u0301b"_s, {{u"a"_s, u"\u0301b"_s}}},
        ParseCase{"a quote and a combining mark", u"\"\u0301a,b\"\u0301,c"_s, {{u"\u0301a,b\u0301"_s, u"c"_s}}},
        ParseCase{"a NUL", u"a,\0b"_s, {{u"a"_s, u"\0b"_s}}},
        ParseCase{"a byte order mark before a quote", u"\uFEFF\"a\",b"_s, {{u"\uFEFF\"a\""_s, u"b"_s}}},
        ParseCase{"tabs", u"a\tb\nc\td"_s, {{u"a"_s, u"b"_s}, {u"c"_s, u"d"_s}}, U'\t'},
        ParseCase{"semicolons", u"1;2\n3;4"_s, {{u"1"_s, u"2"_s}, {u"3"_s, u"4"_s}}, U';'},
        ParseCase{
            "decimal commas draw with semicolons and win", u"1,5;2\n3,5;4"_s, {{u"1"_s, u"5;2"_s}, {u"3"_s, u"5;4"_s}}},
        ParseCase{"bars", u"a|b\nc|d"_s, {{u"a"_s, u"b"_s}, {u"c"_s, u"d"_s}}, U'|'}));

TEST(CSVParser, ReadsWithTheGivenDelimiterAndDetectsNothing) {
    struct Case {
        char32_t delimiter;
        QString text;
        Rows rows;
    };

    const std::vector<Case> cases{
        {U';', u"a,b;c"_s, {{u"a,b"_s, u"c"_s}}},
        {U'x', u"axb\ncxd"_s, {{u"a"_s, u"b"_s}, {u"c"_s, u"d"_s}}},
        {U'\u20AC', u"a\u20ACb"_s, {{u"a"_s, u"b"_s}}},
        {U'\U0001F600', u"a\U0001F600b\U0001F601c\U0001F600"_s, {{u"a"_s, u"b\U0001F601c"_s, u""_s}}},
        {U'\n', u"a\nb\rc"_s, {{u"a"_s, u"b"_s}, {u"c"_s}}},
        {U'\r', u"a\rb\nc\r\nd"_s, {{u"a"_s, u"b"_s}, {u"c"_s, u""_s}, {u"d"_s}}},
        {U'"', u"a\"b\"\"c,\"\nd\""_s, {{u"a"_s, u"b"_s, u""_s, u"c,"_s, u""_s}, {u"d"_s, u""_s}}},
        {U'\0', u"a\0b"_s, {{u"a"_s, u"b"_s}}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(static_cast<unsigned>(each.delimiter));
        const CSVTable table = CSVParser::parse(each.text, each.delimiter);
        EXPECT_EQ(rowsOf(table), CSVReference::parse(each.text, each.delimiter));
        if (each.delimiter != U'"') {
            EXPECT_EQ(rowsOf(table), each.rows);
        }
        EXPECT_EQ(table.delimiter(), each.delimiter);
    }
}

TEST(CSVParser, KeepsLoneSurrogatesAndNeverSplitsAtThem) {
    const QString text = u"a"_s + QChar(0xD83D) + u",b"_s + QChar(0xDE00);
    EXPECT_EQ(rowsOf(CSVParser::parse(text)), (Rows{{u"a"_s + QChar(0xD83D), u"b"_s + QChar(0xDE00)}}));
    EXPECT_EQ(rowsOf(CSVParser::parse(text, 0xD83D)), (Rows{{text}}));
    EXPECT_EQ(rowsOf(CSVParser::parse(u"a\U0001F600"_s, U'\U0001F600')), (Rows{{u"a"_s, u""_s}}));
    const QString half = u"a"_s + QChar(0xD83D);
    EXPECT_EQ(rowsOf(CSVParser::parse(half, U'\U0001F600')), (Rows{{half}}));
}

struct DetectionCase {
    const char* name;
    QString text;
    char32_t delimiter;
};

void PrintTo(const DetectionCase& detectionCase, std::ostream* stream) {
    *stream << detectionCase.name;
}

class CSVParserDetects : public testing::TestWithParam<DetectionCase> {};

TEST_P(CSVParserDetects, TheDelimiter) {
    EXPECT_EQ(CSVParser::detectDelimiter(GetParam().text), GetParam().delimiter);
    EXPECT_EQ(CSVReference::detectDelimiter(GetParam().text), GetParam().delimiter);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, CSVParserDetects,
    testing::Values(DetectionCase{"an empty text", u""_s, U','},
                    DetectionCase{"only newlines", u"\n\r\n\v\f\u0085\u2028\u2029"_s, U','},
                    DetectionCase{"no candidate at all", u"a\nb"_s, U','},
                    DetectionCase{"a line that lacks the candidate", u"a;b\nc"_s, U','},
                    DetectionCase{"each candidate alone: semicolon", u"a;b"_s, U';'},
                    DetectionCase{"each candidate alone: tab", u"a\tb"_s, U'\t'},
                    DetectionCase{"each candidate alone: bar", u"a|b"_s, U'|'},
                    DetectionCase{"a steady one beats a wavering two", u"a;b,c,d\na;b,c,d,e"_s, U';'},
                    DetectionCase{"a wavering eleven beats a steady one", u"a;b,,,,,,,,,,,\na;b,,,,,,,,,,,,"_s, U','},
                    DetectionCase{"a wavering ten only draws with a steady one, and stands before it",
                                  u"a;b,,,,,,,,,,\na;b,,,,,,,,,,,"_s, U','},
                    DetectionCase{"steadily twice both, by order", u"a,b,c;d;e\na,b,c;d;e"_s, U','},
                    DetectionCase{"steadily twice semicolon and bar, by order", u"a|b|c;d;e"_s, U';'},
                    DetectionCase{"delimiters in quotes", u"\"a,b,c\";d\n\"e,f,g\";h"_s, U';'},
                    DetectionCase{"an odd quote hides the rest of its line", u"a;\"b;c\na;b"_s, U';'},
                    DetectionCase{"an odd quote hides the only delimiter of a line", u"\"a;b\nc;d"_s, U','},
                    DetectionCase{"doubled quotes open and close", u"\"a\"\",\"b\";c"_s, U','},
                    DetectionCase{"empty lines don't count", u"a;b\n\n\nc;d\n"_s, U';'},
                    DetectionCase{"carriage return with line feed", u"a;b\r\nc;d\r\n"_s, U';'},
                    DetectionCase{"all newlines split", u"a;b\vc;d\fe;f\rg;h\u0085i;j\u2028k;l\u2029m;n"_s, U';'},
                    DetectionCase{"a line of one mark is a line", u"a;b\n\u0301"_s, U','},
                    DetectionCase{"the eleventh line isn't looked at", u"1;\n2;\n3;\n4;\n5;\n6;\n7;\n8;\n9;\n10;\nno"_s,
                                  U';'},
                    DetectionCase{"the tenth is", u"1;\n2;\n3;\n4;\n5;\n6;\n7;\n8;\n9;\nno"_s, U','}));

TEST(CSVParser, CountsOccurrencesOutsideQuotes) {
    EXPECT_EQ(CSVParser::occurrences(U',', u""), 0);
    EXPECT_EQ(CSVParser::occurrences(U',', u"a,b,,c"), 3);
    EXPECT_EQ(CSVParser::occurrences(U',', u"\"a,b\",c"), 1);
    EXPECT_EQ(CSVParser::occurrences(U',', u"a,\"b,c"), 1);
    EXPECT_EQ(CSVParser::occurrences(U',', u"\"a\"\",\",b"), 1);
    EXPECT_EQ(CSVParser::occurrences(U',', u",\u0301,"), 2);
    EXPECT_EQ(CSVParser::occurrences(U'\U0001F600', u"\U0001F600\U0001F601\U0001F600"), 2);
}

TEST(CSVParser, AgreesWithTheRulesOnRandomTexts) {
    formats_test::RandomTexts texts({u"\""_s, u"\"\""_s, u","_s, u";"_s, u"\t"_s, u"|"_s, u"\n"_s, u"\r"_s, u"\r\n"_s,
                                     u"a"_s, u"bcdefghijklmnopq"_s, u" "_s, u"\u0301"_s, u"\u2028"_s, u"\U0001F600"_s},
                                    7);
    for (int i = 0; i < 20'000; ++i) {
        const QString text = texts.next(i % 100 == 0 ? 400 : 40);
        const CSVTable table = CSVParser::parse(text);
        ASSERT_EQ(table.delimiter(), CSVReference::detectDelimiter(text)) << testing::PrintToString(text);
        ASSERT_EQ(rowsOf(table), CSVReference::parse(text, table.delimiter())) << testing::PrintToString(text);
    }
}

TEST(CSVParser, ReadsTheFilesOfTheMachine) {
    for (const QString& text : formats_test::textsUnder(u"/usr/share"_s, {u"*.csv"_s, u"*.tsv"_s, u"*.tab"_s}, 40)) {
        const CSVTable table = CSVParser::parse(text);
        ASSERT_EQ(rowsOf(table), CSVReference::parse(text, table.delimiter()));
    }
}

TEST(CSVTable, IsEqualByRowsAndDelimiter) {
    const CSVTable table = CSVParser::parse(u"a,\"b\"\"c\"\nd,e"_s);
    EXPECT_EQ(table, CSVParser::parse(u"\"a\",\"b\"\"c\"\r\n\r\nd,e\r\n"_s));
    EXPECT_FALSE(table == CSVParser::parse(u"a,\"b\"\"c\"\nd,f"_s));
    EXPECT_FALSE(table == CSVParser::parse(u"a,\"b\"\"c\",d,e"_s));
    EXPECT_FALSE(CSVParser::parse(u"a"_s, U',') == CSVParser::parse(u"a"_s, U';'));
    EXPECT_EQ(CSVTable(), CSVParser::parse(u""_s));
}

TEST(CSVTable, OutlivesTheTextItWasReadFrom) {
    QString text = u"a,\"b\"\"c\"\nd,e"_s;
    CSVTable table = CSVParser::parse(text);
    text.fill(u'x');
    const CSVTable copy = table;
    table = CSVTable();
    EXPECT_EQ(rowsOf(copy), (Rows{{u"a"_s, u"b\"c"_s}, {u"d"_s, u"e"_s}}));
    EXPECT_EQ(table.rowCount(), 0);
}

} // namespace

} // namespace quillary
