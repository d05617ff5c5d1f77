#pragma once

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <span>
#include <utility>
#include <vector>

namespace quillary {

/// Brings entries into the ascending order of a number each; those of one number keep their order. Takes time in
/// proportion to the entries, a byte of the numbers after the other from the last one on (Knuth, The Art of Computer
/// Programming, volume 3, 5.2.5); bytes that all numbers have in common take none.
template <typename Entry, typename NumberOf>
void radixSort(std::span<Entry> entries, NumberOf numberOf) {
    constexpr std::size_t few = 64;
    constexpr std::size_t digits = 256;
    constexpr int bits = 8;
    constexpr int passes = 8;
    if (entries.size() < few) {
        std::ranges::stable_sort(entries, {}, numberOf);
        return;
    }
    const auto digitOf = [&](const Entry& entry, int pass) {
        return static_cast<std::size_t>(numberOf(entry) >> (pass * bits)) % digits;
    };
    std::array<std::array<std::size_t, digits>, passes> counts{};
    for (const Entry& entry : entries) {
        for (int pass = 0; pass < passes; ++pass) {
            ++counts[static_cast<std::size_t>(pass)][digitOf(entry, pass)];
        }
    }
    std::vector<Entry> room(entries.size());
    std::span<Entry> from = entries;
    std::span<Entry> to = room;
    for (int pass = 0; pass < passes; ++pass) {
        std::array<std::size_t, digits>& places = counts[static_cast<std::size_t>(pass)];
        if (places[digitOf(from.front(), pass)] == from.size()) {
            continue;
        }
        std::size_t place = 0;
        for (std::size_t& count : places) {
            place += std::exchange(count, place);
        }
        for (Entry& entry : from) {
            to[places[digitOf(entry, pass)]++] = entry;
        }
        std::swap(from, to);
    }
    if (from.data() != entries.data()) {
        std::ranges::copy(from, entries.begin());
    }
}

} // namespace quillary
