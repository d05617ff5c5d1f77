#include "Quillary/Comparison/DiffLineView.h"

#include "Quillary/Comparison/DiffTexts.h"
#include "Quillary/Comparison/SideBySideRow.h"
#include "Quillary/Comparison/UnifiedRows.h"
#include "Quillary/Theme/Theme.h"
#include "QuillaryCore/Compare/TextDiff.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

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

QColor onWhite(const QColor& color, double opacity) {
    const auto mixed = [opacity](int value) { return static_cast<int>(std::lround(255 + (value - 255) * opacity)); };
    return QColor(mixed(color.red()), mixed(color.green()), mixed(color.blue()));
}

/// Whether two colours differ by what rounding does at most.
bool isAlmost(const QColor& a, const QColor& b) {
    return std::abs(a.red() - b.red()) <= 2 && std::abs(a.green() - b.green()) <= 2 &&
           std::abs(a.blue() - b.blue()) <= 2;
}

/// What a line's painting makes of a white image.
class PaintedLine {
public:
    PaintedLine() { m_image.fill(Qt::white); }

    void paintGround(const DiffLineView& line) {
        QPainter painter(&m_image);
        line.paintGround(painter, m_image.rect(), QPalette());
    }

    void paintText(const DiffLineView& line, const DiffMetrics& metrics) {
        QPainter painter(&m_image);
        line.paintText(painter, m_image.rect(), metrics, *line.layout(metrics, m_image.width(), 0), 0, QPalette());
    }

    QColor at(int x, int y) const { return m_image.pixelColor(x, y); }

    int width() const { return m_image.width(); }

    bool isUniform() const {
        QImage same = m_image.copy();
        same.fill(at(0, 0));
        return same == m_image;
    }

private:
    QImage m_image{400, 40, QImage::Format_ARGB32_Premultiplied};
};

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

TEST(DiffLineView, TheGroundFollowsTheTone) {
    const QColor removed = onWhite(Theme::diffRemoved.in(QPalette()), 0.085);
    const QColor added = onWhite(Theme::diffAdded.in(QPalette()), 0.095);
    for (const auto& [tone, ground] : {std::pair(Tone::neutral, QColor(Qt::white)), std::pair(Tone::removed, removed),
                                       std::pair(Tone::added, added)}) {
        PaintedLine painted;
        painted.paintGround({{1}, tone, std::nullopt});
        EXPECT_TRUE(isAlmost(painted.at(5, 5), ground)) << static_cast<int>(tone);
        EXPECT_TRUE(painted.isUniform());
    }
    PaintedLine hatched;
    hatched.paintGround({{std::nullopt}, Tone::empty, std::nullopt});
    EXPECT_FALSE(hatched.isUniform());
}

TEST(DiffLineView, ChangedSegmentsHaveAGroundOfTheirTone) {
    const DiffMetrics metrics{EditorStyle()};
    const QString blanks(8, u' ');
    const DiffSegmentEnd ends[] = {{4, false}, {8, true}};
    const auto inSegment = [&metrics](int blank) {
        return static_cast<int>(metrics.textLeft(1) + (blank + 0.5) * metrics.unitWidth);
    };
    for (const auto& [tone, color] : {std::pair(Tone::removed, Theme::diffRemoved.in(QPalette())),
                                      std::pair(Tone::added, Theme::diffAdded.in(QPalette()))}) {
        PaintedLine painted;
        painted.paintText({{std::nullopt}, tone, DiffSegments(blanks, ends)}, metrics);
        EXPECT_EQ(painted.at(inSegment(1), metrics.pitch / 2), QColor(Qt::white));
        EXPECT_TRUE(isAlmost(painted.at(inSegment(6), metrics.pitch / 2), onWhite(color, 0.26)));
    }
}

TEST(DiffLineView, OnlyPresentNumbersAreDrawnAtTheRightOfTheirColumns) {
    const DiffMetrics metrics{EditorStyle()};
    PaintedLine painted;
    painted.paintText({{std::nullopt, 7}, Tone::neutral, std::nullopt}, metrics);
    int first = painted.width();
    int last = -1;
    for (int x = 0; x < painted.width(); ++x) {
        for (int y = 0; y < metrics.pitch; ++y) {
            if (painted.at(x, y) != QColor(Qt::white)) {
                first = std::min(first, x);
                last = std::max(last, x);
            }
        }
    }
    EXPECT_GT(first, DiffMetrics::gutterInset + metrics.gutterColumn);
    EXPECT_NEAR(last, DiffMetrics::gutterInset + 2 * metrics.gutterColumn, 3);
}

TEST(DiffMetrics, GrowWithTheTextSize) {
    const DiffMetrics small{EditorStyle{10, EditorFontStyle::monospaced}};
    const DiffMetrics large{EditorStyle{20, EditorFontStyle::monospaced}};
    EXPECT_DOUBLE_EQ(small.gutterColumn, 26);
    EXPECT_DOUBLE_EQ(large.gutterColumn, 52);
    EXPECT_DOUBLE_EQ(large.textInset, 2 * small.textInset);
    EXPECT_GE(small.pitch, 15);
    EXPECT_GE(large.pitch, 29);
    EXPECT_DOUBLE_EQ(large.gutterFont.pointSizeF(), 2 * small.gutterFont.pointSizeF());
    EXPECT_DOUBLE_EQ(small.gutterFont.pointSizeF(), 0.82 * small.textFont.pointSizeF());
}
