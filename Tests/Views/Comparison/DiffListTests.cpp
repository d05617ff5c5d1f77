#include "Quillary/Comparison/DiffList.h"

#include "QuillaryCore/Compare/TextDiff.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QScrollBar>
#include <QTest>
#include <QToolTip>

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

QString numbered(int count, const QList<int>& changed = {}) {
    QString text;
    for (int i = 0; i < count; ++i) {
        text += changed.contains(i) ? u"riga %1 con una modifica\n"_s.arg(i) : u"riga %1 come prima\n"_s.arg(i);
    }
    return text;
}

class DiffListOf : public testing::Test {
protected:
    DiffListOf() {
        m_list.resize(600, 400);
        m_list.show();
        if (!QTest::qWaitForWindowExposed(&m_list)) {
            ADD_FAILURE() << "the list is not exposed";
        }
        m_list.activateWindow();
        m_list.setFocus();
    }

    void compare(const QString& oldText, const QString& newText) {
        m_list.setRows(TextDiff::compare(oldText, newText).rows);
    }

    /// A hundred lines with changes in two places.
    void compareHundred() { compare(numbered(100), numbered(100, {30, 70, 71})); }

    QStringList ids() const {
        QStringList result;
        for (const DiffDisplayItem& item : m_list.items()) {
            result.append(item.id());
        }
        return result;
    }

    qsizetype itemOf(const QString& id) const { return ids().indexOf(id); }

    void click(const QString& id, int x = 100, Qt::KeyboardModifiers modifiers = {}) {
        const QRect rect = m_list.itemRect(itemOf(id));
        QTest::mouseClick(m_list.viewport(), Qt::LeftButton, modifiers, QPoint(x, rect.center().y()));
    }

    void press(int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&m_list, static_cast<Qt::Key>(key), modifiers);
    }

    DiffRow currentRow() const {
        return m_list.rows()[m_list.items()[static_cast<std::size_t>(*m_list.currentItem())].rowId()];
    }

    bool isVisible(qsizetype item) const { return m_list.viewport()->rect().contains(m_list.itemRect(item)); }

    DiffList m_list;
};

} // namespace

TEST_F(DiffListOf, FoldsEqualStretchesAndShowsAllOnDemand) {
    compareHundred();
    EXPECT_EQ(ids().first(), u"c0"_s);
    EXPECT_EQ(ids().last(), u"c75"_s);
    EXPECT_EQ(m_list.items().size(), 3 + 7 + 8);
    m_list.setShowsAllLines(true);
    EXPECT_EQ(m_list.items().size(), 100U);
    m_list.setShowsAllLines(false);
    EXPECT_EQ(m_list.items().size(), 3 + 7 + 8);
}

TEST_F(DiffListOf, AClickOnAFoldShowsItsRowsInTheirPlace) {
    compareHundred();
    const int top = m_list.itemRect(itemOf(u"c34"_s)).top();
    const QStringList before = ids();
    click(u"c34"_s);
    EXPECT_FALSE(ids().contains(u"c34"_s));
    EXPECT_EQ(m_list.itemRect(itemOf(u"r34"_s)).top(), top);
    QStringList expected = before;
    const qsizetype at = expected.indexOf(u"c34"_s);
    expected.removeAt(at);
    for (int row = 66; row >= 34; --row) {
        expected.insert(at, u'r' + QString::number(row));
    }
    EXPECT_EQ(ids(), expected);
}

TEST_F(DiffListOf, AFoldTellsWhatAClickDoes) {
    compareHundred();
    const auto helpAt = [this](const QString& id) {
        const QPoint place = m_list.itemRect(itemOf(id)).center();
        QHelpEvent help(QEvent::ToolTip, place, m_list.viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(m_list.viewport(), &help);
        return QToolTip::text();
    };
    EXPECT_EQ(helpAt(u"c0"_s), u"Mostra le righe nascoste"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return helpAt(u"r30"_s).isEmpty(); }));
}

TEST_F(DiffListOf, TheRowsHaveSomeRoomAboveAndBelow) {
    compare(u"a\nb"_s, u"a\nc"_s);
    EXPECT_EQ(m_list.itemRect(0).top(), 8);
    EXPECT_EQ(m_list.itemRect(1).top(), 8 + m_list.metrics().pitch);
    compareHundred();
    m_list.setShowsAllLines(true);
    press(Qt::Key_End);
    EXPECT_EQ(m_list.viewport()->height() - m_list.itemRect(99).bottom() - 1, 8);
}

TEST_F(DiffListOf, OtherRowsCloseTheFoldsAgain) {
    compareHundred();
    click(u"c0"_s);
    compareHundred();
    EXPECT_EQ(ids().first(), u"c0"_s);
    EXPECT_FALSE(m_list.currentItem());
}

