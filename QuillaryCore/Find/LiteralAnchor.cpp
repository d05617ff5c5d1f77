#include "QuillaryCore/Find/LiteralAnchor.h"

#include "QuillaryCore/Find/FoldedText.h"

#include <QVarLengthArray>

#include <algorithm>

namespace quillary {

namespace {

/// Farther into a literal nothing is gained by looking.
constexpr qsizetype mostUnitsLookedAt = 48;

/// Windows spread over a text. A note has few kinds of lines; what is rare in these is rare in the rest.
class Sample {
public:
    explicit Sample(QStringView text) {
        constexpr qsizetype windows = 16;
        constexpr qsizetype window = 256;
        if (text.size() <= windows * window) {
            m_windows.append(text);
            return;
        }
        for (qsizetype i = 0; i < windows; ++i) {
            m_windows.append(text.sliced((text.size() - window) / (windows - 1) * i, window));
        }
    }

    /// How often a unit shows, and how often two do at a distance.
    qsizetype count(MaskedUnit unit) const {
        return countIf(0, [&](const QChar* place) { return unit.matches(*place); });
    }

    qsizetype count(MaskedUnit first, MaskedUnit second, qsizetype distance) const {
        return countIf(distance,
                       [&](const QChar* place) { return first.matches(*place) && second.matches(place[distance]); });
    }

private:
    template <typename Condition>
    qsizetype countIf(qsizetype reach, Condition condition) const {
        qsizetype count = 0;
        for (const QStringView window : m_windows) {
            for (qsizetype at = 0; at < window.size() - reach; ++at) {
                count += condition(window.data() + at) ? 1 : 0;
            }
        }
        return count;
    }

    QVarLengthArray<QStringView, 16> m_windows;
};

/// Which units of a folded literal a letter that stands for several may take part in.
std::vector<bool> unitsInLongFoldings(QStringView literal) {
    std::vector<bool> result(static_cast<std::size_t>(literal.size()), false);
    for (const QString& folding : case_folding::longFoldings()) {
        for (qsizetype at = literal.indexOf(folding); at >= 0; at = literal.indexOf(folding, at + 1)) {
            std::fill_n(result.begin() + at, folding.size(), true);
        }
    }
    return result;
}

} // namespace

LiteralAnchors LiteralAnchors::exact(QStringView literal) {
    LiteralAnchors anchors;
    for (qsizetype i = 0; i < std::min(literal.size(), mostUnitsLookedAt); ++i) {
        anchors.m_places.push_back({i, {literal[i].unicode(), 0}, 0});
    }
    return anchors;
}

LiteralAnchors LiteralAnchors::folded(QStringView literal) {
    // A long folding may begin within what is looked at and end behind it.
    constexpr qsizetype longest = 4;
    const std::vector<bool> isInLong =
        unitsInLongFoldings(literal.first(std::min(literal.size(), mostUnitsLookedAt + longest)));
    LiteralAnchors anchors;
    qsizetype stretch = 0;
    for (qsizetype i = 0; i < std::min(literal.size(), mostUnitsLookedAt); ++i) {
        const auto variants = case_folding::unitsThatFoldTo(literal[i].unicode());
        if (variants.isEmpty() || isInLong[static_cast<std::size_t>(i)]) {
            ++stretch;
            continue;
        }
        Place place{i, {variants.front(), 0}, stretch};
        for (const char16_t variant : variants) {
            place.unit = place.unit.with(variant);
        }
        anchors.m_places.push_back(place);
    }
    return anchors;
}

LiteralAnchor LiteralAnchors::rarest(QStringView text) const {
    constexpr std::size_t rareUnits = 6;
    const Sample sample(text);

    struct Counted {
        Place place;
        qsizetype count = 0;
    };

    std::vector<Counted> places;
    for (const Place& place : m_places) {
        places.push_back({place, sample.count(place.unit)});
    }
    std::stable_sort(places.begin(), places.end(),
                     [](const Counted& a, const Counted& b) { return a.count < b.count; });
    // Two units together are rarer than either, and how much rarer only the text can tell.
    places.resize(std::min(places.size(), rareUnits));
    const Place& rarestUnit = places.front().place;
    LiteralAnchor best{rarestUnit.offset, rarestUnit.unit, std::nullopt, 0};
    std::optional<qsizetype> fewest;
    for (const Counted& one : places) {
        for (const Counted& other : places) {
            const qsizetype distance = other.place.offset - one.place.offset;
            if (distance <= 0 || one.place.stretch != other.place.stretch) {
                continue;
            }
            const qsizetype count = sample.count(one.place.unit, other.place.unit, distance);
            if (!fewest || count < *fewest) {
                fewest = count;
                best = {one.place.offset, one.place.unit, other.place.unit, distance};
            }
        }
    }
    return best;
}

} // namespace quillary
