#include "Quillary/Comparison/DiffChunks.h"

#include <QString>

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// The chunks are the line, and none is long or, but for an empty line's, empty.
void expectChunksOf(const QString& line) {
    qsizetype next = 0;
    for (qsizetype chunk = 0; chunk < DiffChunks::count(line); ++chunk) {
        const TextRange range = DiffChunks::range(line, chunk);
        ASSERT_EQ(range.location, next);
        ASSERT_LE(range.length, DiffChunks::length + 200);
        ASSERT_TRUE(range.length > 0 || line.isEmpty());
        next = range.end();
    }
    ASSERT_EQ(next, line.size());
}

} // namespace

TEST(DiffChunks, ShortLinesHaveOne) {
    EXPECT_EQ(DiffChunks::count(u""), 1);
    EXPECT_EQ(DiffChunks::range(u"", 0), (TextRange{0, 0}));
    const QString line(DiffChunks::length, u'x');
    EXPECT_EQ(DiffChunks::count(line), 1);
    EXPECT_EQ(DiffChunks::range(line, 0), (TextRange{0, line.size()}));
}

TEST(DiffChunks, OfLongLinesAreTheLine) {
    expectChunksOf(QString(DiffChunks::length + 1, u'x'));
    expectChunksOf(QString(10 * DiffChunks::length, u'x'));
    expectChunksOf(u"parola "_s.repeated(5000));
    expectChunksOf(u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s.repeated(3000));
    expectChunksOf(u"\U0001F600"_s.repeated(7777));
    expectChunksOf(QString(9000, u'\u0301'));
    expectChunksOf(QString(9000, QChar(0xD800)));
}

TEST(DiffChunks, EndBehindABlankOrBetweenCharacters) {
    const QString words = u"parola "_s.repeated(1000);
    EXPECT_EQ(words[DiffChunks::range(words, 0).end() - 1], u' ');
    const QString pairs = u'x' + u"\U0001F600"_s.repeated(3000);
    EXPECT_TRUE(pairs[DiffChunks::range(pairs, 0).end()].isHighSurrogate());
    const QString marked = u'x' + u"e\u0301"_s.repeated(3000);
    EXPECT_EQ(marked[DiffChunks::range(marked, 0).end()], u'e');
}
