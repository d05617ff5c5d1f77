#pragma once

#include <QtGlobal>

#include <bit>
#include <cstring>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace quillary {

/// Sixteen bytes that are looked at together. Each question answers with one bit a byte, the first byte's the lowest.
class ByteBlock {
public:
    static constexpr qsizetype size = 16;

    /// The sixteen bytes from here on, all of which must be there.
    explicit ByteBlock(const char* bytes) {
#ifdef __SSE2__
        m_bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
#else
        std::memcpy(m_bytes, bytes, size);
#endif
    }

    /// The bytes that are this one.
    quint32 equalTo(char byte) const {
#ifdef __SSE2__
        return mask(_mm_cmpeq_epi8(m_bytes, _mm_set1_epi8(byte)));
#else
        return mask([byte](char each) { return each == byte; });
#endif
    }

    /// The bytes up to this one, which are those of ASCII alone if it is one.
    quint32 upTo(char last) const {
#ifdef __SSE2__
        return mask(_mm_cmpeq_epi8(_mm_min_epu8(m_bytes, _mm_set1_epi8(last)), m_bytes));
#else
        return mask([last](char each) { return static_cast<unsigned char>(each) <= static_cast<unsigned char>(last); });
#endif
    }

    /// The bytes beyond ASCII.
    quint32 beyondASCII() const {
#ifdef __SSE2__
        return mask(m_bytes);
#else
        return mask([](char each) { return signedByte(each) < 0; });
#endif
    }

    /// The bytes from `first` to `last`, both in ASCII or both beyond it.
    quint32 between(char first, char last) const {
#ifdef __SSE2__
        const __m128i outside =
            _mm_or_si128(_mm_cmplt_epi8(m_bytes, _mm_set1_epi8(first)), _mm_cmpgt_epi8(m_bytes, _mm_set1_epi8(last)));
        return mask(outside) ^ 0xFFFFU;
#else
        return mask([first, last](char each) {
            return signedByte(each) >= signedByte(first) && signedByte(each) <= signedByte(last);
        });
#endif
    }

    /// Writes each byte as one UTF-16 unit.
    void widenTo(char16_t* units) const {
#ifdef __SSE2__
        const __m128i zero = _mm_setzero_si128();
        _mm_storeu_si128(reinterpret_cast<__m128i*>(units), _mm_unpacklo_epi8(m_bytes, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(units + 8), _mm_unpackhi_epi8(m_bytes, zero));
#else
        for (qsizetype i = 0; i < size; ++i) {
            units[i] = static_cast<unsigned char>(m_bytes[i]);
        }
#endif
    }

private:
#ifdef __SSE2__
    static quint32 mask(__m128i bytes) {
        return static_cast<quint32>(_mm_movemask_epi8(bytes));
    }

    __m128i m_bytes;
#else
    static signed char signedByte(char byte) {
        return static_cast<signed char>(byte);
    }

    template <typename Test>
    quint32 mask(Test test) const {
        quint32 result = 0;
        for (qsizetype i = 0; i < size; ++i) {
            result |= static_cast<quint32>(test(m_bytes[i])) << i;
        }
        return result;
    }

    char m_bytes[size];
#endif
};

} // namespace quillary
