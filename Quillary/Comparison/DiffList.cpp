#include "Quillary/Comparison/DiffList.h"

#include "Quillary/Comparison/DiffListAccessible.h"
#include "Quillary/Comparison/DiffTexts.h"
#include "Quillary/Comparison/SideBySideRow.h"
#include "Quillary/Comparison/UnifiedRows.h"

#include <QScrollBar>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

namespace quillary {

DiffList::DiffList(QWidget* parent) : QAbstractScrollArea(parent) {
    DiffListAccessible::install();
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAccessibleName(tr("Confronto"));
    viewport()->setBackgroundRole(QPalette::Base);
    viewport()->setMouseTracking(true);
    rebuildItems();
}

DiffList::~DiffList() = default;

void DiffList::setRows(const DiffRows& rows) {
    m_rows = rows;
    m_expanded.clear();
    m_anchor = {0, -verticalPadding};
    rebuildItems();
}

void DiffList::setMode(DiffMode mode) {
    if (m_mode != mode) {
        keepPlace([this, mode] {
            m_mode = mode;
            rebuildStrips();
        });
    }
}

void DiffList::setShowsAllLines(bool showsAll) {
    if (m_showsAllLines != showsAll) {
        keepPlace([this, showsAll] {
            m_showsAllLines = showsAll;
            rebuildItems();
        });
    }
}

void DiffList::setStyle(const EditorStyle& style) {
    if (m_style != style) {
        keepPlace([this, &style] {
            m_style = style;
            m_metrics = DiffMetrics(style);
            rebuildStrips();
        });
    }
}

void DiffList::expand(qsizetype item) {
    const DiffDisplayItem& fold = m_items[static_cast<std::size_t>(item)];
    if (fold.kind() == DiffDisplayItem::Kind::collapsed) {
        keepPlace([this, row = fold.rowId()] {
            m_expanded.insert(row);
            rebuildItems();
        });
    }
}

void DiffList::keepPlace(const std::function<void()>& rebuild) {
    if (m_items.empty()) {
        rebuild();
        return;
    }
    const qsizetype item = m_strips.itemOf(m_anchor.strip);
    const qsizetype row = m_items[static_cast<std::size_t>(item)].rowId();
    const qsizetype strip = m_anchor.strip - m_strips.firstStrip(item);
    const int offset = m_anchor.offset;
    const auto rowOf = [this](qsizetype i) { return m_items[static_cast<std::size_t>(i)].rowId(); };
    std::optional<std::pair<qsizetype, qsizetype>> selectedRows;
    if (m_current) {
        selectedRows = {rowOf(m_selectionStart), rowOf(*m_current)};
    }
    rebuild();
    const qsizetype place = itemOfRow(row);
    m_anchor.strip = std::min(m_strips.firstStrip(place) + strip, m_strips.endStrip(place) - 1);
    m_anchor.offset = std::min(offset, m_strips.height(m_anchor.strip) - 1);
    if (selectedRows) {
        m_selectionStart = itemOfRow(selectedRows->first);
        m_current = itemOfRow(selectedRows->second);
    }
    settle();
}

void DiffList::rebuildItems() {
    m_items = m_showsAllLines ? DiffDisplayItem::allRows(m_rows.size())
                              : DiffDisplayItem::items(m_rows.kinds(), DiffDisplayItem::shownContext, m_expanded);
    m_current.reset();
    m_selectionStart = 0;
    m_hovered.reset();
    endDrag();
    rebuildStrips();
    tellReaders();
}

void DiffList::rebuildStrips() {
    forgetLayouts();
    m_settledWidth = viewport()->width();
    m_strips.clear();
    for (const DiffDisplayItem& item : m_items) {
        m_strips.beginItem();
        if (item.kind() == DiffDisplayItem::Kind::collapsed) {
            m_strips.addStrip(m_metrics.foldHeight());
        } else {
            addStrips(m_rows[item.rowId()]);
        }
    }
    m_strips.close();
    m_anchor.strip = std::clamp<qsizetype>(m_anchor.strip, 0, std::max<qsizetype>(lastStrip(), 0));
    settle();
}

/// In two halves the chunks of both lines stand side by side, in one column those of one line below the other's.
void DiffList::addStrips(const DiffRow& row) {
    const double width = textWidth();
    if (m_mode == DiffMode::sideBySide) {
        const auto halves = SideBySideRow::halves(row);
        const qsizetype count = std::max(halves[0].chunkCount(), halves[1].chunkCount());
        for (qsizetype chunk = 0; chunk < count; ++chunk) {
            m_strips.addStrip(std::max(halves[0].estimatedHeight(m_metrics, width, chunk),
                                       halves[1].estimatedHeight(m_metrics, width, chunk)));
        }
        return;
    }
    for (const DiffLineView& line : UnifiedRows::lines(row)) {
        for (qsizetype chunk = 0; chunk < line.chunkCount(); ++chunk) {
            m_strips.addStrip(line.estimatedHeight(m_metrics, width, chunk));
        }
    }
}

double DiffList::textWidth() const {
    return m_mode == DiffMode::sideBySide ? m_metrics.textWidth(halfWidth(), 1)
                                          : m_metrics.textWidth(viewport()->width(), 2);
}

/// The lines of a strip of a row, in rectangles of the strip's height.
std::vector<DiffList::Part> DiffList::parts(qsizetype strip, int top) const {
    const qsizetype item = m_strips.itemOf(strip);
    const DiffRow row = m_rows[m_items[static_cast<std::size_t>(item)].rowId()];
    qsizetype chunk = strip - m_strips.firstStrip(item);
    const int height = m_strips.height(strip);
    std::vector<Part> result;
    if (m_mode == DiffMode::sideBySide) {
        auto halves = SideBySideRow::halves(row);
        const int right = halfWidth() + 1;
        result.push_back({std::move(halves[0]), chunk, QRect(0, top, halfWidth(), height), 0});
        result.push_back({std::move(halves[1]), chunk, QRect(right, top, viewport()->width() - right, height), 1});
        return result;
    }
    for (DiffLineView& line : UnifiedRows::lines(row)) {
        const qsizetype count = line.chunkCount();
        if (chunk < count) {
            result.push_back({std::move(line), chunk, QRect(0, top, viewport()->width(), height), 0});
            break;
        }
        chunk -= count;
    }
    return result;
}

const QTextLayout& DiffList::layoutOf(qsizetype strip, const Part& part) const {
    std::unique_ptr<QTextLayout>& layout = m_layouts[strip * 2 + part.index];
    if (layout == nullptr) {
        layout = part.line.layout(m_metrics, textWidth(), part.chunk);
    }
    return *layout;
}

void DiffList::measure(qsizetype strip) {
    const DiffDisplayItem& item = m_items[static_cast<std::size_t>(m_strips.itemOf(strip))];
    if (item.kind() == DiffDisplayItem::Kind::collapsed) {
        return;
    }
    int rows = 1;
    for (const Part& part : parts(strip, 0)) {
        if (part.chunk < part.line.chunkCount()) {
            rows = std::max(rows, layoutOf(strip, part).lineCount());
        }
    }
    m_strips.setHeight(strip, rows * m_metrics.pitch);
}

void DiffList::forgetLayouts() {
    m_layouts.clear();
}

/// Gives everything in the viewport its true height, keeps the anchor within the list and tells the scroll bar.
void DiffList::settle() {
    if (m_isSettling) {
        return;
    }
    m_isSettling = true;
    constexpr std::size_t mostLayouts = 1024;
    if (m_layouts.size() > mostLayouts) {
        forgetLayouts();
    }
    const int room = viewport()->height();
    if (m_strips.count() > 0) {
        // Measuring what lies in the viewport may bring up its end, and pulling that down what lies above it: each
        // round measures at least one strip more, and there are but so many in a viewport.
        for (bool isSettled = false; !isSettled;) {
            while (m_anchor.offset < 0 && m_anchor.strip > 0) {
                --m_anchor.strip;
                measure(m_anchor.strip);
                m_anchor.offset += m_strips.height(m_anchor.strip);
            }
            measure(m_anchor.strip);
            while (m_anchor.strip < lastStrip() && m_anchor.offset >= m_strips.height(m_anchor.strip)) {
                m_anchor.offset -= m_strips.height(m_anchor.strip);
                measure(++m_anchor.strip);
            }
            qint64 bottom = -m_anchor.offset;
            for (qsizetype strip = m_anchor.strip; strip < m_strips.count() && bottom < room; ++strip) {
                measure(strip);
                bottom += m_strips.height(strip);
            }
            const qint64 furthest = std::max<qint64>(0, contentHeight() - room);
            const qint64 offset = scrollOffset();
            isSettled = offset >= 0 && offset <= furthest;
            if (!isSettled) {
                m_anchor.offset += static_cast<int>(std::clamp<qint64>(offset, 0, furthest) - offset);
            }
        }
    } else {
        m_anchor = {};
    }
    constexpr qint64 highest = std::numeric_limits<int>::max();
    QScrollBar* const bar = verticalScrollBar();
    bar->setPageStep(std::max(1, room));
    bar->setSingleStep(m_metrics.pitch);
    bar->setRange(0, static_cast<int>(std::clamp<qint64>(contentHeight() - room, 0, highest)));
    bar->setValue(static_cast<int>(std::min(scrollOffset(), highest)));
    m_isSettling = false;
    viewport()->update();
}

void DiffList::scrollTo(qint64 offset) {
    if (m_strips.count() == 0) {
        return;
    }
    offset = std::clamp<qint64>(offset, 0, std::max<qint64>(0, contentHeight() - viewport()->height()));
    m_anchor.strip = m_strips.stripAt(std::max<qint64>(0, offset - verticalPadding));
    m_anchor.offset = static_cast<int>(offset - contentTop(m_anchor.strip));
    settle();
}

/// The end is where the true heights end, and not where the estimated ones did.
void DiffList::scrollToEnd() {
    if (m_strips.count() > 0) {
        measure(lastStrip());
        m_anchor = {lastStrip(), m_strips.height(lastStrip()) + verticalPadding - viewport()->height()};
        settle();
    }
}

void DiffList::scrollContentsBy(int, int) {
    if (m_isSettling || m_strips.count() == 0) {
        return;
    }
    const int value = verticalScrollBar()->value();
    const qint64 distance = value - scrollOffset();
    if (value == verticalScrollBar()->maximum()) {
        scrollToEnd();
    } else if (std::abs(distance) <= 2 * viewport()->height()) {
        // From what the user sees, whatever the heights of what comes up turn out to be.
        m_anchor.offset += static_cast<int>(distance);
        settle();
    } else {
        scrollTo(value);
    }
}

void DiffList::resizeEvent(QResizeEvent*) {
    if (viewport()->width() != m_settledWidth) {
        keepPlace([this] { rebuildStrips(); });
    } else {
        settle();
    }
}

qsizetype DiffList::itemOfRow(qsizetype rowId) const {
    const auto isBehind = [](qsizetype row, const DiffDisplayItem& item) { return row < item.rowId(); };
    const auto next = std::upper_bound(m_items.begin(), m_items.end(), rowId, isBehind);
    return std::max<qsizetype>(0, next - m_items.begin() - 1);
}

std::optional<qsizetype> DiffList::itemAt(const QPoint& place) const {
    const qint64 y = scrollOffset() + place.y() - verticalPadding;
    if (m_items.empty() || y < 0 || y >= m_strips.totalHeight()) {
        return std::nullopt;
    }
    return m_strips.itemOf(m_strips.stripAt(y));
}

QRect DiffList::itemRect(qsizetype item) const {
    const qint64 top = contentTop(m_strips.firstStrip(item)) - scrollOffset();
    const qint64 height = m_strips.top(m_strips.endStrip(item)) - m_strips.top(m_strips.firstStrip(item));
    return {0, static_cast<int>(top), viewport()->width(), static_cast<int>(height)};
}

/// Scrolls as little as shows the item, and its beginning if it is higher than the viewport.
void DiffList::showItem(qsizetype item) {
    for (qsizetype strip = m_strips.firstStrip(item); strip < m_strips.endStrip(item); ++strip) {
        measure(strip);
        if (contentTop(strip) - contentTop(m_strips.firstStrip(item)) > viewport()->height()) {
            break;
        }
    }
    const qint64 top = contentTop(m_strips.firstStrip(item));
    const qint64 end = contentTop(m_strips.endStrip(item));
    const qint64 room = viewport()->height();
    if (item == 0) {
        scrollTo(0);
    } else if (item + 1 == static_cast<qsizetype>(m_items.size()) && end - top <= room) {
        scrollToEnd();
    } else if (top < scrollOffset() || end - top > room) {
        scrollTo(top);
    } else if (end > scrollOffset() + room) {
        scrollTo(end - room);
    } else {
        settle();
    }
}

void DiffList::centerItem(qsizetype item) {
    // The second time all heights around the item are true.
    for (int round = 0; round < 2; ++round) {
        const qint64 top = contentTop(m_strips.firstStrip(item));
        const qint64 height = contentTop(m_strips.endStrip(item)) - top;
        scrollTo(top - std::max<qint64>(0, (viewport()->height() - height) / 2));
    }
}

void DiffList::scrollToRow(qsizetype rowId) {
    if (!m_items.empty()) {
        centerItem(itemOfRow(rowId));
    }
}

bool DiffList::goToChange(int direction) {
    const std::span<const DiffRow::Kind> kinds = m_rows.kinds();
    const auto startsChange = [&kinds](qsizetype row) {
        const std::size_t at = static_cast<std::size_t>(row);
        return kinds[at] != DiffRow::Kind::unchanged && (row == 0 || kinds[at - 1] == DiffRow::Kind::unchanged);
    };
    const qsizetype step = direction < 0 ? -1 : 1;
    qsizetype row = m_current ? m_items[static_cast<std::size_t>(*m_current)].rowId() + step : step < 0 ? -1 : 0;
    while (row >= 0 && row < m_rows.size() && !startsChange(row)) {
        row += step;
    }
    if (row < 0 || row >= m_rows.size()) {
        return false;
    }
    const qsizetype item = itemOfRow(row);
    select(item, false);
    centerItem(item);
    return true;
}

QString DiffList::description(qsizetype item) const {
    const DiffDisplayItem& shown = m_items[static_cast<std::size_t>(item)];
    return shown.kind() == DiffDisplayItem::Kind::collapsed ? DiffTexts::fold(shown.count())
                                                            : DiffTexts::description(m_rows[shown.rowId()]);
}

} // namespace quillary
