#include "QuillaryCore/Formats/JSONDocument.h"

#include "QuillaryCore/Formats/UTF8.h"

#include <cstring>

namespace quillary {

namespace {

using Tag = JSONTape::Tag;

const char* closingQuote(const char* at, [[maybe_unused]] const char* end) {
    while (*at != '"') {
        at += *at == '\\' ? 2 : 1;
        Q_ASSERT(at < end);
    }
    return at;
}

char16_t readHex4(const char* digits) {
    char16_t value = 0;
    for (int i = 0; i < 4; ++i) {
        const char digit = digits[i];
        const int digitValue = digit <= '9' ? digit - '0' : (digit | 0x20) - 'a' + 10;
        value = static_cast<char16_t>(value << 4 | digitValue);
    }
    return value;
}

/// Decodes a `\u` escape, of which `at` is the first hexadecimal digit, with the second half of a pair if there is one.
/// A high surrogate swallows the escape behind it even where the two are no pair.
const char* appendUnicodeEscape(const char* at, const char* end, char16_t*& units) {
    const char16_t first = readHex4(at);
    at += 4;
    if (!QChar::isSurrogate(first)) {
        *units++ = first;
        return at;
    }
    if (QChar::isHighSurrogate(first) && end - at >= 6 && at[0] == '\\' && at[1] == 'u') {
        const char16_t second = readHex4(at + 2);
        at += 6;
        if (QChar::isLowSurrogate(second)) {
            *units++ = first;
            *units++ = second;
            return at;
        }
    }
    *units++ = QChar::ReplacementCharacter;
    return at;
}

const char* appendEscape(const char* at, const char* end, char16_t*& units) {
    const char letter = *at++;
    switch (letter) {
    case 'b':
        *units++ = u'\b';
        break;
    case 'f':
        *units++ = u'\f';
        break;
    case 'n':
        *units++ = u'\n';
        break;
    case 'r':
        *units++ = u'\r';
        break;
    case 't':
        *units++ = u'\t';
        break;
    case 'u':
        return appendUnicodeEscape(at, end, units);
    default:
        *units++ = static_cast<unsigned char>(letter);
    }
    return at;
}

QString decodedString(QByteArrayView bytes) {
    QString text(bytes.size(), Qt::Uninitialized);
    auto* const first = reinterpret_cast<char16_t*>(text.data());
    char16_t* units = first;
    const char* at = bytes.data();
    const char* const end = at + bytes.size();
    while (at != end) {
        const void* const found = std::memchr(at, '\\', static_cast<std::size_t>(end - at));
        const char* const escape = found ? static_cast<const char*>(found) : end;
        units = UTF8::decode(QByteArrayView(at, escape), units);
        at = escape == end ? end : appendEscape(escape + 1, end, units);
    }
    text.resize(units - first);
    return text;
}

} // namespace

QByteArrayView JSONDocument::stringBytes(qsizetype position) const {
    const char* const begin = bytes.constData() + tape.payload(position) + 1;
    const char* const end = bytes.constData() + bytes.size();
    if (tape.tag(position) == Tag::encodedString) {
        return {begin, closingQuote(begin, end)};
    }
    const void* const quote = std::memchr(begin, '"', static_cast<std::size_t>(end - begin));
    return {begin, static_cast<const char*>(quote)};
}

QString JSONDocument::string(qsizetype position) const {
    const QByteArrayView written = stringBytes(position);
    switch (tape.tag(position)) {
    case Tag::asciiString:
        return QString::fromLatin1(written);
    case Tag::plainString:
        return UTF8::decoded(written);
    default:
        return decodedString(written);
    }
}

QByteArrayView JSONDocument::number(qsizetype position) const {
    const char* const begin = bytes.constData() + tape.payload(position);
    const char* const end = bytes.constData() + bytes.size();
    const char* at = begin + 1;
    while (at != end && ((*at >= '0' && *at <= '9') || *at == '.' || (*at | 0x20) == 'e' || *at == '+' || *at == '-')) {
        ++at;
    }
    return {begin, at};
}

} // namespace quillary
