#include "QuillaryCore/Formats/Highlighting/OpenElementSearch.h"

#include "QuillaryCore/Formats/Highlighting/CaseFolding.h"
#include "QuillaryCore/Formats/UnitMask.h"

#include <algorithm>

namespace quillary::highlighting {

void OpenElementSearch::lookAt(QStringView piece) {
    // The last units of the piece, with what follows them: texts that begin here and end there.
    std::array<char16_t, 2 * longestText> seam;
    const qsizetype inSeam = std::min(piece.size(), static_cast<qsizetype>(longestText));
    const qsizetype seamLength = inSeam + m_followingLength;
    std::copy_n(piece.utf16() + piece.size() - inSeam, inSeam, seam.begin());
    std::copy_n(m_following.begin(), m_followingLength, seam.begin() + inSeam);

    const UnitMask<1> lessMask(u'<');
    constexpr qsizetype blockSize = UnitMask<1>::blockSize;
    for (qsizetype end = piece.size(); end > 0 && !isDecided();) {
        const qsizetype begin = std::max(end - blockSize, qsizetype(0));
        quint64 found = lessMask(piece.utf16() + begin, end - begin);
        while (found != 0 && !isDecided()) {
            const int index = std::bit_width(found) - 1;
            found ^= quint64(1) << index;
            const qsizetype behind = piece.size() - (begin + index);
            lookAtTag(behind < inSeam ? QStringView(seam.data(), seamLength).sliced(inSeam - behind)
                                      : piece.last(behind));
        }
        end = begin;
    }

    if (piece.size() < static_cast<qsizetype>(longestText)) {
        m_followingLength = std::min(seamLength, static_cast<qsizetype>(longestText));
        std::copy_n(seam.begin(), m_followingLength, m_following.begin());
    } else {
        m_followingLength = longestText;
        std::copy_n(piece.utf16(), longestText, m_following.begin());
    }
}

void OpenElementSearch::lookAtTag(QStringView tag) {
    const bool isClosing = tag.size() > 1 && tag[1] == u'/';
    const auto note = [&](EmbeddedElement element, Seen& seen) {
        if (seen == Seen::none &&
            foldedPrefixLength(tag, isClosing ? closingText(element) : openingText(element)) > 0) {
            seen = isClosing ? Seen::closing : Seen::opening;
        }
    };
    note(EmbeddedElement::script, m_script);
    note(EmbeddedElement::style, m_style);
}

std::optional<EmbeddedElement> OpenElementSearch::result() const {
    if (m_script == Seen::opening) {
        return EmbeddedElement::script;
    }
    return m_style == Seen::opening ? std::optional(EmbeddedElement::style) : std::nullopt;
}

} // namespace quillary::highlighting
