#pragma once

#include "QuillaryCore/Unicode/UnitScan.h"

#include <QStringView>

#include <optional>

namespace quillary {

/// One or two units of a literal that every occurrence shows in the text, the second one always at the same distance:
/// what a scan at the speed of memory looks for.
struct LiteralAnchor {
    /// The place of the first one in the literal.
    qsizetype offset = 0;
    MaskedUnit first;
    std::optional<MaskedUnit> second;
    qsizetype distance = 0;

    /// The anchor of a literal whose occurrences are spelled as it is.
    static LiteralAnchor exact(QStringView literal);

    /// The anchor of a folded literal whose occurrences fold to it. Nothing if each of its letters may be part of one
    /// that stands for several.
    static std::optional<LiteralAnchor> folded(QStringView literal);
};

} // namespace quillary
