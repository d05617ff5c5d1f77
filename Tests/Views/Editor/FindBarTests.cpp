#include "Quillary/Editor/FindBar.h"

#include "Quillary/Editor/EditorView.h"
#include "Quillary/Editor/FindField.h"
#include "Quillary/Editor/FindStatusLabel.h"
#include "Quillary/Editor/OptionToggle.h"
#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/Find/FindController.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/State/NoteDocument.h"
#include "Quillary/Theme/Palettes.h"
#include "Quillary/Theme/Theme.h"

#include "Tests/Views/NotesFolder.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QPushButton>
#include <QTest>
#include <QVariantAnimation>

#include <gtest/gtest.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

/// The editor with its find bar over two notes, with the focus in the text.
class FindBarTest : public testing::Test {
protected:
    void SetUp() override {
        m_view.resize(640, 400);
        m_view.show();
        m_view.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&m_view));
        text().setFocus();
    }

    ZoomableTextView& text() { return *m_view.textView(); }

    FindBar& bar() { return *m_view.findChild<FindBar*>(); }

    FindController& find() { return m_folder.find(); }

    NotesStore& store() { return m_folder.store(); }

    QString noteText() { return text().storage().text(); }

    FindField& field(const QString& name) { return *named<FindField>(name); }

    FindField& findField() { return field(u"Trova"_s); }

    FindField& replaceField() { return field(u"Sostituisci con"_s); }

    QString status() { return bar().findChild<FindStatusLabel*>()->text(); }

    QAbstractButton& button(const QString& name) { return *named<QAbstractButton>(name); }

    void open(bool replace = false) {
        find().show(replace);
        QCoreApplication::processEvents();
    }

    void type(const QString& typed) {
        for (const QChar unit : typed) {
            QTest::keyClick(QApplication::focusWidget(), unit.toLatin1());
        }
    }

    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }

    static void click(QAbstractButton& target) { QTest::mouseClick(&target, Qt::LeftButton); }

    QPixmap picture() { return text().viewport()->grab(); }

    NotesFolder m_folder{{{u"Alfa.txt"_s, u"uno due uno\ntre uno"_s}, {u"Beta.txt"_s, u"uno solo"_s}}};
    EditorView m_view{&m_folder.store(), &m_folder.settings(), &m_folder.find()};

private:
    template <typename Widget>
    Widget* named(const QString& name) {
        for (Widget* const each : bar().findChildren<Widget*>()) {
            if (each->accessibleName() == name || each->property("text").toString() == name) {
                return each;
            }
        }
        return nullptr;
    }
};

} // namespace

TEST_F(FindBarTest, IsThereWhileTheControllerSaysSo) {
    EXPECT_FALSE(bar().isVisible());
    open();
    EXPECT_TRUE(bar().isVisible());
    EXPECT_FALSE(replaceField().isVisible());
    open(true);
    EXPECT_TRUE(replaceField().isVisible());
    find().close();
    EXPECT_FALSE(bar().isVisible());
}

TEST_F(FindBarTest, HasALabelAndAHelpTextForEverything) {
    open(true);
    EXPECT_EQ(findField().placeholderText(), u"Trova"_s);
    EXPECT_EQ(replaceField().placeholderText(), u"Sostituisci con"_s);

    struct Case {
        QString label;
        QString help;
    };

    const std::vector<Case> cases{
        {u"Aa"_s, u"Maiuscole/minuscole"_s},
        {u"W"_s, u"Parola intera"_s},
        {u".*"_s, u"Espressione regolare"_s},
        {{}, u"Precedente (⇧⌘G)"_s},
        {{}, u"Successivo (⌘G)"_s},
        {{}, u"Sostituisci (⌥⌘F)"_s},
        {{}, u"Chiudi (⎋)"_s},
        {u"Sostituisci"_s, {}},
        {u"Tutte"_s, u"Sostituisci tutte le occorrenze (annullabile con ⌘Z)"_s},
    };
    for (const Case& each : cases) {
        const QAbstractButton& shown = button(each.label.isEmpty() ? each.help : each.label);
        EXPECT_EQ(shown.text(), each.label);
        EXPECT_EQ(shown.toolTip(), each.help);
        EXPECT_TRUE(shown.isVisible());
        // A push button's label is its name.
        EXPECT_TRUE(shown.accessibleName() == each.help || qobject_cast<const QPushButton*>(&shown) != nullptr);
        EXPECT_EQ(shown.icon().isNull(), !each.label.isEmpty());
    }
}

