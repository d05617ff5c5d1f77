#pragma once

#include <QByteArrayView>
#include <QString>

namespace quillary {

/// A growing JSON text, written from front to back.
class JSONTextWriter {
public:
    void append(char16_t unit) { *room(1)++ = unit; }

    void append(QStringView text);

    void appendSpaces(qsizetype count);

    /// Bytes that are known to be ASCII.
    void appendASCII(QByteArrayView bytes);

    /// Bytes that are known to be well-formed UTF-8.
    void appendUTF8(QByteArrayView bytes);

    /// A JSON string literal of this text.
    void appendQuoted(QStringView text);

    /// The text that was written; nothing can be written any more.
    QString take();

private:
    /// The place to write at, with room for so many units; whoever writes moves it on.
    char16_t*& room(qsizetype units) {
        if (m_limit - m_at < units) {
            grow(units);
        }
        return m_at;
    }

    qsizetype written() const;
    void grow(qsizetype units);
    void appendEscape(char16_t unit);

    QString m_text;
    char16_t* m_at = nullptr;
    char16_t* m_limit = nullptr;
};

} // namespace quillary