TEST_F(DiffListOf, ArrowsMoveTheCurrentRowAndKeepItInView) {
    compareHundred();
    m_list.setShowsAllLines(true);
    press(Qt::Key_Down);
    EXPECT_EQ(m_list.currentItem(), 0);
    for (int i = 0; i < 60; ++i) {
        press(Qt::Key_Down);
        ASSERT_TRUE(isVisible(*m_list.currentItem()));
    }
    EXPECT_EQ(m_list.currentItem(), 60);
    press(Qt::Key_Up);
    EXPECT_EQ(m_list.currentItem(), 59);
    press(Qt::Key_End);
    EXPECT_EQ(m_list.currentItem(), 99);
    EXPECT_EQ(m_list.verticalScrollBar()->value(), m_list.verticalScrollBar()->maximum());
    press(Qt::Key_Down);
    EXPECT_EQ(m_list.currentItem(), 99);
    press(Qt::Key_Home);
    EXPECT_EQ(m_list.currentItem(), 0);
    press(Qt::Key_Up);
    EXPECT_EQ(m_list.currentItem(), 0);
}

TEST_F(DiffListOf, PageKeysMoveByAboutAViewport) {
    compareHundred();
    m_list.setShowsAllLines(true);
    press(Qt::Key_Home);
    press(Qt::Key_PageDown);
    const qsizetype page = *m_list.currentItem();
    EXPECT_GT(page, 10);
    EXPECT_LT(page, m_list.viewport()->height() / m_list.metrics().pitch);
    press(Qt::Key_PageUp);
    EXPECT_EQ(m_list.currentItem(), 0);
    for (int i = 0; i < 20; ++i) {
        press(Qt::Key_PageDown);
    }
    EXPECT_EQ(m_list.currentItem(), 99);
    press(Qt::Key_PageUp);
    EXPECT_EQ(m_list.currentItem(), 99 - page);
    press(Qt::Key_PageDown);
    EXPECT_EQ(m_list.currentItem(), 99);
}

TEST_F(DiffListOf, PageKeysPassALineThatIsHigherThanThePage) {
    const QString high = u"parola "_s.repeated(2000);
    compare(u"a\nb\n"_s + high + u"\nc\nd"_s, u"a\nb\n"_s + high + u"\nc\ne"_s);
    press(Qt::Key_Home);
    for (const int expected : {2, 3, 4, 4}) {
        press(Qt::Key_PageDown);
        EXPECT_EQ(m_list.currentItem(), expected);
    }
    for (const int expected : {3, 2, 0, 0}) {
        press(Qt::Key_PageUp);
        EXPECT_EQ(m_list.currentItem(), expected);
    }
}

TEST_F(DiffListOf, GoesFromChangeToChange) {
    compareHundred();
    press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(currentRow().id, 30);
    press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(currentRow().id, 70);
    EXPECT_TRUE(isVisible(*m_list.currentItem()));
    press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(currentRow().id, 70);
    press(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(currentRow().id, 30);
    EXPECT_FALSE(m_list.goToChange(-1));
}

TEST_F(DiffListOf, ReturnAndSpaceOpenTheCurrentFold) {
    compareHundred();
    press(Qt::Key_Home);
    press(Qt::Key_Return);
    EXPECT_EQ(ids().first(), u"r0"_s);
    EXPECT_EQ(m_list.currentItem(), 0);
    press(Qt::Key_End);
    press(Qt::Key_Space);
    EXPECT_EQ(ids().last(), u"r99"_s);
}

TEST_F(DiffListOf, CopiesTheLinesOfTheClickedHalf) {
    compare(u"a\nvecchia riga\nvia\nfine"_s, u"a\nnuova riga\nfine"_s);
    click(u"r0"_s, 100);
    click(u"r3"_s, 100, Qt::ShiftModifier);
    EXPECT_EQ(m_list.selectedText(), u"a\nvecchia riga\nvia\nfine\n"_s);
    click(u"r0"_s, 500);
    click(u"r3"_s, 500, Qt::ShiftModifier);
    EXPECT_EQ(m_list.selectedText(), u"a\nnuova riga\nfine\n"_s);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"a\nnuova riga\nfine\n"_s);
    press(Qt::Key_Left);
    EXPECT_EQ(m_list.selectedText(), u"a\nvecchia riga\nvia\nfine\n"_s);
}

