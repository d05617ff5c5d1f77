#include "Quillary/Theme/ItemLayout.h"

namespace quillary {

ItemLayout::~ItemLayout() {
    qDeleteAll(m_items);
}

void ItemLayout::addItem(QLayoutItem* item) {
    m_items.append(item);
}

int ItemLayout::count() const {
    return static_cast<int>(m_items.size());
}

QLayoutItem* ItemLayout::itemAt(int index) const {
    return m_items.value(index, nullptr);
}

QLayoutItem* ItemLayout::takeAt(int index) {
    return index >= 0 && index < count() ? m_items.takeAt(index) : nullptr;
}

} // namespace quillary
