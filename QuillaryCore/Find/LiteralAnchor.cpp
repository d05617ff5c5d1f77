#include "QuillaryCore/Find/LiteralAnchor.h"

#include "QuillaryCore/Find/FoldedText.h"

#include <algorithm>
#include <vector>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

/// Farther into a literal nothing is gained by looking.
constexpr qsizetype mostUnitsLookedAt = 64;

/// How often a unit comes in notes, as a rank: letters of Italian and English texts by frequency, then other ASCII,
/// then the rest.
int commonness(char16_t unit) {
    constexpr QLatin1StringView byFrequency("zjxqwkyvbhfgmpcdulsnrotiae ");
    const auto lower = static_cast<char16_t>(unit >= u'A' && unit <= u'Z' ? unit | 0x20 : unit);
    if (lower >= 0x80) {
        return 0;
    }
    const qsizetype rank = byFrequency.indexOf(QChar(lower));
    constexpr int rankOfPunctuation = 8;
    return rank < 0 ? rankOfPunctuation : static_cast<int>(rank) + 1;
}

/// A unit of a literal that may be looked for, and how many false alarms are to be feared.
struct Candidate {
    MaskedUnit unit;
    int cost = 0;
    /// Exactly one unit of the text stands for it.
    bool isFixed = false;
};

/// The two cheapest of neighbouring candidates, or the only one; nothing if none is fixed.
std::optional<LiteralAnchor> cheapest(const std::vector<Candidate>& candidates) {
    std::optional<LiteralAnchor> best;
    int lowest = 0;
    const auto consider = [&](const LiteralAnchor& anchor, int cost) {
        if (!best || cost < lowest) {
            best = anchor;
            lowest = cost;
        }
    };
    // One unit alone gives far more false alarms than two.
    constexpr int costOfLoneliness = 60;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        if (!candidates[i].isFixed) {
            continue;
        }
        const auto offset = static_cast<qsizetype>(i);
        consider({offset, candidates[i].unit, std::nullopt, 0}, candidates[i].cost + costOfLoneliness);
        for (std::size_t j = i + 1; j < candidates.size() && candidates[j].isFixed; ++j) {
            consider({offset, candidates[i].unit, candidates[j].unit, static_cast<qsizetype>(j - i)},
                     candidates[i].cost + candidates[j].cost);
        }
    }
    return best;
}

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

LiteralAnchor LiteralAnchor::exact(QStringView literal) {
    std::vector<Candidate> candidates;
    for (const QChar unit : literal.first(std::min(literal.size(), mostUnitsLookedAt))) {
        candidates.push_back({{unit.unicode(), 0}, commonness(unit.unicode()), true});
    }
    return *cheapest(candidates);
}

std::optional<LiteralAnchor> LiteralAnchor::folded(QStringView literal) {
    // A long folding may begin within what is looked at and end behind it.
    constexpr qsizetype longest = 4;
    const std::vector<bool> isInLong =
        unitsInLongFoldings(literal.first(std::min(literal.size(), mostUnitsLookedAt + longest)));
    std::vector<Candidate> candidates;
    for (qsizetype i = 0; i < std::min(literal.size(), mostUnitsLookedAt); ++i) {
        const auto variants = case_folding::unitsThatFoldTo(literal[i].unicode());
        if (variants.isEmpty() || isInLong[static_cast<std::size_t>(i)]) {
            candidates.push_back({});
            continue;
        }
        Candidate candidate{{variants.front(), 0}, commonness(literal[i].unicode()), true};
        for (const char16_t variant : variants) {
            candidate.unit = candidate.unit.with(variant);
        }
        // Each bit beyond the one of case lets others through.
        constexpr int costOfBit = 12;
        candidate.cost += costOfBit * std::max(0, candidate.unit.width() - 1);
        candidates.push_back(candidate);
    }
    return cheapest(candidates);
}

} // namespace quillary
