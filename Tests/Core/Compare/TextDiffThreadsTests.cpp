// What runs beside the main thread while two long notes are compared: the comparison itself, on texts that are shared
// with others, until it ends or is stopped.

#include "QuillaryCore/Compare/TextDiff.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <random>
#include <thread>
#include <vector>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// Lines of all ways of comparing: plain, decomposed, of clusters of several scalars, long and short.
QString variousLines(unsigned seed, int count) {
    const QStringList words{u"parola"_s,      u"perche\u0301"_s,  u"perch\u00E9"_s,
                            u"nota_1"_s,      u"q\u0323\u0307"_s, u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s,
                            u"\u4E2D\u6587"_s};
    std::mt19937 random(seed);
    QString text;
    for (int i = 0; i < count; ++i) {
        for (std::size_t word = random() % (i % 50 == 0 ? 100 : 6); word > 0; --word) {
            text += words[static_cast<qsizetype>(random() % static_cast<std::size_t>(words.size()))] + u' ';
        }
        text += u'\n';
    }
    return text;
}

/// Lines drawn from a few, the hardest to compare.
QString drawnLines(unsigned seed, int count) {
    std::mt19937 random(seed);
    QString text;
    for (int i = 0; i < count; ++i) {
        text += u"riga %1\n"_s.arg(random() % 400);
    }
    return text;
}

} // namespace

TEST(TextDiffThreads, ComparisonsOfTheSameTextsDoNotDisturbEachOther) {
    const QString oldText = variousLines(1, 500);
    const QString newText = variousLines(2, 500);
    std::vector<TextDiffResult> results(4);
    {
        std::vector<std::jthread> threads;
        threads.reserve(results.size());
        for (TextDiffResult& result : results) {
            threads.emplace_back([oldText, newText, &result] { result = TextDiff::compare(oldText, newText); });
        }
    }
    const TextDiffResult here = TextDiff::compare(oldText, newText);
    EXPECT_GT(here.stats.changed, 0);
    for (const TextDiffResult& result : results) {
        EXPECT_EQ(result, here);
    }
}

TEST(TextDiffThreads, AStopFromAnotherThreadEndsAComparison) {
    const QString oldText = drawnLines(1, 200'000);
    const QString newText = drawnLines(2, 200'000);
    TextDiffResult result = TextDiff::compare(u"a"_s, u"b"_s);
    std::jthread thread([&](const std::stop_token& stop) { result = TextDiff::compare(oldText, newText, stop); });
    thread.request_stop();
    thread.join();
    EXPECT_TRUE(result.rows.isEmpty());
}
