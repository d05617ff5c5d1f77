#include "QuillaryCore/Formats/FormatDetector.h"

#include "Tests/Core/Formats/FormatsTestSupport.h"

#include <gmock/gmock.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

std::optional<NoteFormat> detected(const QString& text) {
    return FormatDetector::detect(text);
}

bool looksLikeCSV(const QString& text) {
    return FormatDetector::looksLikeCSV(text);
}

struct DetectorCase {
    const char* name;
    QString text;
    std::optional<NoteFormat> format;
};

void PrintTo(const DetectorCase& detectorCase, std::ostream* stream) {
    *stream << detectorCase.name;
}

class FormatDetectorFinds : public testing::TestWithParam<DetectorCase> {};

TEST_P(FormatDetectorFinds, TheFormat) {
    EXPECT_EQ(detected(GetParam().text), GetParam().format);
}

INSTANTIATE_TEST_SUITE_P(Announced, FormatDetectorFinds,
                         testing::Values(DetectorCase{"an empty text", u""_s, {}},
                                         DetectorCase{"whitespace", u" \t\r\n\v\f\u0085\u00A0\u2028\u2029\u3000"_s, {}},
                                         DetectorCase{"PHP", u"<?php echo 1;"_s, NoteFormat::php},
                                         DetectorCase{"PHP in capitals", u"\n <?PHP echo 1;"_s, NoteFormat::php},
                                         DetectorCase{"PHP alone", u"<?php"_s, NoteFormat::php},
                                         DetectorCase{"PHP by a longer name", u"<?phpx"_s, NoteFormat::php},
                                         DetectorCase{"a short tag", u"<? echo 1;"_s, {}},
                                         DetectorCase{"a marked last letter of PHP", u"<?php\u0301"_s, {}},
                                         DetectorCase{"a doctype", u"  <!DOCTYPE HTML>"_s, NoteFormat::html},
                                         DetectorCase{"a doctype alone", u"<!doctype html"_s, NoteFormat::html},
                                         DetectorCase{"a doctype without html", u"<!doctype"_s, {}},
                                         DetectorCase{"a doctype with two blanks", u"<!doctype  html>"_s, {}},
                                         DetectorCase{"a doctype of something else", u"<!doctype svg>"_s, {}},
                                         DetectorCase{"the html element", u"\u2003<Html lang=it>"_s, NoteFormat::html},
                                         DetectorCase{"a marked last letter of html", u"<html\u0301>"_s, {}},
                                         DetectorCase{"another element", u"<div>"_s, {}},
                                         DetectorCase{"a byte order mark before PHP", u"\uFEFF<?php"_s, {}},
                                         DetectorCase{"Markdown", u"# a\n\n- b\n- c, d\n\n[e](f)"_s, {}},
                                         DetectorCase{"a sentence", u"Ciao, come stai?"_s, {}},
                                         DetectorCase{"CSS", u"a { color: red; }"_s, {}},
                                         DetectorCase{"JavaScript", u"const a = 1;"_s, {}}));

INSTANTIATE_TEST_SUITE_P(
    JSON, FormatDetectorFinds,
    testing::Values(DetectorCase{"an object", u"{}"_s, NoteFormat::json},
                    DetectorCase{"an array", u" [1, 2]\n"_s, NoteFormat::json}, DetectorCase{"a number", u"42"_s, {}},
                    DetectorCase{"a string", u"\"a\""_s, {}}, DetectorCase{"true", u"true"_s, {}},
                    DetectorCase{"a byte order mark, which the parser would allow", u"\uFEFF{\"a\":1}"_s, {}},
                    DetectorCase{"a broken array", u"[1,2"_s, {}}, DetectorCase{"text behind", u"{} x"_s, {}},
                    DetectorCase{"a marked bracket", u"[\u0301]"_s, {}},
                    DetectorCase{"surrounded by whitespace that JSON doesn't know", u"\u00A0{}\u2028"_s,
                                 NoteFormat::json},
                    DetectorCase{"a bracket before a table", u"{a,b\nc,d\ne,f"_s, NoteFormat::csv},
                    DetectorCase{"a table of arrays", u"[1],2,3\n[4],5,6"_s, NoteFormat::csv},
                    DetectorCase{"levels beyond the parser's", u"["_s.repeated(101) + u"]"_s.repeated(101), {}},
                    DetectorCase{"a hundred levels", u"["_s.repeated(100) + u"]"_s.repeated(100), NoteFormat::json}));

INSTANTIATE_TEST_SUITE_P(
    CSV, FormatDetectorFinds,
    testing::Values(DetectorCase{"two by two", u"a,b\nc,d"_s, {}},
                    DetectorCase{"three fields in two rows", u"a,b,c\nd,e,f"_s, NoteFormat::csv},
                    DetectorCase{"two fields in three rows", u"a,b\nc,d\ne,f\n"_s, NoteFormat::csv},
                    DetectorCase{"one row", u"a,b,c"_s, {}}, DetectorCase{"one column", u"a\nb\nc"_s, {}},
                    DetectorCase{"unequal rows", u"a,b,c\nd,e\nf,g,h"_s, {}},
                    DetectorCase{"semicolons", u"a;b;c\nd;e;f"_s, NoteFormat::csv},
                    DetectorCase{"tabs", u"a\tb\tc\nd\te\tf"_s, NoteFormat::csv},
                    DetectorCase{"bars", u"a|b|c\nd|e|f"_s, NoteFormat::csv},
                    DetectorCase{"a tab at the end is trimmed away", u"a\tb\t\nc\td\t"_s, {}},
                    DetectorCase{"quoted fields over lines", u"a,\"b\nc\",d\ne,f,g"_s, NoteFormat::csv},
                    DetectorCase{"blank lines between rows", u"a,b,c\n\nd,e,f"_s, NoteFormat::csv},
                    DetectorCase{"thirty rows, then another length", u"a,b\n"_s.repeated(30) + u"c"_s, NoteFormat::csv},
                    DetectorCase{"the thirtieth row of another length", u"a,b\n"_s.repeated(29) + u"c,d,e"_s, {}}));

