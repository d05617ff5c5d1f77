#include "QuillaryCore/Compare/ChangedOffsets.h"

#include "QuillaryCore/Compare/FewChanges.h"
#include "QuillaryCore/Compare/GreedySearch.h"
#include "QuillaryCore/Compare/MatchedPairs.h"
#include "ShortestScriptReference.h"

#include <gtest/gtest.h>

#include <iterator>
#include <limits>
#include <numeric>
#include <optional>
#include <random>

using namespace quillary;

namespace {

using Numbers = std::vector<qint32>;

Numbers kept(const Numbers& list, const OffsetSet& changed) {
    Numbers result;
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (changed[i] == 0) {
            result.push_back(list[i]);
        }
    }
    return result;
}

/// What remains is the same on both sides, and as long as the table of all pairs says.
void expectShortest(const Numbers& from, const Numbers& to, const ChangedOffsets& offsets, std::size_t longest) {
    ASSERT_EQ(offsets.removed.size(), from.size());
    ASSERT_EQ(offsets.inserted.size(), to.size());
    const Numbers common = kept(from, offsets.removed);
    ASSERT_EQ(common, kept(to, offsets.inserted));
    ASSERT_EQ(common.size(), longest);
}

/// By the greedy search alone, whatever it costs.
ChangedOffsets byGreedySearch(const Numbers& from, const Numbers& to) {
    ChangedOffsets result{OffsetSet(from.size()), OffsetSet(to.size())};
    GreedySearch search(from, to);
    qint64 budget = std::numeric_limits<qint64>::max();
    std::vector<SequenceBox> boxes{{0, static_cast<qint32>(from.size()), 0, static_cast<qint32>(to.size())}};
    while (!boxes.empty()) {
        const SequenceBox box = boxes.back().trimmed(from, to);
        boxes.pop_back();
        if (box.width() == 0 || box.height() == 0) {
            std::fill(result.removed.begin() + box.fromBegin, result.removed.begin() + box.fromEnd, quint8(1));
            std::fill(result.inserted.begin() + box.toBegin, result.inserted.begin() + box.toEnd, quint8(1));
            continue;
        }
        const auto middle = search.middle(box, budget);
        if (!middle) {
            ADD_FAILURE() << "the budget has no end";
            break;
        }
        boxes.push_back({box.fromBegin, middle->from, box.toBegin, middle->to});
        boxes.push_back({middle->from, box.fromEnd, middle->to, box.toEnd});
    }
    return result;
}

/// By the pairs alone.
ChangedOffsets byPairs(const Numbers& from, const Numbers& to, qint32 count) {
    ChangedOffsets result{OffsetSet(from.size()), OffsetSet(to.size())};
    MatchedPairs(from, to, count)
        .mark({0, static_cast<qint32>(from.size()), 0, static_cast<qint32>(to.size())}, result.removed, result.inserted,
              {});
    return result;
}

/// Without a look at the numbers but to compare two of them. `calls` counts how often that is.
std::optional<ChangedOffsets> byFewChanges(const Numbers& from, const Numbers& to, qint64& calls) {
    const auto areEqual = [&](qsizetype i, qsizetype j) {
        ++calls;
        return from[static_cast<std::size_t>(i)] == to[static_cast<std::size_t>(j)];
    };
    return FewChanges(std::ssize(from), std::ssize(to), areEqual).find();
}

Numbers randomList(std::mt19937& random, std::size_t size, qint32 alphabet) {
    Numbers list(size);
    for (qint32& number : list) {
        number = static_cast<qint32>(random() % static_cast<unsigned>(alphabet));
    }
    return list;
}

/// A copy with elements taken out, put in, replaced and moved.
Numbers edited(std::mt19937& random, Numbers list, std::size_t edits, qint32 alphabet) {
    for (std::size_t i = 0; i < edits; ++i) {
        const auto place = list.begin() + static_cast<std::ptrdiff_t>(random() % (list.size() + 1));
        const auto number = static_cast<qint32>(random() % static_cast<unsigned>(alphabet));
        switch (random() % 3) {
        case 0:
            list.insert(place, number);
            break;
        case 1:
            if (place != list.end()) {
                list.erase(place);
            }
            break;
        default:
            if (place != list.end()) {
                *place = number;
            }
        }
    }
    return list;
}