TEST_F(FindBarTest, FindsWhileTheUserTypes) {
    open();
    EXPECT_EQ(QApplication::focusWidget(), &findField());
    EXPECT_EQ(status(), u" "_s);
    type(u"un"_s);
    EXPECT_EQ(find().query(), u"un"_s);
    EXPECT_EQ(status(), u"1 di 3"_s);
    EXPECT_EQ(text().selection(), (TextSelection{0, 2}));
    type(u"x"_s);
    EXPECT_EQ(status(), u"Nessun risultato"_s);
    press(Qt::Key_Backspace);
    type(u"o"_s);
    EXPECT_EQ(text().selection(), (TextSelection{0, 3}));
    EXPECT_EQ(QApplication::focusWidget(), &findField());
}

TEST_F(FindBarTest, StepsWithReturnForwardsAndWithShiftBackwards) {
    open();
    type(u"uno"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(status(), u"2 di 3"_s);
    EXPECT_EQ(text().selection(), (TextSelection{8, 11}));
    press(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(status(), u"1 di 3"_s);
    press(Qt::Key_Return, Qt::ShiftModifier | Qt::ControlModifier);
    EXPECT_EQ(status(), u"3 di 3"_s);
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(status(), u"1 di 3"_s);
    press(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(status(), u"2 di 3"_s);
    click(button(u"Successivo (⌘G)"_s));
    EXPECT_EQ(status(), u"3 di 3"_s);
    click(button(u"Precedente (⇧⌘G)"_s));
    EXPECT_EQ(status(), u"2 di 3"_s);
    EXPECT_EQ(QApplication::focusWidget(), &findField());
}

TEST_F(FindBarTest, SwitchesTheOptions) {
    open();
    type(u"UNO"_s);
    click(button(u"Aa"_s));
    EXPECT_EQ(find().options(), (SearchOptions{.caseSensitive = true}));
    EXPECT_EQ(status(), u"Nessun risultato"_s);
    click(button(u"Aa"_s));
    EXPECT_EQ(status(), u"1 di 3"_s);
    click(button(u"W"_s));
    click(button(u".*"_s));
    EXPECT_EQ(find().options(), (SearchOptions{.wholeWord = true, .regex = true}));
    find().setOptions({.caseSensitive = true});
    EXPECT_TRUE(button(u"Aa"_s).isChecked());
    EXPECT_FALSE(button(u"W"_s).isChecked());
    EXPECT_FALSE(button(u".*"_s).isChecked());
    EXPECT_EQ(QApplication::focusWidget(), &findField());
}

TEST_F(FindBarTest, TellsErrorsInPlaceOfTheCount) {
    open();
    click(button(u".*"_s));
    type(u"("_s);
    EXPECT_EQ(status(), u"Espressione regolare non valida"_s);
    const QImage drawn = bar().findChild<FindStatusLabel*>()->grab().toImage().convertToFormat(QImage::Format_RGB32);
    int reddish = 0;
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x) {
            const QColor color = drawn.pixelColor(x, y);
            reddish += color.red() > color.blue() + 60 ? 1 : 0;
        }
    }
    EXPECT_GT(reddish, 10);
    type(u"t)"_s);
    EXPECT_EQ(status(), u"1 di 1"_s);
    findField().selectAll();
    press(Qt::Key_Backspace);
    EXPECT_EQ(status(), u" "_s);
}

TEST_F(FindBarTest, OffersNothingToDoWhereNothingIsFound) {
    open(true);
    const QStringList names{u"Precedente (⇧⌘G)"_s, u"Successivo (⌘G)"_s, u"Sostituisci"_s, u"Tutte"_s};
    for (const QString& name : names) {
        EXPECT_FALSE(button(name).isEnabled());
    }
    type(u"due"_s);
    for (const QString& name : names) {
        EXPECT_TRUE(button(name).isEnabled());
    }
}

TEST_F(FindBarTest, OpensTheRowForReplacementsAndPutsTheFocusThere) {
    open();
    QAbstractButton& toggle = button(u"Sostituisci (⌥⌘F)"_s);
    const QImage closed = toggle.icon().pixmap(32).toImage();
    click(toggle);
    EXPECT_TRUE(replaceField().isVisible());
    EXPECT_EQ(QApplication::focusWidget(), &replaceField());
    EXPECT_NE(toggle.icon().pixmap(32).toImage(), closed);
    click(toggle);
    EXPECT_FALSE(replaceField().isVisible());
    EXPECT_EQ(QApplication::focusWidget(), &findField());
    EXPECT_EQ(toggle.icon().pixmap(32).toImage(), closed);
}

TEST_F(FindBarTest, PutsTheFocusIntoTheFieldThatTheControllerNames) {
    open(true);
    EXPECT_EQ(QApplication::focusWidget(), &findField());
    type(u"uno"_s);
    text().setFocus();
    open(true);
    EXPECT_EQ(QApplication::focusWidget(), &replaceField());
    open(true);
    EXPECT_EQ(QApplication::focusWidget(), &replaceField());
    text().setFocus();
    open();
    EXPECT_EQ(QApplication::focusWidget(), &findField());
    EXPECT_EQ(findField().selectedText(), u"uno"_s);
}

TEST_F(FindBarTest, ClosesWithEscapeFromEverywhereInIt) {
    for (QWidget* const widget :
         std::initializer_list<QWidget*>{&findField(), &replaceField(), &button(u"Aa"_s), &button(u"Chiudi (⎋)"_s)}) {
        open(true);
        widget->setFocus();
        press(Qt::Key_Escape);
        EXPECT_FALSE(find().isVisible());
        ASSERT_TRUE(QTest::qWaitFor([&] { return text().hasFocus(); }));
    }
    open();
    click(button(u"Chiudi (⎋)"_s));
    EXPECT_FALSE(bar().isVisible());
}

TEST_F(FindBarTest, ReplacesWithReturnAndTheButtons) {
    open(true);
    type(u"uno"_s);
    replaceField().setFocus();
    type(u"X"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(noteText(), u"X due uno\ntre uno"_s);
    EXPECT_EQ(text().selection(), (TextSelection{6, 9}));
    EXPECT_EQ(QApplication::focusWidget(), &replaceField());
    click(button(u"Sostituisci"_s));
    EXPECT_EQ(noteText(), u"X due X\ntre uno"_s);
    text().undo();
    text().undo();
    EXPECT_EQ(noteText(), u"uno due uno\ntre uno"_s);
    EXPECT_EQ(status(), u"1 di 3"_s);
    EXPECT_EQ(text().selection(), (TextSelection{0, 3}));
    click(button(u"Tutte"_s));
    EXPECT_EQ(noteText(), u"X due X\ntre X"_s);
    EXPECT_EQ(status(), u"Nessun risultato"_s);
    EXPECT_TRUE(store().selectedItem()->isDirty());
    text().undo();
    EXPECT_EQ(noteText(), u"uno due uno\ntre uno"_s);
    EXPECT_EQ(text().selection(), (TextSelection{0, 3}));
    text().redo();
    EXPECT_EQ(noteText(), u"X due X\ntre X"_s);
}

TEST_F(FindBarTest, OneUndoTakesBackTenThousandReplacementsWithSelectionAndScrollPosition) {
    const QString before = u"la riga con uno dentro\n"_s.repeated(10'000);
    m_folder.store().selectedItem()->document()->replaceAll(before);
    text().setSelection({115'000, 115'010});
    text().scrollToRange({115'000, 10});
    open(true);
    find().setQuery(u"uno"_s);
    find().setReplacement(u"quattordici"_s);
    ASSERT_EQ(find().matchCount(), 10'000);
    const TextSelection selection = text().selection();
    const std::optional<TextRange> visible = text().visibleRange();
    ASSERT_GT(visible->location, 100'000);

    click(button(u"Tutte"_s));
    EXPECT_EQ(noteText(), u"la riga con quattordici dentro\n"_s.repeated(10'000));
    EXPECT_EQ(status(), u"Nessun risultato"_s);
    text().undo();
    EXPECT_EQ(noteText(), before);
    EXPECT_EQ(find().matchCount(), 10'000);
    EXPECT_EQ(text().selection(), selection);
    ASSERT_TRUE(text().visibleRange());
    EXPECT_LE(text().visibleRange()->location, selection.range().location);
    EXPECT_GE(text().visibleRange()->end(), selection.range().end());
    text().undo();
    EXPECT_EQ(noteText(), before) << "the replacements were one step";
    text().redo();
    EXPECT_EQ(noteText(), u"la riga con quattordici dentro\n"_s.repeated(10'000));
}

TEST_F(FindBarTest, ReplacingAllKeepsWhatIsOnShowAlsoWithMatchesAtBothEnds) {
    m_folder.store().selectedItem()->document()->replaceAll(u"uno riga\n"_s.repeated(4'999) + u"riga uno"_s);
    const auto lineOnTop = [this] { return text().storage().lineAt(text().visibleRange().value().location); };
    text().setSelection({22'500, 22'500});
    text().scrollToRange({22'500, 10});
    open(true);
    find().setQuery(u"uno"_s);
    find().setReplacement(u"quattordici"_s);
    const qsizetype before = lineOnTop();
    ASSERT_GT(before, 1'000);

    click(button(u"Tutte"_s));
    EXPECT_EQ(noteText(), u"quattordici riga\n"_s.repeated(4'999) + u"riga quattordici"_s);
    EXPECT_EQ(lineOnTop(), before);
}

TEST_F(FindBarTest, RefusesToReplaceInACoveredEditor) {
    open(true);
    type(u"uno"_s);
    text().setReadOnly(true);
    find().setReplacement(u"X"_s);
    find().replaceAll();
    find().replaceCurrent();
    EXPECT_EQ(noteText(), u"uno due uno\ntre uno"_s);
}

TEST_F(FindBarTest, FollowsTypingInTheTextWithoutMovingTheCaret) {
    open();
    type(u"uno"_s);
    text().setFocus();
    text().setSelection({4, 4});
    type(u"uno "_s);
    EXPECT_EQ(noteText(), u"uno uno due uno\ntre uno"_s);
    EXPECT_EQ(text().selection(), (TextSelection{8, 8}));
    EXPECT_EQ(status(), u"3 di 4"_s);
    EXPECT_EQ(text().textLayout().marks().count(), 4);
    text().undo();
    EXPECT_EQ(find().matchCount(), 3);
}

TEST_F(FindBarTest, SearchesTheNoteThatComesOnShow) {
    open();
    type(u"uno"_s);
    press(Qt::Key_Return);
    ZoomableTextView& first = text();
    store().setSelectedID(m_folder.note(u"Beta"_s)->id());
    EXPECT_EQ(status(), u"1 di 1"_s);
    EXPECT_EQ(text().selection(), (TextSelection{0, 0}));
    EXPECT_EQ(find().anchorLocation(), 0);
    EXPECT_TRUE(first.textLayout().marks().isEmpty());
    EXPECT_EQ(text().textLayout().marks().count(), 1);
    store().setSelectedID(std::nullopt);
    EXPECT_EQ(find().matchCount(), 0);
}

TEST_F(FindBarTest, SearchesATextThatCameFromOutside) {
    open();
    type(u"uno"_s);
    m_folder.write(u"Alfa.txt"_s, u"due"_s);
    store().refreshFromDisk();
    EXPECT_EQ(status(), u"Nessun risultato"_s);
}

TEST_F(FindBarTest, MarksWhatItFoundInTheText) {
    const QImage plain = picture().toImage();
    open();
    type(u"uno"_s);
    const auto isYellow = [](const QColor& color) {
        return color.red() > 230 && color.green() > 190 && color.blue() < 90;
    };
    const auto yellow = [&] {
        const QImage image = picture().toImage();
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                count += isYellow(image.pixelColor(x, y)) ? 1 : 0;
            }
        }
        return count;
    };
    const int pulsing = yellow();
    EXPECT_GT(pulsing, 100);
    // The pulse ends.
    ASSERT_TRUE(QTest::qWaitFor([&] { return text().findChildren<QVariantAnimation*>().isEmpty(); }));
    EXPECT_GT(yellow(), 100);
    find().close();
    text().setSelection({0, 0});
    EXPECT_EQ(yellow(), 0);
}

TEST_F(FindBarTest, TheCurrentMatchIsReadableInTheDarkSelectedOrNot) {
    text().setPalette(darkPalette());
    open();
    type(u"uno"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return text().findChildren<QVariantAnimation*>().isEmpty(); }));
    for (const TextSelection selection : {TextSelection{0, 3}, TextSelection{7, 7}}) {
        text().setSelection(selection);
        ASSERT_EQ(find().currentIndex(), 0);
        const QImage letter = picture().copy(text().characterRect(0)).toImage();
        int dark = 0;
        int bright = 0;
        for (int y = 0; y < letter.height(); ++y) {
            for (int x = 0; x < letter.width(); ++x) {
                const QColor color = letter.pixelColor(x, y);
                dark += color.red() < 110 ? 1 : 0;
                bright += color.blue() > 130 ? 1 : 0;
            }
        }
        EXPECT_GT(dark, 5) << selection.caret;
        EXPECT_EQ(bright, 0) << selection.caret;
    }
}

TEST_F(FindBarTest, ScrollsToTheMatch) {
    text().replaceText({0, text().storage().length()}, u"riga\n"_s.repeated(400) % u"ago"_s);
    text().setSelection({0, 0});
    text().setScrollOrigin({0, 0});
    open();
    type(u"ago"_s);
    const TextRange shown = text().visibleRange().value_or(TextRange{});
    EXPECT_LE(shown.location, 2000);
    EXPECT_GE(shown.end(), 2003);
    EXPECT_GT(text().scrollOrigin().y(), 0);
}

TEST_F(FindBarTest, TheTextLeavesTheKeyOfItsSelectionToTheMenu) {
    QKeyEvent command(QEvent::ShortcutOverride, Qt::Key_E, Qt::ControlModifier);
    command.ignore();
    QCoreApplication::sendEvent(&text(), &command);
    EXPECT_FALSE(command.isAccepted());
    QKeyEvent end(QEvent::ShortcutOverride, Qt::Key_End, Qt::NoModifier);
    end.ignore();
    QCoreApplication::sendEvent(&text(), &end);
    EXPECT_TRUE(end.isAccepted());
}

TEST_F(FindBarTest, FitsIntoANarrowPane) {
    open(true);
    click(button(u".*"_s));
    type(u"("_s);
    EXPECT_LE(m_view.minimumSizeHint().width(), 460);
    // As wide as the main window leaves it at least.
    m_view.setMinimumSize(1, 1);
    m_view.resize(300, 400);
    QCoreApplication::processEvents();
    EXPECT_FALSE(findField().geometry().intersects(button(u"Aa"_s).geometry()));
    const QWidget& last = button(u"Chiudi (⎋)"_s);
    EXPECT_TRUE(bar().rect().contains(QRect(last.mapTo(&bar(), QPoint()), last.size())));
    EXPECT_EQ(bar().findChild<FindStatusLabel*>()->toolTip(), status());
}

TEST_F(FindBarTest, SaysItsAnswerInFullWhereThereIsRoom) {
    open();
    click(button(u".*"_s));
    const auto* const label = bar().findChild<FindStatusLabel*>();
    const auto room = [label] { return label->width() - label->fontMetrics().horizontalAdvance(label->text()); };
    type(u"riga"_s);
    QCoreApplication::processEvents();
    const int fieldWidth = findField().width();
    EXPECT_GE(room(), 0);
    find().setQuery(u"uno"_s);
    QCoreApplication::processEvents();
    EXPECT_GE(room(), 0);
    EXPECT_EQ(findField().width(), fieldWidth) << "answers don't move the field";
    find().setQuery(u"(foo"_s);
    QCoreApplication::processEvents();
    ASSERT_EQ(status(), u"Espressione regolare non valida"_s);
    EXPECT_GE(room(), 0);
}

} // namespace quillary
