#include "QuillaryCore/Formats/MarkdownBlockReader.h"

#include <algorithm>
#include <utility>

namespace quillary {

using namespace MarkdownLineForms;

void MarkdownBlockReader::read(QStringView text, bool mayHoldBar) {
    m_memo = {};
    m_mayHoldBar = mayHoldBar;
    MarkdownLine line(text);
    if (line.isBlank()) {
        takeBlank(0, text);
        return;
    }
    bool isTaken = true;
    for (std::size_t depth = 0; isTaken && depth < m_open.size();) {
        if (m_open[depth].isItem) {
            isTaken = passItem(depth, line);
        } else if (isQuoteLine(line)) {
            line = quoteContent(line);
            m_open[depth].endsBlank = line.isBlank();
            setOpenEnd(depth, false);
            if (line.isBlank()) {
                takeBlank(depth + 1, line.text());
                setOpenEnd(depth, true);
                return;
            }
            ++depth;
        } else if (m_open[depth].endsBlank || opensBlock(line)) {
            endFrom(depth);
            isTaken = false;
        } else {
            depth = lazyTarget(depth, line);
        }
    }
    if (!goOn(line)) {
        begin(line);
    }
}

/// Offers the line to the item at `depth`, which takes it or ends, with or without a next item. `line` becomes what
/// goes on to the next depth, or, where nothing is taken, what begins a block in the place that is left open.
bool MarkdownBlockReader::passItem(std::size_t& depth, MarkdownLine& line) {
    Container& item = m_open[depth];
    if (line.indent() >= item.contentOffset) {
        commitBlanks(depth);
        line = line.withoutColumns(item.contentOffset);
        item.endsBlank = false;
        setOpenEnd(depth, false);
        ++depth;
        return true;
    }
    const std::optional<ListMarker> marker = listMarker(line);
    if (item.pendingBlanks == 0) {
        if (marker && marker->indent >= item.markerIndent + 2) {
            line = line.withoutColumns(line.indent());
            item.endsBlank = false;
            setOpenEnd(depth, false);
            ++depth;
            return true;
        }
        if (!marker && !item.endsBlank && !opensBlock(line)) {
            const bool wasTrimmed = line.isTrimmed();
            line = line.trimmed();
            depth = wasTrimmed ? lazyTarget(depth, line) : depth + 1;
            return true;
        }
    }
    if (marker && marker->ordered == item.isOrdered && marker->indent < item.firstContentOffset) {
        endFrom(depth + 1);
        endNode(item.node);
        line = beginItem(depth, *marker);
    } else {
        endFrom(depth);
    }
    return false;
}

/// A blank line arrives at `depth`. It ends a quote, and an item waits for what follows.
void MarkdownBlockReader::takeBlank(std::size_t depth, QStringView line) {
    if (depth == m_open.size()) {
        takeBlanksInLeaf(line, 1);
    } else if (m_open[depth].isItem) {
        ++m_open[depth].pendingBlanks;
        setOpenEnd(depth, true);
    } else {
        endFrom(depth);
    }
}

/// The blank lines that the item held back are its own: hands them on as empty lines.
void MarkdownBlockReader::commitBlanks(std::size_t depth) {
    const qsizetype count = std::exchange(m_open[depth].pendingBlanks, 0);
    if (count == 0) {
        return;
    }
    setOpenEnd(depth, false);
    if (depth + 1 == m_open.size()) {
        takeBlanksInLeaf(QStringView(), count);
    } else if (m_open[depth + 1].isItem) {
        m_open[depth + 1].pendingBlanks += count;
        setOpenEnd(depth + 1, true);
    } else {
        endFrom(depth + 1);
    }
}

/// How far down a line goes that opens no block, is no marker and was just taken lazily at `depth`: quotes take it as
/// it is, and so do items if trimming doesn't change it any more. Only a container that ends with blank lines looks
/// again.
std::size_t MarkdownBlockReader::lazyTarget(std::size_t depth, const MarkdownLine& line) const {
    std::size_t target = m_openEnds.empty() ? m_open.size() : m_openEnds.back();
    if (!line.isTrimmed()) {
        const auto item = std::upper_bound(m_items.begin(), m_items.end(), depth);
        target = std::min(target, item == m_items.end() ? m_open.size() : *item);
    }
    return target;
}

/// Whether the line begins something that no lazy line may be.
bool MarkdownBlockReader::opensBlock(const MarkdownLine& line) {
    return mayOpenBlock(line) &&
           (fence(line) || atxHeading(line) || isThematicBreak(line, m_memo) || isQuoteLine(line) || listMarker(line));
}

bool MarkdownBlockReader::holdsBar(const MarkdownLine& line) const {
    return m_mayHoldBar && MarkdownCharacters::find(line.content(), u'|') >= 0;
}

/// Keeps the list of containers that end with blank lines. The line on its way down has passed all that are above
/// `depth`, so that the list, if it isn't empty, begins at `depth` or below.
void MarkdownBlockReader::setOpenEnd(std::size_t depth, bool isOpenEnded) {
    const bool isKnown = !m_openEnds.empty() && m_openEnds.back() == depth;
    if (isOpenEnded && !isKnown) {
        m_openEnds.push_back(depth);
    } else if (!isOpenEnded && isKnown) {
        m_openEnds.pop_back();
    }
}

} // namespace quillary
