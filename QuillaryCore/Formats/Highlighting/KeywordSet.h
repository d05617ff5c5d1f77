#pragma once

#include "QuillaryCore/Formats/Highlighting/CharacterClasses.h"

#include <QStringView>

#include <algorithm>
#include <span>
#include <string_view>

namespace quillary::highlighting {

/// A fixed set of lowercase ASCII words, asked for by its first letter and the length before the letters are compared.
class KeywordSet {
public:
    /// The words are in alphabetical order and outlive the set.
    consteval explicit KeywordSet(std::span<const std::u16string_view> words) : m_words(words) {
        for (std::size_t i = 0; i < words.size(); ++i) {
            const std::size_t letter = letterIndex(words[i].front());
            m_lengths[letter] |= quint32(1) << words[i].size();
            for (std::size_t later = letter + 1; later < m_firstOf.size(); ++later) {
                m_firstOf[later] = static_cast<quint8>(i + 1);
            }
        }
    }

    constexpr bool contains(QStringView candidate) const {
        const qsizetype length = candidate.size();
        if (length < 1 || length > longestWord || !isAsciiLowercase(candidate.utf16()[0])) {
            return false;
        }
        const std::u16string_view text(candidate.utf16(), static_cast<std::size_t>(length));
        const std::size_t letter = letterIndex(text.front());
        if ((m_lengths[letter] >> length & 1) == 0) {
            return false;
        }
        const auto sameLetter =
            m_words.subspan(m_firstOf[letter], std::size_t(m_firstOf[letter + 1]) - m_firstOf[letter]);
        return std::ranges::find(sameLetter, text) != sameLetter.end();
    }

    static constexpr qsizetype longestWord = 16;

private:
    static constexpr std::size_t letterIndex(char16_t letter) { return static_cast<std::size_t>(letter - u'a'); }

    std::span<const std::u16string_view> m_words;
    /// Where the words of each letter begin, and their lengths as bits.
    std::array<quint8, 27> m_firstOf{};
    std::array<quint32, 26> m_lengths{};
};

} // namespace quillary::highlighting
