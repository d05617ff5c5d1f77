#include "Quillary/Sidebar/SidebarRowChanges.h"

#include <QHash>

#include <algorithm>

namespace quillary {

namespace {

using Change = SidebarRowChange;

/// Each step moves the rows behind it in memory, and whoever follows them does as much again.
constexpr std::size_t mostSteps = 64;

struct Stretch {
    int first;
    int beforeCount;
    int afterCount;
};

Stretch differingStretch(const std::vector<SidebarRow>& before, const std::vector<SidebarRow>& after) {
    const auto sameKey = [](const SidebarRow& a, const SidebarRow& b) { return a.key == b.key; };
    const auto [beforeHead, afterHead] =
        std::mismatch(before.begin(), before.end(), after.begin(), after.end(), sameKey);
    const auto [beforeTail, afterTail] = std::mismatch(before.rbegin(), std::make_reverse_iterator(beforeHead),
                                                       after.rbegin(), std::make_reverse_iterator(afterHead), sameKey);
    return {static_cast<int>(beforeHead - before.begin()), static_cast<int>(beforeTail.base() - beforeHead),
            static_cast<int>(afterTail.base() - afterHead)};
}

/// Which members of a list of different numbers make up its longest rising part (patience sorting).
std::vector<bool> longestRisingPart(const std::vector<int>& numbers) {
    std::vector<std::size_t> ends;
    std::vector<std::size_t> previous(numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto place = std::lower_bound(ends.begin(), ends.end(), numbers[i],
                                            [&numbers](std::size_t end, int number) { return numbers[end] < number; });
        previous[i] = place == ends.begin() ? i : *(place - 1);
        if (place == ends.end()) {
            ends.push_back(i);
        } else {
            *place = i;
        }
    }
    std::vector<bool> isIn(numbers.size());
    for (std::size_t left = ends.size(), i = ends.empty() ? 0 : ends.back(); left > 0; --left, i = previous[i]) {
        isIn[i] = true;
    }
    return isIn;
}

template <typename List>
void moveBlock(List& list, std::size_t at, std::size_t end, std::size_t destination) {
    const auto place = [&list](std::size_t i) { return list.begin() + static_cast<qsizetype>(i); };
    if (destination < at) {
        std::rotate(place(destination), place(at), place(end));
    } else {
        std::rotate(place(at), place(end), place(destination));
    }
}

/// The moves that bring different numbers into rising order. Neighbours that stay neighbours move together.
void appendMoves(std::vector<Change>& changes, std::vector<int> numbers, int offset) {
    std::vector<bool> isSettled = longestRisingPart(numbers);
    std::vector<int> inOrder = numbers;
    std::sort(inOrder.begin(), inOrder.end());
    std::vector<int> unsettled;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (!isSettled[i]) {
            unsettled.push_back(numbers[i]);
        }
    }
    std::sort(unsettled.begin(), unsettled.end());

    for (std::size_t done = 0; done < unsettled.size() && changes.size() <= mostSteps;) {
        const int number = unsettled[done];
        const auto at = static_cast<std::size_t>(std::find(numbers.begin(), numbers.end(), number) - numbers.begin());
        std::size_t end = at + 1;
        auto next = std::upper_bound(inOrder.begin(), inOrder.end(), number);
        while (end < numbers.size() && !isSettled[end] && next != inOrder.end() && numbers[end] == *next) {
            ++end;
            ++next;
        }
        std::size_t destination = 0;
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            if (isSettled[i] && numbers[i] < number) {
                destination = i + 1;
            }
        }
        std::fill(isSettled.begin() + static_cast<qsizetype>(at), isSettled.begin() + static_cast<qsizetype>(end),
                  true);
        done += end - at;
        if (destination == at) {
            continue;
        }
        changes.push_back({Change::Kind::move, offset + static_cast<int>(at), static_cast<int>(end - at),
                           offset + static_cast<int>(destination)});
        moveBlock(numbers, at, end, destination);
        moveBlock(isSettled, at, end, destination);
    }
}

/// Calls `run` with the first place and the length of every run of places that `isIn` says yes to.
template <typename IsIn, typename Run>
void forEachRun(int count, const IsIn& isIn, const Run& run) {
    for (int i = 0; i < count;) {
        int end = i;
        while (end < count && isIn(end)) {
            ++end;
        }
        if (end > i) {
            run(i, end - i);
        }
        i = end + 1;
    }
}

} // namespace

std::vector<SidebarRowChange> sidebarRowChanges(const std::vector<SidebarRow>& before,
                                                const std::vector<SidebarRow>& after) {
    const Stretch stretch = differingStretch(before, after);
    const int first = stretch.first;
    const auto start = static_cast<std::size_t>(first);
    const int beforeCount = stretch.beforeCount;
    const int afterCount = stretch.afterCount;
    std::vector<Change> changes;

    QHash<SidebarRow::Key, int> places;
    places.reserve(afterCount);
    for (int i = 0; i < afterCount; ++i) {
        places.insert(after[start + static_cast<std::size_t>(i)].key, i);
    }
    std::vector<int> kept;
    std::vector<bool> stays(static_cast<std::size_t>(beforeCount));
    std::vector<bool> isNew(static_cast<std::size_t>(afterCount), true);
    for (int i = 0; i < beforeCount; ++i) {
        const auto place = places.constFind(before[start + static_cast<std::size_t>(i)].key);
        if (place != places.constEnd()) {
            stays[static_cast<std::size_t>(i)] = true;
            isNew[static_cast<std::size_t>(*place)] = false;
            kept.push_back(*place);
        }
    }

    forEachRun(
        beforeCount, [&stays](int i) { return !stays[static_cast<std::size_t>(i)]; },
        [&](int run, int count) {
            changes.push_back({Change::Kind::remove, first + run, count});
        });
    // From the last one up, so that the places of the others hold.
    std::reverse(changes.begin(), changes.end());
    if (changes.size() <= mostSteps) {
        appendMoves(changes, kept, first);
    }
    forEachRun(
        afterCount, [&isNew](int i) { return isNew[static_cast<std::size_t>(i)]; },
        [&](int run, int count) {
            changes.push_back({Change::Kind::insert, first + run, count});
        });
    if (changes.size() <= mostSteps) {
        return changes;
    }
    changes.clear();
    if (beforeCount > 0) {
        changes.push_back({Change::Kind::remove, first, beforeCount});
    }
    if (afterCount > 0) {
        changes.push_back({Change::Kind::insert, first, afterCount});
    }
    return changes;
}

} // namespace quillary
