#include "QuillaryCore/Compare/TextDiff.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

QStringList tokens(const QString& line) {
    QStringList result;
    for (const QStringView token : TextDiff::tokens(line)) {
        result.append(token.toString());
    }
    return result;
}

QString told(const QList<DiffSegment>& segments) {
    QString text;
    for (const DiffSegment& segment : segments) {
        text += segment.isChanged ? u'[' + segment.text.toString() + u']' : u'|' + segment.text.toString() + u'|';
    }
    return text;
}

struct Case {
    QString oldLine;
    QString newLine;
    QString oldSegments;
    QString newSegments;
};

void expectSegments(const QList<Case>& cases) {
    for (const Case& each : cases) {
        const TextDiff::WordSegments segments = TextDiff::wordSegments(each.oldLine, each.newLine);
        EXPECT_EQ(told(segments.oldSegments), each.oldSegments) << each.oldLine.toStdString();
        EXPECT_EQ(told(segments.newSegments), each.newSegments) << each.newLine.toStdString();
    }
}

} // namespace

TEST(WordTokens, AreRunsOfWordsAndBlanksAndEachOtherCharacter) {
    EXPECT_EQ(tokens({}), QStringList());
    EXPECT_EQ(tokens(u"ab  !!"_s), (QStringList{u"ab"_s, u"  "_s, u"!"_s, u"!"_s}));
    EXPECT_EQ(tokens(u"a_1 = x+2;"_s), (QStringList{u"a_1"_s, u" "_s, u"="_s, u" "_s, u"x"_s, u"+"_s, u"2"_s, u";"_s}));
    EXPECT_EQ(tokens(u" \t\u00A0\u2003x"_s), (QStringList{u" \t\u00A0\u2003"_s, u"x"_s}));
    EXPECT_EQ(tokens(u"a\r\r\nb"_s), (QStringList{u"a"_s, u"\r\r\n"_s, u"b"_s}));
}

TEST(WordTokens, LettersAndNumbersAreThoseOfUnicode) {
    EXPECT_EQ(tokens(u"citt\u00E0\u03BB\u4E2D\u0663\u00BD\u2167"_s),
              QStringList{u"citt\u00E0\u03BB\u4E2D\u0663\u00BD\u2167"_s});
    EXPECT_EQ(tokens(u"\U0001D400\U00020000"_s), QStringList{u"\U0001D400\U00020000"_s});
    EXPECT_EQ(tokens(u"\u20AC5"_s), (QStringList{u"\u20AC"_s, u"5"_s}));
}

TEST(WordTokens, AreMadeOfWholeCharacters) {
    EXPECT_EQ(tokens(u"cafe\u0301 s\u0323\u0307i"_s), (QStringList{u"cafe\u0301"_s, u" "_s, u"s\u0323\u0307i"_s}));
    const QString family = u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s;
    const QString flag = u"\U0001F1EE\U0001F1F9"_s;
    EXPECT_EQ(tokens(family + family + flag + flag), (QStringList{family, family, flag, flag}));
    // A low line with a mark is another character.
    EXPECT_EQ(tokens(u"a_\u0301b"_s), (QStringList{u"a"_s, u"_\u0301"_s, u"b"_s}));
    // The class is that of the first scalar.
    EXPECT_EQ(tokens(u"a \u0301b"_s), (QStringList{u"a"_s, u" \u0301"_s, u"b"_s}));
    EXPECT_EQ(tokens(u"1\uFE0F\u20E3a"_s), QStringList{u"1\uFE0F\u20E3a"_s});
}

TEST(WordTokens, ALoneSurrogateIsACharacter) {
    const QString high(QChar(0xD83D));
    EXPECT_EQ(tokens(u"a"_s + high + u"b"_s), (QStringList{u"a"_s, high, u"b"_s}));
}

TEST(WordSegments, MarkWhatChanged) {
    expectSegments({
        {u"totale: 10"_s, u"totale: 20"_s, u"|totale: |[10]"_s, u"|totale: |[20]"_s},
        {u"il gatto nero dorme"_s, u"il gatto dorme"_s, u"|il gatto |[nero ]|dorme|"_s, u"|il gatto dorme|"_s},
        {u"uguale"_s, u"uguale"_s, u"|uguale|"_s, u"|uguale|"_s},
    });
}

TEST(WordSegments, ABlankBetweenTwoChangedWordsIsChangedToo) {
    expectSegments({
        {u"ecco foo bar qui da noi"_s, u"ecco baz qux qui da noi"_s, u"|ecco |[foo bar]| qui da noi|"_s,
         u"|ecco |[baz qux]| qui da noi|"_s},
        // Marks of punctuation bridge nothing, and neither do the ends of a line.
        {u"ecco foo,bar qui da noi"_s, u"ecco baz,qux qui da noi"_s, u"|ecco |[foo]|,|[bar]| qui da noi|"_s,
         u"|ecco |[baz]|,|[qux]| qui da noi|"_s},
        {u" uno resta qui con noi"_s, u" due resta qui con noi"_s, u"| |[uno]| resta qui con noi|"_s,
         u"| |[due]| resta qui con noi|"_s},
    });
}

