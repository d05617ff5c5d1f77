#include "Quillary/Comparison/DiffView.h"

#include "../NotesFolder.h"
#include "Quillary/Comparison/DiffList.h"
#include "Quillary/Comparison/NotePill.h"
#include "Quillary/Comparison/OverviewRuler.h"
#include "Quillary/Comparison/StatsView.h"
#include "Quillary/State/NoteDocument.h"
#include "Quillary/Theme/SegmentedPicker.h"
#include "Quillary/Theme/ToolTip.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

QString lines(int count, const QString& end) {
    QString text;
    for (int i = 0; i < count; ++i) {
        text += u"riga %1\n"_s.arg(i);
    }
    return text + end;
}

/// The comparison on show, over a folder of notes. The first of two files is the newer one.
class DiffViewOf : public testing::Test {
protected:
    DiffViewOf() {
        m_view.resize(900, 500);
        m_view.show();
        m_view.activateWindow();
        if (!QTest::qWaitForWindowActive(&m_view)) {
            ADD_FAILURE() << "the view is not active";
        }
    }

    NotesStore& store() { return m_folder.store(); }

    /// Compares two notes in this order and waits for the result.
    void compare(const QString& oldTitle, const QString& newTitle) {
        store().compare(*m_folder.note(oldTitle), *m_folder.note(newTitle));
        if (titles() != QStringList{oldTitle, newTitle}) {
            store().swapComparison();
        }
        ASSERT_TRUE(QTest::qWaitFor([this] { return m_view.hasResult(); }));
        ASSERT_EQ(titles(), (QStringList{oldTitle, newTitle}));
    }

    QStringList titles() {
        const QList<NotePill*> pills = m_view.findChildren<NotePill*>();
        return {pills[0]->title(), pills[1]->title()};
    }

    QAbstractButton* button(const QString& name) {
        for (QAbstractButton* const each : m_view.findChildren<QAbstractButton*>()) {
            if (each->text() == name || each->accessibleName() == name) {
                return each;
            }
        }
        return nullptr;
    }

