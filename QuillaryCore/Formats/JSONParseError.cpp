#include "QuillaryCore/Formats/JSONParseError.h"

#include "QuillaryCore/Formats/UTF8.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <algorithm>

namespace quillary {

using namespace Qt::StringLiterals;

JSONParseError::JSONParseError(QString message, QByteArray text, qsizetype offset)
    : m_message(std::move(message)), m_text(std::move(text)), m_offset(std::min(offset, m_text.size())) {}

qint64 JSONParseError::line() const {
    const QByteArrayView before = QByteArrayView(m_text).first(m_offset);
    return 1 + std::count(before.begin(), before.end(), '\n');
}

qint64 JSONParseError::column() const {
    const QByteArrayView before = QByteArrayView(m_text).first(m_offset);
    const QByteArrayView stretch = before.sliced(before.lastIndexOf('\n') + 1);
    return 1 + clusterCount(UTF8::decoded(stretch));
}

QString JSONParseError::description() const {
    return u"Riga "_s + QString::number(line()) + u", colonna "_s + QString::number(column()) + u": "_s + m_message;
}

bool operator==(const JSONParseError& a, const JSONParseError& b) {
    return a.m_message == b.m_message && a.line() == b.line() && a.column() == b.column();
}

} // namespace quillary
