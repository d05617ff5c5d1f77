#include "DetailTest.h"

#include <QAccessible>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

class AccessibleNamesTest : public DetailTest {
protected:
    AccessibleNamesTest()
        : DetailTest({{u"a.md"_s, u"alfa"_s}, {u"b.md"_s, u"beta"_s}, {u"c.md"_s, {}}, {u"Lavoro/d.md"_s, {}}}) {}

    static bool isControl(QAccessible::Role role) {
        return role == QAccessible::Button || role == QAccessible::ButtonMenu || role == QAccessible::EditableText ||
               role == QAccessible::CheckBox || role == QAccessible::RadioButton || role == QAccessible::ComboBox ||
               role == QAccessible::List || role == QAccessible::Table;
    }

    /// Fails for each control on show that a screen reader could not name. Gives how many controls there are.
    int nameControls() {
        int count = 0;
        for (QWidget* const widget : m_view.findChildren<QWidget*>()) {
            if (!widget->isVisibleTo(&m_view)) {
                continue;
            }
            QAccessibleInterface* const node = QAccessible::queryAccessibleInterface(widget);
            const bool isReached = (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr;
            if (node == nullptr || (!isControl(node->role()) && !isReached)) {
                continue;
            }
            ++count;
            EXPECT_FALSE(node->text(QAccessible::Name).isEmpty())
                << widget->metaObject()->className() << " has no accessible name";
        }
        return count;
    }
};

} // namespace

TEST_F(AccessibleNamesTest, EveryControlHasOneInEveryState) {
    // Title, format, preview, copy, the text, three of the zoom.
    EXPECT_GE(nameControls(), 8);

    store().raiseTitleRenameToken();
    EXPECT_GE(nameControls(), 8);
    select(u"b"_s);

    selectAll({u"a"_s, u"b"_s});
    EXPECT_GE(nameControls(), 7);
    selectAll({u"a"_s, u"b"_s, u"c"_s});
    EXPECT_GE(nameControls(), 5);
    store().clearMultiSelection();

    store().setSelectedID(std::nullopt);
    EXPECT_GE(nameControls(), 2);
}
