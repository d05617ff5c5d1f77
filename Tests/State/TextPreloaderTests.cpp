#include "Quillary/State/TextPreloader.h"

#include "Tests/State/Waiting.h"

#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <semaphore>

namespace quillary::test {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QList<FilePath> paths(int count) {
    QList<FilePath> paths;
    for (int i = 0; i < count; ++i) {
        paths.append(FilePath::fromText(QString(u"/note/"_s + QString::number(i))));
    }
    return paths;
}

std::optional<TextPreloader::Text> nameAsText(const FilePath& url) {
    return TextPreloader::Text{url, url.fileName(), {}, distantPast};
}

} // namespace

TEST(TextPreloader, DeliversInOrderOnTheThreadThatMadeIt) {
    QStringList texts;
    QThread* const mainThread = QThread::currentThread();
    TextPreloader preloader([&](const TextPreloader::Text& text) {
        EXPECT_EQ(QThread::currentThread(), mainThread);
        texts.append(text.text);
    });

    preloader.start(nameAsText, paths(500));
    EXPECT_TRUE(texts.isEmpty());
    ASSERT_TRUE(waitUntil([&] { return texts.size() == 500; }));

    for (int i = 0; i < 500; ++i) {
        EXPECT_EQ(texts[i], QString::number(i));
    }
}

TEST(TextPreloader, ReadsOnAnotherThreadAndOneFileAtATime) {
    std::atomic<int> running = 0;
    std::atomic<bool> overlapped = false;
    std::atomic<bool> wasOnMainThread = false;
    QThread* const mainThread = QThread::currentThread();
    int delivered = 0;
    TextPreloader preloader([&](const TextPreloader::Text&) { ++delivered; });

    preloader.start(
        [&](const FilePath& url) {
            overlapped = overlapped || ++running > 1;
            wasOnMainThread = wasOnMainThread || QThread::currentThread() == mainThread;
            --running;
            return nameAsText(url);
        },
        paths(100));
    ASSERT_TRUE(waitUntil([&] { return delivered == 100; }));

    EXPECT_FALSE(overlapped);
    EXPECT_FALSE(wasOnMainThread);
}

TEST(TextPreloader, PassesOverWhatCanNotBeRead) {
    QStringList texts;
    TextPreloader preloader([&](const TextPreloader::Text& text) { texts.append(text.text); });

    preloader.start([](const FilePath& url) { return url.fileName() == u"1"_s ? std::nullopt : nameAsText(url); },
                    paths(3));
    ASSERT_TRUE(waitUntil([&] { return texts.contains(u"2"_s); }));

    EXPECT_EQ(texts, QStringList({u"0"_s, u"2"_s}));
}

TEST(TextPreloader, YieldsToTheEventLoopWhenABatchHasUsedItsTime) {
    // Each delivery takes a millisecond of a clock that stands still otherwise.
    std::chrono::steady_clock::time_point time;
    int delivered = 0;
    int inThisRound = 0;
    int longestBatch = 0;
    std::binary_semaphore allAreRead(0);
    TextPreloader preloader(
        [&](const TextPreloader::Text&) {
            time += 1ms;
            ++delivered;
            longestBatch = std::max(longestBatch, ++inThisRound);
        },
        [&time] { return time; });
    // What stands for the rest of the program: it gets its turn between two batches.
    QTimer everythingElse;
    int turns = 0;
    QObject::connect(&everythingElse, &QTimer::timeout, [&] {
        inThisRound = 0;
        ++turns;
    });
    everythingElse.start(0);

    preloader.start(
        [&](const FilePath& url) {
            if (url.fileName() == u"299"_s) {
                allAreRead.release();
            }
            return nameAsText(url);
        },
        paths(300));
    allAreRead.acquire();
    ASSERT_TRUE(waitUntil([&] { return delivered == 300; }));

    EXPECT_LE(longestBatch, TextPreloader::batchBudget / 1ms);
    EXPECT_GE(turns, 300 / (TextPreloader::batchBudget / 1ms) - 1);
}

