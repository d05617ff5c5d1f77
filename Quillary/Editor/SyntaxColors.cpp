#include "Quillary/Editor/SyntaxColors.h"

#include "Quillary/Theme/Contrast.h"
#include "Quillary/Theme/Theme.h"

namespace quillary {

SyntaxColors::SyntaxColors(const QPalette& palette) : m_hidden(Theme::secondaryText(palette)) {
    for (const SyntaxTokenKind kind : allSyntaxTokenKinds) {
        m_kinds[static_cast<std::size_t>(kind)] = Theme::syntaxColor(kind).in(palette).rgba();
    }
}

SyntaxColors::SyntaxColors(const QPalette& palette, const QColor& ground, const QColor& ink) : SyntaxColors(palette) {
    for (QRgb& color : m_kinds) {
        color = readable(QColor::fromRgba(color), ground, ink).rgba();
    }
    m_hidden = readable(m_hidden, ground, ink);
}

} // namespace quillary