TEST_F(DiffListOf, CopiesAllLinesOfTheColumn) {
    m_list.setMode(DiffMode::unified);
    compare(u"a\nvecchia riga\nvia\nfine"_s, u"a\nnuova riga\nfine"_s);
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(m_list.selectedText(), u"a\nvecchia riga\nnuova riga\nvia\nfine\n"_s);
}

TEST_F(DiffListOf, CopiesTheLinesOfASelectedFold) {
    compareHundred();
    press(Qt::Key_Home);
    EXPECT_EQ(m_list.selectedText().count(u'\n'), 27);
    press(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(m_list.selectedText().count(u'\n'), 28);
}

TEST_F(DiffListOf, NothingSelectedCopiesNothing) {
    compareHundred();
    QGuiApplication::clipboard()->setText(u"resta"_s);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"resta"_s);
}

TEST_F(DiffListOf, DraggingBeyondAnEdgeGoesOnScrolling) {
    compareHundred();
    m_list.setShowsAllLines(true);
    m_list.scrollToRow(0);
    QWidget* const viewport = m_list.viewport();
    const QScrollBar* const bar = m_list.verticalScrollBar();
    QTest::mousePress(viewport, Qt::LeftButton, {}, m_list.itemRect(2).center());
    QTest::mouseMove(viewport, QPoint(100, viewport->height() + 60));
    // Nothing moves any more; the list scrolls while the button is held.
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_list.currentItem() == 99 && bar->value() == bar->maximum(); }));
    EXPECT_TRUE(m_list.isSelected(2));
    EXPECT_FALSE(m_list.isSelected(1));
    QTest::mouseMove(viewport, QPoint(100, -60));
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_list.currentItem() == 0 && bar->value() == 0; }));
    EXPECT_TRUE(m_list.isSelected(2));
    EXPECT_FALSE(m_list.isSelected(3));
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, QPoint(100, 10));
}

TEST_F(DiffListOf, TheSelectionStaysWhenTheListIsLaidOutAgain) {
    compareHundred();
    m_list.setCurrentItem(itemOf(u"r28"_s));
    m_list.setCurrentItem(itemOf(u"r30"_s), true);
    const QString text = m_list.selectedText();
    ASSERT_EQ(text.count(u'\n'), 3);
    m_list.resize(500, 300);
    EXPECT_EQ(m_list.selectedText(), text);
    m_list.setShowsAllLines(true);
    EXPECT_EQ(m_list.selectedText(), text);
    EXPECT_EQ(m_list.currentItem(), itemOf(u"r30"_s));
}

TEST_F(DiffListOf, DraggingBelowTheLastRowSelectsIt) {
    compare(u"a\nb\nc\n"_s, u"a\nx\nc\n"_s);
    QTest::mousePress(m_list.viewport(), Qt::LeftButton, {}, m_list.itemRect(0).center());
    QTest::mouseMove(m_list.viewport(), QPoint(100, m_list.viewport()->height() - 20));
    EXPECT_EQ(m_list.currentItem(), 2);
    QTest::mouseRelease(m_list.viewport(), Qt::LeftButton, {}, QPoint(100, 10));
}

TEST_F(DiffListOf, DraggingSelectsRows) {
    compare(numbered(10), numbered(10, {5}));
    const auto center = [this](const QString& id) { return m_list.itemRect(itemOf(id)).center(); };
    QTest::mousePress(m_list.viewport(), Qt::LeftButton, {}, center(u"r2"_s));
    QTest::mouseMove(m_list.viewport(), center(u"r4"_s));
    QTest::mouseRelease(m_list.viewport(), Qt::LeftButton, {}, center(u"r4"_s));
    EXPECT_FALSE(m_list.isSelected(1));
    EXPECT_TRUE(m_list.isSelected(2));
    EXPECT_TRUE(m_list.isSelected(4));
    EXPECT_FALSE(m_list.isSelected(5));
}

TEST_F(DiffListOf, ScrollsARowToTheMiddle) {
    compare(numbered(5000), numbered(5000, {2500}));
    m_list.setShowsAllLines(true);
    m_list.scrollToRow(2500);
    const int middle = m_list.itemRect(2500).center().y();
    EXPECT_NEAR(middle, m_list.viewport()->height() / 2.0, m_list.metrics().pitch);
    m_list.scrollToRow(0);
    EXPECT_EQ(m_list.verticalScrollBar()->value(), 0);
}

