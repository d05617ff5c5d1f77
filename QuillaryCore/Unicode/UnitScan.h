#pragma once

#include <QStringView>

#include <bit>
#include <cstdint>
#include <span>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace quillary {

/// One UTF-16 unit, or several that differ in a few bits, as most letters do from their other case in one.
struct MaskedUnit {
    char16_t value = 0;
    char16_t mask = 0;

    bool matches(QChar unit) const { return (unit.unicode() | mask) == value; }

    /// The narrowest one that matches all that this one does and one unit more.
    MaskedUnit with(char16_t unit) const {
        const auto wider = static_cast<char16_t>(mask | ((value ^ unit) & ~mask));
        return {static_cast<char16_t>(value | wider), wider};
    }

    /// In how many bits the units may differ.
    int width() const { return std::popcount(static_cast<unsigned>(mask)); }
};

namespace unit_scan {

/// How many units are compared at once.
inline constexpr qsizetype width = 16;

#if defined(__SSE2__)

/// Says of sixteen units each whether it matches.
class Lanes {
public:
    /// What each of them is compared with.
    class Pattern {
    public:
        explicit Pattern(MaskedUnit unit)
            : m_value(_mm_set1_epi16(static_cast<short>(unit.value))),
              m_mask(_mm_set1_epi16(static_cast<short>(unit.mask))) {}

        Lanes on(const char16_t* units) const { return Lanes(_mm_packs_epi16(half(units), half(units + 8))); }

    private:
        __m128i half(const char16_t* units) const {
            const __m128i loaded = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
            return _mm_cmpeq_epi16(_mm_or_si128(loaded, m_mask), m_value);
        }

        __m128i m_value;
        __m128i m_mask;
    };

    Lanes operator&(Lanes other) const { return Lanes(_mm_and_si128(m_bytes, other.m_bytes)); }

    Lanes operator|(Lanes other) const { return Lanes(_mm_or_si128(m_bytes, other.m_bytes)); }

    /// A bit for each unit, the first one lowest.
    quint32 bits() const { return static_cast<quint32>(_mm_movemask_epi8(m_bytes)); }

private:
    explicit Lanes(__m128i bytes) : m_bytes(bytes) {}

    __m128i m_bytes;
};

/// Asks for memory that a scan will come to. The hardware's own foresight ends at each page, and a filter over many
/// texts is bound by memory. The address may lie outside the text: nothing is read, and texts often lie side by side.
inline void foresee(const char16_t* units) {
    constexpr std::uintptr_t ahead = 8192;
    _mm_prefetch(reinterpret_cast<const char*>(reinterpret_cast<std::uintptr_t>(units) + ahead), _MM_HINT_T0);
}

#else

class Lanes {
public:
    class Pattern {
    public:
        explicit Pattern(MaskedUnit unit) : m_unit(unit) {}

        Lanes on(const char16_t* units) const {
            quint32 bits = 0;
            for (qsizetype i = 0; i < width; ++i) {
                bits |= static_cast<quint32>(m_unit.matches(units[i])) << i;
            }
            return Lanes(bits);
        }

    private:
        MaskedUnit m_unit;
    };

    Lanes operator&(Lanes other) const { return Lanes(m_bits & other.m_bits); }

    Lanes operator|(Lanes other) const { return Lanes(m_bits | other.m_bits); }

    quint32 bits() const { return m_bits; }

private:
    explicit Lanes(quint32 bits) : m_bits(bits) {}

    quint32 m_bits;
};

inline void foresee(const char16_t*) {}

#endif

/// Calls `accept` with each position for which `lanesAt` has a bit, and with each of the last ones, where fewer units
/// than it looks at are left: the width and `reach` more. Ends with true as soon as `accept` gives true.
template <typename LanesAt, typename Accept>
bool scan(QStringView text, qsizetype reach, LanesAt lanesAt, Accept accept) {
    qsizetype position = 0;
    for (; position + width + reach <= text.size(); position += width) {
        foresee(text.utf16() + position);
        for (quint32 bits = lanesAt(text.utf16() + position).bits(); bits != 0; bits &= bits - 1) {
            if (accept(position + std::countr_zero(bits))) {
                return true;
            }
        }
    }
    for (; position < text.size(); ++position) {
        if (accept(position)) {
            return true;
        }
    }
    return false;
}

/// Calls `work` with as many patterns as there are units; at most four.
template <typename Work>
bool withPatterns(std::span<const MaskedUnit> units, Work work) {
    using Pattern = Lanes::Pattern;
    if (units.empty()) {
        return work();
    }
    if (units.size() == 1) {
        return work(Pattern(units[0]));
    }
    if (units.size() == 2) {
        return work(Pattern(units[0]), Pattern(units[1]));
    }
    if (units.size() == 3) {
        return work(Pattern(units[0]), Pattern(units[1]), Pattern(units[2]));
    }
    return work(Pattern(units[0]), Pattern(units[1]), Pattern(units[2]), Pattern(units[3]));
}

} // namespace unit_scan

/// Goes over a text from front to back and calls `accept` with the positions where `first` matches and `distance`
/// units on `second`, and those where one of `others`, two at most, matches; and with some more at the end. Ends as
/// soon as `accept` gives true; whether it did.
template <typename Accept>
bool scanForPair(QStringView text, MaskedUnit first, MaskedUnit second, qsizetype distance,
                 std::span<const MaskedUnit> others, Accept accept) {
    const unit_scan::Lanes::Pattern atFront(first);
    const unit_scan::Lanes::Pattern atBack(second);
    return unit_scan::withPatterns(others, [&](const auto&... patterns) {
        return unit_scan::scan(
            text, distance,
            [&](const char16_t* units) {
                return ((atFront.on(units) & atBack.on(units + distance)) | ... | patterns.on(units));
            },
            accept);
    });
}

/// The same for the positions where one of a few units, four at most, matches.
template <typename Accept>
bool scanForAny(QStringView text, std::span<const MaskedUnit> any, Accept accept) {
    return unit_scan::withPatterns(any, [&](const auto&... patterns) {
        if constexpr (sizeof...(patterns) == 0) {
            return false;
        } else {
            return unit_scan::scan(
                text, 0, [&](const char16_t* units) { return (patterns.on(units) | ...); }, accept);
        }
    });
}

} // namespace quillary
