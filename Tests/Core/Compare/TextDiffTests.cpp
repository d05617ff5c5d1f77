#include "QuillaryCore/Compare/TextDiff.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// A row in one line: the kind's mark, the numbers, and the segments with the changed ones in brackets.
QString told(const DiffRow& row) {
    const QString marks = u"=~-+"_s;
    QString text = marks[static_cast<int>(row.kind)];
    for (const std::optional<DiffSide>& side : {row.oldSide, row.newSide}) {
        text += u' ';
        if (!side) {
            text += u'/';
            continue;
        }
        text += QString::number(side->number) + u':';
        for (const DiffSegment& segment : side->segments) {
            text += segment.isChanged ? u'[' + segment.text.toString() + u']' : u'|' + segment.text.toString() + u'|';
        }
    }
    return text;
}

QStringList rows(const QString& oldText, const QString& newText) {
    QStringList result;
    const TextDiffResult compared = TextDiff::compare(oldText, newText);
    DiffStats counted;
    qsizetype id = 0;
    for (const DiffRow& row : compared.rows) {
        EXPECT_EQ(row.id, id++);
        counted.added += row.kind == DiffRow::Kind::added ? 1 : 0;
        counted.removed += row.kind == DiffRow::Kind::removed ? 1 : 0;
        counted.changed += row.kind == DiffRow::Kind::changed ? 1 : 0;
        result.append(told(row));
    }
    EXPECT_EQ(compared.stats, counted);
    return result;
}

QStringList texts(const QList<QStringView>& views) {
    QStringList result;
    for (const QStringView view : views) {
        result.append(view.toString());
    }
    return result;
}

QStringList linesOf(const QString& text) {
    return texts(TextDiff::lines(text));
}

QList<TextDiff::Operation> script(const QString& oldLines, const QString& newLines) {
    const QList<QStringView> from = QStringView(oldLines).split(u' ');
    const QList<QStringView> to = QStringView(newLines).split(u' ');
    return TextDiff::operations({from.constData(), static_cast<std::size_t>(from.size())},
                                {to.constData(), static_cast<std::size_t>(to.size())});
}

} // namespace

TEST(TextDiff, SplitsIntoLines) {
    EXPECT_EQ(linesOf(u""_s), QStringList());
    EXPECT_EQ(linesOf(u"\n"_s), QStringList{u""_s});
    EXPECT_EQ(linesOf(u"\r\n"_s), QStringList{u""_s});
    EXPECT_EQ(linesOf(u"a"_s), QStringList{u"a"_s});
    EXPECT_EQ(linesOf(u"a\n"_s), QStringList{u"a"_s});
    EXPECT_EQ(linesOf(u"a\n\n"_s), (QStringList{u"a"_s, u""_s}));
    EXPECT_EQ(linesOf(u"\na"_s), (QStringList{u""_s, u"a"_s}));
    EXPECT_EQ(linesOf(u"a\r\nb\r\n"_s), (QStringList{u"a"_s, u"b"_s}));
}

TEST(TextDiff, ALoneCarriageReturnStaysInItsLine) {
    EXPECT_EQ(linesOf(u"a\rb"_s), QStringList{u"a\rb"_s});
    EXPECT_EQ(linesOf(u"a\r"_s), QStringList{u"a\r"_s});
    EXPECT_EQ(linesOf(u"a\r\r\nb"_s), (QStringList{u"a\r"_s, u"b"_s}));
    EXPECT_EQ(linesOf(u"a\n\rb"_s), (QStringList{u"a"_s, u"\rb"_s}));
}

TEST(TextDiff, OnlyLineFeedsEndLines) {
    const QString others = u"a\u2028b\u2029c\u0085d\ve\ff"_s;
    EXPECT_EQ(linesOf(others), QStringList{others});
}

TEST(TextDiff, SplitsLinesOfAllLengths) {
    for (int length = 0; length < 200; ++length) {
        const QString line(length, u'x');
        EXPECT_EQ(linesOf(line + u'\n' + line + u"\r\n"_s + u'y'), (QStringList{line, line, u"y"_s}));
    }
}

TEST(TextDiff, TwoEmptyTextsHaveNoRows) {
    const TextDiffResult result = TextDiff::compare({}, {});
    EXPECT_TRUE(result.rows.isEmpty());
    EXPECT_EQ(result.stats, DiffStats());
    EXPECT_EQ(result, TextDiffResult());
}

TEST(TextDiff, AnEmptyTextAgainstLinesAddsThem) {
    EXPECT_EQ(rows({}, u"a\nb"_s), (QStringList{u"+ / 1:|a|"_s, u"+ / 2:|b|"_s}));
    EXPECT_EQ(TextDiff::compare({}, u"a\nb"_s).stats.added, 2);
    EXPECT_EQ(rows(u"a\nb"_s, {}), (QStringList{u"- 1:|a| /"_s, u"- 2:|b| /"_s}));
}

TEST(TextDiff, LineEndsMakeNoDifference) {
    EXPECT_EQ(rows(u"a\r\nb"_s, u"a\nb"_s), (QStringList{u"= 1:|a| 1:|a|"_s, u"= 2:|b| 2:|b|"_s}));
    EXPECT_EQ(rows(u"a"_s, u"a\n"_s), QStringList{u"= 1:|a| 1:|a|"_s});
}

