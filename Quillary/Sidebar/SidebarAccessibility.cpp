#include "Quillary/Sidebar/SidebarAccessibility.h"

#include "Quillary/Sidebar/InlineTextField.h"
#include "Quillary/Sidebar/SidebarList.h"

#include <QAccessibleWidget>
#include <QCoreApplication>
#include <QHash>
#include <QObject>
#include <QWindow>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

/// One row, known by its key, so that it stays the same object wherever the row goes.
class SidebarRowAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    SidebarRowAccessible(SidebarList& list, SidebarRow::Key key) : m_list(list), m_key(std::move(key)) {}

    const SidebarRow::Key& key() const { return m_key; }

    int row() const { return m_list.model().rowOf(m_key); }

    bool isValid() const override { return row() >= 0; }

    QObject* object() const override { return nullptr; }

    QWindow* window() const override { return m_list.window()->windowHandle(); }

    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&m_list); }

    /// The field that edits a folder's name is in its row.
    int childCount() const override { return field() ? 1 : 0; }

    QAccessibleInterface* child(int index) const override {
        return index == 0 && field() ? QAccessible::queryAccessibleInterface(field()) : nullptr;
    }

    int indexOfChild(const QAccessibleInterface* child) const override {
        return field() && child->object() == field() ? 0 : -1;
    }

    QAccessibleInterface* childAt(int x, int y) const override {
        return field() && field()->rect().contains(field()->mapFromGlobal(QPoint(x, y))) ? child(0) : nullptr;
    }

    QRect rect() const override {
        const QRect rect = m_list.rowRect(row());
        return {m_list.viewport()->mapToGlobal(rect.topLeft()), rect.size()};
    }

    QAccessible::Role role() const override {
        return m_key.kind == SidebarRow::Kind::groupHeader ? QAccessible::Heading : QAccessible::ListItem;
    }

    QString text(QAccessible::Text text) const override {
        if (!isValid()) {
            return {};
        }
        const SidebarModel& model = m_list.model();
        switch (text) {
        case QAccessible::Name:
            return model.accessibleText(model.row(row()));
        case QAccessible::Description:
            return model.accessibleDescription(model.row(row()));
        default:
            return {};
        }
    }

    void setText(QAccessible::Text, const QString&) override {}

    QAccessible::State state() const override {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        const SidebarRow& shown = m_list.model().row(row());
        state.offscreen = !m_list.rowRect(row()).intersects(m_list.viewport()->rect());
        state.invisible = !m_list.isVisible();
        if (shown.kind() == SidebarRow::Kind::groupHeader) {
            return state;
        }
        state.focusable = true;
        state.selectable = true;
        state.selected = m_list.isHighlighted(row());
        state.focused = m_list.hasFocus() && m_list.currentRow() == row();
        if (shown.isFolder()) {
            state.expandable = true;
            state.collapsed = shown.isCollapsed;
            state.expanded = !shown.isCollapsed;
        }
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }

    QStringList actionNames() const override {
        return m_key.kind == SidebarRow::Kind::groupHeader ? QStringList()
                                                           : QStringList{pressAction(), showMenuAction()};
    }

    void doAction(const QString& name) override {
        if (!isValid()) {
            return;
        }
        if (name == pressAction()) {
            m_list.click(row(), Qt::NoModifier);
        } else if (name == showMenuAction()) {
            m_list.scrollToRow(row());
            m_list.openContextMenu(row(), rect().center());
        }
    }

    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    QWidget* field() const {
        return m_key.kind == SidebarRow::Kind::folderHeader && m_list.renamedFolder() == m_key.text
                   ? m_list.renameField()
                   : nullptr;
    }

    SidebarList& m_list;
    SidebarRow::Key m_key;
};

/// The list. Its rows become objects when somebody asks for them, and end with their rows.
class SidebarListAccessible : public QAccessibleWidget {
public:
    explicit SidebarListAccessible(SidebarList& list) : QAccessibleWidget(&list, QAccessible::List), m_list(list) {
        QObject::connect(&list.model(), &SidebarModel::updated, &m_context, [this] { forgetGoneRows(); });
        QObject::connect(
            &list.model(), &QAbstractItemModel::dataChanged, &m_context,
            [this](const QModelIndex& first, const QModelIndex& last) { announceChanges(first.row(), last.row()); });
        // Behind the announcement of the list itself, which Qt makes when the list has taken the focus.
        QObject::connect(
            &list, &SidebarList::currentRowChanged, &m_context, [this] { announceFocus(); }, Qt::QueuedConnection);
        QObject::connect(&list, &SidebarList::highlightChanged, &m_context, [this] { announceSelection(); });
    }

