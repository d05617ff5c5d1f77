#include "QuillaryCore/Compare/TextLines.h"

#include "QuillaryCore/Formats/UnitMask.h"

#include <bit>

namespace quillary {

TextLines::TextLines(QString text) : m_text(std::move(text)) {
    const qsizetype size = m_text.size();
    if (size == 0) {
        return;
    }
    const char16_t* const units = QStringView(m_text).utf16();
    const UnitMask<1> lineFeeds(u'\n');
    m_starts.push_back(0);
    for (qsizetype block = 0; block < size; block += UnitMask<1>::blockSize) {
        for (quint64 mask = lineFeeds(units + block, size - block); mask != 0; mask &= mask - 1) {
            m_starts.push_back(static_cast<quint32>(block + std::countr_zero(mask) + 1));
        }
    }
    if (units[size - 1] != u'\n') {
        m_starts.push_back(static_cast<quint32>(size + 1));
    }
}

} // namespace quillary
