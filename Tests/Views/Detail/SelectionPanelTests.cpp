#include "Quillary/Detail/SelectionPanel.h"

#include "DetailTest.h"
#include "Quillary/Detail/NoteCard.h"
#include "Quillary/Theme/Theme.h"

#include <QMenu>
#include <QPushButton>
#include <QScrollBar>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

class SelectionPanelTest : public DetailTest {
protected:
    SelectionPanelTest()
        : DetailTest({{u"a.md"_s, u"alfa"_s},
                      {u"b.txt"_s, u"beta"_s},
                      {u"c.json"_s, u"{}"_s},
                      {u"d.csv"_s, {}},
                      {u"e.html"_s, u"<p>"_s},
                      {u"Lavoro/f.css"_s, u"p {}"_s},
                      {u"Lavoro/g.js"_s, u"x()"_s},
                      {u"R & D/h.php"_s, u"<?php"_s}}) {}

    SelectionPanel* panel() const { return m_view.findChild<SelectionPanel*>(); }

    QStringList cardTexts(const NoteCard& card) const { return shownTexts(card); }

    QList<NoteCard*> cards() const {
        QList<NoteCard*> cards = panel()->findChildren<NoteCard*>();
        cards.removeIf([this](const NoteCard* card) { return !card->isVisibleTo(panel()); });
        return cards;
    }

    /// The items of the menu "Sposta in"; a disabled one in brackets.
    QStringList moveItems() const {
        QMenu* const menu = moveMenu();
        QStringList items;
        for (const QAction* const action : menu->actions()) {
            items.append(action->isEnabled() ? action->text() : u'[' + action->text() + u']');
        }
        return items;
    }

    QMenu* moveMenu() const {
        QMenu* const menu = qobject_cast<QPushButton*>(button(u"Sposta in"_s))->menu();
        Q_EMIT menu->aboutToShow();
        return menu;
    }
};

const QString pairHints = u"↩ confronta  ·  ⌘G nuova cartella  ·  ⌘-clic per cambiare selezione  ·  ⎋ annulla"_s;
const QString stackHints = u"↩ oppure ⌘G nuova cartella con le note  ·  trascinale su una cartella  ·  ⎋ annulla"_s;

} // namespace

TEST_F(SelectionPanelTest, TwoNotesAreAPairInTheOrderOfTheComparison) {
    selectAll({u"a"_s, u"b"_s});
    ASSERT_EQ(cards().size(), 2);
    const QList<NoteItemPtr> order = store().actionTargets();
    EXPECT_EQ(cards().first()->accessibleName(), u"A " + order.first()->title());
    EXPECT_EQ(cards().last()->accessibleName(), u"B " + order.last()->title());
    EXPECT_TRUE(shownTexts(*panel()).contains(pairHints));
    const QPalette palette = m_view.palette();
    for (const auto& [card, tint] :
         {std::pair(cards().first(), Theme::diffRemoved), std::pair(cards().last(), Theme::diffAdded)}) {
        const auto* const label = card->findChild<QLabel*>();
        EXPECT_EQ(label->palette().color(label->foregroundRole()), tint.in(palette));
    }

    click(u"Scambia A e B"_s);
    EXPECT_EQ(cards().first()->accessibleName(), u"A " + order.last()->title());
    EXPECT_EQ(cards().last()->accessibleName(), u"B " + order.first()->title());
}

