#pragma once

#include <QtGlobal>

#include <bit>
#include <cstddef>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace quillary {

/// Finds a few units of interest in a text, 64 units at a time: bit i of the mask tells of unit i.
template <std::size_t count>
class UnitMask {
public:
    static constexpr qsizetype blockSize = 64;

    template <typename... Units>
    explicit UnitMask(Units... units) : m_units{units...} {
        static_assert(sizeof...(Units) == count);
    }

    /// The mask of the `size` units from `units` on; a block holds 64 of them at most.
    quint64 operator()(const char16_t* units, qsizetype size) const {
        return size >= blockSize ? ofBlock(units) : ofRest(units, size);
    }

private:
    bool isOfInterest(char16_t unit) const {
        bool result = false;
        for (const char16_t each : m_units) {
            result |= unit == each;
        }
        return result;
    }

    quint64 ofRest(const char16_t* units, qsizetype size) const {
        quint64 mask = 0;
        for (qsizetype i = 0; i < size; ++i) {
            mask |= static_cast<quint64>(isOfInterest(units[i])) << i;
        }
        return mask;
    }

#ifdef __SSE2__
    __m128i ofEight(const char16_t* units) const {
        const __m128i eight = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
        __m128i found = _mm_setzero_si128();
        for (const char16_t each : m_units) {
            found = _mm_or_si128(found, _mm_cmpeq_epi16(eight, _mm_set1_epi16(static_cast<short>(each))));
        }
        return found;
    }

    quint64 ofBlock(const char16_t* units) const {
        quint64 mask = 0;
        for (int i = 0; i < blockSize; i += 16) {
            const __m128i sixteen = _mm_packs_epi16(ofEight(units + i), ofEight(units + i + 8));
            mask |= static_cast<quint64>(static_cast<quint32>(_mm_movemask_epi8(sixteen))) << i;
        }
        return mask;
    }
#else
    quint64 ofBlock(const char16_t* units) const {
        return ofRest(units, blockSize);
    }
#endif

    char16_t m_units[count];
};

} // namespace quillary
