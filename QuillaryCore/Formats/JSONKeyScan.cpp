#include "QuillaryCore/Formats/JSONKeyScan.h"

#include "QuillaryCore/Formats/UTF8.h"
#include "QuillaryCore/Unicode/CanonicalEquality.h"

#include <algorithm>

namespace quillary {

namespace {

/// Up to so many keys are compared with each other; more are hashed.
constexpr qsizetype few = 8;

} // namespace

std::vector<qsizetype> JSONKeyScan::duplicates(qsizetype object) {
    const JSONTape& tape = m_document.tape;
    const qsizetype count = tape.payload(object);
    std::vector<qsizetype> result;
    if (count < 2) {
        return result;
    }
    m_few.clear();
    m_many.clear();
    m_forms.clear();
    if (count > few) {
        m_many.reserve(count);
    }
    qsizetype position = JSONTape::firstChild(object);
    for (qsizetype i = 0; i < count; ++i) {
        const QByteArrayView key = comparableKey(position);
        if (!(count > few ? insertHashed(key) : insertCompared(key))) {
            result.push_back(i);
        }
        position = tape.next(position + 1);
    }
    return result;
}

bool JSONKeyScan::insertHashed(QByteArrayView key) {
    const qsizetype before = m_many.size();
    m_many.insert({key});
    return m_many.size() > before;
}

bool JSONKeyScan::insertCompared(QByteArrayView key) {
    if (std::find(m_few.begin(), m_few.end(), key) != m_few.end()) {
        return false;
    }
    m_few.push_back(key);
    return true;
}

QByteArrayView JSONKeyScan::comparableKey(qsizetype position) {
    if (m_document.tape.tag(position) == JSONTape::Tag::asciiString) {
        return m_document.stringBytes(position);
    }
    return m_forms.emplace_back(UTF8::encoded(canonicalForm(m_document.string(position))));
}

} // namespace quillary
