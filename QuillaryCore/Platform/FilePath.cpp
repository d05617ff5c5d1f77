#include "QuillaryCore/Platform/FilePath.h"

#include <QStringDecoder>
#include <QStringEncoder>

#include <algorithm>

namespace quillary {

namespace {

constexpr char16_t firstByteSurrogate = 0xDC80;
constexpr char16_t lastByteSurrogate = 0xDCFF;

bool isASCII(QByteArrayView bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

bool isContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

/// The length of the well-formed UTF-8 sequence at the start, by the table of well-formed byte sequences of the Unicode
/// standard (3.9, table 3-7); 0 if there is none.
qsizetype sequenceLength(QByteArrayView bytes) {
    const auto at = [bytes](qsizetype i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char lead = at(0);
    if (lead < 0x80) {
        return 1;
    }
    const qsizetype length = lead >= 0xC2 && lead <= 0xDF   ? 2
                             : lead >= 0xE0 && lead <= 0xEF ? 3
                             : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                            : 0;
    if (length == 0 || bytes.size() < length) {
        return 0;
    }
    for (qsizetype i = 1; i < length; ++i) {
        if (!isContinuation(at(i))) {
            return 0;
        }
    }
    const unsigned char second = at(1);
    const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
    const bool surrogate = lead == 0xED && second > 0x9F;
    const bool tooGreat = lead == 0xF4 && second > 0x8F;
    return overlong || surrogate || tooGreat ? 0 : length;
}

qsizetype lastDotOfExtension(QByteArrayView name) {
    const qsizetype dot = name.lastIndexOf('.');
    return dot > 0 && dot + 1 < name.size() ? dot : -1;
}

QByteArrayView lastComponent(QByteArrayView path) {
    while (path.size() > 1 && path.back() == '/') {
        path.chop(1);
    }
    return path.sliced(path.lastIndexOf('/') + 1);
}

} // namespace

FilePath FilePath::fromBytes(QByteArray bytes) {
    return FilePath(std::move(bytes));
}

FilePath FilePath::fromText(QStringView text) {
    return FilePath(bytesFromText(text));
}

QString FilePath::text() const {
    return textFromBytes(m_bytes);
}

QString FilePath::fileName() const {
    return textFromBytes(lastComponent(m_bytes));
}

QString FilePath::title() const {
    const QByteArrayView name = lastComponent(m_bytes);
    const qsizetype dot = lastDotOfExtension(name);
    return textFromBytes(dot < 0 ? name : name.first(dot));
}

QString FilePath::extension() const {
    const QByteArrayView name = lastComponent(m_bytes);
    const qsizetype dot = lastDotOfExtension(name);
    return dot < 0 ? QString() : textFromBytes(name.sliced(dot + 1));
}

FilePath FilePath::parent() const {
    QByteArrayView rest = m_bytes;
    while (rest.size() > 1 && rest.back() == '/') {
        rest.chop(1);
    }
    rest = rest.first(rest.lastIndexOf('/') + 1);
    while (rest.size() > 1 && rest.back() == '/') {
        rest.chop(1);
    }
    return FilePath(rest.toByteArray());
}

FilePath FilePath::appending(QStringView component) const {
    const QByteArray name = bytesFromText(component);
    QByteArray bytes;
    bytes.reserve(m_bytes.size() + 1 + name.size());
    bytes += m_bytes;
    if (!bytes.endsWith('/')) {
        bytes += '/';
    }
    bytes += name;
    return FilePath(std::move(bytes));
}

FilePath FilePath::standardized() const {
    QByteArray result;
    result.reserve(m_bytes.size());
    const bool isAbsolute = m_bytes.startsWith('/');
    for (qsizetype start = 0; start < m_bytes.size();) {
        qsizetype end = m_bytes.indexOf('/', start);
        if (end < 0) {
            end = m_bytes.size();
        }
        const QByteArrayView component = QByteArrayView(m_bytes).sliced(start, end - start);
        start = end + 1;
        if (component.isEmpty() || component == ".") {
            continue;
        }
        if (component == ".." && (isAbsolute || !(result.isEmpty() || lastComponent(result) == ".."))) {
            result.truncate(std::max<qsizetype>(result.lastIndexOf('/'), 0));
            continue;
        }
        if (isAbsolute || !result.isEmpty()) {
            result += '/';
        }
        result += component;
    }
    if (result.isEmpty() && isAbsolute) {
        result = "/";
    }
    return FilePath(std::move(result));
}

QString FilePath::textFromBytes(QByteArrayView bytes) {
    if (isASCII(bytes)) {
        return QString::fromLatin1(bytes);
    }
    QString text;
    text.reserve(bytes.size());
    qsizetype wellFormed = 0;
    // A mark at the start is a part of the name as any other.
    const auto appendWellFormed = [&](qsizetype end) {
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
        text += decoder(bytes.sliced(wellFormed, end - wellFormed));
    };
    for (qsizetype i = 0; i < bytes.size();) {
        if (const qsizetype length = sequenceLength(bytes.sliced(i))) {
            i += length;
            continue;
        }
        appendWellFormed(i);
        text += QChar(char16_t(0xDC00 + static_cast<unsigned char>(bytes[i])));
        wellFormed = ++i;
    }
    appendWellFormed(bytes.size());
    return text;
}

QByteArray FilePath::bytesFromText(QStringView text) {
    QByteArray bytes;
    bytes.reserve(text.size());
    qsizetype wellFormed = 0;
    const auto appendWellFormed = [&](qsizetype end) { bytes += text.sliced(wellFormed, end - wellFormed).toUtf8(); };
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        if (!unit.isSurrogate()) {
            continue;
        }
        if (unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            ++i;
            continue;
        }
        appendWellFormed(i);
        if (unit >= firstByteSurrogate && unit <= lastByteSurrogate) {
            bytes += static_cast<char>(unit.unicode() - 0xDC00);
        } else {
            bytes += "\xEF\xBF\xBD";
        }
        wellFormed = i + 1;
    }
    appendWellFormed(text.size());
    return bytes;
}

QString FilePath::displayText(QStringView text) {
    QString result = text.toString();
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

} // namespace quillary
