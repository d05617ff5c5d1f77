#include "QuillaryCore/Notes/TextDecoder.h"

#include <QStringDecoder>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <optional>

namespace quillary {

namespace {

constexpr QByteArrayView utf8Mark = "\xEF\xBB\xBF";
constexpr char16_t replacement = 0xFFFD;

/// The bytes 80 to 9F of code page 1252; 0 where it has no character.
constexpr std::array<char16_t, 32> windowsPunctuation = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

bool hasLoneSurrogate(QStringView text) {
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text[i].isSurrogate()) {
            continue;
        }
        if (!text[i].isHighSurrogate() || i + 1 == text.size() || !text[i + 1].isLowSurrogate()) {
            return true;
        }
        ++i;
    }
    return false;
}

std::optional<QString> fromMarkedUTF16(QByteArrayView bytes) {
    const bool isLittle = bytes.startsWith("\xFF\xFE");
    if ((!isLittle && !bytes.startsWith("\xFE\xFF")) || bytes.size() % 2 != 0) {
        return std::nullopt;
    }
    bytes = bytes.sliced(2);
    QString text(bytes.size() / 2, Qt::Uninitialized);
    if (isLittle) {
        qFromLittleEndian<char16_t>(bytes.data(), text.size(), text.data());
    } else {
        qFromBigEndian<char16_t>(bytes.data(), text.size(), text.data());
    }
    return hasLoneSurrogate(text) ? std::nullopt : std::optional(std::move(text));
}

std::optional<QString> fromStrictUTF8(QByteArrayView bytes) {
    if (bytes.startsWith(utf8Mark)) {
        bytes = bytes.sliced(utf8Mark.size());
    }
    // Only one mark goes: the decoder must leave a second one alone, and count what the end cuts off as an error.
    QStringDecoder decoder(QStringDecoder::Utf8,
                           QStringDecoder::Flag::ConvertInitialBom | QStringDecoder::Flag::Stateless);
    QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(std::move(text));
}

std::optional<QString> fromWindows1252(QByteArrayView bytes) {
    QString text(bytes.size(), Qt::Uninitialized);
    QChar* out = text.data();
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        const bool isPunctuation = value >= 0x80 && value <= 0x9F;
        const char16_t unit = isPunctuation ? windowsPunctuation[value - 0x80] : value;
        if (isPunctuation && unit == 0) {
            return std::nullopt;
        }
        *out++ = unit;
    }
    return text;
}

/// How many continuation bytes a lead byte asks for, and the bounds of the first of them, by the table of well-formed
/// sequences of the Unicode standard (3.9, table 3-7); none for what leads nothing.
struct Lead {
    int continuations = 0;
    unsigned char lowest = 0x80;
    unsigned char highest = 0xBF;
};

Lead leadOf(unsigned char byte) {
    if (byte >= 0xC2 && byte <= 0xDF) {
        return {1};
    }
    if (byte >= 0xE0 && byte <= 0xEF) {
        return {2, static_cast<unsigned char>(byte == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(byte == 0xED ? 0x9F : 0xBF)};
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
        return {3, static_cast<unsigned char>(byte == 0xF0 ? 0x90 : 0x80),
                static_cast<unsigned char>(byte == 0xF4 ? 0x8F : 0xBF)};
    }
    return {};
}

/// One U+FFFD for each longest beginning of a sequence that goes no further, as the Unicode standard recommends.
QString fromUTF8WithReplacements(QByteArrayView bytes) {
    QString text;
    text.reserve(bytes.size());
    for (qsizetype i = 0; i < bytes.size();) {
        const auto first = static_cast<unsigned char>(bytes[i++]);
        if (first < 0x80) {
            text += QChar(char16_t(first));
            continue;
        }
        Lead lead = leadOf(first);
        if (lead.continuations == 0) {
            text += QChar(replacement);
            continue;
        }
        char32_t scalar = first & (0x3F >> lead.continuations);
        for (; lead.continuations > 0 && i < bytes.size(); --lead.continuations, ++i) {
            const auto next = static_cast<unsigned char>(bytes[i]);
            if (next < lead.lowest || next > lead.highest) {
                break;
            }
            scalar = scalar << 6 | (next & 0x3F);
            lead.lowest = 0x80;
            lead.highest = 0xBF;
        }
        if (lead.continuations == 0) {
            text += QChar::fromUcs4(scalar);
        } else {
            text += QChar(replacement);
        }
    }
    return text;
}

} // namespace

QString TextDecoder::decode(QByteArrayView bytes) {
    if (auto text = fromMarkedUTF16(bytes)) {
        return std::move(*text);
    }
    if (auto text = fromStrictUTF8(bytes)) {
        return std::move(*text);
    }
    if (auto text = fromWindows1252(bytes)) {
        return std::move(*text);
    }
    return fromUTF8WithReplacements(bytes);
}

} // namespace quillary
