#include "Quillary/Editor/SegmentIndex.h"

#include "Tests/Views/Editor/HostileTexts.h"

#include <gmock/gmock.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

/// The index follows its storage, as the layout makes it do.
class SegmentIndexTest : public testing::Test {
protected:
    void open(const QString& text, SegmentIndex::Estimate estimate = {}) {
        m_storage = std::make_unique<TextStorage>(text);
        m_index = std::make_unique<SegmentIndex>(*m_storage);
        m_index->reset(estimate);
        QObject::connect(m_storage.get(), &TextStorage::changed,
                         [this](const TextChange& change) { m_index->apply(change); });
    }

    /// The segments cover the text in order, end lines exactly where lines end, and count the rows that they hold.
    void expectToFit() {
        SegmentIndex::Place place = m_index->placeOf(0);
        qsizetype start = 0;
        qint64 rows = 0;
        qsizetype line = 0;
        do {
            const SegmentIndex::Segment segment = m_index->at(place);
            ASSERT_EQ(place.start, start);
            ASSERT_EQ(place.row, rows);
            start += segment.length;
            rows += segment.rows;
            const TextRange lineRange = m_storage->lineRange(line);
            ASSERT_EQ(segment.endsLine, start == lineRange.end())
                << "line " << line << " of " << m_storage->lineCount();
            line += segment.endsLine ? 1 : 0;
        } while (m_index->moveToNext(place));
        ASSERT_EQ(start, m_storage->length());
        ASSERT_EQ(line, m_storage->lineCount());
        ASSERT_EQ(rows, m_index->rowCount());
    }

    std::unique_ptr<TextStorage> m_storage;
    std::unique_ptr<SegmentIndex> m_index;
};

TEST_F(SegmentIndexTest, AnEmptyTextIsOneEmptySegment) {
    open({});
    EXPECT_EQ(m_index->at(m_index->placeOf(0)).length, 0);
    EXPECT_EQ(m_index->rowCount(), 1);
    expectToFit();
}

TEST_F(SegmentIndexTest, ShortLinesAreASegmentEach) {
    open(u"uno\ndue\r\n\ntre"_s);
    EXPECT_EQ(m_index->rowCount(), 4);
    EXPECT_EQ(m_index->placeOf(3).start, 0);
    EXPECT_EQ(m_index->placeOf(4).start, 4);
    EXPECT_EQ(m_index->placeOf(9).start, 9);
    EXPECT_EQ(m_index->placeOf(13).start, 10);
    expectToFit();
}

TEST_F(SegmentIndexTest, ThePositionBehindALastTerminatorIsInTheEmptyLastLine) {
    open(u"uno\n"_s);
    EXPECT_EQ(m_index->placeOf(4).start, 4);
    EXPECT_EQ(m_index->at(m_index->placeOf(4)).length, 0);
}

