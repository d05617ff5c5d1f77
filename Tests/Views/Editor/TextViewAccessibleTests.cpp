#include "Tests/Views/Editor/ZoomableTextViewTest.h"

#include <QAccessible>

#include <gtest/gtest.h>

namespace quillary {

namespace {

class TextViewAccessibleTest : public ZoomableTextViewTest {
protected:
    QAccessibleInterface& interface() { return *QAccessible::queryAccessibleInterface(m_view.get()); }

    QAccessibleTextInterface& textInterface() { return *interface().textInterface(); }

    QAccessibleEditableTextInterface& editableText() { return *interface().editableTextInterface(); }

    struct Unit {
        QString text;
        int start = 0;
        int end = 0;

        friend bool operator==(const Unit&, const Unit&) = default;
    };

    Unit at(int offset, QAccessible::TextBoundaryType type) {
        Unit unit;
        unit.text = textInterface().textAtOffset(offset, type, &unit.start, &unit.end);
        return unit;
    }

    Unit before(int offset, QAccessible::TextBoundaryType type) {
        Unit unit;
        unit.text = textInterface().textBeforeOffset(offset, type, &unit.start, &unit.end);
        return unit;
    }

    Unit after(int offset, QAccessible::TextBoundaryType type) {
        Unit unit;
        unit.text = textInterface().textAfterOffset(offset, type, &unit.start, &unit.end);
        return unit;
    }
};

TEST_F(TextViewAccessibleTest, IsAnEditableTextOfManyLines) {
    open(u"testo"_s);
    m_view->setAccessibleName(u"Testo della nota"_s);
    EXPECT_EQ(interface().role(), QAccessible::EditableText);
    EXPECT_EQ(interface().text(QAccessible::Name), u"Testo della nota"_s);
    EXPECT_TRUE(interface().state().multiLine);
    EXPECT_TRUE(interface().state().editable);
    EXPECT_TRUE(interface().state().focusable);
    EXPECT_FALSE(interface().state().readOnly);
    m_view->setReadOnly(true);
    EXPECT_TRUE(interface().state().readOnly);
    EXPECT_FALSE(interface().state().editable);
}

TEST_F(TextViewAccessibleTest, GivesItsTextAsItIs) {
    open(u"a\u00a0b\r\nc\u0000d\ufffc"_s);
    EXPECT_EQ(textInterface().characterCount(), 9);
    EXPECT_EQ(textInterface().text(0, 9), text());
    EXPECT_EQ(textInterface().text(0, -1), text());
    EXPECT_EQ(textInterface().text(3, 6), u"\r\nc"_s);
    EXPECT_EQ(textInterface().text(-5, 100), text());
    EXPECT_EQ(textInterface().text(7, 3), QString());
}

TEST_F(TextViewAccessibleTest, CaretAndSelectionAreReadAndSet) {
    open(u"uno due tre"_s);
    textInterface().setCursorPosition(4);
    EXPECT_EQ(m_view->selection(), (TextSelection{4, 4}));
    EXPECT_EQ(textInterface().cursorPosition(), 4);
    EXPECT_EQ(textInterface().selectionCount(), 0);
    textInterface().setSelection(0, 4, 7);
    EXPECT_EQ(m_view->selectedText(), u"due"_s);
    EXPECT_EQ(textInterface().selectionCount(), 1);
    int start = 0;
    int end = 0;
    textInterface().selection(0, &start, &end);
    EXPECT_EQ(start, 4);
    EXPECT_EQ(end, 7);
    textInterface().removeSelection(0);
    EXPECT_EQ(m_view->selection(), (TextSelection{7, 7}));
    textInterface().addSelection(0, 3);
    EXPECT_EQ(m_view->selectedText(), u"uno"_s);
}

TEST_F(TextViewAccessibleTest, UnitsOfTheTextAreFoundAroundAnOffset) {
    open(u"Uno due. Tre!\nla famiglia \U0001F468\u200D\U0001F469 qui"_s);
    EXPECT_EQ(at(0, QAccessible::WordBoundary), (Unit{u"Uno"_s, 0, 3}));
    EXPECT_EQ(at(5, QAccessible::WordBoundary), (Unit{u"due"_s, 4, 7}));
    EXPECT_EQ(after(0, QAccessible::WordBoundary), (Unit{u" "_s, 3, 4}));
    EXPECT_EQ(before(5, QAccessible::WordBoundary), (Unit{u" "_s, 3, 4}));
    EXPECT_EQ(at(10, QAccessible::SentenceBoundary), (Unit{u"Tre!\n"_s, 9, 14}));
    EXPECT_EQ(at(16, QAccessible::ParagraphBoundary).start, 14);
    EXPECT_EQ(at(3, QAccessible::ParagraphBoundary), (Unit{u"Uno due. Tre!\n"_s, 0, 14}));
    EXPECT_EQ(at(3, QAccessible::LineBoundary), (Unit{u"Uno due. Tre!\n"_s, 0, 14}));
    EXPECT_EQ(at(3, QAccessible::NoBoundary), (Unit{text(), 0, static_cast<int>(text().size())}));
    const int family = static_cast<int>(text().indexOf(u'\xD83D'));
    EXPECT_EQ(at(family + 1, QAccessible::CharBoundary), (Unit{u"\U0001F468\u200D\U0001F469"_s, family, family + 5}));
    EXPECT_EQ(after(family, QAccessible::CharBoundary), (Unit{u" "_s, family + 5, family + 6}));
    EXPECT_EQ(before(family, QAccessible::CharBoundary), (Unit{u" "_s, family - 1, family}));
    EXPECT_EQ(before(0, QAccessible::CharBoundary), (Unit{QString(), -1, -1}));
    EXPECT_EQ(after(static_cast<int>(text().size()), QAccessible::CharBoundary), (Unit{QString(), -1, -1}));
}

TEST_F(TextViewAccessibleTest, ALineIsARowOnTheScreen) {
    open(u"parola "_s.repeated(60));
    const Unit row = at(0, QAccessible::LineBoundary);
    EXPECT_GT(row.end, 0);
    EXPECT_LT(row.end, textInterface().characterCount());
    EXPECT_EQ(after(0, QAccessible::LineBoundary).start, row.end);
    EXPECT_EQ(before(row.end, QAccessible::LineBoundary), row);
}

TEST_F(TextViewAccessibleTest, PlacesOnTheScreenLeadBackToTheirOffsets) {
    open(u"uno due\ntre"_s);
    for (const int offset : {0, 2, 5, 8, 10}) {
        const QRect place = textInterface().characterRect(offset);
        EXPECT_GT(place.width(), 1);
        EXPECT_TRUE(QRect(m_view->mapToGlobal(QPoint()), m_view->size()).contains(place));
        EXPECT_EQ(textInterface().offsetAtPoint({place.left() + 1, place.center().y()}), offset);
    }
}

TEST_F(TextViewAccessibleTest, APartOfTheTextIsScrolledTo) {
    open(u"riga\n"_s.repeated(1000));
    textInterface().scrollToSubstring(4000, 4004);
    const TextRange seen = *m_view->visibleRange();
    EXPECT_LE(seen.location, 4000);
    EXPECT_GE(seen.end(), 4004);
}

TEST_F(TextViewAccessibleTest, TellsTheFont) {
    open(u"abc"_s);
    int start = -1;
    int end = -1;
    const QString attributes = textInterface().attributes(1, &start, &end);
    EXPECT_TRUE(attributes.contains(m_view->textLayout().font().family()));
    EXPECT_EQ(start, 0);
    EXPECT_EQ(end, 3);
}

TEST_F(TextViewAccessibleTest, EditsAreEditsOfTheUser) {
    open(u"uno tre"_s);
    editableText().insertText(4, u"due "_s);
    EXPECT_EQ(text(), u"uno due tre"_s);
    editableText().deleteText(0, 4);
    EXPECT_EQ(text(), u"due tre"_s);
    editableText().replaceText(0, 3, u"DUE"_s);
    EXPECT_EQ(text(), u"DUE tre"_s);
    m_view->undo();
    m_view->undo();
    m_view->undo();
    EXPECT_EQ(text(), u"uno tre"_s);
    m_view->setReadOnly(true);
    editableText().insertText(0, u"x"_s);
    EXPECT_EQ(text(), u"uno tre"_s);
}

} // namespace

} // namespace quillary