    bool saysIdentical() {
        const QList<QLabel*> labels = m_view.findChildren<QLabel*>();
        return std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
            return label->isVisible() && label->text() == u"Le due note sono identiche"_s;
        });
    }

    NotesFolder m_folder = NotesFolder({{u"a.md"_s, lines(50, u"uno\n"_s)},
                                        {u"b.md"_s, lines(50, u"due\n"_s)},
                                        {u"copia.txt"_s, lines(50, u"uno"_s)},
                                        {u"vuota.txt"_s, {}},
                                        {u"vuota anche lei.txt"_s, {}},
                                        {u"corta.txt"_s, u"x"_s},
                                        {u"lunga a.txt"_s, lines(20'000, u"uno"_s)},
                                        {u"lunga b.txt"_s, lines(20'000, u"due"_s)}});
    DiffView m_view{m_folder.store(), m_folder.settings()};
    DiffList* m_list = m_view.findChild<DiffList*>();
    OverviewRuler* m_ruler = m_view.findChild<OverviewRuler*>();
};

} // namespace

TEST_F(DiffViewOf, ShowsTheRowsOfThePair) {
    compare(u"a"_s, u"b"_s);
    EXPECT_EQ(m_view.result().stats, (DiffStats{0, 0, 1}));
    EXPECT_TRUE(m_list->isVisible());
    EXPECT_TRUE(m_ruler->isVisible());
    EXPECT_EQ(m_ruler->width(), 12);
    EXPECT_EQ(m_list->mode(), DiffView::Mode::sideBySide);
    EXPECT_EQ(m_list->items().size(), 5U);
    EXPECT_EQ(m_view.findChild<StatsView*>()->toolTip(), u"0 righe aggiunte, 0 rimosse, 1 modificate"_s);
}

TEST_F(DiffViewOf, IdenticalNotesHaveNeitherListNorRuler) {
    compare(u"a"_s, u"copia"_s);
    EXPECT_TRUE(saysIdentical());
    EXPECT_FALSE(m_list->isVisible());
    EXPECT_FALSE(m_ruler->isVisible());
    EXPECT_TRUE(button(u"Scambia i lati"_s)->isVisible());
    compare(u"a"_s, u"b"_s);
    EXPECT_FALSE(saysIdentical());
    EXPECT_TRUE(m_list->isVisible());
}

TEST_F(DiffViewOf, AnEmptyNoteLacksEverything) {
    compare(u"a"_s, u"vuota"_s);
    EXPECT_EQ(m_view.result().stats, (DiffStats{0, 51, 0}));
    EXPECT_EQ(m_list->items().size(), 51U);
}

TEST_F(DiffViewOf, TwoEmptyNotesAreIdentical) {
    compare(u"vuota"_s, u"vuota anche lei"_s);
    EXPECT_TRUE(saysIdentical());
}

TEST_F(DiffViewOf, ANoteThatCanNotBeReadCountsAsEmpty) {
    QFile file(m_folder.path(u"enorme.txt"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(NoteFileStore::maxReadableBytes + 1));
    file.close();
    store().refreshFromDisk();
    compare(u"a"_s, u"enorme"_s);
    EXPECT_TRUE(m_folder.note(u"enorme"_s)->loadError());
    EXPECT_EQ(m_view.result().stats, (DiffStats{0, 51, 0}));
}

TEST_F(DiffViewOf, ShowsNamesThatAreNoPlainTextAsOneReadableLine) {
    m_folder.write(u"due\nrighe.txt"_s, u"x"_s);
    m_folder.write(u"<b> & altro.txt"_s, u"y"_s);
    store().refreshFromDisk();
    store().compare(*m_folder.note(u"due\nrighe"_s), *m_folder.note(u"<b> & altro"_s));
    QStringList tips;
    for (const NotePill* const pill : m_view.findChildren<NotePill*>()) {
        tips.append(pill->toolTip());
    }
    EXPECT_THAT(titles(), testing::UnorderedElementsAre(u"due righe"_s, u"<b> & altro"_s));
    EXPECT_THAT(tips, testing::UnorderedElementsAre(u"due righe"_s, plainToolTip(u"<b> & altro"_s)));
}

TEST_F(DiffViewOf, SwapsTheSidesAndKeepsTheMode) {
    compare(u"a"_s, u"vuota"_s);
    QTest::mouseClick(button(u"Unificato"_s), Qt::LeftButton);
    QTest::mouseClick(button(u"Scambia i lati"_s), Qt::LeftButton);
    EXPECT_EQ(titles(), (QStringList{u"vuota"_s, u"a"_s}));
    EXPECT_EQ(m_view.result().stats, (DiffStats{51, 0, 0}));
    EXPECT_EQ(m_list->mode(), DiffMode::unified);
}

TEST_F(DiffViewOf, ThePickerChoosesTheMode) {
    compare(u"a"_s, u"b"_s);
    EXPECT_EQ(m_view.findChild<SegmentedPicker*>()->accessibleName(), u"Vista"_s);
    QTest::mouseClick(button(u"Unificato"_s), Qt::LeftButton);
    EXPECT_EQ(m_list->mode(), DiffMode::unified);
    EXPECT_TRUE(button(u"Unificato"_s)->isChecked());
    QTest::mouseClick(button(u"Affiancato"_s), Qt::LeftButton);
    EXPECT_EQ(m_list->mode(), DiffMode::sideBySide);
    EXPECT_FALSE(button(u"Unificato"_s)->isChecked());
}

TEST_F(DiffViewOf, TheToggleShowsAllLines) {
    compare(u"a"_s, u"b"_s);
    auto* const toggle = m_view.findChild<QCheckBox*>();
    EXPECT_EQ(toggle->text(), u"Tutte le righe"_s);
    toggle->click();
    EXPECT_EQ(m_list->items().size(), 51U);
    toggle->click();
    EXPECT_EQ(m_list->items().size(), 5U);
}

TEST_F(DiffViewOf, AClickInTheHeaderLeavesTheKeysToTheRows) {
    compare(u"a"_s, u"b"_s);
    m_list->setFocus();
    for (const QString& name : {u"Tutte le righe"_s, u"Unificato"_s, u"Affiancato"_s, u"Scambia i lati"_s}) {
        QTest::mouseClick(button(name), Qt::LeftButton);
        EXPECT_TRUE(m_list->hasFocus()) << qPrintable(name);
    }
}

TEST_F(DiffViewOf, AnotherPairBeginsAnew) {
    compare(u"a"_s, u"b"_s);
    QTest::mouseClick(button(u"Unificato"_s), Qt::LeftButton);
    m_view.findChild<QCheckBox*>()->click();
    compare(u"a"_s, u"vuota"_s);
    EXPECT_EQ(m_list->mode(), DiffMode::sideBySide);
    EXPECT_TRUE(button(u"Affiancato"_s)->isChecked());
    EXPECT_FALSE(m_list->showsAllLines());
    EXPECT_FALSE(m_view.findChild<QCheckBox*>()->isChecked());

    QTest::mouseClick(button(u"Unificato"_s), Qt::LeftButton);
    store().clearMultiSelection();
    compare(u"a"_s, u"vuota"_s);
    EXPECT_EQ(m_list->mode(), DiffMode::sideBySide) << "the same pair once more";
}

TEST_F(DiffViewOf, EscapeAndTheCloseButtonEndTheComparison) {
    compare(u"a"_s, u"b"_s);
    m_list->setFocus();
    QTest::keyClick(m_list, Qt::Key_Escape);
    EXPECT_FALSE(store().isShowingDiff());
    EXPECT_TRUE(store().multiSelection().isEmpty());
    EXPECT_FALSE(m_view.hasResult());
    compare(u"a"_s, u"b"_s);
    QTest::mouseClick(button(u"Chiudi il confronto (⎋)"_s), Qt::LeftButton);
    EXPECT_FALSE(store().isShowingDiff());
}

TEST_F(DiffViewOf, ShowsTheTextsAsTheyWereWhenItBegan) {
    compare(u"a"_s, u"b"_s);
    const TextDiffResult before = m_view.result();
    m_folder.note(u"a"_s)->document()->replaceAll(u"altro"_s);
    m_folder.write(u"b.md"_s, u"tutt'altro"_s);
    store().refreshFromDisk();
    EXPECT_EQ(m_view.result(), before);
    EXPECT_EQ(before.rows[50].newSide->segments.line(), u"due");
}

TEST_F(DiffViewOf, ANoteThatGoesAwayEndsItAndARenamedOneKeepsIt) {
    compare(u"a"_s, u"b"_s);
    store().rename(*m_folder.note(u"b"_s), u"beta"_s);
    EXPECT_EQ(titles(), (QStringList{u"a"_s, u"beta"_s}));
    EXPECT_TRUE(m_view.hasResult());
    QFile::remove(m_folder.path(u"beta.md"_s));
    store().refreshFromDisk();
    EXPECT_FALSE(m_view.hasResult());
    EXPECT_TRUE(m_view.result().rows.isEmpty());
}

TEST_F(DiffViewOf, ATrashedNoteEndsItAndAnotherTrashedOneDoesNot) {
    compare(u"a"_s, u"b"_s);
    store().moveToTrash({m_folder.note(u"corta"_s)});
    EXPECT_TRUE(m_view.hasResult());
    store().moveToTrash({m_folder.note(u"a"_s)});
    EXPECT_FALSE(m_view.hasResult());
    EXPECT_FALSE(store().isShowingDiff());
    compare(u"b"_s, u"copia"_s);
    EXPECT_EQ(m_view.result().stats, (DiffStats{0, 0, 1}));
}

TEST_F(DiffViewOf, LongNotesAreComparedBesideTheMainThread) {
    store().compare(*m_folder.note(u"lunga a"_s), *m_folder.note(u"lunga b"_s));
    EXPECT_FALSE(m_view.hasResult());
    QSignalSpy ready(&m_view, &DiffView::resultReady);
    ASSERT_TRUE(ready.wait());
    EXPECT_EQ(m_view.result().stats, (DiffStats{0, 0, 1}));
    EXPECT_EQ(m_view.result().rows.size(), 20'001);
}

TEST_F(DiffViewOf, AResultOfAnEarlierPairIsNeverShown) {
    store().compare(*m_folder.note(u"lunga a"_s), *m_folder.note(u"lunga b"_s));
    store().compare(*m_folder.note(u"lunga a"_s), *m_folder.note(u"vuota"_s));
    QSignalSpy ready(&m_view, &DiffView::resultReady);
    ASSERT_TRUE(ready.wait());
    EXPECT_EQ(m_view.result().stats.added + m_view.result().stats.removed, 20'001);
    EXPECT_EQ(ready.size(), 1);

    store().compare(*m_folder.note(u"lunga a"_s), *m_folder.note(u"lunga b"_s));
    store().clearMultiSelection();
    store().compare(*m_folder.note(u"a"_s), *m_folder.note(u"b"_s));
    EXPECT_EQ(m_view.result().rows.size(), 51);
    EXPECT_FALSE(ready.wait(300));
    EXPECT_EQ(m_view.result().rows.size(), 51);
}

TEST_F(DiffViewOf, AClickOnTheRulerJumpsToTheChange) {
    compare(u"a"_s, u"b"_s);
    m_view.findChild<QCheckBox*>()->click();
    QTest::mouseClick(m_ruler, Qt::LeftButton, {}, QPoint(5, 3));
    EXPECT_TRUE(m_list->viewport()->rect().contains(m_list->itemRect(50)));
}

TEST_F(DiffViewOf, TextSizesAreThoseOfTheSettings) {
    compare(u"a"_s, u"b"_s);
    m_folder.settings().setFontSize(28);
    EXPECT_DOUBLE_EQ(m_list->metrics().baseSize, 28);
    EXPECT_DOUBLE_EQ(m_list->metrics().gutterColumn, 28 * 2.6);
    EXPECT_GE(m_list->metrics().pitch, 40);
    compare(u"vuota"_s, u"corta"_s);
    EXPECT_DOUBLE_EQ(m_ruler->pitch(), 28 * 1.45);
    m_view.grab();
}

TEST_F(DiffViewOf, PaintsInBothModesAndAppearances) {
    compare(u"a"_s, u"vuota"_s);
    const QImage light = m_list->grab().toImage();
    QPalette dark = m_view.palette();
    dark.setColor(QPalette::Window, Qt::black);
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::WindowText, Qt::white);
    dark.setColor(QPalette::Text, Qt::white);
    m_view.setPalette(dark);
    const QImage night = m_list->grab().toImage();
    const QPoint inRemoved(m_list->viewport()->width() / 4, 12);
    EXPECT_GT(light.pixelColor(inRemoved).lightness(), 200);
    EXPECT_LT(night.pixelColor(inRemoved).lightness(), 60);
}
