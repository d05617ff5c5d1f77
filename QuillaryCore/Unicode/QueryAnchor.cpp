#include "QuillaryCore/Unicode/QueryAnchor.h"

#include "QuillaryCore/Unicode/CanonicalEquality.h"
#include "QuillaryCore/Unicode/CaselessIndex.h"

#include <QSet>

#include <unicode/uchar.h>

#include <algorithm>
#include <span>
#include <utility>

namespace quillary {

namespace {

/// A character of the query and where it stands.
struct QueryCharacter {
    char32_t value;
    qsizetype offset;
    qsizetype length;
};

std::vector<QueryCharacter> charactersOf(QStringView query) {
    std::vector<QueryCharacter> characters;
    for (qsizetype i = 0; i < query.size();) {
        const bool isPair = query[i].isHighSurrogate() && i + 1 < query.size() && query[i + 1].isLowSurrogate();
        const char32_t value = isPair ? QChar::surrogateToUcs4(query[i], query[i + 1]) : query[i].unicode();
        characters.push_back({value, i, isPair ? 2 : 1});
        i += characters.back().length;
    }
    return characters;
}

/// Whether a character is one that canonical order may move past others.
bool isMark(char32_t character) {
    return u_getCombiningClass(static_cast<UChar32>(character)) != 0;
}

char16_t leadUnit(char32_t character) {
    return QChar::requiresSurrogates(character) ? QChar::highSurrogate(character) : static_cast<char16_t>(character);
}

/// Whether a form that is longer than a character may stand in a match for a stretch of the query around it.
bool mayCover(QStringView form, QStringView query, const QueryCharacter& character) {
    for (qsizetype inForm = 0; inForm + character.length <= form.size(); ++inForm) {
        const qsizetype start = character.offset - inForm;
        if (start >= 0 && query.sliced(start).startsWith(form)) {
            return true;
        }
    }
    return false;
}

/// What a query consists of.
struct QueryContents {
    QStringView query;
    QSet<char32_t> characters;
    bool holdsMarks;

