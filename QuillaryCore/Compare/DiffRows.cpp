#include "QuillaryCore/Compare/DiffRows.h"

#include <algorithm>

namespace quillary {

DiffRows::DiffRows() : m_contents(std::make_shared<const Contents>()) {}

DiffRows::DiffRows(Contents contents) : m_contents(std::make_shared<const Contents>(std::move(contents))) {}

DiffRow DiffRows::operator[](qsizetype id) const {
    const std::size_t at = static_cast<std::size_t>(id);
    const Place& place = m_contents->places[at];
    DiffRow row{id, m_contents->kinds[at], std::nullopt, std::nullopt};
    const auto side = [&](const TextLines& lines, qint32 line, bool isOld) {
        const QStringView text = lines[line];
        if (place.words < 0) {
            return DiffSide{line + 1, DiffSegments(text)};
        }
        const WordMarks& marks = m_contents->words[static_cast<std::size_t>(place.words)];
        const std::span<const DiffSegmentEnd> ends = std::span(m_contents->ends);
        return DiffSide{line + 1,
                        DiffSegments(text, isOld ? ends.subspan(marks.first, marks.oldCount)
                                                 : ends.subspan(marks.first + marks.oldCount, marks.newCount))};
    };
    if (place.oldLine >= 0) {
        row.oldSide = side(m_contents->oldLines, place.oldLine, true);
    }
    if (place.newLine >= 0) {
        row.newSide = side(m_contents->newLines, place.newLine, false);
    }
    return row;
}

bool operator==(const DiffRows& a, const DiffRows& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

} // namespace quillary
