#pragma once

#include "QuillaryCore/Formats/SyntaxTokenKind.h"

#include <QColor>
#include <QPalette>

#include <array>

namespace quillary {

/// What the kinds of source text are drawn with, and what stands for characters that show nothing: looked up once for
/// many rows.
class SyntaxColors {
public:
    /// Those of an appearance.
    explicit SyntaxColors(const QPalette& palette);

    /// The same on another ground, such as that of a selection: what can't be read there goes towards `ink`.
    SyntaxColors(const QPalette& palette, const QColor& ground, const QColor& ink);

    QRgb of(SyntaxTokenKind kind) const { return m_kinds[static_cast<std::size_t>(kind)]; }

    const QColor& ofHidden() const { return m_hidden; }

private:
    std::array<QRgb, allSyntaxTokenKinds.size()> m_kinds{};
    QColor m_hidden;
};

} // namespace quillary
