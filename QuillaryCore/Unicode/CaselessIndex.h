#pragma once

#include <QString>

#include <vector>

namespace quillary {

/// Every character whose caseless form, by ordinary folding, isn't itself, but for the Hangul syllables, which come by
/// arithmetic: what each turns into, and which turn into something that holds a given character. One for the process,
/// made at its first use.
class CaselessIndex {
public:
    static const CaselessIndex& instance();

    /// The caseless form of a character if it isn't the character itself; else empty.
    QStringView form(char32_t character) const;

    /// Calls `visit(char32_t character, QStringView form)` for each character whose form isn't itself and holds `part`.
    template <typename Visit>
    void forEachHolding(char32_t part, Visit visit) const {
        for (auto holder = firstHolder(part); holder != m_holders.end() && holder->part == part; ++holder) {
            const Entry& entry = m_entries[holder->entry];
            visit(entry.character, formOf(entry));
        }
    }

private:
    struct Entry {
        char32_t character;
        quint16 offset;
        quint16 length;
    };

    struct Holder {
        char32_t part;
        quint16 entry;
    };

    CaselessIndex();

    void add(char32_t character);
    void addHolders();
    std::vector<Holder>::const_iterator firstHolder(char32_t part) const;

    QStringView formOf(const Entry& entry) const { return QStringView(m_forms).sliced(entry.offset, entry.length); }

    QString m_forms;
    std::vector<Entry> m_entries;
    std::vector<Holder> m_holders;
};

/// Whether a character is a Hangul syllable, which decomposes into jamo by arithmetic.
inline bool isHangulSyllable(char32_t character) {
    return character >= 0xAC00 && character <= 0xD7A3;
}

/// Whether a character is one of the modern jamo that Hangul syllables are made of.
inline bool isComposingJamo(char32_t character) {
    return (character >= 0x1100 && character <= 0x1112) || (character >= 0x1161 && character <= 0x1175) ||
           (character >= 0x11A8 && character <= 0x11C2);
}

} // namespace quillary
