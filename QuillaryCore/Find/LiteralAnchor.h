#pragma once

#include "QuillaryCore/Unicode/UnitScan.h"

#include <QStringView>

#include <optional>
#include <vector>

namespace quillary {

/// One or two units of a literal that every occurrence shows in the text, the second one always at the same distance:
/// what a scan at the speed of memory looks for.
struct LiteralAnchor {
    /// The place of the first one in the literal.
    qsizetype offset = 0;
    MaskedUnit first;
    std::optional<MaskedUnit> second;
    qsizetype distance = 0;
};

/// The units of a literal that an anchor may be made of. Which of them are rare differs from text to text, so a sample
/// of the text decides.
class LiteralAnchors {
public:
    /// For a literal whose occurrences are spelled as it is.
    static LiteralAnchors exact(QStringView literal);

    /// For a folded literal whose occurrences fold to it.
    static LiteralAnchors folded(QStringView literal);

    /// Nothing to look for: each letter may be part of one that stands for several.
    bool isEmpty() const { return m_places.empty(); }

    /// The anchor that shows least often in a text.
    LiteralAnchor rarest(QStringView text) const;

private:
    /// A unit that stands in the text as exactly one unit, and the stretch of such units that it is in.
    struct Place {
        qsizetype offset = 0;
        MaskedUnit unit;
        qsizetype stretch = 0;
    };

    std::vector<Place> m_places;
};

} // namespace quillary
