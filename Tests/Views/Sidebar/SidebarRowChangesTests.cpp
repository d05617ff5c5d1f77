#include "Quillary/Sidebar/SidebarRowChanges.h"

#include "Quillary/Sidebar/SidebarRowPlaces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <numeric>
#include <random>
#include <string>
#include <vector>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

using Kind = SidebarRowChange::Kind;

std::vector<SidebarRow> rowsOf(const std::string& letters) {
    std::vector<SidebarRow> rows;
    for (const char letter : letters) {
        rows.push_back({.key = SidebarRow::Key::folder(QString(QLatin1Char(letter))), .note = {}});
    }
    return rows;
}

std::vector<SidebarRow> rowsOf(const std::vector<int>& numbers) {
    std::vector<SidebarRow> rows;
    rows.reserve(numbers.size());
    for (const int number : numbers) {
        rows.push_back({.key = {SidebarRow::Kind::note, static_cast<quint64>(number), {}}, .note = {}});
    }
    return rows;
}

/// Takes the steps as a model would.
std::vector<SidebarRow> applied(const std::vector<SidebarRowChange>& changes, std::vector<SidebarRow> rows,
                                const std::vector<SidebarRow>& after) {
    for (const SidebarRowChange& change : changes) {
        const auto first = rows.begin() + change.first;
        switch (change.kind) {
        case Kind::remove:
            rows.erase(first, first + change.count);
            break;
        case Kind::insert:
            rows.insert(first, after.begin() + change.first, after.begin() + change.first + change.count);
            break;
        case Kind::move: {
            const std::vector<SidebarRow> moved(first, first + change.count);
            rows.erase(first, first + change.count);
            const int to = change.destination > change.first ? change.destination - change.count : change.destination;
            rows.insert(rows.begin() + to, moved.begin(), moved.end());
            break;
        }
        }
    }
    return rows;
}

struct Case {
    const char* before;
    const char* after;
    std::vector<SidebarRowChange> changes;
};

} // namespace

TEST(SidebarRowChanges, TellOfNoMoreThanWhatDiffers) {
    const Case cases[] = {
        {"", "", {}},
        {"abc", "abc", {}},
        {"", "abc", {{Kind::insert, 0, 3}}},
        {"abc", "", {{Kind::remove, 0, 3}}},
        {"abde", "abcde", {{Kind::insert, 2, 1}}},
        {"abcde", "abde", {{Kind::remove, 2, 1}}},
        {"abcde", "ace", {{Kind::remove, 3, 1}, {Kind::remove, 1, 1}}},
        {"ace", "abcde", {{Kind::insert, 1, 1}, {Kind::insert, 3, 1}}},
        // A saved note goes to the top.
        {"abcde", "dabce", {{Kind::move, 3, 1, 0}}},
        // A folder goes down with its notes.
        {"Aab-Bc", "Bc-Aab", {{Kind::move, 3, 1, 0}, {Kind::move, 4, 2, 0}}},
        {"abcdef", "cdefab", {{Kind::move, 0, 2, 6}}},
        {"abcdef", "efabcd", {{Kind::move, 4, 2, 0}}},
        {"abc", "xyz", {{Kind::remove, 0, 3}, {Kind::insert, 0, 3}}},
        {"abcd", "dxa", {{Kind::remove, 1, 2}, {Kind::move, 0, 1, 2}, {Kind::insert, 1, 1}}},
    };
    for (const Case& test : cases) {
        const auto before = rowsOf(std::string(test.before));
        const auto after = rowsOf(std::string(test.after));
        const auto changes = sidebarRowChanges(before, after);
        EXPECT_EQ(applied(changes, before, after), after) << test.before << " to " << test.after;
        EXPECT_LE(changes.size(), test.changes.size()) << test.before << " to " << test.after;
        if (changes.size() == 1) {
            EXPECT_EQ(changes, test.changes) << test.before << " to " << test.after;
        }
    }
}

TEST(SidebarRowChanges, LeadFromAnyListToAnyOther) {
    std::mt19937 random(7);
    for (int round = 0; round < 600; ++round) {
        std::vector<int> pool(1 + random() % 40);
        std::iota(pool.begin(), pool.end(), 0);
        const auto draw = [&] {
            std::shuffle(pool.begin(), pool.end(), random);
            std::vector<int> drawn(pool.begin(), pool.begin() + static_cast<qsizetype>(random() % (pool.size() + 1)));
            if (random() % 2 == 0) {
                std::sort(drawn.begin(), drawn.end());
            }
            return rowsOf(drawn);
        };
        const auto before = draw();
        const auto after = draw();
        ASSERT_EQ(applied(sidebarRowChanges(before, after), before, after), after);
    }
}

TEST(SidebarRowChanges, AreOneStretchWhereSingleStepsWouldBeTooMany) {
    std::vector<int> all(10'000);
    std::iota(all.begin(), all.end(), 0);
    std::vector<int> odd;
    std::copy_if(all.begin(), all.end(), std::back_inserter(odd), [](int number) { return number % 2 == 1; });
    const auto before = rowsOf(all);
    for (const auto& after : {rowsOf(odd), rowsOf(std::vector<int>(all.rbegin(), all.rend()))}) {
        const auto changes = sidebarRowChanges(before, after);
        EXPECT_EQ(changes.size(), 2U);
        EXPECT_EQ(applied(changes, before, after), after);
    }
}

TEST(SidebarRowPlaces, KnowTheRowAtEveryHeight) {
    SidebarRowPlaces places;
    EXPECT_EQ(places.count(), 0);
    EXPECT_EQ(places.total(), 0);
    EXPECT_EQ(places.rowAt(0), 0);
    places.assign(std::vector<int>{20, 50, 30}, [](int height) { return height; });
    EXPECT_EQ(places.count(), 3);
    EXPECT_EQ(places.total(), 100);
    EXPECT_EQ(places.top(1), 20);
    EXPECT_EQ(places.height(1), 50);
    EXPECT_EQ(places.bottom(2), 100);
    const std::vector<std::pair<int, int>> rowsAt{{-1, -1}, {0, 0},  {19, 0}, {20, 1},
                                                  {69, 1},  {70, 2}, {99, 2}, {100, 3}};
    for (const auto& [y, row] : rowsAt) {
        EXPECT_EQ(places.rowAt(y), row) << y;
    }
}
