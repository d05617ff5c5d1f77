#pragma once

#include "QuillaryCore/Formats/Highlighting/EmbeddedRegions.h"

namespace quillary::highlighting {

/// Finds the element that is open where a window begins: the one whose last opening text before the window stands
/// behind its last closing text, case ignored. It is a plain search, which knows nothing of comments and quotes. A
/// script goes before a style.
class OpenElementSearch {
public:
    /// Looks at a piece of the text. The first ends at the window, each other where the one before began.
    void lookAt(QStringView piece);

    /// Whether no earlier piece can change the result.
    bool isDecided() const { return m_script == Seen::opening || (m_script != Seen::none && m_style != Seen::none); }

    /// The open element, by the pieces looked at.
    std::optional<EmbeddedElement> result() const;

private:
    enum class Seen : quint8 { none, opening, closing };

    static constexpr std::size_t longestText = 8;

    void lookAtTag(QStringView tag);

    Seen m_script = Seen::none;
    Seen m_style = Seen::none;
    /// How the text behind the next piece begins.
    std::array<char16_t, longestText> m_following{};
    qsizetype m_followingLength = 0;
};

} // namespace quillary::highlighting
