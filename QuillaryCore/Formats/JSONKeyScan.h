#pragma once

#include "QuillaryCore/Formats/JSONDocument.h"
#include "QuillaryCore/SeededHash.h"

#include <QByteArrayView>
#include <QSet>

#include <vector>

namespace quillary {

/// Finds the members of an object whose key an earlier member has. Keys are the same when they are canonically
/// equivalent. One scan serves any number of objects and keeps its memory from one to the next.
class JSONKeyScan {
public:
    explicit JSONKeyScan(const JSONDocument& document) : m_document(document) {}

    /// The positions among the object's members, ascending.
    std::vector<qsizetype> duplicates(qsizetype object);

private:
    struct HashedKey {
        QByteArrayView bytes;

        friend bool operator==(const HashedKey& a, const HashedKey& b) { return a.bytes == b.bytes; }

        friend size_t qHash(const HashedKey& key, size_t seed) { return SeededHash(seed)(key.bytes); }
    };

    QByteArrayView comparableKey(qsizetype position);
    bool insertHashed(QByteArrayView key);
    bool insertCompared(QByteArrayView key);

    const JSONDocument& m_document;
    std::vector<QByteArrayView> m_few;
    QSet<HashedKey> m_many;
    /// Keys that had to be brought into a comparable form.
    std::vector<QByteArray> m_forms;
};

} // namespace quillary
