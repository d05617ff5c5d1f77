#include "QuillaryCore/Formats/CSVTable.h"

namespace quillary {

bool operator==(const CSVTable& a, const CSVTable& b) {
    return a.m_delimiter == b.m_delimiter && a.m_rowEnds == b.m_rowEnds &&
           std::equal(a.m_fields.begin(), a.m_fields.end(), b.m_fields.begin(), b.m_fields.end(),
                      [&](const CSVTable::Field& x, const CSVTable::Field& y) { return a.text(x) == b.text(y); });
}

} // namespace quillary