TEST(TextDiff, AnEmptyLineIsALine) {
    EXPECT_EQ(rows({}, u"\n"_s), QStringList{u"+ / 1:||"_s});
    EXPECT_EQ(rows(u"\n"_s, u"\n\n"_s), (QStringList{u"= 1:|| 1:||"_s, u"+ / 2:||"_s}));
}

TEST(TextDiff, LinesPairByPositionAndTheOthersFollow) {
    EXPECT_EQ(rows(u"uno\ndue\ntre\nfine"_s, u"altro\nfine"_s),
              (QStringList{u"~ 1:|uno| 1:|altro|"_s, u"- 2:|due| /"_s, u"- 3:|tre| /"_s, u"= 4:|fine| 2:|fine|"_s}));
    EXPECT_EQ(rows(u"uno"_s, u"a\nb\nc"_s), (QStringList{u"~ 1:|uno| 1:|a|"_s, u"+ / 2:|b|"_s, u"+ / 3:|c|"_s}));
}

TEST(TextDiff, PairsDoNotReachAcrossAnUnchangedLine) {
    EXPECT_EQ(rows(u"via\nresta"_s, u"resta\nnuova"_s),
              (QStringList{u"- 1:|via| /"_s, u"= 2:|resta| 1:|resta|"_s, u"+ / 2:|nuova|"_s}));
}

TEST(TextDiff, EachSideCountsItsOwnLines) {
    EXPECT_EQ(rows(u"uguale\nx\nmille lire"_s, u"a\nb\nc\nuguale\nx\nmille euro"_s).last(),
              u"~ 3:|mille |[lire] 6:|mille |[euro]"_s);
}

TEST(TextDiff, EquivalentLinesAreUnchangedAndKeepTheirSpelling) {
    EXPECT_EQ(rows(u"perch\u00E9"_s, u"perche\u0301"_s), QStringList{u"= 1:|perch\u00E9| 1:|perche\u0301|"_s});
    EXPECT_EQ(rows(u"citt\u00E0 vecchia di mare"_s, u"citta\u0300 nuova di mare"_s),
              QStringList{u"~ 1:|citt\u00E0 |[vecchia]| di mare| 1:|citta\u0300 |[nuova]| di mare|"_s});
}

TEST(TextDiff, ALineWithoutTokensInAChangedRowHasNoSegments) {
    EXPECT_EQ(rows(u"\n"_s, u"a"_s), QStringList{u"~ 1: 1:[a]"_s});
    EXPECT_EQ(rows(u"una riga"_s, u"\n"_s), QStringList{u"~ 1:[una riga] 1:"_s});
}

TEST(TextDiff, InAChangedStretchRemovalsComeFirst) {
    using namespace TextDiff;
    EXPECT_EQ(script(u"a x y b"_s, u"a z b c"_s),
              (QList<Operation>{Same{0, 0}, Removed{1}, Removed{2}, Added{1}, Same{3, 2}, Added{3}}));
}

TEST(TextDiff, AScriptOfNothing) {
    EXPECT_TRUE(TextDiff::operations({}, {}).isEmpty());
    const std::vector<QStringView> line{u"a"};
    EXPECT_EQ(TextDiff::operations(line, {}), QList<TextDiff::Operation>{TextDiff::Removed{0}});
    EXPECT_EQ(TextDiff::operations({}, line), QList<TextDiff::Operation>{TextDiff::Added{0}});
}

TEST(TextDiff, ResultsOutliveTheTextsThatWereGiven) {
    TextDiffResult copy;
    {
        const QString oldText = QString(100, u'a') + u"\nb"_s;
        copy = TextDiff::compare(oldText, oldText + u"c"_s);
    }
    EXPECT_EQ(copy.rows[0].oldSide->segments.line(), QString(100, u'a'));
    EXPECT_EQ(copy.rows[1].newSide->segments.line(), u"bc");
}

TEST(TextDiff, ResultsAreEqualByWhatTheyShow) {
    EXPECT_EQ(TextDiff::compare(u"a\nb"_s, u"a\r\nb"_s), TextDiff::compare(u"a\r\nb\r\n"_s, u"a\nb"_s));
    EXPECT_NE(TextDiff::compare(u"a"_s, u"b"_s), TextDiff::compare(u"a"_s, u"c"_s));
    EXPECT_NE(TextDiff::compare(u"a"_s, {}), TextDiff::compare({}, u"a"_s));
}

TEST(TextDiff, HostileTextsCompare) {
    const QString hostile =
        QString(QChar(0xD800)) + u'\n' + QChar(0) + u"\n\uFFFE\uFDD0"_s + QChar(0xDC00) + u"\u0301"_s;
    EXPECT_EQ(TextDiff::compare(hostile, hostile).stats, DiffStats());
    EXPECT_EQ(TextDiff::compare(hostile, {}).stats.removed, 3);
    EXPECT_EQ(TextDiff::compare(hostile, u"a\nb\nc"_s).stats.changed, 3);
}

TEST(TextDiff, EndsWhenAStopIsAskedFor) {
    std::stop_source source;
    source.request_stop();
    EXPECT_TRUE(TextDiff::compare(u"a"_s, u"b"_s, source.get_token()).rows.isEmpty());
}
