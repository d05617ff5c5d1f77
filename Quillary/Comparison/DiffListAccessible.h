#pragma once

#include <QAccessibleWidget>

#include <memory>
#include <unordered_map>

namespace quillary {

class DiffList;

/// The list of a comparison for screen readers: one child for each item, made when somebody asks for it.
class DiffListAccessible : public QAccessibleWidget {
public:
    /// Makes every DiffList accessible.
    static void install();

    /// Tells readers that the items are others, or that one became the current one.
    static void tellReset(DiffList& list);
    static void tellCurrent(DiffList& list, qsizetype item);

    explicit DiffListAccessible(DiffList& list);
    ~DiffListAccessible() override;

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* focusChild() const override;

private:
    DiffList& list() const;
    void forgetChildren() const;

    mutable std::unordered_map<int, QAccessible::Id> m_children;
};

} // namespace quillary
