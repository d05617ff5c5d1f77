#include "Quillary/Comparison/OverviewRuler.h"

#include "Quillary/Theme/Theme.h"
#include "QuillaryCore/Compare/TextDiff.h"

#include <QImage>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// Rows of which those with these ids are removed lines.
DiffRows rowsWithRemoved(int count, const QList<int>& removed) {
    QString oldText;
    QString newText;
    for (int i = 0; i < count; ++i) {
        const QString line = u"riga %1\n"_s.arg(i);
        oldText += line;
        newText += removed.contains(i) ? QString() : line;
    }
    return TextDiff::compare(oldText, newText).rows;
}

class OverviewRulerOf : public testing::Test {
protected:
    void show(int count, const QList<int>& removed, int height) {
        m_ruler.resize(OverviewRuler::rulerWidth, height);
        m_ruler.setLineHeight(20);
        m_ruler.setRows(rowsWithRemoved(count, removed));
    }

    OverviewRuler m_ruler;
};

} // namespace

TEST_F(OverviewRulerOf, AShortComparisonIsNotStretchedAndALongOneIsCompressed) {
    show(5, {}, 500);
    EXPECT_DOUBLE_EQ(m_ruler.pitch(), 20);
    EXPECT_DOUBLE_EQ(m_ruler.markHeight(), 4);
    show(1000, {}, 500);
    EXPECT_DOUBLE_EQ(m_ruler.pitch(), 0.5);
    EXPECT_DOUBLE_EQ(m_ruler.markHeight(), 2);
    show(200, {}, 600);
    EXPECT_DOUBLE_EQ(m_ruler.markHeight(), 3);
}

TEST_F(OverviewRulerOf, MarksStandInTheMiddleOfTheirRows) {
    show(10, {4}, 500);
    EXPECT_EQ(m_ruler.markRect(4), QRectF(3, 88, 6, 4));
    show(1000, {4}, 500);
    EXPECT_EQ(m_ruler.markRect(4), QRectF(3, 1.25, 6, 2));
}

TEST_F(OverviewRulerOf, FindsTheNearestChangeAndTheFirstOfTwo) {
    show(20, {2, 6, 12}, 1000);
    EXPECT_EQ(m_ruler.rowNearest(0), 2);
    EXPECT_EQ(m_ruler.rowNearest(4 * 20 + 19), 2);
    EXPECT_EQ(m_ruler.rowNearest(5 * 20), 6);
    EXPECT_EQ(m_ruler.rowNearest(9 * 20), 6);
    EXPECT_EQ(m_ruler.rowNearest(10 * 20), 12);
    EXPECT_EQ(m_ruler.rowNearest(999), 12);
}

TEST_F(OverviewRulerOf, WithoutChangesAClickDoesNothing) {
    QSignalSpy jumps(&m_ruler, &OverviewRuler::jump);
    show(5, {}, 100);
    QTest::mouseClick(&m_ruler, Qt::LeftButton, {}, QPoint(5, 50));
    m_ruler.setRows({});
    EXPECT_EQ(m_ruler.rowNearest(5), std::nullopt);
    QTest::mouseClick(&m_ruler, Qt::LeftButton, {}, QPoint(5, 50));
    EXPECT_TRUE(jumps.isEmpty());
}

TEST_F(OverviewRulerOf, AClickAsksForARow) {
    QSignalSpy jumps(&m_ruler, &OverviewRuler::jump);
    show(10, {7}, 400);
    QTest::mouseClick(&m_ruler, Qt::LeftButton, {}, QPoint(5, 10));
    ASSERT_EQ(jumps.size(), 1);
    EXPECT_EQ(jumps.first().first().toLongLong(), 7);
    QTest::mouseClick(&m_ruler, Qt::RightButton, {}, QPoint(5, 10));
    EXPECT_EQ(jumps.size(), 1);
    EXPECT_EQ(m_ruler.toolTip(), u"Mappa delle modifiche: fai clic per saltare"_s);
}

TEST_F(OverviewRulerOf, MarksHaveTheColourOfTheirKind) {
    m_ruler.resize(OverviewRuler::rulerWidth, 400);
    m_ruler.setLineHeight(40);
    m_ruler.setRows(TextDiff::compare(u"via\na\nvecchia\nb"_s, u"a\nnuova\nb\npi\u00F9"_s).rows);
    const QImage image = m_ruler.grab().toImage();
    const auto colorOf = [&](qsizetype row) { return image.pixelColor(m_ruler.markRect(row).center().toPoint()); };
    EXPECT_EQ(colorOf(0).rgb(), Theme::diffRemoved.in(m_ruler.palette()).rgb());
    EXPECT_EQ(colorOf(2).rgb(), Theme::accentDot.rgb());
    EXPECT_EQ(colorOf(4).rgb(), Theme::diffAdded.in(m_ruler.palette()).rgb());
    EXPECT_NE(colorOf(1).rgb(), Theme::accentDot.rgb());
}
