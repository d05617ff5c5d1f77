#include "QuillaryCore/Text/AttributeRanges.h"

#include <gmock/gmock.h>

#include <map>
#include <random>

namespace quillary {

using Ranges = AttributeRanges<int>;
using Span = Ranges::Span;

void PrintTo(const Span& span, std::ostream* out) {
    *out << span.range.location << "+" << span.range.length << ": " << span.attribute;
}

namespace {

constexpr TextRange everything{0, 1'000'000'000};

Ranges layer(std::vector<Span> spans) {
    Ranges ranges;
    ranges.setAll(std::move(spans));
    return ranges;
}

TEST(AttributeRanges, IsEmptyAtFirst) {
    Ranges ranges;
    EXPECT_TRUE(ranges.isEmpty());
    EXPECT_EQ(ranges.count(), 0);
    EXPECT_TRUE(ranges.within(everything).empty());
    ranges.remove(everything);
    ranges.follow({0, 5, 7});
    EXPECT_TRUE(ranges.isEmpty());
    ranges.add({3, 2}, 1);
    EXPECT_THAT(ranges.within(everything), testing::ElementsAre(Span{{3, 2}, 1}));
    ranges.clear();
    EXPECT_TRUE(ranges.isEmpty());
}

TEST(AttributeRanges, LetsALaterRangeTakeItsPlace) {
    struct Case {
        std::vector<Span> added;
        std::vector<Span> left;
    };

    const Case cases[] = {
        {{{{4, 0}, 1}}, {}},
        {{{{4, 2}, 1}, {{0, 2}, 2}}, {{{0, 2}, 2}, {{4, 2}, 1}}},
        {{{{4, 2}, 1}, {{4, 2}, 2}}, {{{4, 2}, 2}}},
        {{{{4, 2}, 1}, {{2, 2}, 2}, {{6, 2}, 3}}, {{{2, 2}, 2}, {{4, 2}, 1}, {{6, 2}, 3}}},
        {{{{0, 9}, 1}, {{3, 2}, 2}}, {{{0, 3}, 1}, {{3, 2}, 2}, {{5, 4}, 1}}},
        {{{{0, 9}, 1}, {{0, 2}, 2}}, {{{0, 2}, 2}, {{2, 7}, 1}}},
        {{{{0, 9}, 1}, {{7, 2}, 2}}, {{{0, 7}, 1}, {{7, 2}, 2}}},
        {{{{2, 3}, 1}, {{6, 3}, 2}, {{4, 3}, 3}}, {{{2, 2}, 1}, {{4, 3}, 3}, {{7, 2}, 2}}},
        {{{{1, 1}, 1}, {{3, 1}, 2}, {{5, 1}, 3}, {{0, 9}, 4}}, {{{0, 9}, 4}}},
    };
    for (const auto& [added, left] : cases) {
        Ranges oneByOne;
        for (const auto& [range, attribute] : added) {
            oneByOne.add(range, attribute);
        }
        EXPECT_EQ(oneByOne.within(everything), left);
        EXPECT_EQ(layer(added).within(everything), left);
    }
}

TEST(AttributeRanges, TakesAttributesOffARange) {
    struct Case {
        TextRange removed;
        std::vector<Span> left;
    };

    const Case cases[] = {
        {{0, 0}, {{{2, 4}, 1}, {{8, 2}, 2}}},
        {{3, 0}, {{{2, 4}, 1}, {{8, 2}, 2}}},
        {{0, 2}, {{{2, 4}, 1}, {{8, 2}, 2}}},
        {{6, 2}, {{{2, 4}, 1}, {{8, 2}, 2}}},
        {{3, 2}, {{{2, 1}, 1}, {{5, 1}, 1}, {{8, 2}, 2}}},
        {{2, 4}, {{{8, 2}, 2}}},
        {{4, 5}, {{{2, 2}, 1}, {{9, 1}, 2}}},
        {everything, {}},
    };
    for (const auto& [removed, left] : cases) {
        Ranges ranges = layer({{{2, 4}, 1}, {{8, 2}, 2}});
        ranges.remove(removed);
        EXPECT_EQ(ranges.within(everything), left);
    }
}

TEST(AttributeRanges, FollowsAChangeOfTheText) {
    struct Case {
        const char* name;
        TextChange change;
        std::vector<Span> left;
    };

    // Spans 10..20 and 20..30.
    const Case cases[] = {
        {"typed before", {3, 0, 2}, {{{12, 10}, 1}, {{22, 10}, 2}}},
        {"typed at the start", {10, 0, 2}, {{{12, 10}, 1}, {{22, 10}, 2}}},
        {"typed within", {15, 0, 2}, {{{10, 12}, 1}, {{22, 10}, 2}}},
        {"typed between", {20, 0, 2}, {{{10, 10}, 1}, {{22, 10}, 2}}},
        {"typed at the end", {30, 0, 2}, {{{10, 10}, 1}, {{20, 10}, 2}}},
        {"typed behind", {40, 0, 2}, {{{10, 10}, 1}, {{20, 10}, 2}}},
        {"deleted before", {3, 2, 0}, {{{8, 10}, 1}, {{18, 10}, 2}}},
        {"deleted up to the start", {8, 2, 0}, {{{8, 10}, 1}, {{18, 10}, 2}}},
        {"deleted within", {12, 5, 0}, {{{10, 5}, 1}, {{15, 10}, 2}}},
        {"deleted from the start", {10, 5, 0}, {{{10, 5}, 1}, {{15, 10}, 2}}},
        {"deleted over the start", {8, 5, 1}, {{{9, 7}, 1}, {{16, 10}, 2}}},
        {"deleted over the border", {15, 10, 3}, {{{10, 5}, 1}, {{18, 5}, 2}}},
        {"deleted to the end", {25, 5, 1}, {{{10, 10}, 1}, {{20, 5}, 2}}},
        {"deleted one", {10, 10, 0}, {{{10, 10}, 2}}},
        {"replaced one", {10, 10, 4}, {{{14, 10}, 2}}},
        {"replaced within", {12, 2, 7}, {{{10, 15}, 1}, {{25, 10}, 2}}},
        {"deleted both", {5, 30, 1}, {}},
        {"deleted behind", {30, 7, 0}, {{{10, 10}, 1}, {{20, 10}, 2}}},
    };
    for (const auto& [name, change, left] : cases) {
        Ranges ranges = layer({{{10, 10}, 1}, {{20, 10}, 2}});
        ranges.follow(change);
        EXPECT_EQ(ranges.within(everything), left) << name;
    }
}

TEST(AttributeRanges, GivesWhatHasUnitsInCommonWithARange) {
    const Ranges ranges = layer({{{10, 10}, 1}, {{20, 10}, 2}, {{40, 1}, 3}});

    struct Case {
        TextRange range;
        std::vector<Span> found;
    };

    const Case cases[] = {
        {{0, 10}, {}},
        {{0, 11}, {{{10, 10}, 1}}},
        {{15, 1}, {{{10, 10}, 1}}},
        {{19, 2}, {{{10, 10}, 1}, {{20, 10}, 2}}},
        {{20, 20}, {{{20, 10}, 2}}},
        {{30, 10}, {}},
        {{29, 12}, {{{20, 10}, 2}, {{40, 1}, 3}}},
        {{41, 100}, {}},
    };
    for (const auto& [range, found] : cases) {
        EXPECT_EQ(ranges.within(range), found);
    }
}

/// The same with an entry for each unit: the number of the span that it belongs to, or 0.
class UnitAttributes {
public:
    explicit UnitAttributes(qsizetype length) : m_units(static_cast<std::size_t>(length)) {}

    qsizetype length() const { return static_cast<qsizetype>(m_units.size()); }

    void set(TextRange range, int attribute) {
        const int number = attribute == 0 ? 0 : newSpan(attribute);
        std::fill(m_units.begin() + range.location, m_units.begin() + range.end(), number);
        // What is left of a span on the other side is a span of its own now.
        if (range.isEmpty() || range.location == 0 || range.end() == length()) {
            return;
        }
        const int left = m_units[static_cast<std::size_t>(range.location - 1)];
        const auto rest = m_units.begin() + range.end();
        if (left != 0 && *rest == left) {
            const int other = newSpan(m_attributes[left]);
            std::replace(rest, m_units.end(), left, other);
        }
    }

    void follow(const TextChange& change) {
        const auto at =
            m_units.erase(m_units.begin() + change.offset, m_units.begin() + change.offset + change.removedLength);
        const bool isWithin = at != m_units.begin() && at != m_units.end() && *at == *(at - 1);
        const int number = isWithin ? *at : 0;
        m_units.insert(at, static_cast<std::size_t>(change.insertedLength), number);
    }

    std::vector<Span> within(TextRange range) const {
        std::vector<Span> spans;
        int last = 0;
        for (qsizetype unit = 0; unit < length(); ++unit) {
            const int number = m_units[static_cast<std::size_t>(unit)];
            if (number != 0 && number == last) {
                ++spans.back().range.length;
            } else if (number != 0) {
                spans.push_back({{unit, 1}, m_attributes.at(number)});
            }
            last = number;
        }
        std::erase_if(spans, [&](const Span& span) {
            return span.range.end() <= range.location || span.range.location >= range.end();
        });
        return spans;
    }

private:
    int newSpan(int attribute) {
        m_attributes[++m_spans] = attribute;
        return m_spans;
    }

    std::vector<int> m_units;
    std::map<int, int> m_attributes;
    int m_spans = 0;
};

class RandomRanges : public testing::TestWithParam<unsigned> {};

TEST_P(RandomRanges, EqualAnEntryForEachUnitAfterEachStep) {
    std::mt19937 random(GetParam());
    const auto number = [&](qsizetype greatest) {
        return std::uniform_int_distribution<qsizetype>(0, greatest)(random);
    };
    Ranges ranges;
    UnitAttributes model(300);
    const auto someRange = [&](qsizetype longest) {
        const qsizetype location = number(model.length());
        return TextRange{location, number(std::min(longest, model.length() - location))};
    };
    for (int step = 0; step < 10'000; ++step) {
        switch (number(9)) {
        case 0:
        case 1:
        case 2: {
            const TextRange range = someRange(12);
            ranges.add(range, step + 1);
            if (!range.isEmpty()) {
                model.set(range, step + 1);
            }
            break;
        }
        case 3: {
            const TextRange range = someRange(20);
            ranges.remove(range);
            model.set(range, 0);
            break;
        }
        case 4: {
            std::vector<Span> spans;
            model.set({0, model.length()}, 0);
            for (qsizetype offset = number(9); offset + 5 < model.length(); offset += 1 + number(9)) {
                const TextRange range{offset, number(5)};
                spans.push_back({range, step + 1});
                if (!range.isEmpty()) {
                    model.set(range, step + 1);
                }
            }
            ranges.setAll(spans);
            break;
        }
        default: {
            const TextRange range = someRange(number(6) == 0 ? 100 : 4);
            const TextChange change{range.location, range.length, model.length() > 400 ? 0 : number(8)};
            ranges.follow(change);
            model.follow(change);
        }
        }
        ASSERT_EQ(ranges.within(everything), model.within(everything)) << "step " << step;
        const TextRange range = someRange(40);
        if (!range.isEmpty()) {
            ASSERT_EQ(ranges.within(range), model.within(range)) << "step " << step;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomRanges, testing::Values(1U, 2U, 3U));

TEST(AttributeRanges, FollowsThousandsOfChangesAmongThousandsOfRanges) {
    // From the last range to the first and back, so that the place of the shift goes all the way.
    std::vector<Span> spans;
    for (qsizetype i = 0; i < 20'000; ++i) {
        spans.push_back({{i * 10, 5}, static_cast<int>(i)});
    }
    Ranges ranges = layer(spans);
    for (qsizetype i = 20'000 - 1; i >= 0; --i) {
        ranges.follow({i * 10 + 2, 0, 1});
    }
    for (qsizetype i = 0; i < 20'000; ++i) {
        ranges.follow({i * 11, 1, 0});
        ranges.follow({i * 11, 0, 1});
    }
    for (qsizetype i = 0; i < 20'000; ++i) {
        spans[static_cast<std::size_t>(i)].range = {i * 11 + 1, 5};
    }
    EXPECT_TRUE(ranges.within(everything) == spans);
}

} // namespace

} // namespace quillary
