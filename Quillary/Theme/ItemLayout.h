#pragma once

#include <QLayout>
#include <QList>

namespace quillary {

/// A layout that keeps its items in a list, as every layout of our own has to: Qt has no base class that does. What is
/// left to a derived class is where the items go.
class ItemLayout : public QLayout {
    Q_OBJECT

public:
    ~ItemLayout() override;

    void addItem(QLayoutItem* item) override;
    int count() const override;
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;

protected:
    using QLayout::QLayout;

    /// The items in the order in which they were added; they belong to the layout.
    const QList<QLayoutItem*>& items() const { return m_items; }

private:
    QList<QLayoutItem*> m_items;
};

} // namespace quillary
