#include "QuillaryCore/Compare/CanonicalNumbers.h"

#include "QuillaryCore/Unicode/CanonicalEquality.h"

#include <bit>

namespace quillary {

CanonicalNumbers::CanonicalNumbers(qsizetype expected, bool areComposed)
    : m_areComposed(areComposed), m_slots(std::bit_ceil(static_cast<std::size_t>(expected) * 2 + 1)) {
    m_texts.reserve(static_cast<std::size_t>(expected));
}

/// The slot of an equal text, or the empty one where it belongs.
std::size_t CanonicalNumbers::slotOf(QStringView form, quint64 hash) const {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = hash & mask;
    while (m_slots[slot].number != none && (m_slots[slot].hash != static_cast<quint32>(hash >> 32) ||
                                            m_texts[static_cast<std::size_t>(m_slots[slot].number)] != form)) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

qint32 CanonicalNumbers::add(QStringView text) {
    QString composed;
    if (!m_areComposed && !isCanonicalForm(text)) {
        composed = canonicalForm(text);
        text = composed;
    }
    const quint64 hash = m_hash(text);
    Slot& slot = m_slots[slotOf(text, hash)];
    if (slot.number == none) {
        slot = {static_cast<quint32>(hash >> 32), count()};
        m_texts.push_back(composed.isNull() ? text : QStringView(m_forms.emplace_back(std::move(composed))));
    }
    return slot.number;
}

qint32 CanonicalNumbers::find(QStringView text, qint32 guess) const {
    if (guess != none && guess < count() && m_texts[static_cast<std::size_t>(guess)] == text) {
        return guess;
    }
    QString composed;
    if (!m_areComposed && !isCanonicalForm(text)) {
        composed = canonicalForm(text);
        text = composed;
    }
    return m_slots[slotOf(text, m_hash(text))].number;
}

} // namespace quillary