TEST_F(SegmentIndexTest, LongLinesAreCutBehindBlanks) {
    open(words(100'000) + u'\n' + words(3));
    SegmentIndex::Place place = m_index->placeOf(0);
    int pieces = 0;
    for (; !m_index->at(place).endsLine; ++pieces) {
        ASSERT_TRUE(m_index->moveToNext(place));
        EXPECT_EQ(m_storage->unitAt(place.start - 1), u' ');
    }
    EXPECT_GT(pieces, 100'000 / m_index->longestSegment());
    expectToFit();
}

TEST_F(SegmentIndexTest, CutsStandBetweenClustersAndDoNotHangOnAnEndlessOne) {
    const QString family = u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s;
    open(family.repeated(5000));
    SegmentIndex::Place place = m_index->placeOf(0);
    while (m_index->moveToNext(place)) {
        ASSERT_EQ(place.start % family.size(), 0);
    }
    open(u'a' + QString(100'000, QChar(0x301)));
    expectToFit();
}

TEST_F(SegmentIndexTest, KnowsARowByItsNumberOfTheEstimate) {
    open(QString(250, u'x') + u'\n' + QString(10, u'x') + u'\n', {true, 100, 8});
    EXPECT_EQ(m_index->rowCount(), 3 + 1 + 1);
    EXPECT_EQ(m_index->placeOfRow(2).start, 0);
    EXPECT_EQ(m_index->placeOfRow(3).start, 251);
    EXPECT_EQ(m_index->placeOfRow(4).start, 262);
    EXPECT_EQ(m_index->placeOfRow(99).start, 262);
    m_index->setMeasured(m_index->placeOf(0), 5, 0);
    EXPECT_EQ(m_index->rowCount(), 7);
    EXPECT_EQ(m_index->placeOfRow(4).start, 0);
    EXPECT_EQ(m_index->placeOfRow(5).start, 251);
}

TEST_F(SegmentIndexTest, ABorderMovesWithinItsLineOnly) {
    open(words(20'000));
    const SegmentIndex::Place first = m_index->placeOf(0);
    const quint64 id = m_index->at(first).id;
    const qsizetype length = m_index->at(first).length;
    m_index->setLength(first, length - 40);
    expectToFit();
    EXPECT_EQ(m_index->at(first).id, id) << "the layout of the segment itself stays good";
    m_index->setLength(first, length + 40);
    expectToFit();
    m_index->setLength(first, 20'000);
    EXPECT_TRUE(m_index->at(first).endsLine);
    expectToFit();
}

TEST_F(SegmentIndexTest, AKeyInALongLineLeavesTheOtherPiecesAsTheyAre) {
    open(words(1'000'000));
    SegmentIndex::Place place = m_index->placeOf(0);
    QList<quint64> before;
    do {
        before += m_index->at(place).id;
    } while (m_index->moveToNext(place));
    m_storage->replace({500'000, 0}, u"x");
    place = m_index->placeOf(0);
    int kept = 0;
    do {
        kept += before.contains(m_index->at(place).id) ? 1 : 0;
    } while (m_index->moveToNext(place));
    EXPECT_GE(kept, before.size() - 2);
    expectToFit();
}

TEST_F(SegmentIndexTest, TheWidestLineIsForgottenWhenItGoes) {
    open(u"breve\n"_s + QString(300, u'x') + u"\nmedia"_s, {false, 100, 10});
    m_index->placeOf(0);
    EXPECT_EQ(m_index->widestLine(), 3010);
    m_storage->replace({6, 301}, {});
    m_index->placeOf(0);
    EXPECT_EQ(m_index->widestLine(), 60);
}

struct RandomCase {
    bool wraps;
    quint32 seed;
    /// Text to begin with, in repetitions of a line.
    QString line;
    int lines;
};

class SegmentIndexRandomTest : public SegmentIndexTest, public testing::WithParamInterface<RandomCase> {};

TEST_P(SegmentIndexRandomTest, FitsTheTextAfterEveryEdit) {
    const RandomCase& parameters = GetParam();
    QRandomGenerator random(parameters.seed);
    open(parameters.line.repeated(parameters.lines), {parameters.wraps, 20, 8});
    for (int step = 0; step < 400; ++step) {
        const auto offset = static_cast<qsizetype>(random.bounded(static_cast<qint64>(m_storage->length() + 1)));
        const qsizetype most = random.bounded(20) == 0 ? 20'000 : 12;
        const qsizetype removed = std::min<qsizetype>(random.bounded(most), m_storage->length() - offset);
        const int inserted = random.bounded(40) == 0 ? 3000 : random.bounded(8);
        m_storage->replace({offset, removed}, hostileText(random, inserted));
        if (random.bounded(3) == 0) {
            m_index->placeOfRow(random.bounded(m_index->rowCount() + 1));
        }
        if (random.bounded(3) == 0) {
            const SegmentIndex::Place place =
                m_index->placeOf(random.bounded(static_cast<qint64>(m_storage->length() + 1)));
            m_index->setMeasured(place, parameters.wraps ? 1 + random.bounded(9) : 1, random.bounded(900));
        }
        if (step % 10 == 0) {
            expectToFit();
            ASSERT_FALSE(HasFatalFailure()) << "step " << step;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Texts, SegmentIndexRandomTest,
                         testing::Values(RandomCase{true, 1, u"riga\n"_s, 3}, RandomCase{true, 2, u"riga\r\n"_s, 3000},
                                         RandomCase{true, 3, u"una riga sola "_s, 4000},
                                         RandomCase{false, 4, u"riga\r"_s, 3000},
                                         RandomCase{false, 5, u"una riga sola "_s, 4000},
                                         RandomCase{true, 6, u"\n"_s, 30'000}, RandomCase{false, 7, {}, 0}));

} // namespace

} // namespace quillary
