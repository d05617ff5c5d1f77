#include "QuillaryCore/Formats/JSONTextWriter.h"

#include "QuillaryCore/Formats/ByteBlock.h"
#include "QuillaryCore/Formats/UTF8.h"

#include <algorithm>

namespace quillary {

namespace {

bool mustBeEscaped(char16_t unit) {
    return unit < 0x20 || unit == u'"' || unit == u'\\';
}

} // namespace

void JSONTextWriter::append(QStringView text) {
    char16_t*& at = room(text.size());
    at = std::copy_n(text.utf16(), text.size(), at);
}

void JSONTextWriter::appendSpaces(qsizetype count) {
    char16_t*& at = room(count);
    at = std::fill_n(at, count, u' ');
}

void JSONTextWriter::appendASCII(QByteArrayView bytes) {
    char16_t*& at = room(bytes.size());
    const char* from = bytes.data();
    qsizetype left = bytes.size();
    for (; left >= ByteBlock::size; left -= ByteBlock::size) {
        ByteBlock(from).widenTo(at);
        from += ByteBlock::size;
        at += ByteBlock::size;
    }
    at = std::copy_n(from, left, at);
}

void JSONTextWriter::appendUTF8(QByteArrayView bytes) {
    char16_t*& at = room(bytes.size());
    at = UTF8::decode(bytes, at);
}

void JSONTextWriter::appendQuoted(QStringView text) {
    append(u'"');
    const char16_t* from = text.utf16();
    const char16_t* const end = from + text.size();
    while (from != end) {
        const char16_t* const stop = std::find_if(from, end, mustBeEscaped);
        append(QStringView(from, stop));
        from = stop;
        if (from != end) {
            appendEscape(*from++);
        }
    }
    append(u'"');
}

void JSONTextWriter::appendEscape(char16_t unit) {
    append(u'\\');
    switch (unit) {
    case u'\b':
        append(u'b');
        break;
    case u'\t':
        append(u't');
        break;
    case u'\n':
        append(u'n');
        break;
    case u'\f':
        append(u'f');
        break;
    case u'\r':
        append(u'r');
        break;
    case u'"':
    case u'\\':
        append(unit);
        break;
    default:
        constexpr char16_t digits[] = u"0123456789abcdef";
        append(u"u00");
        append(digits[unit >> 4]);
        append(digits[unit & 0xF]);
    }
}

QString JSONTextWriter::take() {
    m_text.truncate(written());
    m_text.squeeze();
    m_at = m_limit = nullptr;
    return std::move(m_text);
}

qsizetype JSONTextWriter::written() const {
    return m_at ? m_at - reinterpret_cast<const char16_t*>(m_text.constData()) : 0;
}

void JSONTextWriter::grow(qsizetype units) {
    const qsizetype used = written();
    m_text.resize(std::max<qsizetype>(256, used + std::max(used, units)));
    auto* const begin = reinterpret_cast<char16_t*>(m_text.data());
    m_at = begin + used;
    m_limit = begin + m_text.size();
}

} // namespace quillary
