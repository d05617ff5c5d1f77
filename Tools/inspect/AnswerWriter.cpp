#include "Tools/inspect/AnswerWriter.h"

#include <QJsonDocument>
#include <QString>

#include <charconv>
#include <cmath>

namespace quillary::inspect {

namespace {

/// The text with each lone surrogate as U+FFFD, since an answer is valid Unicode throughout.
QString withoutLoneSurrogates(QStringView value) {
    QString result = value.toString();
    for (qsizetype i = 0; i < result.size(); ++i) {
        if (!result[i].isSurrogate()) {
            continue;
        }
        if (result[i].isHighSurrogate() && i + 1 < result.size() && result[i + 1].isLowSurrogate()) {
            ++i;
        } else {
            result[i] = QChar::ReplacementCharacter;
        }
    }
    return result;
}

} // namespace

void AnswerWriter::separate() {
    if (m_afterKey) {
        m_afterKey = false;
        return;
    }
    if (m_hasElements.empty()) {
        return;
    }
    if (m_hasElements.back()) {
        m_bytes += ',';
    }
    m_hasElements.back() = true;
}

void AnswerWriter::beginObject() {
    separate();
    m_bytes += '{';
    m_hasElements.push_back(false);
}

void AnswerWriter::endObject() {
    m_hasElements.pop_back();
    m_bytes += '}';
}

void AnswerWriter::beginArray() {
    separate();
    m_bytes += '[';
    m_hasElements.push_back(false);
}

void AnswerWriter::endArray() {
    m_hasElements.pop_back();
    m_bytes += ']';
}

void AnswerWriter::key(QStringView name) {
    text(name);
    m_bytes += ':';
    m_afterKey = true;
}

void AnswerWriter::null() {
    separate();
    m_bytes += "null";
}

void AnswerWriter::text(QStringView value) {
    separate();
    const QByteArray utf8 = withoutLoneSurrogates(value).toUtf8();
    m_bytes += '"';
    for (const char byte : utf8) {
        switch (byte) {
        case '"':
            m_bytes += "\\\"";
            break;
        case '\\':
            m_bytes += "\\\\";
            break;
        case '\n':
            m_bytes += "\\n";
            break;
        case '\r':
            m_bytes += "\\r";
            break;
        case '\t':
            m_bytes += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(byte) < 0x20) {
                constexpr char digits[] = "0123456789abcdef";
                m_bytes += "\\u00";
                m_bytes += digits[byte >> 4];
                m_bytes += digits[byte & 0xF];
            } else {
                m_bytes += byte;
            }
        }
    }
    m_bytes += '"';
}

void AnswerWriter::boolean(bool value) {
    separate();
    m_bytes += value ? "true" : "false";
}

void AnswerWriter::real(double value) {
    separate();
    if (!std::isfinite(value)) {
        m_bytes += "null";
        return;
    }
    char buffer[32];
    const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
    m_bytes.append(buffer, end - buffer);
}

void AnswerWriter::object(const QJsonObject& value) {
    separate();
    const QByteArray json = QJsonDocument(value).toJson(QJsonDocument::Compact);
    // Of all escapes only those of lone surrogates begin like this: other characters beyond ASCII stand as they are.
    constexpr QByteArrayView surrogate("\\ud");
    constexpr qsizetype escapeLength = 6;
    for (qsizetype i = 0; i < json.size();) {
        if (json[i] != '\\') {
            m_bytes += json[i++];
        } else if (QByteArrayView(json).sliced(i).startsWith(surrogate)) {
            m_bytes += "\uFFFD";
            i += escapeLength;
        } else {
            m_bytes += json[i++];
            m_bytes += json[i++];
        }
    }
}

} // namespace quillary::inspect
