#include "Quillary/Comparison/DiffListAccessible.h"

#include "Quillary/Comparison/DiffList.h"

#include <QAccessible>
#include <QPointer>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

/// One item of the list. It outlives neither the list nor the items.
class DiffItemAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    DiffItemAccessible(DiffList& list, int item) : m_list(&list), m_item(item) {}

    int item() const { return m_item; }

    bool isValid() const override { return m_list != nullptr && m_item < static_cast<int>(m_list->items().size()); }

    QObject* object() const override { return nullptr; }

    QWindow* window() const override { return isValid() ? m_list->window()->windowHandle() : nullptr; }

    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(m_list); }

    QAccessibleInterface* child(int) const override { return nullptr; }

    int childCount() const override { return 0; }

    int indexOfChild(const QAccessibleInterface*) const override { return -1; }

    QAccessibleInterface* childAt(int, int) const override { return nullptr; }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name && isValid() ? m_list->description(m_item) : QString();
    }

    void setText(QAccessible::Text, const QString&) override {}

    QRect rect() const override {
        if (!isValid()) {
            return {};
        }
        const QRect place = m_list->itemRect(m_item);
        return {m_list->viewport()->mapToGlobal(place.topLeft()), place.size()};
    }

    QAccessible::Role role() const override { return QAccessible::ListItem; }

    QAccessible::State state() const override {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        state.selectable = true;
        state.focusable = true;
        state.selected = m_list->isSelected(m_item);
        state.focused = m_list->hasFocus() && m_list->currentItem() == m_item;
        state.collapsed = isFold();
        state.expandable = isFold();
        state.offscreen = !m_list->viewport()->rect().intersects(m_list->itemRect(m_item));
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }

    QStringList actionNames() const override { return {pressAction()}; }

    QString localizedActionDescription(const QString& name) const override {
        return name == pressAction() && isFold() ? DiffList::tr("Mostra le righe nascoste") : QString();
    }

    /// Opens a fold; makes a row the current one.
    void doAction(const QString& name) override {
        if (name != pressAction() || !isValid()) {
            return;
        }
        if (isFold()) {
            m_list->expand(m_item);
        } else {
            m_list->setCurrentItem(m_item);
        }
    }

    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    bool isFold() const {
        return isValid() &&
               m_list->items()[static_cast<std::size_t>(m_item)].kind() == DiffDisplayItem::Kind::collapsed;
    }

    QPointer<DiffList> m_list;
    int m_item;
};

QAccessibleInterface* makeDiffListAccessible(const QString& name, QObject* object) {
    auto* const list = name == "quillary::DiffList"_L1 ? qobject_cast<DiffList*>(object) : nullptr;
    return list == nullptr ? nullptr : new DiffListAccessible(*list);
}

} // namespace

void DiffListAccessible::install() {
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeDiffListAccessible);
        return true;
    }();
    Q_UNUSED(isInstalled);
}

void DiffListAccessible::tellReset(DiffList& list) {
    if (!QAccessible::isActive()) {
        return;
    }
    if (auto* const self = dynamic_cast<DiffListAccessible*>(QAccessible::queryAccessibleInterface(&list))) {
        self->forgetChildren();
    }
    QAccessibleTableModelChangeEvent event(&list, QAccessibleTableModelChangeEvent::ModelReset);
    QAccessible::updateAccessibility(&event);
}

void DiffListAccessible::tellCurrent(DiffList& list, qsizetype item) {
    if (QAccessible::isActive()) {
        QAccessibleEvent event(&list, QAccessible::Focus);
        event.setChild(static_cast<int>(item));
        QAccessible::updateAccessibility(&event);
    }
}

DiffListAccessible::DiffListAccessible(DiffList& list) : QAccessibleWidget(&list, QAccessible::List) {}

DiffListAccessible::~DiffListAccessible() {
    forgetChildren();
}

DiffList& DiffListAccessible::list() const {
    return *static_cast<DiffList*>(widget());
}

int DiffListAccessible::childCount() const {
    return static_cast<int>(list().items().size());
}

QAccessibleInterface* DiffListAccessible::child(int index) const {
    if (index < 0 || index >= childCount()) {
        return nullptr;
    }
    const auto known = m_children.find(index);
    if (known != m_children.end()) {
        return QAccessible::accessibleInterface(known->second);
    }
    auto* const made = new DiffItemAccessible(list(), index);
    m_children.emplace(index, QAccessible::registerAccessibleInterface(made));
    return made;
}

QAccessibleInterface* DiffListAccessible::childAt(int x, int y) const {
    const std::optional<qsizetype> item = list().itemAt(list().viewport()->mapFromGlobal(QPoint(x, y)));
    return item ? child(static_cast<int>(*item)) : nullptr;
}

int DiffListAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* const item = dynamic_cast<const DiffItemAccessible*>(child);
    return item == nullptr ? -1 : item->item();
}

QAccessibleInterface* DiffListAccessible::focusChild() const {
    const std::optional<qsizetype> current = list().currentItem();
    return current && list().hasFocus() ? child(static_cast<int>(*current)) : nullptr;
}

void DiffListAccessible::forgetChildren() const {
    for (const auto& [index, id] : m_children) {
        QAccessible::deleteAccessibleInterface(id);
    }
    m_children.clear();
}

} // namespace quillary
