#pragma once

#include <QByteArrayView>
#include <QHashFunctions>
#include <QStringView>

#include <cstring>

namespace quillary {

/// A hash of texts and names, of which all bits can be used: products of 128 bits folded to 64, as in Wang Yi's wyhash,
/// two words of eight bytes at a time. Texts and names may come from anybody, so what they are multiplied with is
/// another secret in each process, and nobody can make up thousands that all fall together.
///
/// `qHash` is no choice where many short ones are looked up: on some processors Qt 6.4 leaves the upper halves of
/// vector registers in use, and the next instruction without them waits some hundred cycles.
class SeededHash {
public:
    explicit SeededHash(quint64 seed = QHashSeed::globalSeed())
        : m_start(mixed(seed + increment)), m_secret(mixed(seed + 2 * increment)) {}

    quint64 operator()(QStringView text) const {
        return hashed(reinterpret_cast<const char*>(text.utf16()), text.size() * qsizetype(sizeof(char16_t)));
    }

    quint64 operator()(QByteArrayView bytes) const { return hashed(bytes.data(), bytes.size()); }

private:
    static constexpr quint64 increment = 0x9E37'79B9'7F4A'7C15;

    quint64 hashed(const char* bytes, qsizetype size) const {
        // The length comes last: beside the bytes it could make up for a difference between them.
        const quint64 length = m_start ^ static_cast<quint64>(size);
        quint64 hash = m_start;
        for (; size > 16; bytes += 16, size -= 16) {
            hash = folded(read<quint64>(bytes) ^ m_secret, read<quint64>(bytes + 8) ^ hash);
        }
        quint64 first = 0;
        quint64 last = 0;
        // The two overlap where the rest is shorter than both.
        if (size >= 8) {
            first = read<quint64>(bytes);
            last = read<quint64>(bytes + size - 8);
        } else if (size >= 4) {
            first = read<quint32>(bytes);
            last = read<quint32>(bytes + size - 4);
        } else if (size > 0) {
            first = static_cast<quint64>(read<quint8>(bytes)) << 8 | read<quint8>(bytes + size / 2);
            last = read<quint8>(bytes + size - 1);
        }
        return folded(length, folded(first ^ m_secret, last ^ hash) ^ m_secret);
    }

    /// A step of Vigna's splitmix64.
    static quint64 mixed(quint64 value) {
        value = (value ^ value >> 30) * 0xBF58'476D'1CE4'E5B9;
        value = (value ^ value >> 27) * 0x94D0'49BB'1331'11EB;
        return value ^ value >> 31;
    }

    static quint64 folded(quint64 a, quint64 b) {
        __extension__ using Wide = unsigned __int128;
        const Wide product = Wide(a) * b;
        return static_cast<quint64>(product) ^ static_cast<quint64>(product >> 64);
    }

    template <typename Word>
    static quint64 read(const char* bytes) {
        Word word = 0;
        std::memcpy(&word, bytes, sizeof word);
        return word;
    }

    quint64 m_start;
    quint64 m_secret;
};

} // namespace quillary