/// A table of rows of two fields that has as many characters as asked for; the last row is longer than the others.
QString tableOf(qsizetype characters, qsizetype rows, const QString& lastRow) {
    QString table = u"a,b\n"_s.repeated(rows - 1);
    const qsizetype filling = characters - table.size() - lastRow.size() + 1;
    table.insert(0, QString(filling - 1, u'x'));
    return table + lastRow;
}

TEST(FormatDetector, LooksAtTheLastRowOfAWholeText) {
    const QString whole = tableOf(20'000, 5, u"a,b,c"_s);
    ASSERT_EQ(whole.size(), 20'000);
    EXPECT_FALSE(looksLikeCSV(whole));
    EXPECT_TRUE(looksLikeCSV(tableOf(20'000, 5, u"a,b"_s)));
}

TEST(FormatDetector, DropsTheLastRowOfACutText) {
    const QString cut = tableOf(20'001, 5, u"a,b,c"_s);
    ASSERT_EQ(cut.size(), 20'001);
    EXPECT_TRUE(looksLikeCSV(cut));
    // Two rows of two remain of three.
    EXPECT_TRUE(looksLikeCSV(tableOf(20'000, 3, u"a,b"_s)));
    EXPECT_FALSE(looksLikeCSV(tableOf(20'001, 3, u"a,b"_s)));
    // One remains of two, and one stays of one.
    EXPECT_FALSE(looksLikeCSV(u"a,b,c\nd,e,"_s + QString(20'001, u'f')));
    EXPECT_FALSE(looksLikeCSV(u"a,b,"_s + QString(20'001, u'c')));
}

TEST(FormatDetector, LooksAtTwentyNineRowsOfALongText) {
    const QString filler = QString(20'001, u'x') + u",y\n"_s;
    const auto withOddRow = [&](int row) {
        QString text;
        for (int i = 1; i <= 40; ++i) {
            text += i == row ? u"a,b,c\n"_s : u"a,b\n"_s;
        }
        return QString(text + filler);
    };
    EXPECT_FALSE(looksLikeCSV(withOddRow(29)));
    EXPECT_TRUE(looksLikeCSV(withOddRow(30)));
    EXPECT_TRUE(looksLikeCSV(withOddRow(31)));
}

TEST(FormatDetector, CountsCharactersAndNotUnits) {
    // Characters of two, three and eleven units: the text ends at the 20,000th.
    for (const QString& character : {u"e\u0301"_s, u"e\u0301\u0302"_s,
                                     u"\U0001F468\u200D\U0001F469\u200D\U0001F467\u200D\U0001F466"_s, u"\r\n"_s}) {
        const QString tail = u"\na,b\na,b,c"_s;
        const qsizetype filling = 20'000 - 2 - tail.size();
        const QString head = character == u"\r\n"_s ? QString() : u"x,"_s;
        const QString first = character == u"\r\n"_s ? u"x,"_s : QString();
        const QString text = head + character.repeated(filling) + first + tail;
        EXPECT_FALSE(looksLikeCSV(text));
        EXPECT_FALSE(looksLikeCSV(text + u"d"_s)) << "two rows of two remain";
        const QString longer = head + character.repeated(filling) + first + u"\na,b"_s + tail;
        EXPECT_TRUE(looksLikeCSV(longer));
    }
}

TEST(FormatDetector, ReadsAPasteOfAMillionUnitsOnce) {
    EXPECT_EQ(detected(u" "_s.repeated(1'000'000)), std::nullopt);
    EXPECT_EQ(detected(u" "_s.repeated(500'000) + u"x"_s + u" "_s.repeated(500'000)), std::nullopt);
    EXPECT_EQ(detected(u"[1,"_s + u"2,"_s.repeated(500'000) + u"3]"_s), NoteFormat::json);
    EXPECT_EQ(detected(u"[1,"_s + u"2,"_s.repeated(500'000) + u"3"_s), std::nullopt);
    EXPECT_EQ(detected(u"a,b,c\n"_s.repeated(170'000)), NoteFormat::csv);
    EXPECT_EQ(detected(QString(1'000'000, QChar(0x301))), std::nullopt);
    EXPECT_EQ(detected(u"\U0001F1EE"_s.repeated(500'000)), std::nullopt);
    EXPECT_EQ(detected(u"a,"_s + QString(1'000'000, QChar(0x301))), std::nullopt);
    EXPECT_EQ(detected(QString(1'000'000, u'"')), std::nullopt);
    EXPECT_EQ(detected(u"["_s.repeated(1'000'000)), std::nullopt);
}

} // namespace

} // namespace quillary
