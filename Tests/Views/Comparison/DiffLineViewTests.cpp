#include "Quillary/Comparison/DiffLineView.h"

#include "Quillary/Comparison/DiffTexts.h"
#include "Quillary/Comparison/SideBySideRow.h"
#include "Quillary/Comparison/UnifiedRows.h"
#include "QuillaryCore/Compare/TextDiff.h"

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

using Tone = DiffLineView::Tone;

/// A line as it is told: numbers, tone and text.
QString told(const DiffLineView& line) {
    QString text;
    for (const std::optional<qsizetype>& number : line.numbers) {
        text += number ? QString::number(*number) : u"-"_s;
        text += u' ';
    }
    text += QStringList{u"neutral"_s, u"removed"_s, u"added"_s, u"empty"_s}[static_cast<int>(line.tone)];
    return line.segments ? text + u' ' + line.segments->line().toString() : text;
}

QStringList sideBySide(const DiffRow& row) {
    const auto halves = SideBySideRow::halves(row);
    return {told(halves[0]), told(halves[1])};
}

QStringList unified(const DiffRow& row) {
    QStringList result;
    for (const DiffLineView& line : UnifiedRows::lines(row)) {
        result.append(told(line));
    }
    return result;
}

/// One row of each kind: unchanged, changed, removed, unchanged, added.
class RowsOfAllKinds : public testing::Test {
protected:
    const DiffRows rows = TextDiff::compare(u"a\nb uno\nc\nd"_s, u"a\nb due\nd\ne"_s).rows;
};

} // namespace

TEST_F(RowsOfAllKinds, HaveHalvesByTheirKind) {
    EXPECT_EQ(sideBySide(rows[0]), (QStringList{u"1 neutral a"_s, u"1 neutral a"_s}));
    EXPECT_EQ(sideBySide(rows[1]), (QStringList{u"2 removed b uno"_s, u"2 added b due"_s}));
    EXPECT_EQ(sideBySide(rows[2]), (QStringList{u"3 removed c"_s, u"- empty"_s}));
    EXPECT_EQ(sideBySide(rows[3]), (QStringList{u"4 neutral d"_s, u"3 neutral d"_s}));
    EXPECT_EQ(sideBySide(rows[4]), (QStringList{u"- empty"_s, u"4 added e"_s}));
}

TEST_F(RowsOfAllKinds, HaveLinesInOneColumnByTheirKind) {
    EXPECT_EQ(unified(rows[0]), QStringList{u"1 1 neutral a"_s});
    EXPECT_EQ(unified(rows[1]), (QStringList{u"2 - removed b uno"_s, u"- 2 added b due"_s}));
    EXPECT_EQ(unified(rows[2]), QStringList{u"3 - removed c"_s});
    EXPECT_EQ(unified(rows[3]), QStringList{u"4 3 neutral d"_s});
    EXPECT_EQ(unified(rows[4]), QStringList{u"- 4 added e"_s});
}

TEST_F(RowsOfAllKinds, AreToldByKindNumbersAndText) {
    EXPECT_EQ(DiffTexts::description(rows[0]), u"Riga uguale 1: a"_s);
    EXPECT_EQ(DiffTexts::description(rows[1]), u"Riga modificata 2: b uno; ora riga 2: b due"_s);
    EXPECT_EQ(DiffTexts::description(rows[2]), u"Riga rimossa 3: c"_s);
    EXPECT_EQ(DiffTexts::description(rows[3]), u"Riga uguale 4, ora 3: d"_s);
    EXPECT_EQ(DiffTexts::description(rows[4]), u"Riga aggiunta 4: e"_s);
    EXPECT_EQ(DiffTexts::fold(12), u"12 righe uguali"_s);
}

TEST(DiffLineView, NothingStandsAsABlank) {
    EXPECT_EQ(DiffLineView::shown(u""), u" "_s);
    const DiffMetrics metrics{EditorStyle()};
    const DiffLineView absent{{std::nullopt}, Tone::empty, std::nullopt};
    const DiffLineView empty{{1}, Tone::neutral, DiffSegments(u"")};
    const DiffLineView withoutSegments{{1}, Tone::removed, DiffSegments(u"", std::span<const DiffSegmentEnd>())};
    for (const DiffLineView& line : {absent, empty, withoutSegments}) {
        EXPECT_EQ(line.chunkCount(), 1);
        EXPECT_EQ(line.layout(metrics, 200, 0)->lineCount(), 1);
        EXPECT_EQ(line.estimatedHeight(metrics, 200, 0), metrics.pitch);
    }
}

TEST(DiffLineView, UnitsWithoutASignGetOne) {
    EXPECT_EQ(DiffLineView::shown(u"a\rb\u2028c\td\x7F"), u"a\u240Db\u2424c\td\u2421"_s);
    EXPECT_EQ(DiffLineView::shown(QString(QChar(0))), u"\u2400"_s);
}

TEST(DiffLineView, LongLinesWrapAndVeryLongOnesHaveChunks) {
    const DiffMetrics metrics{EditorStyle()};
    const QString text = u"parola "_s.repeated(2000);
    const DiffLineView line{{1}, Tone::neutral, DiffSegments(text)};
    EXPECT_GT(line.chunkCount(), 1);
    EXPECT_GT(line.layout(metrics, 200, 0)->lineCount(), 10);
    EXPECT_LE(line.layout(metrics, 200, 1)->text().size(), 2300);
}

TEST(DiffMetrics, GrowWithTheTextSize) {
    const DiffMetrics small{EditorStyle{10, EditorFontStyle::monospaced}};
    const DiffMetrics large{EditorStyle{20, EditorFontStyle::monospaced}};
    EXPECT_DOUBLE_EQ(small.gutterColumn, 26);
    EXPECT_DOUBLE_EQ(large.gutterColumn, 52);
    EXPECT_GE(small.pitch, 15);
    EXPECT_GE(large.pitch, 29);
    EXPECT_DOUBLE_EQ(large.gutterFont.pointSizeF(), 2 * small.gutterFont.pointSizeF());
}
