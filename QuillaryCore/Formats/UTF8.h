#pragma once

#include <QByteArray>
#include <QString>

namespace quillary {

/// The bytes at one place of a UTF-8 text, read as one code point.
struct UTF8Sequence {
    /// U+FFFD if the bytes are ill-formed.
    char32_t codePoint;
    /// The bytes read, at least one. Of ill-formed bytes, those that a well-formed sequence could begin with.
    qsizetype length;
    bool isWellFormed;

    /// Reads what begins at `at`, which must lie before `end`. The bounds of the second byte are those of the Unicode
    /// Standard, table 3-7, and so is what one replacement character stands for (section 3.9, "maximal subpart").
    static UTF8Sequence read(const char* at, const char* end);
};

inline UTF8Sequence UTF8Sequence::read(const char* at, const char* end) {
    const auto byte = [at](qsizetype i) { return static_cast<unsigned char>(at[i]); };
    const unsigned lead = byte(0);
    if (lead < 0x80) {
        return {lead, 1, true};
    }
    const qsizetype length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (lead < 0xC2 || lead > 0xF4) {
        return {U'\uFFFD', 1, false};
    }
    const unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (end - at < 2 || byte(1) < lowest || byte(1) > highest) {
        return {U'\uFFFD', 1, false};
    }
    char32_t codePoint = (lead & (0x7FU >> length)) << 6 | (byte(1) & 0x3FU);
    for (qsizetype i = 2; i < length; ++i) {
        if (end - at <= i || (byte(i) & 0xC0U) != 0x80) {
            return {U'\uFFFD', i, false};
        }
        codePoint = codePoint << 6 | (byte(i) & 0x3FU);
    }
    return {codePoint, length, true};
}

/// Conversions between UTF-8 and UTF-16 that keep a byte order mark wherever it stands.
class UTF8 {
public:
    /// The text of these bytes, with U+FFFD for what is ill-formed.
    static QString decoded(QByteArrayView bytes);

    /// Writes the text of these bytes to `units`, where there must be room for one unit a byte, and gives the end of
    /// what it wrote.
    static char16_t* decode(QByteArrayView bytes, char16_t* units);

    /// Writes one code point and gives the end of what it wrote.
    static char16_t* write(char32_t codePoint, char16_t* units);

    static bool isWellFormed(QByteArrayView bytes);

    /// The bytes of this text, with U+FFFD for each lone surrogate.
    static QByteArray encoded(QStringView text);
};

} // namespace quillary
