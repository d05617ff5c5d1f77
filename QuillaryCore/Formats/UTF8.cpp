#include "QuillaryCore/Formats/UTF8.h"

#include "QuillaryCore/Formats/ByteBlock.h"

#include <QStringEncoder>

namespace quillary {

QString UTF8::decoded(QByteArrayView bytes) {
    QString text(bytes.size(), Qt::Uninitialized);
    auto* const units = reinterpret_cast<char16_t*>(text.data());
    text.resize(decode(bytes, units) - units);
    return text;
}

char16_t* UTF8::decode(QByteArrayView bytes, char16_t* units) {
    const char* at = bytes.data();
    const char* const end = at + bytes.size();
    while (at != end) {
        while (end - at >= ByteBlock::size) {
            const ByteBlock block(at);
            if (block.beyondASCII() != 0) {
                break;
            }
            block.widenTo(units);
            at += ByteBlock::size;
            units += ByteBlock::size;
        }
        // Past a character that isn't ASCII, the next one rarely is either: blocks are worth a try only after one.
        for (bool isASCII = false; at != end && !isASCII;) {
            const UTF8Sequence sequence = UTF8Sequence::read(at, end);
            units = write(sequence.codePoint, units);
            at += sequence.length;
            isASCII = sequence.length == 1 && end - at >= ByteBlock::size;
        }
    }
    return units;
}

char16_t* UTF8::write(char32_t codePoint, char16_t* units) {
    if (QChar::requiresSurrogates(codePoint)) {
        *units++ = QChar::highSurrogate(codePoint);
        *units++ = QChar::lowSurrogate(codePoint);
    } else {
        *units++ = static_cast<char16_t>(codePoint);
    }
    return units;
}

bool UTF8::isWellFormed(QByteArrayView bytes) {
    const char* at = bytes.data();
    const char* const end = at + bytes.size();
    while (at != end) {
        const UTF8Sequence sequence = UTF8Sequence::read(at, end);
        if (!sequence.isWellFormed) {
            return false;
        }
        at += sequence.length;
    }
    return true;
}

QByteArray UTF8::encoded(QStringView text) {
    // QString::toUtf8 puts a question mark for a lone surrogate; an encoder with state would wait for its other half.
    QStringEncoder encoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    QByteArray bytes = encoder(text);
    // The encoder made room for the worst case.
    bytes.squeeze();
    return bytes;
}

} // namespace quillary
