#include "QuillaryCore/RadixSort.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <random>

using namespace quillary;

namespace {

struct Entry {
    quint64 number = 0;
    std::size_t position = 0;

    friend bool operator==(const Entry&, const Entry&) = default;
};

} // namespace

TEST(RadixSort, SortsAsAStableSortDoes) {
    std::mt19937_64 random(7);

    struct Case {
        const char* name;
        std::function<quint64(std::size_t)> numberAt;
    };

    const std::vector<Case> cases = {
        {"any numbers", [&](std::size_t) { return random(); }},
        {"few numbers", [&](std::size_t) { return random() % 3; }},
        {"one number", [](std::size_t) { return quint64(42); }},
        {"in order", [](std::size_t i) { return quint64(i); }},
        {"backwards", [](std::size_t i) { return std::numeric_limits<quint64>::max() - i; }},
        {"only the first byte differs", [&](std::size_t) { return random() << 56; }},
        {"only a byte in the middle differs", [&](std::size_t) { return (random() & 0xFF) << 32 | 0x11; }},
        {"two bytes differ", [&](std::size_t) { return random() & 0xFF00'0000'0000'00FF; }},
        {"the ends of the range", [](std::size_t i) { return i % 2 == 0 ? 0 : std::numeric_limits<quint64>::max(); }},
    };
    for (const Case& each : cases) {
        for (const std::size_t size : {0, 1, 2, 63, 64, 65, 255, 256, 257, 5000}) {
            std::vector<Entry> entries;
            for (std::size_t i = 0; i < size; ++i) {
                entries.push_back({each.numberAt(i), i});
            }
            std::vector<Entry> expected = entries;
            std::ranges::stable_sort(expected, {}, &Entry::number);
            radixSort(std::span(entries), [](const Entry& entry) { return entry.number; });
            EXPECT_EQ(entries, expected) << each.name << ", " << size;
        }
    }
}