void expectAllWaysShortest(const Numbers& from, const Numbers& to, qint32 count) {
    const std::size_t longest = longestCommonSubsequence(from, to);
    {
        SCOPED_TRACE("greedy search");
        expectShortest(from, to, byGreedySearch(from, to), longest);
    }
    {
        SCOPED_TRACE("pairs");
        expectShortest(from, to, byPairs(from, to, count), longest);
    }
    qint64 calls = 0;
    if (const std::optional<ChangedOffsets> few = byFewChanges(from, to, calls)) {
        SCOPED_TRACE("few changes");
        expectShortest(from, to, *few, longest);
    }
    SCOPED_TRACE("as used");
    expectShortest(from, to, changedOffsets(from, to, count), longest);
}

} // namespace

TEST(ChangedOffsets, EmptyAndEqualListsDifferInNothing) {
    expectAllWaysShortest({}, {}, 0);
    expectAllWaysShortest({0, 1, 0}, {0, 1, 0}, 2);
}

TEST(ChangedOffsets, AnEmptyListLacksEverything) {
    const ChangedOffsets offsets = changedOffsets(Numbers{0, 1}, Numbers{}, 2);
    EXPECT_EQ(offsets.removed, OffsetSet({1, 1}));
    EXPECT_TRUE(offsets.inserted.empty());
    expectAllWaysShortest({}, {0, 0}, 1);
}

TEST(ChangedOffsets, NumbersBelowZeroAreNowhereInTheOtherList) {
    const Numbers from{0, 1, 2};
    const ChangedOffsets offsets = changedOffsets(from, Numbers{-1, 0, -1, 2, -1}, 3);
    EXPECT_EQ(offsets.removed, OffsetSet({0, 1, 0}));
    EXPECT_EQ(offsets.inserted, OffsetSet({1, 0, 1, 0, 1}));
}

TEST(ChangedOffsets, AreTheFewestOfAllShortLists) {
    // All pairs of lists of up to five elements out of three.
    std::vector<Numbers> lists{{}};
    for (std::size_t first = 0, length = 0; length < 5; ++length) {
        const std::size_t end = lists.size();
        for (; first < end; ++first) {
            for (qint32 number = 0; number < 3; ++number) {
                lists.push_back(lists[first]);
                lists.back().push_back(number);
            }
        }
    }
    std::mt19937 random(5);
    std::shuffle(lists.begin(), lists.end(), random);
    lists.resize(160);
    for (const Numbers& from : lists) {
        for (const Numbers& to : lists) {
            ASSERT_NO_FATAL_FAILURE(expectAllWaysShortest(from, to, 3));
        }
    }
}

TEST(ChangedOffsets, AreTheFewestOfRandomLists) {
    std::mt19937 random(1);
    for (int round = 0; round < 600; ++round) {
        const qint32 alphabet = std::vector<qint32>{1, 2, 3, 10, 60, 1000}[random() % 6];
        const Numbers from = randomList(random, random() % 220, alphabet);
        const Numbers to = randomList(random, random() % 220, alphabet);
        SCOPED_TRACE(testing::Message() << "round " << round);
        ASSERT_NO_FATAL_FAILURE(expectAllWaysShortest(from, to, alphabet));
    }
}

