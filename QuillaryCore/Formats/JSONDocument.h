#pragma once

#include "QuillaryCore/Formats/JSONTape.h"

#include <QByteArray>
#include <QSharedData>
#include <QString>

namespace quillary {

/// A parsed JSON text: its bytes and its structure. Values share it; it never changes.
struct JSONDocument : QSharedData {
    JSONDocument(QByteArray text, JSONTape structure) : bytes(std::move(text)), tape(std::move(structure)) {}

    /// The bytes between the quotes of the string at this position, as they were written.
    QByteArrayView stringBytes(qsizetype position) const;

    /// The text of the string at this position.
    QString string(qsizetype position) const;

    /// The number at this position as it was written.
    QByteArrayView number(qsizetype position) const;

    QByteArray bytes;
    JSONTape tape;
};

} // namespace quillary
