#include "Quillary/Sidebar/InlineTextField.h"

#include <QAction>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// A window with the field under test and another one that can take the focus.
class InlineTextFieldTest : public testing::Test {
protected:
    InlineTextFieldTest()
        : m_layout(&m_window),
          m_other(new QLineEdit(&m_window)),
          m_field(new InlineTextField(u"Titolo"_s, {}, &m_window)) {
        m_layout.addWidget(m_other);
        m_layout.addWidget(m_field);
        m_other->setFocus();
        m_window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
    }

    QWidget m_window;
    QVBoxLayout m_layout;
    QLineEdit* m_other;
    InlineTextField* m_field;
    QSignalSpy m_committed{m_field, &InlineTextField::committed};
    QSignalSpy m_cancelled{m_field, &InlineTextField::cancelled};
};

} // namespace

TEST_F(InlineTextFieldTest, TakesTheFocusWithEverythingSelectedWhenItComesOnScreen) {
    EXPECT_TRUE(m_field->hasFocus());
    EXPECT_EQ(m_field->selectedText(), u"Titolo"_s);
}

TEST_F(InlineTextFieldTest, ReturnCommitsTheText) {
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        InlineTextField field(u"Titolo"_s, {});
        const QSignalSpy committed(&field, &InlineTextField::committed);
        QTest::keyClicks(&field, u"Altro"_s);
        QTest::keyClick(&field, key);
        ASSERT_EQ(committed.size(), 1);
        EXPECT_EQ(committed.at(0).at(0).toString(), u"TitoloAltro"_s);
    }
}

TEST_F(InlineTextFieldTest, EscapeCancels) {
    QTest::keyClicks(m_field, u"Altro"_s);
    QTest::keyClick(m_field, Qt::Key_Escape);
    EXPECT_EQ(m_cancelled.size(), 1);
    EXPECT_EQ(m_committed.size(), 0);
}

TEST_F(InlineTextFieldTest, LosingTheFocusCommits) {
    QTest::keyClicks(m_field, u"Altro"_s);
    m_other->setFocus(Qt::MouseFocusReason);
    ASSERT_EQ(m_committed.size(), 1);
    EXPECT_EQ(m_committed.at(0).at(0).toString(), u"Altro"_s);
}

TEST_F(InlineTextFieldTest, ALookAtAnotherWindowOrItsOwnMenuDoesNotEndIt) {
    for (const Qt::FocusReason reason : {Qt::ActiveWindowFocusReason, Qt::PopupFocusReason}) {
        QFocusEvent event(QEvent::FocusOut, reason);
        QCoreApplication::sendEvent(m_field, &event);
    }
    EXPECT_EQ(m_committed.size(), 0);
}

TEST_F(InlineTextFieldTest, OnlyTheFirstEndCounts) {
    QTest::keyClick(m_field, Qt::Key_Escape);
    QTest::keyClick(m_field, Qt::Key_Return);
    m_other->setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(m_cancelled.size(), 1);
    EXPECT_EQ(m_committed.size(), 0);
}

TEST_F(InlineTextFieldTest, KeysThatEndItAreNoShortcutsOfTheWindow) {
    auto* const shortcut = new QAction(&m_window);
    shortcut->setShortcut(Qt::Key_Escape);
    m_window.addAction(shortcut);
    const QSignalSpy triggered(shortcut, &QAction::triggered);
    QTest::keyClick(m_field, Qt::Key_Escape);
    EXPECT_EQ(triggered.size(), 0);
    EXPECT_EQ(m_cancelled.size(), 1);
}