    bool holdsAll(const QList<uint>& parts) const {
        return std::all_of(parts.begin(), parts.end(), [&](uint part) { return characters.contains(part); });
    }
};

/// Finds the units that a match without ligatures has in the places of a character, if it is firm, and adds to the
/// ligatures what can take its place otherwise.
///
/// A match divides into characters whose forms, one after the other, are the query, but that marks may have changed
/// places. No mark stands before or behind a character that is followed by none, so what stands for it is either a
/// character of this very form, or one whose longer form is found in the query around it.
std::optional<std::vector<UnitSet>> firmUnitsOf(const QueryCharacter& character, char32_t next,
                                                const QueryContents& contents, QueryAnchor::Ligatures& ligatures) {
    if (isMark(character.value) || isMark(next) || isComposingJamo(character.value)) {
        return std::nullopt;
    }
    const QStringView own = contents.query.sliced(character.offset, character.length);
    std::vector<UnitSet> units(static_cast<std::size_t>(character.length));
    const auto allow = [&](QStringView spelling) {
        // Two pairs of surrogates may differ in the second only, or a mixture of them would count as one.
        const bool fits = spelling.size() == own.size() && (own.size() == 1 || spelling.front() == own.front());
        for (std::size_t i = 0; fits && i < units.size(); ++i) {
            units[i].insert(spelling[static_cast<qsizetype>(i)].unicode());
        }
        return fits;
    };
    bool isFirm = allow(own);
    CaselessIndex::instance().forEachHolding(character.value, [&](char32_t other, QStringView form) {
        const QList<uint> parts = form.toUcs4();
        if (!isFirm || !contents.holdsAll(parts)) {
            return;
        }
        const auto firstMark = std::find_if(parts.begin(), parts.end(), isMark);
        if (form == own) {
            // The iota below a letter is a mark, which may stand before others that its form stands behind.
            isFirm = !(isMark(other) && contents.holdsMarks) && allow(QString::fromUcs4(&other, 1));
        } else if (firstMark == parts.end()) {
            isFirm = !mayCover(form, contents.query, character) || ligatures.insert(leadUnit(other));
        } else {
            // The character with marks on it would bring a mark behind it into the form.
            isFirm = firstMark == parts.begin() + 1 && std::all_of(firstMark, parts.end(), isMark);
        }
    });
    return isFirm ? std::optional(units) : std::nullopt;
}

/// Units of which every match holds one, because it holds a character that brings `character` into its form; all else
/// that this character brings must be in the query as well. Nothing if they are too different.
std::optional<QueryAnchor::Any> setFor(const QueryCharacter& character, const QueryContents& contents) {
    QueryAnchor::Any units;
    bool fits = units.insert(leadUnit(character.value));
    CaselessIndex::instance().forEachHolding(character.value, [&](char32_t other, QStringView form) {
        if (contents.holdsAll(form.toUcs4())) {
            fits = fits && units.insert(leadUnit(other));
        }
    });
    if (isComposingJamo(character.value)) {
        // A syllable begins up to two jamo before and ends up to two behind.
        for (qsizetype start = std::max(character.offset - 2, qsizetype{0}); start <= character.offset; ++start) {
            for (qsizetype length = 2; length <= 3 && start + length <= contents.query.size(); ++length) {
                const QString syllable = canonicalForm(contents.query.sliced(start, length));
                if (start + length > character.offset && syllable.size() == 1) {
                    fits = fits && units.insert(syllable.front().unicode());
                }
            }
        }
    }
    return fits ? std::optional(units) : std::nullopt;
}

/// What a scan can look for in the place of a few units, if they are not too different.
std::optional<MaskedUnit> maskedUnit(const UnitSet& units) {
    constexpr int widest = 5;
    MaskedUnit result{*units.begin(), 0};
    for (const char16_t unit : units) {
        result = result.with(unit);
    }
    return result.width() <= widest ? std::optional(result) : std::nullopt;
}

/// How common a folded unit is in the notes that one expects, from 0 for the rare to 26 for blanks.
qsizetype commonness(QChar unit) {
    static constexpr QStringView rising = u"jxwkyqzhbfgvmpudcsltrnoaie ";
    return std::max(rising.indexOf(unit), qsizetype{0});
}

/// A sign and how often it will be seen where there is no match: the less the better.
template <typename Sign>
struct Rated {
    Sign sign;
    qsizetype commonness;
};

/// The two rarest units of a stretch of firm ones that a mask can express; or the rarest one, if no two are together.
std::optional<Rated<QueryAnchor::Pair>> bestPair(QStringView query, const std::vector<std::optional<UnitSet>>& firm) {
    // Farther apart, the second would come from memory of its own.
    constexpr qsizetype longestDistance = 64;
    // What a lone unit is behind any two.
    constexpr qsizetype loneness = 100;
    std::optional<Rated<QueryAnchor::Pair>> best;
    const auto propose = [&](qsizetype offset, qsizetype distance, MaskedUnit first, MaskedUnit second) {
        const qsizetype common = distance == 0 ? loneness + commonness(query[offset])
                                               : commonness(query[offset]) + commonness(query[offset + distance]);
        const qsizetype rating = common + first.width() + second.width();
        if (!best || rating < best->commonness) {
            best = {{offset, distance, first, second}, rating};
        }
    };
    for (qsizetype i = 0; i < query.size(); ++i) {
        const auto unitAt = [&](qsizetype offset) {
            const std::optional<UnitSet>& units = firm[static_cast<std::size_t>(offset)];
            return units ? maskedUnit(*units) : std::nullopt;
        };
        const std::optional<MaskedUnit> first = unitAt(i);
        if (!first) {
            continue;
        }
        propose(i, 0, *first, *first);
        const qsizetype last = std::min(i + longestDistance, query.size() - 1);
        for (qsizetype j = i + 1; j <= last && firm[static_cast<std::size_t>(j)]; ++j) {
            if (const std::optional<MaskedUnit> second = unitAt(j)) {
                propose(i, j - i, *first, *second);
            }
        }
    }
    return best;
}

/// The set of units that is rarest.
std::optional<Rated<QueryAnchor::Any>> bestSet(const QueryContents& contents,
                                               std::span<const QueryCharacter> characters) {
    // As good as a lone unit that is a little rarer.
    constexpr qsizetype asGoodAsLone = 103;
    std::optional<Rated<QueryAnchor::Any>> best;
    for (const QueryCharacter& character : characters) {
        const qsizetype rating = asGoodAsLone + commonness(contents.query[character.offset]);
        if (best && best->commonness <= rating) {
            continue;
        }
        if (const auto set = setFor(character, contents)) {
            best = {*set, rating};
        }
    }
    return best;
}

} // namespace

QueryAnchor::QueryAnchor(QStringView query) {
    const std::vector<QueryCharacter> characters = charactersOf(query);
    QueryContents contents{query, {}, false};
    for (const QueryCharacter& character : characters) {
        contents.characters.insert(character.value);
        contents.holdsMarks = contents.holdsMarks || isMark(character.value);
    }
    // The first characters of a query of a page give a sign that is as good as any.
    const std::size_t examined = std::min(characters.size(), std::size_t{256});
    std::vector<std::optional<UnitSet>> firm(static_cast<std::size_t>(query.size()));
    bool areAllFirm = examined == characters.size();
    for (std::size_t i = 0; i < examined; ++i) {
        const char32_t next = i + 1 < characters.size() ? characters[i + 1].value : U' ';
        if (const auto units = firmUnitsOf(characters[i], next, contents, m_ligatures)) {
            std::copy(units->begin(), units->end(), firm.begin() + characters[i].offset);
        } else {
            areAllFirm = false;
        }
    }
    if (areAllFirm) {
        for (const std::optional<UnitSet>& units : firm) {
            m_firmUnits.push_back(*units);
        }
    }
    const auto pair = bestPair(query, firm);
    const auto set = bestSet(contents, std::span(characters).first(examined));
    if (pair && (!set || pair->commonness <= set->commonness)) {
        m_sign = pair->sign;
    } else if (set) {
        m_sign = set->sign;
        m_ligatures = {};
    }
}

} // namespace quillary