TEST_F(DiffListOf, HeightsThatWereEstimatedAreCorrectedWithoutAJump) {
    // Words that wrap earlier than their length tells, and letters that are wider than common ones.
    QString text;
    for (int i = 0; i < 2000; ++i) {
        text += (i % 3 == 0 ? u"\u4E2D\u6587"_s.repeated(i % 80) : u"parolalunghissima "_s.repeated(i % 9)) + u'\n';
    }
    compare(text, text + u"fine"_s);
    m_list.setShowsAllLines(true);
    QScrollBar* const bar = m_list.verticalScrollBar();
    bar->setValue(bar->maximum() / 2);
    qsizetype item = *m_list.itemAt(QPoint(5, 200));
    int top = m_list.itemRect(item).top();
    for (int i = 0; i < 200; ++i) {
        const int before = bar->value();
        bar->setValue(before - 10);
        ASSERT_EQ(m_list.itemRect(item).top(), top + 10) << "step " << i;
        item = *m_list.itemAt(QPoint(5, 200));
        top = m_list.itemRect(item).top();
    }
    bar->setValue(bar->maximum());
    m_list.grab();
    EXPECT_LE(m_list.itemRect(static_cast<qsizetype>(m_list.items().size()) - 1).bottom(), m_list.viewport()->height());
}

TEST_F(DiffListOf, AnotherWidthModeOrSizeKeepsThePlace) {
    compare(numbered(3000), numbered(3000, {10, 2000}));
    m_list.setShowsAllLines(true);
    m_list.verticalScrollBar()->setValue(20'000);
    const qsizetype first = *m_list.itemAt(QPoint(5, 5));
    m_list.resize(500, 300);
    EXPECT_EQ(m_list.itemAt(QPoint(5, 5)), first);
    m_list.setMode(DiffMode::unified);
    EXPECT_NEAR(static_cast<double>(*m_list.itemAt(QPoint(5, 5))), static_cast<double>(first), 1);
    const int pitch = m_list.metrics().pitch;
    m_list.setStyle({28, EditorFontStyle::monospaced});
    EXPECT_GT(m_list.metrics().pitch, 2 * pitch - 8);
    EXPECT_NEAR(static_cast<double>(*m_list.itemAt(QPoint(5, 5))), static_cast<double>(first), 1);
}

TEST_F(DiffListOf, VeryLongLinesShowOnlyWhatIsNear) {
    const QString line = u"{\"id\":1,\"nome\":\"voce\"},"_s.repeated(40'000);
    for (const DiffMode mode : {DiffMode::sideBySide, DiffMode::unified}) {
        m_list.setMode(mode);
        compare(line + u"\nfine"_s, line + u"x\nfine"_s);
        EXPECT_EQ(m_list.items().size(), 2U);
        m_list.grab();
        m_list.verticalScrollBar()->setValue(m_list.verticalScrollBar()->maximum());
        m_list.grab();
        EXPECT_EQ(m_list.itemAt(QPoint(5, m_list.viewport()->height() - 20)), 1);
        press(Qt::Key_Home);
        EXPECT_EQ(m_list.verticalScrollBar()->value(), 0);
    }
}

TEST_F(DiffListOf, ReadersSeeEachItemByKindNumberAndText) {
    compare(numbered(20), numbered(20, {15}) + u"in pi\u00F9"_s);
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(&m_list);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->role(), QAccessible::List);
    ASSERT_EQ(list->childCount(), static_cast<int>(m_list.items().size()));
    EXPECT_EQ(list->child(0)->text(QAccessible::Name), u"12 righe uguali"_s);
    EXPECT_EQ(list->child(4)->text(QAccessible::Name),
              u"Riga modificata 16: riga 15 come prima; ora riga 16: riga 15 con una modifica"_s);
    EXPECT_EQ(list->child(1)->role(), QAccessible::ListItem);
    EXPECT_EQ(list->child(1), list->child(1));
    EXPECT_EQ(list->indexOfChild(list->child(3)), 3);
    EXPECT_EQ(list->child(99), nullptr);

    list->child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(list->childCount(), 21);
    EXPECT_EQ(list->child(0)->text(QAccessible::Name), u"Riga uguale 1: riga 0 come prima"_s);
    list->child(2)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(m_list.currentItem(), 2);
    EXPECT_TRUE(list->child(2)->state().selected);
    const QRect place = list->child(2)->rect();
    EXPECT_EQ(list->childAt(place.center().x(), place.center().y()), list->child(2));
}

TEST_F(DiffListOf, AnEmptyListTakesKeysAndClicks) {
    compare({}, {});
    for (const int key : {Qt::Key_Down, Qt::Key_Up, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End, Qt::Key_Return}) {
        press(key);
    }
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    QTest::mouseClick(m_list.viewport(), Qt::LeftButton, {}, QPoint(20, 20));
    m_list.scrollToRow(3);
    EXPECT_FALSE(m_list.goToChange(1));
    EXPECT_EQ(m_list.selectedText(), QString());
    m_list.grab();
}
