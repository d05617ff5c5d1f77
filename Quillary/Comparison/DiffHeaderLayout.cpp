#include "Quillary/Comparison/DiffHeaderLayout.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quillary {

namespace {

constexpr int nameCount = 3;
/// Between the notes and the controls on one line, beside the usual distance.
constexpr int groupGap = 8;
/// A title of this width can be told from others, so that all may share one line.
constexpr int readableName = 180;

int widthOf(const QLayoutItem* item) {
    return item->sizeHint().width();
}

} // namespace

DiffHeaderLayout::DiffHeaderLayout(QWidget* parent) : ItemLayout(parent) {
    setContentsMargins(12, 8, 10, 8);
    setSpacing(8);
}

QList<QLayoutItem*> DiffHeaderLayout::controls() const {
    return items().mid(nameCount, items().size() - nameCount - 1);
}

bool DiffHeaderLayout::isOneLine(int width) const {
    int needed = groupGap + spacing() * (count() - 1);
    for (const QLayoutItem* const item : items()) {
        const bool isName = item == items()[0] || item == items()[nameCount - 1];
        needed += isName ? std::min(widthOf(item), readableName) : widthOf(item);
    }
    return needed <= width;
}

/// The notes share the room by halves, and what the one leaves of its half is the other's.
void DiffHeaderLayout::addNames(QList<Placed>& line, int left, int room) const {
    const int between = widthOf(items()[1]);
    const int both = std::max(0, room - between - 2 * spacing());
    const int first = std::min(widthOf(items()[0]), std::max(both / 2, both - widthOf(items()[2])));
    const std::array widths = {first, between, std::min(widthOf(items()[2]), both - first)};
    for (qsizetype i = 0; i < nameCount; ++i) {
        const int width = widths[static_cast<std::size_t>(i)];
        line.append({items()[i], QRect(left, 0, width, items()[i]->sizeHint().height())});
        left += width + spacing();
    }
}

/// The items of each line with their places from left to right; not yet from top to bottom.
QList<QList<DiffHeaderLayout::Placed>> DiffHeaderLayout::lines(int left, int right) const {
    const auto at = [](QLayoutItem* item, int x) { return Placed{item, QRect(QPoint(x, 0), item->sizeHint())}; };
    QList<QList<Placed>> result{{at(items().last(), right - widthOf(items().last()))}};
    int end = right - widthOf(items().last()) - spacing();
    QList<QLayoutItem*> others = controls();
    if (isOneLine(right - left)) {
        // All but the first control stand at the right.
        while (others.size() > 1) {
            QLayoutItem* const item = others.takeLast();
            result.first().append(at(item, end - widthOf(item)));
            end -= widthOf(item) + spacing();
        }
        addNames(result.first(), left, end - left - groupGap - widthOf(others.first()) - spacing());
        const int behindNames = result.first().last().rect.right() + 1 + spacing() + groupGap;
        result.first().append(at(others.first(), behindNames));
        return result;
    }
    addNames(result.first(), left, end - left);
    int x = right;
    for (QLayoutItem* const item : std::as_const(others)) {
        if (x + widthOf(item) > right) {
            result.append(QList<Placed>());
            x = left;
        }
        result.last().append(at(item, x));
        x += widthOf(item) + spacing();
    }
    return result;
}

/// Gives each item its place if that is meant. Gives the height of all.
int DiffHeaderLayout::place(const QRect& rect, bool isForGood) const {
    const QRect inside = rect.marginsRemoved(contentsMargins());
    int top = inside.top();
    const QList<QList<Placed>> all = lines(inside.left(), inside.left() + inside.width());
    for (const QList<Placed>& line : all) {
        int height = 0;
        for (const Placed& placed : line) {
            height = std::max(height, placed.rect.height());
        }
        for (const Placed& placed : line) {
            if (isForGood) {
                placed.item->setGeometry(placed.rect.translated(0, top + (height - placed.rect.height()) / 2));
            }
        }
        top += height + spacing();
    }
    return top - spacing() + contentsMargins().bottom() - rect.top();
}

int DiffHeaderLayout::heightForWidth(int width) const {
    return place(QRect(0, 0, width, 0), false);
}

QSize DiffHeaderLayout::minimumSize() const {
    int width = items().last()->minimumSize().width() + nameCount * spacing();
    for (const QLayoutItem* const item : items().first(nameCount)) {
        width += item->minimumSize().width();
    }
    int height = 0;
    for (const QLayoutItem* const item : items()) {
        width = std::max(width, item->minimumSize().width());
        height = std::max(height, item->minimumSize().height());
    }
    return QSize(width, height).grownBy(contentsMargins());
}

QSize DiffHeaderLayout::sizeHint() const {
    int width = groupGap + spacing() * (count() - 1);
    int height = 0;
    for (const QLayoutItem* const item : items()) {
        width += widthOf(item);
        height = std::max(height, item->sizeHint().height());
    }
    return QSize(width, height).grownBy(contentsMargins());
}

void DiffHeaderLayout::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    place(rect, true);
}

} // namespace quillary
