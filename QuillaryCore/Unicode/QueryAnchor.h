#pragma once

#include "QuillaryCore/Unicode/UnitCover.h"
#include "QuillaryCore/Unicode/UnitSet.h"

#include <QString>

#include <optional>
#include <variant>
#include <vector>

namespace quillary {

/// What a text must hold for a query to be in it, found out once for the query: a sign that a scan can look for
/// at the speed of memory.
///
/// Most units of a caseless query are firm: in every match there stands one unit for it, one of a few. Letters with an
/// accent are not, since a text may compose them. Where one character of a text may stand for several of the query
/// ("ß" for "ss", "ﬁ" for "fi"), these are firm in all matches that hold no such ligature.
class QueryAnchor {
public:
    /// Two units that are firm, like all between them. They may be one and the same, at the distance 0.
    struct Pair {
        /// Where the first of them stands in the query.
        qsizetype offset;
        qsizetype distance;
        MaskedUnit first;
        MaskedUnit second;

        bool isAt(QStringView text, qsizetype position) const {
            return position + distance < text.size() && first.matches(text[position]) &&
                   second.matches(text[position + distance]);
        }
    };

    /// Units of which every match holds one, anywhere.
    using Any = UnitCover<4>;

    /// Units with which the characters begin that stand for several of the query.
    using Ligatures = UnitCover<2>;

    /// Nothing at all; a pair, in all matches without a ligature; or a set.
    using Sign = std::variant<std::monostate, Pair, Any>;

    QueryAnchor() = default;

    /// Of a query that is a caseless form by ordinary folding.
    explicit QueryAnchor(QStringView query);

    const Sign& sign() const { return m_sign; }

    /// What every match holds that does hold a ligature. Empty where the sign is that of all matches.
    const Ligatures& ligatures() const { return m_ligatures; }

    /// For each unit of the query the units that a match has in its place, if they are all firm; else nothing. A
    /// stretch of a text that agrees in each place has the query as its caseless form.
    const std::vector<UnitSet>& firmUnits() const { return m_firmUnits; }

private:
    Sign m_sign;
    Ligatures m_ligatures;
    std::vector<UnitSet> m_firmUnits;
};

} // namespace quillary