TEST(ChangedOffsets, AreTheFewestOfEditedLists) {
    std::mt19937 random(2);
    for (int round = 0; round < 300; ++round) {
        const qint32 alphabet = std::vector<qint32>{2, 20, 100'000}[random() % 3];
        const Numbers from = randomList(random, 50 + random() % 300, alphabet);
        const Numbers to = edited(random, from, random() % 60, alphabet);
        SCOPED_TRACE(testing::Message() << "round " << round);
        ASSERT_NO_FATAL_FAILURE(expectAllWaysShortest(from, to, alphabet));
    }
}

TEST(ChangedOffsets, FewChangesAreFoundByComparisonsAlone) {
    std::mt19937 random(3);
    for (int round = 0; round < 40; ++round) {
        const Numbers from = randomList(random, 1000, 500);
        const Numbers to = edited(random, from, random() % 20, 500);
        qint64 calls = 0;
        const std::optional<ChangedOffsets> few = byFewChanges(from, to, calls);
        ASSERT_TRUE(few) << "round " << round;
        ASSERT_NO_FATAL_FAILURE(expectShortest(from, to, *few, longestCommonSubsequence(from, to)));
    }
}

TEST(ChangedOffsets, ManyChangesAreLeftToOthersBeforeTheWorkGrows) {
    std::mt19937 random(4);
    const Numbers zeros(5000, 0);
    Numbers periodic(5000);
    for (std::size_t i = 0; i < periodic.size(); ++i) {
        periodic[i] = static_cast<qint32>(i % 7);
    }
    Numbers broken = periodic;
    for (std::size_t i = 0; i < broken.size(); i += 10) {
        broken[i] = 9;
    }
    for (const auto& [from, to] :
         {std::pair(randomList(random, 5000, 100'000), randomList(random, 5000, 100'000)),
          std::pair(zeros, Numbers(4000, 0)), std::pair(periodic, broken), std::pair(Numbers(5000, 1), Numbers())}) {
        qint64 calls = 0;
        EXPECT_FALSE(byFewChanges(from, to, calls));
        EXPECT_LE(calls, 5 * std::ssize(from) + 5 * std::ssize(to));
    }
}

TEST(ChangedOffsets, AreTheFewestOfPermutedAndReversedLists) {
    std::mt19937 random(3);
    for (const std::size_t size : {63, 64, 65, 128, 500}) {
        Numbers from(size);
        std::iota(from.begin(), from.end(), 0);
        Numbers to = from;
        std::reverse(to.begin(), to.end());
        ASSERT_NO_FATAL_FAILURE(expectAllWaysShortest(from, to, static_cast<qint32>(size)));
        std::shuffle(to.begin(), to.end(), random);
        ASSERT_NO_FATAL_FAILURE(expectAllWaysShortest(from, to, static_cast<qint32>(size)));
    }
}

TEST(ChangedOffsets, AreTheFewestWhereRowsAreComputedAgain) {
    // More changes than are kept at once, with numbers that are dense and numbers that are not.
    std::mt19937 random(4);
    Numbers from = randomList(random, 5000, 40);
    Numbers to = randomList(random, 6000, 40);
    for (std::size_t i = 0; i < from.size(); i += 3) {
        from[i] = 40;
    }
    for (std::size_t i = 0; i < to.size(); i += 4) {
        to[i] = 40;
    }
    expectShortest(from, to, byPairs(from, to, 41), longestCommonSubsequence(from, to));
}

TEST(ChangedOffsets, PairsMayBeThoseOfAStretch) {
    std::mt19937 random(6);
    for (int round = 0; round < 100; ++round) {
        const qint32 alphabet = round % 2 == 0 ? 3 : 50;
        const Numbers from = randomList(random, 300, alphabet);
        const Numbers to = randomList(random, 300, alphabet);
        const SequenceBox box{static_cast<qint32>(random() % 150), static_cast<qint32>(150 + random() % 151),
                              static_cast<qint32>(random() % 150), static_cast<qint32>(150 + random() % 151)};
        ChangedOffsets whole{OffsetSet(from.size()), OffsetSet(to.size())};
        MatchedPairs pairs(from, to, alphabet);
        pairs.mark(box, whole.removed, whole.inserted, {});
        const Numbers partOfFrom(from.begin() + box.fromBegin, from.begin() + box.fromEnd);
        const Numbers partOfTo(to.begin() + box.toBegin, to.begin() + box.toEnd);
        const ChangedOffsets part{OffsetSet(whole.removed.begin() + box.fromBegin, whole.removed.begin() + box.fromEnd),
                                  OffsetSet(whole.inserted.begin() + box.toBegin, whole.inserted.begin() + box.toEnd)};
        ASSERT_NO_FATAL_FAILURE(
            expectShortest(partOfFrom, partOfTo, part, longestCommonSubsequence(partOfFrom, partOfTo)));
        EXPECT_EQ(std::count(whole.removed.begin(), whole.removed.end(), 1),
                  std::count(part.removed.begin(), part.removed.end(), 1));
    }
}

TEST(ChangedOffsets, TheGreedySearchEndsWithItsBudget) {
    Numbers from(1000);
    std::iota(from.begin(), from.end(), 0);
    const Numbers to(from.rbegin(), from.rend());
    qint64 budget = 100;
    EXPECT_FALSE(GreedySearch(from, to).middle({0, 1000, 0, 1000}, budget));
    EXPECT_LT(budget, 0);
}

TEST(ChangedOffsets, EndsWhenAStopIsAskedFor) {
    std::stop_source source;
    source.request_stop();
    Numbers from(100'000);
    std::iota(from.begin(), from.end(), 0);
    const Numbers to(from.rbegin(), from.rend());
    const ChangedOffsets offsets = changedOffsets(from, to, 100'000, source.get_token());
    EXPECT_EQ(offsets.removed.size(), from.size());
    EXPECT_EQ(std::count(offsets.removed.begin(), offsets.removed.end(), 1), 0);
}
