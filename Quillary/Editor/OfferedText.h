#pragma once

#include "QuillaryCore/Text/TextRange.h"

#include <QMimeData>
#include <QPointer>

namespace quillary {

class TextStorage;

/// A part of a text that is on offer to other programs. It is copied when somebody asks for it, or when the text is
/// about to change, so that a selection may grow to any size, and with each key, without a copy.
class OfferedText : public QMimeData {
    Q_OBJECT

public:
    /// The range must lie within the storage.
    OfferedText(const TextStorage& storage, TextRange range);

    /// Whether it still has nothing of its own.
    bool isLazy() const { return !m_storage.isNull(); }

    QStringList formats() const override;

protected:
    QVariant retrieveData(const QString& format, QMetaType type) const override;

private:
    /// Makes the offer independent of the storage.
    void keep();

    QPointer<const TextStorage> m_storage;
    TextRange m_range;
    QString m_text;
};

} // namespace quillary