    ~SidebarListAccessible() override {
        for (const QAccessible::Id id : std::as_const(m_rows)) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }

    QString text(QAccessible::Text text) const override {
        if (text == QAccessible::Description && m_list.model().rowCount() == 0) {
            const auto [headline, hint] = m_list.emptyText();
            return headline % u". "_s % hint;
        }
        return QAccessibleWidget::text(text);
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.multiSelectable = true;
        return state;
    }

    int childCount() const override { return m_list.model().rowCount(); }

    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount()) {
            return nullptr;
        }
        const SidebarRow::Key& key = m_list.model().row(index).key;
        const auto known = m_rows.constFind(key);
        if (known != m_rows.constEnd()) {
            return QAccessible::accessibleInterface(*known);
        }
        auto* const row = new SidebarRowAccessible(m_list, key);
        m_rows.insert(key, QAccessible::registerAccessibleInterface(row));
        return row;
    }

    int indexOfChild(const QAccessibleInterface* child) const override {
        const auto* const row = dynamic_cast<const SidebarRowAccessible*>(child);
        return row ? row->row() : -1;
    }

    QAccessibleInterface* childAt(int x, int y) const override {
        const QPoint place = m_list.viewport()->mapFromGlobal(QPoint(x, y));
        return m_list.viewport()->rect().contains(place) ? child(m_list.rowAt(place)) : nullptr;
    }

    QAccessibleInterface* focusChild() const override {
        if (m_list.renameField() && m_list.renameField()->hasFocus()) {
            return QAccessible::queryAccessibleInterface(m_list.renameField());
        }
        return m_list.hasFocus() ? child(m_list.currentRow()) : nullptr;
    }

private:
    void forgetGoneRows() {
        m_rows.removeIf([this](const auto& entry) {
            if (m_list.model().rowOf(entry.key()) >= 0) {
                return false;
            }
            QAccessible::deleteAccessibleInterface(entry.value());
            return true;
        });
        QAccessibleEvent event(&m_list, QAccessible::ObjectReorder);
        QAccessible::updateAccessibility(&event);
    }

    /// Rows that nobody has asked for need no announcement.
    void announceChanges(int first, int last) {
        for (int row = first; row <= last && !m_rows.isEmpty(); ++row) {
            const SidebarRow& changed = m_list.model().row(row);
            const auto known = m_rows.constFind(changed.key);
            if (known == m_rows.constEnd()) {
                continue;
            }
            QAccessibleInterface* const accessible = QAccessible::accessibleInterface(*known);
            for (const QAccessible::Event change : {QAccessible::NameChanged, QAccessible::DescriptionChanged}) {
                QAccessibleEvent event(accessible, change);
                QAccessible::updateAccessibility(&event);
            }
            if (changed.isFolder()) {
                QAccessible::State state;
                state.expanded = true;
                QAccessibleStateChangeEvent event(accessible, state);
                QAccessible::updateAccessibility(&event);
            }
        }
    }

    void announceFocus() {
        if (QAccessibleInterface* const row = m_list.hasFocus() ? child(m_list.currentRow()) : nullptr) {
            QAccessibleEvent event(row, QAccessible::Focus);
            QAccessible::updateAccessibility(&event);
        }
    }

    void announceSelection() {
        if (QAccessibleInterface* const row = child(m_list.currentRow())) {
            QAccessibleEvent event(row, QAccessible::Selection);
            QAccessible::updateAccessibility(&event);
        }
    }

    SidebarList& m_list;
    mutable QHash<SidebarRow::Key, QAccessible::Id> m_rows;
    /// Ends the connections with this.
    QObject m_context;
};

QAccessibleInterface* sidebarAccessible(const QString& className, QObject* object) {
    auto* const list = className == QLatin1StringView(SidebarList::staticMetaObject.className())
                           ? qobject_cast<SidebarList*>(object)
                           : nullptr;
    return list ? new SidebarListAccessible(*list) : nullptr;
}

} // namespace

void installSidebarAccessibility() {
    [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(sidebarAccessible), true);
}

} // namespace quillary