TEST(TextPreloader, IsNotWokenForEachOfTheTextsThatFollowEachOther) {
    // Whatever a batch delivers, the clock is asked once more than there are texts.
    constexpr int count = 400;
    int clockReadings = 0;
    int delivered = 0;
    TextPreloader preloader([&](const TextPreloader::Text&) { ++delivered; },
                            [&clockReadings] {
                                ++clockReadings;
                                return std::chrono::steady_clock::now();
                            });
    const auto start = std::chrono::steady_clock::now();
    preloader.start(
        [](const FilePath& url) {
            // Time enough to deliver the text before the next one comes.
            const auto end = std::chrono::steady_clock::now() + 50us;
            while (std::chrono::steady_clock::now() < end) {
            }
            return nameAsText(url);
        },
        paths(count));
    ASSERT_TRUE(waitUntil([&] { return delivered == count; }));

    // A timer may come a millisecond early.
    const auto leastPause = TextPreloader::pauseBetweenBatches - 1ms;
    EXPECT_LE(clockReadings - count, (std::chrono::steady_clock::now() - start) / leastPause + 2);
}

TEST(TextPreloader, ReadsWhatIsAddedAfterTheRest) {
    QStringList texts;
    TextPreloader preloader([&](const TextPreloader::Text& text) { texts.append(text.text); });
    const QList<FilePath> all = paths(5);

    preloader.start(nameAsText, all.first(2));
    preloader.add(all.sliced(2, 1));
    ASSERT_TRUE(waitUntil([&] { return texts.size() == 3; }));
    preloader.add(all.sliced(3));
    ASSERT_TRUE(waitUntil([&] { return texts.size() == 5; }));

    EXPECT_EQ(texts, QStringList({u"0"_s, u"1"_s, u"2"_s, u"3"_s, u"4"_s}));
}

TEST(TextPreloader, ANewRequestTakesThePlaceOfWhatIsLeftOfTheOldOne) {
    std::counting_semaphore<> mayRead(0);
    std::binary_semaphore secondIsBeingRead(0);
    QStringList texts;
    TextPreloader preloader([&](const TextPreloader::Text& text) { texts.append(text.text); });
    preloader.start(
        [&](const FilePath& url) {
            if (url.fileName() == u"1"_s) {
                secondIsBeingRead.release();
            }
            mayRead.acquire();
            auto text = nameAsText(url);
            text->text += u" prima"_s;
            return text;
        },
        paths(10));
    mayRead.release();
    secondIsBeingRead.acquire();

    preloader.start(nameAsText, paths(3));
    mayRead.release(10);
    ASSERT_TRUE(waitUntil([&] { return texts.contains(u"2"_s); }));

    // What was read before and the file that was being read, then the new request and nothing else of the old one.
    EXPECT_EQ(texts, QStringList({u"0 prima"_s, u"1 prima"_s, u"0"_s, u"1"_s, u"2"_s}));
}

TEST(TextPreloader, AnEmptyRequestEndsTheOldOne) {
    std::counting_semaphore<> mayRead(0);
    std::binary_semaphore isReading(0);
    QStringList texts;
    TextPreloader preloader([&](const TextPreloader::Text& text) { texts.append(text.text); });
    preloader.start(
        [&](const FilePath& url) {
            isReading.release();
            mayRead.acquire();
            return nameAsText(url);
        },
        paths(10));
    isReading.acquire();

    preloader.start(nameAsText, {});
    mayRead.release(10);
    runEventLoop(30ms);

    EXPECT_EQ(texts, QStringList(u"0"_s));
}

TEST(TextPreloader, EndsInTheMiddleOfItsWork) {
    std::atomic<int> reads = 0;
    bool isDelivered = false;
    {
        TextPreloader preloader([&](const TextPreloader::Text&) { isDelivered = true; });
        preloader.start(
            [&](const FilePath& url) {
                ++reads;
                return nameAsText(url);
            },
            paths(100'000));
    }
    const int readsAtItsEnd = reads;

    runEventLoop(30ms);

    EXPECT_EQ(reads, readsAtItsEnd);
    EXPECT_FALSE(isDelivered);
}

} // namespace quillary::test
