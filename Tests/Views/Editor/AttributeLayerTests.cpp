#include "Quillary/Editor/AttributeLayer.h"

#include <QMap>
#include <QRandomGenerator>

#include <gmock/gmock.h>

namespace quillary {

namespace {

using Span = AttributeLayer::Span;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr TextRange everything{0, 1'000'000};

TEST(AttributeLayer, GivesTheSpansThatShareUnitsWithARange) {
    AttributeLayer layer;
    layer.add({10, 5}, 1);
    layer.add({20, 5}, 2);
    layer.add({30, 5}, 3);
    EXPECT_THAT(layer.within({15, 5}), IsEmpty());
    EXPECT_THAT(layer.within({14, 7}), ElementsAre(Span{{10, 5}, 1}, Span{{20, 5}, 2}));
    EXPECT_THAT(layer.within({22, 1}), ElementsAre(Span{{20, 5}, 2}));
}

TEST(AttributeLayer, AnEmptyRangeGetsNoSpan) {
    AttributeLayer layer;
    layer.add({10, 0}, 1);
    EXPECT_TRUE(layer.isEmpty());
}

TEST(AttributeLayer, ALaterColourTakesTheRangeFromEarlierOnes) {
    AttributeLayer layer;
    layer.add({0, 10}, 1);
    layer.add({3, 4}, 2);
    EXPECT_THAT(layer.within(everything), ElementsAre(Span{{0, 3}, 1}, Span{{3, 4}, 2}, Span{{7, 3}, 1}));
}

TEST(AttributeLayer, MovesGrowsAndShrinksWithTheText) {
    struct Case {
        TextChange change;
        std::vector<Span> expected;
    };

    const std::vector<Case> cases = {
        {{0, 0, 3}, {{{13, 10}, 1}}},  // before
        {{10, 0, 3}, {{{13, 10}, 1}}}, // at the start: stays uncoloured
        {{15, 0, 3}, {{{10, 13}, 1}}}, // within
        {{20, 0, 3}, {{{10, 10}, 1}}}, // at the end: stays uncoloured
        {{25, 4, 0}, {{{10, 10}, 1}}}, // behind
        {{12, 4, 1}, {{{10, 7}, 1}}},  // within, replaced
        {{5, 10, 2}, {{{7, 5}, 1}}},   // its start removed
        {{15, 10, 2}, {{{10, 5}, 1}}}, // its end removed
        {{10, 10, 10}, {}},            // replaced as a whole
        {{0, 100, 0}, {}},
    };
    for (const Case& each : cases) {
        AttributeLayer layer;
        layer.add({10, 10}, 1);
        layer.shift(each.change);
        EXPECT_THAT(layer.within(everything), testing::ElementsAreArray(each.expected))
            << each.change.offset << ' ' << each.change.removedLength << ' ' << each.change.insertedLength;
    }
}

TEST(AttributeLayer, AgreesWithOneColourPerUnit) {
    QRandomGenerator random(1);
    AttributeLayer layer;
    std::vector<QRgb> units(200);
    for (int step = 0; step < 5000; ++step) {
        const auto location = static_cast<qsizetype>(random.bounded(static_cast<int>(units.size())));
        const qsizetype length = random.bounded(30);
        const qsizetype inside = std::min(length, std::ssize(units) - location);
        const auto begin = units.begin() + location;
        switch (random.bounded(3)) {
        case 0: {
            const QRgb color = 1 + random.bounded(4U);
            layer.add({location, inside}, color);
            std::fill(begin, begin + inside, color);
            break;
        }
        case 1:
            layer.remove({location, inside});
            std::fill(begin, begin + inside, 0);
            break;
        default: {
            const qsizetype inserted = random.bounded(20);
            const bool isWithinOne = location > 0 && location + inside < std::ssize(units) && units[location - 1] != 0;
            QRgb color = 0;
            for (const Span& span : layer.within(everything)) {
                if (isWithinOne && span.range.location < location && span.range.end() > location + inside) {
                    color = span.color;
                }
            }
            layer.shift({location, inside, inserted});
            units.insert(units.erase(begin, begin + inside), static_cast<std::size_t>(inserted), color);
            if (units.size() > 400 || units.size() < 20) {
                units.assign(200, 0);
                layer.clear();
            }
        }
        }
        std::vector<QRgb> shown(units.size());
        for (const Span& span : layer.within(everything)) {
            std::fill_n(shown.begin() + span.range.location, span.range.length, span.color);
        }
        ASSERT_EQ(shown, units) << "step " << step;
    }
}

} // namespace

} // namespace quillary
