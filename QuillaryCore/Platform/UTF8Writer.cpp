#include "QuillaryCore/Platform/UTF8Writer.h"

#include "QuillaryCore/Platform/AtomicFile.h"

#include <algorithm>
#include <array>

namespace quillary {

namespace {

constexpr qsizetype pieceLength = 64 * 1024;

} // namespace

UTF8Writer::UTF8Writer(AtomicFile& file)
    : m_file(file), m_encoder(QStringEncoder::Utf8, QStringEncoder::Flag::Stateless) {}

Status<SystemError> UTF8Writer::encode(QStringView text) {
    m_buffer.resize(std::max(m_buffer.size(), m_encoder.requiredSpace(text.size())));
    const char* const end = m_encoder.appendToBuffer(m_buffer.data(), text);
    return m_file.write(QByteArrayView(m_buffer.constData(), end));
}

Status<SystemError> UTF8Writer::write(QStringView text) {
    if (text.isEmpty()) {
        return Done();
    }
    if (!m_pending.isNull()) {
        const std::array<QChar, 2> pair = {std::exchange(m_pending, QChar()), text.front()};
        const bool isWhole = text.front().isLowSurrogate();
        if (const auto written = encode(QStringView(pair.data(), isWhole ? 2 : 1)); !written) {
            return written;
        }
        text = text.sliced(isWhole ? 1 : 0);
    }
    while (!text.isEmpty()) {
        qsizetype length = std::min(text.size(), pieceLength);
        if (text[length - 1].isHighSurrogate()) {
            --length;
        }
        if (length == 0) {
            // The other half may still come.
            m_pending = text.front();
            return Done();
        }
        if (const auto written = encode(text.first(length)); !written) {
            return written;
        }
        text = text.sliced(length);
    }
    return Done();
}

Status<SystemError> UTF8Writer::finish() {
    if (m_pending.isNull()) {
        return Done();
    }
    const QChar lone = std::exchange(m_pending, QChar());
    return encode(QStringView(&lone, 1));
}

} // namespace quillary