TEST_F(SelectionPanelTest, ACardTellsOfItsNote) {
    struct Case {
        QString title;
        QStringList texts;
    };

    for (const Case& card : {Case{u"a"_s, {u"a"_s, u"MD"_s, u"alfa"_s, u"4 caratteri"_s}},
                             Case{u"b"_s, {u"b"_s, u"TXT"_s, u"beta"_s, u"4 caratteri"_s}},
                             Case{u"c"_s, {u"c"_s, u"JSON"_s, u"{}"_s, u"2 caratteri"_s}},
                             Case{u"d"_s, {u"d"_s, u"CSV"_s, u"Vuota"_s, u"0 caratteri"_s}},
                             Case{u"e"_s, {u"e"_s, u"HTML"_s, u"<p>"_s, u"3 caratteri"_s}},
                             Case{u"f"_s, {u"f"_s, u"CSS"_s, u"p {}"_s, u"4 caratteri"_s}},
                             Case{u"g"_s, {u"g"_s, u"JS"_s, u"x()"_s, u"3 caratteri"_s}},
                             Case{u"h"_s, {u"h"_s, u"PHP"_s, u"<?php"_s, u"5 caratteri"_s}}}) {
        NoteItem& item = *m_folder.note(card.title);
        store().ensureLoaded(item);
        NoteCard widget;
        widget.setItem(item);
        EXPECT_EQ(cardTexts(widget), card.texts);
    }
}

TEST_F(SelectionPanelTest, ACardCallsNoNoteEmptyBeforeItsTextIsKnown) {
    m_folder.write(u"nuova.txt"_s, {});
    store().refreshFromDisk();
    NoteItem& item = *m_folder.note(u"nuova"_s);
    ASSERT_EQ(item.document(), nullptr);
    NoteCard widget;
    widget.setItem(item);
    EXPECT_FALSE(cardTexts(widget).contains(u"Vuota"_s));

    selectAll({u"c"_s, u"nuova"_s});
    store().ensureLoaded(item);
    EXPECT_TRUE(shownTexts(*panel()).contains(u"Vuota"_s));
}

TEST_F(SelectionPanelTest, ThePairFollowsItsNotes) {
    selectAll({u"a"_s, u"b"_s});
    store().replaceText(*m_folder.note(u"b"_s), u"testo nuovo"_s);
    EXPECT_TRUE(shownTexts(*panel()).contains(u"11 caratteri"_s));
    store().rename(*m_folder.note(u"b"_s), u"Altro"_s);
    EXPECT_TRUE(shownTexts(*panel()).contains(u"Altro"_s));
}

TEST_F(SelectionPanelTest, MoreNotesAreAPileWithTheirTitles) {
    selectAll({u"a"_s, u"b"_s, u"c"_s});
    QStringList texts = shownTexts(*panel());
    EXPECT_TRUE(texts.contains(u"3 note selezionate"_s));
    EXPECT_TRUE(texts.contains(u"a · b · c"_s));
    EXPECT_TRUE(texts.contains(stackHints));
    EXPECT_EQ(button(u"Scambia A e B"_s), nullptr);
    EXPECT_EQ(button(u"Confronta differenze"_s), nullptr);
    ASSERT_FALSE(cards().isEmpty());
    // What is painted last is in front.
    EXPECT_EQ(cards().last()->accessibleName(), u"a"_s);

    selectAll({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s});
    EXPECT_TRUE(shownTexts(*panel()).contains(u"a · b · c · d · e · f"_s));
    selectAll({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s});
    EXPECT_TRUE(shownTexts(*panel()).contains(u"a · b · c · d · e · f · …"_s));
    EXPECT_TRUE(shownTexts(*panel()).contains(u"7 note selezionate"_s));
}

