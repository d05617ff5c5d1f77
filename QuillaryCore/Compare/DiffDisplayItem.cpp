#include "QuillaryCore/Compare/DiffDisplayItem.h"

#include <algorithm>

namespace quillary {

QString DiffDisplayItem::id() const {
    return (m_kind == Kind::row ? QChar(u'r') : QChar(u'c')) + QString::number(m_row);
}

std::vector<DiffDisplayItem> DiffDisplayItem::allRows(qsizetype count) {
    std::vector<DiffDisplayItem> items;
    items.reserve(static_cast<std::size_t>(count));
    for (qsizetype i = 0; i < count; ++i) {
        items.push_back(row(i));
    }
    return items;
}

std::vector<DiffDisplayItem> DiffDisplayItem::items(std::span<const DiffRow::Kind> kinds, qsizetype context,
                                                    const QSet<qsizetype>& expanded) {
    const qsizetype size = static_cast<qsizetype>(kinds.size());
    context = std::clamp<qsizetype>(context, 0, size);
    const auto nextChange = [&](qsizetype from) {
        const auto isChange = [](DiffRow::Kind kind) { return kind != DiffRow::Kind::unchanged; };
        return std::find_if(kinds.begin() + from, kinds.end(), isChange) - kinds.begin();
    };
    qsizetype change = nextChange(0);
    if (change == size) {
        return allRows(size);
    }

    std::vector<DiffDisplayItem> items;
    const auto addRows = [&items](qsizetype from, qsizetype to) {
        for (; from < to; ++from) {
            items.push_back(row(from));
        }
    };
    // Rows before `shown` are in the list. A change keeps what is around it, so that a run to fold ends before it.
    qsizetype shown = 0;
    while (shown < size) {
        const qsizetype runEnd = change == size ? size : std::max(change - context, shown);
        if (runEnd - shown >= fewestFolded && !expanded.contains(shown)) {
            items.push_back(collapsed(shown, runEnd - shown));
        } else {
            addRows(shown, runEnd);
        }
        const qsizetype keptEnd = change == size ? size : std::min(change + context + 1, size);
        addRows(runEnd, keptEnd);
        shown = keptEnd;
        change = nextChange(std::min(change + 1, size));
    }
    return items;
}

} // namespace quillary
