#include "Quillary/Theme/ItemLayout.h"

#include "Quillary/Comparison/DiffHeaderLayout.h"
#include "Quillary/SendPanel/FlowLayout.h"

#include <QLayoutItem>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>

namespace quillary {

namespace {

/// An empty item that tells of its end.
class CountedSpacer : public QSpacerItem {
public:
    explicit CountedSpacer(int& ends) : QSpacerItem(0, 0), m_ends(ends) {}

    ~CountedSpacer() override { ++m_ends; }

private:
    int& m_ends;
};

/// One of our layouts with three items.
template <typename Layout>
class ItemLayoutOf : public testing::Test {
protected:
    ItemLayoutOf() : m_layout(makeLayout()) {
        for (QLayoutItem*& item : m_items) {
            item = new CountedSpacer(m_ends);
            m_layout->addItem(item);
        }
    }

    Layout* makeLayout() {
        if constexpr (std::is_same_v<Layout, FlowLayout>) {
            return new FlowLayout(6, &m_parent);
        } else {
            return new Layout(&m_parent);
        }
    }

    int m_ends = 0;
    QWidget m_parent;
    std::array<QLayoutItem*, 3> m_items{};
    std::unique_ptr<Layout> m_layout;
};

} // namespace

using OurLayouts = testing::Types<DiffHeaderLayout, FlowLayout>;
TYPED_TEST_SUITE(ItemLayoutOf, OurLayouts);

TYPED_TEST(ItemLayoutOf, KeepsItsItemsInTheirOrder) {
    ASSERT_EQ(this->m_layout->count(), 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(this->m_layout->itemAt(i), this->m_items[static_cast<std::size_t>(i)]);
    }
    EXPECT_EQ(this->m_layout->itemAt(-1), nullptr);
    EXPECT_EQ(this->m_layout->itemAt(3), nullptr);
}

TYPED_TEST(ItemLayoutOf, GivesAnItemAway) {
    EXPECT_EQ(this->m_layout->takeAt(3), nullptr);
    EXPECT_EQ(this->m_layout->takeAt(-1), nullptr);
    const std::unique_ptr<QLayoutItem> taken(this->m_layout->takeAt(1));
    EXPECT_EQ(taken.get(), this->m_items[1]);
    ASSERT_EQ(this->m_layout->count(), 2);
    EXPECT_EQ(this->m_layout->itemAt(1), this->m_items[2]);
    this->m_layout.reset();
    EXPECT_EQ(this->m_ends, 2) << "what was given away stays";
}

TYPED_TEST(ItemLayoutOf, ItsItemsEndWithIt) {
    EXPECT_EQ(this->m_ends, 0);
    this->m_layout.reset();
    EXPECT_EQ(this->m_ends, 3);
}

} // namespace quillary
