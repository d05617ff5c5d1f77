#include "Quillary/SendPanel/FlowLayout.h"

#include <algorithm>

namespace quillary {

FlowLayout::FlowLayout(int spacing, QWidget* parent) : ItemLayout(parent) {
    setContentsMargins(0, 0, 0, 0);
    setSpacing(spacing);
}

int FlowLayout::heightForWidth(int width) const {
    return arrange(QRect(0, 0, width, 0), [](QLayoutItem*, const QRect&) {});
}

QSize FlowLayout::minimumSize() const {
    QSize size;
    for (const QLayoutItem* const item : items()) {
        size = size.expandedTo(item->minimumSize());
    }
    return size;
}

QSize FlowLayout::sizeHint() const {
    return minimumSize();
}

void FlowLayout::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    arrange(rect, [](QLayoutItem* item, const QRect& place) { item->setGeometry(place); });
}

template <typename Place>
int FlowLayout::arrange(const QRect& rect, Place place) const {
    int x = rect.left();
    int y = rect.top();
    int rowHeight = 0;
    for (QLayoutItem* const item : items()) {
        const QSize size = item->sizeHint().boundedTo({rect.width(), QLAYOUTSIZE_MAX});
        if (x > rect.left() && x + size.width() > rect.left() + rect.width()) {
            x = rect.left();
            y += rowHeight + spacing();
            rowHeight = 0;
        }
        place(item, QRect(QPoint(x, y), size));
        x += size.width() + spacing();
        rowHeight = std::max(rowHeight, size.height());
    }
    return y + rowHeight - rect.top();
}

} // namespace quillary
