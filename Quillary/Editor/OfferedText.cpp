#include "Quillary/Editor/OfferedText.h"

#include "QuillaryCore/Text/TextStorage.h"

namespace quillary {

using namespace Qt::StringLiterals;

OfferedText::OfferedText(const TextStorage& storage, TextRange range) : m_storage(&storage), m_range(range) {
    connect(&storage, &TextStorage::aboutToChange, this, &OfferedText::keep);
    connect(&storage, &TextStorage::aboutToEnd, this, &OfferedText::keep);
}

void OfferedText::keep() {
    if (m_storage) {
        m_text = m_storage->text(m_range);
        disconnect(m_storage, nullptr, this, nullptr);
        m_storage.clear();
    }
}

QStringList OfferedText::formats() const {
    return {u"text/plain"_s};
}

QVariant OfferedText::retrieveData(const QString& format, QMetaType type) const {
    if (format != u"text/plain"_s) {
        return QMimeData::retrieveData(format, type);
    }
    return m_storage ? m_storage->text(m_range) : m_text;
}

} // namespace quillary