TEST_F(SelectionPanelTest, ReturnComparesTwoNotes) {
    selectAll({u"a"_s, u"b"_s});
    ASSERT_NE(m_view.focusWidget(), nullptr);
    QTest::keyClick(m_view.focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(store().isShowingDiff());
}

TEST_F(SelectionPanelTest, ReturnGroupsMoreNotesInANewFolder) {
    selectAll({u"a"_s, u"b"_s, u"c"_s});
    QTest::keyClick(m_view.focusWidget(), Qt::Key_Return);
    ASSERT_EQ(store().folders().size(), 3);
    EXPECT_EQ(store().notes(store().folders().first()).size(), 3);
    EXPECT_EQ(store().renamingFolder(), store().folders().first());
}

TEST_F(SelectionPanelTest, EscapeEndsTheSelection) {
    for (const QStringList& titles : {QStringList{u"a"_s, u"b"_s}, QStringList{u"a"_s, u"b"_s, u"c"_s}}) {
        selectAll(titles);
        QTest::keyClick(m_view.focusWidget(), Qt::Key_Escape);
        EXPECT_TRUE(store().multiSelection().isEmpty());
    }
}

TEST_F(SelectionPanelTest, ButtonsDoWhatTheySay) {
    selectAll({u"a"_s, u"b"_s});
    click(u"Annulla"_s);
    EXPECT_TRUE(store().multiSelection().isEmpty());
    selectAll({u"a"_s, u"b"_s});
    click(u"Confronta differenze"_s);
    EXPECT_TRUE(store().isShowingDiff());
    selectAll({u"a"_s, u"b"_s});
    click(u"Nuova cartella"_s);
    EXPECT_EQ(store().notes(store().folders().first()).size(), 2);
}

TEST_F(SelectionPanelTest, EveryButtonIsReachedByTheTabulator) {
    selectAll({u"a"_s, u"b"_s});
    QStringList reached;
    QWidget* widget = m_view.focusWidget();
    const QWidget* const first = widget;
    do {
        if (const auto* const found = qobject_cast<QPushButton*>(widget)) {
            reached.append(found->text());
        }
        QTest::keyClick(widget, Qt::Key_Tab);
        widget = m_view.focusWidget();
    } while (widget != first && reached.size() < 20);
    reached.sort();
    EXPECT_EQ(reached, QStringList({u"Annulla"_s, u"Confronta differenze"_s, u"Nuova cartella"_s, u"Scambia A e B"_s,
                                    u"Sposta in"_s}));
}

TEST_F(SelectionPanelTest, ThePlaceWhereAllNotesAreIsNoPlaceToMoveThemTo) {
    selectAll({u"a"_s, u"b"_s});
    EXPECT_EQ(moveItems(),
              QStringList({u"[Note (nessuna cartella)]"_s, u"Lavoro"_s, u"R && D"_s, u"Nuova cartella…"_s}));
    selectAll({u"a"_s, u"f"_s});
    EXPECT_EQ(moveItems(), QStringList({u"Note (nessuna cartella)"_s, u"Lavoro"_s, u"R && D"_s, u"Nuova cartella…"_s}));
    selectAll({u"f"_s, u"g"_s});
    EXPECT_EQ(moveItems(),
              QStringList({u"Note (nessuna cartella)"_s, u"[Lavoro]"_s, u"R && D"_s, u"Nuova cartella…"_s}));
}

TEST_F(SelectionPanelTest, TheMenuMovesTheNotes) {
    selectAll({u"a"_s, u"f"_s});
    moveMenu()->actions().at(2)->trigger();
    EXPECT_TRUE(QFile::exists(m_folder.path(u"R & D/a.md"_s)));
    EXPECT_TRUE(QFile::exists(m_folder.path(u"R & D/f.css"_s)));
    selectAll({u"a"_s, u"f"_s});
    moveMenu()->actions().first()->trigger();
    EXPECT_TRUE(QFile::exists(m_folder.path(u"a.md"_s)));
    selectAll({u"a"_s, u"f"_s});
    moveMenu()->actions().last()->trigger();
    EXPECT_EQ(store().notes(store().folders().first()).size(), 2);
}

TEST_F(SelectionPanelTest, NothingIsCutOffInANarrowWindow) {
    m_view.resize(240, 300);
    selectAll({u"a"_s, u"b"_s});
    QCoreApplication::processEvents();
    const QRect room(QPoint(), QSize(panel()->viewport()->width(), panel()->widget()->height()));
    for (const QPushButton* const found : panel()->findChildren<QPushButton*>()) {
        if (found->isVisibleTo(panel())) {
            const QRect place(found->mapTo(panel()->widget(), QPoint()), found->size());
            EXPECT_TRUE(room.contains(place)) << found->text().toStdString();
            EXPECT_GE(found->width(), found->sizeHint().width()) << found->text().toStdString();
        }
    }
    EXPECT_GT(panel()->verticalScrollBar()->maximum(), 0);
}