TEST(WordSegments, LinesWithLittleInCommonHaveNoMarks) {
    expectSegments({
        {u"uno"_s, u"due"_s, u"|uno|"_s, u"|due|"_s},
        {u"abc, def"_s, u"ghi; jkl"_s, u"|abc, def|"_s, u"|ghi; jkl|"_s},
    });
}

TEST(WordSegments, TheBorderItselfKeepsTheMarks) {
    // 13 of 20 characters are 0.65.
    expectSegments({
        {u"aaaaaaaaaaaaa;;;;;;;"_s, u"bbbbbbbbbbbbb;;;;;;;"_s, u"[aaaaaaaaaaaaa]|;;;;;;;|"_s,
         u"[bbbbbbbbbbbbb]|;;;;;;;|"_s},
        {u"aaaaaaaaaaaaaa;;;;;;;"_s, u"bbbbbbbbbbbbbb;;;;;;;"_s, u"|aaaaaaaaaaaaaa;;;;;;;|"_s,
         u"|bbbbbbbbbbbbbb;;;;;;;|"_s},
    });
}

TEST(WordSegments, OneSideBelowTheBorderKeepsTheMarksOfBoth) {
    expectSegments({{u"aaaaaaaaaaaaaaaaaaaa;"_s, u"b;"_s, u"[aaaaaaaaaaaaaaaaaaaa]|;|"_s, u"[b]|;|"_s},
                    {u"b;"_s, u"aaaaaaaaaaaaaaaaaaaa;"_s, u"[b]|;|"_s, u"[aaaaaaaaaaaaaaaaaaaa]|;|"_s}});
}

TEST(WordSegments, SharesCountCharactersAndNotUnits) {
    // Seven of twenty characters are left, whatever they and the others take.
    const QString marked = u"e\u0323\u0302"_s;
    const QString family = u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s;
    expectSegments({
        {marked.repeated(13) + u";;;;;;;"_s, u"bbbbbbbbbbbbb;;;;;;;"_s, u'[' + marked.repeated(13) + u"]|;;;;;;;|"_s,
         u"[bbbbbbbbbbbbb]|;;;;;;;|"_s},
        {u"aaaaaaaaaaaaaa"_s + family.repeated(7), u"bbbbbbbbbbbbbb"_s + family.repeated(7),
         u"|aaaaaaaaaaaaaa"_s + family.repeated(7) + u'|', u"|bbbbbbbbbbbbbb"_s + family.repeated(7) + u'|'},
    });
}

TEST(WordSegments, AnEmptyLineHasNoneAndItsShareIsNothing) {
    expectSegments({
        {u"parola"_s, {}, u"[parola]"_s, {}},
        {{}, u"parola"_s, {}, u"[parola]"_s},
        {{}, {}, {}, {}},
    });
}

TEST(WordSegments, EquivalentWordsAreEqual) {
    expectSegments({{u"perch\u00E9 no"_s, u"perche\u0301 si"_s, u"|perch\u00E9 |[no]"_s, u"|perche\u0301 |[si]"_s}});
}

TEST(WordSegments, WordsThatOnlyDifferInTheirMiddleAreOthers) {
    expectSegments({{u"lungaXXXXXfine resta qui"_s, u"lungaYYYYYfine resta qui"_s, u"[lungaXXXXXfine]| resta qui|"_s,
                     u"[lungaYYYYYfine]| resta qui|"_s},
                    {u"aba resta qui"_s, u"aca resta qui"_s, u"[aba]| resta qui|"_s, u"[aca]| resta qui|"_s},
                    {u"a resta qui"_s, u"aa resta qui"_s, u"[a]| resta qui|"_s, u"[aa]| resta qui|"_s}});
}

TEST(WordSegments, LongLinesAreMarkedAsShortOnes) {
    // Around the numbers of tokens where another way of comparing takes over.
    for (const int words : {20, 31, 32, 33, 63, 64, 65, 200, 3000}) {
        const QString common = u"ab "_s.repeated(words);
        expectSegments({{common + u"x"_s, common + u"y"_s, u'|' + common + u"|[x]"_s, u'|' + common + u"|[y]"_s},
                        {u"x "_s + common, u"y "_s + common, u"[x]| "_s + common + u'|', u"[y]| "_s + common + u'|'},
                        {u"ab"_s, common, u"|ab|"_s, u"|ab|["_s + common.sliced(2) + u']'}});
    }
}

TEST(WordSegments, AMegabyteInOneLineIsCompared) {
    QString oldLine;
    for (int i = 0; oldLine.size() < 1'000'000; ++i) {
        oldLine += u"{\"id\":%1,\"nome\":\"voce %2\"},"_s.arg(i).arg(i * 7 % 1000);
    }
    QString newLine = oldLine;
    newLine.replace(u"\"id\":500,"_s, u"\"id\":x500,"_s);
    newLine.append(u"fine"_s);
    const TextDiff::WordSegments segments = TextDiff::wordSegments(oldLine, newLine);
    EXPECT_EQ(segments.oldSegments.size(), 3);
    ASSERT_EQ(segments.newSegments.size(), 4);
    EXPECT_EQ(segments.newSegments[1].text, u"x500");
    EXPECT_EQ(segments.newSegments[3].text, u"fine");
}
