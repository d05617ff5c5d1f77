#include "Quillary/State/AppActions.h"

#include "Tests/Views/Editor/ComposingInput.h"
#include "Tests/Views/Editor/EditorViewTest.h"

#include <QApplication>
#include <QClipboard>
#include <QPointer>
#include <QScrollBar>

#include <gmock/gmock.h>

namespace quillary {

namespace {

TEST_F(EditorViewTest, ShowsTheSelectedNote) {
    EXPECT_EQ(textView().storage().text(), u"# Alfa\n"_s);
    EXPECT_TRUE(textView().isVisibleTo(m_view.get()));
    EXPECT_EQ(AppActions::shared().editor.get(), &textView());
    EXPECT_EQ(note(u"Alfa"_s)->document()->editorView.get(), &textView());
    EXPECT_EQ(textView().shownDocument(), note(u"Alfa"_s)->document().get());
    select(u"Vuota"_s);
    EXPECT_EQ(textView().storage().text(), QString());
    EXPECT_EQ(AppActions::shared().editor.get(), &textView());
}

TEST_F(EditorViewTest, ShowsNothingWithoutASelection) {
    m_store->setSelectedID(std::nullopt);
    EXPECT_EQ(m_view->textView(), nullptr);
    EXPECT_EQ(AppActions::shared().editor.get(), nullptr);
    for (const ZoomableTextView* const view : m_view->findChildren<ZoomableTextView*>()) {
        EXPECT_FALSE(view->isVisibleTo(m_view.get()));
    }
}

TEST_F(EditorViewTest, AnEditMakesTheNoteDirtyAndReachesTheFile) {
    QTest::keyClicks(&textView(), u"x"_s);
    EXPECT_TRUE(note(u"Alfa"_s)->isDirty());
    EXPECT_EQ(note(u"Alfa"_s)->characterCount(), 8);
    EXPECT_TRUE(QTest::qWaitFor([&] { return read(u"Alfa.md"_s) == u"x# Alfa\n"_s; }));
}

TEST_F(EditorViewTest, TheFileDiffersInWhatWasTypedOnly) {
    const auto readBytes = [this] {
        QFile file(m_directory.filePath(u"note/Mista.txt"_s));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    const QString text = u"uno\r\ndue\rtre\nqu\u00a0attro\u2028\ufffc\ufdd0cin\u0000que\u2029 e\u0301 \u0085fine\r\n"_s;
    write(u"Mista.txt"_s, text);
    start();
    select(u"Mista"_s);
    textView().setSelection({8, 8});
    QTest::keyClicks(&textView(), u"x"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return readBytes() == QString(text).insert(8, u'x').toUtf8(); }));
    QTest::keyClick(&textView(), Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return readBytes() == QString(text).insert(8, u"x\r"_s).toUtf8(); }));
    while (note(u"Mista"_s)->document()->undoManager().canUndo()) {
        QTest::keyClick(&textView(), Qt::Key_Z, Qt::ControlModifier);
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return readBytes() == text.toUtf8(); }));
}

TEST_F(EditorViewTest, WhatIsComposedBelongsToTheNoteThatItIsComposedIn) {
    textView().setFocus();
    ComposingInput input;
    input.compose(u"\u304b"_s);
    select(u"Vuota"_s);
    EXPECT_TRUE(note(u"Alfa"_s)->isDirty());
    EXPECT_EQ(note(u"Alfa"_s)->characterCount(), 8);
    EXPECT_FALSE(note(u"Vuota"_s)->isDirty());
    EXPECT_EQ(textView().storage().text(), QString());
    EXPECT_TRUE(QTest::qWaitFor([&] { return read(u"Alfa.md"_s) == u"\u304b# Alfa\n"_s; }));

    textView().setFocus();
    input.compose(u"\u304b"_s);
    const NoteItemPtr gone = note(u"Vuota"_s);
    ASSERT_TRUE(QFile::remove(m_directory.filePath(u"note/Vuota.txt"_s)));
    m_store->refreshFromDisk();
    EXPECT_FALSE(gone->isDirty()) << "what has gone takes nothing any more";
    EXPECT_EQ(textView().storage().text(), u"\u304b# Alfa\n"_s);
}

TEST_F(EditorViewTest, AnEditEndsTheSelectionOfAFolder) {
    m_store->setSelectedFolder(u"Cartella"_s);
    QTest::keyClicks(&textView(), u"x"_s);
    EXPECT_FALSE(m_store->selectedFolder());
}

TEST_F(EditorViewTest, KeepsScrollPositionSelectionAndHistoryOfEachNote) {
    select(u"Beta"_s);
    ZoomableTextView* beta = &textView();
    QTest::keyClicks(beta, u"x"_s);
    beta->setSelection({20, 30});
    beta->verticalScrollBar()->setValue(1234);
    select(u"Alfa"_s);
    EXPECT_EQ(note(u"Beta"_s)->document()->scrollOrigin, QPointF(0, 1234));
    QTest::keyClicks(&textView(), u"y"_s);
    select(u"Beta"_s);
    EXPECT_EQ(&textView(), beta);
    EXPECT_EQ(beta->selection(), (TextSelection{20, 30}));
    EXPECT_EQ(beta->scrollOrigin().y(), 1234);
    beta->undo();
    EXPECT_FALSE(beta->storage().text().startsWith(u'x'));
    EXPECT_TRUE(note(u"Alfa"_s)->document()->text().startsWith(u'y'));
}

TEST_F(EditorViewTest, UndoDoesNotJoinTypingAcrossAVisitToAnotherNote) {
    QTest::keyClicks(&textView(), u"uno"_s);
    select(u"Beta"_s);
    select(u"Alfa"_s);
    QTest::keyClicks(&textView(), u"due"_s);
    textView().undo();
    EXPECT_EQ(textView().storage().text(), u"uno# Alfa\n"_s);
}

TEST_F(EditorViewTest, FollowsFontAndWrapping) {
    EXPECT_TRUE(textView().textLayout().wraps());
    const int pitch = textView().textLayout().pitch();
    m_settings.setWrapLines(false);
    EXPECT_FALSE(textView().textLayout().wraps());
    m_settings.setFontSize(26);
    EXPECT_NEAR(textView().textLayout().pitch(), 2 * pitch, 2);
    const QString family = textView().textLayout().font().family();
    m_settings.setFontStyle(EditorFontStyle::system);
    EXPECT_NE(textView().textLayout().font().family(), family);
    select(u"Beta"_s);
    EXPECT_FALSE(textView().textLayout().wraps());
    EXPECT_EQ(note(u"Beta"_s)->document()->appliedStyle, (EditorStyle{26, EditorFontStyle::system}));
}

TEST_F(EditorViewTest, ZoomGoesByWholePointsWithinTheBounds) {
    struct Case {
        double before;
        int step;
        double after;
    };

    for (const Case& each : {Case{13, 1, 14}, Case{13, -1, 12}, Case{8.6, 1, 10}, Case{28, 1, 28}, Case{9.4, -1, 9}}) {
        m_settings.setFontSize(each.before);
        textView().onZoomStep(each.step);
        EXPECT_EQ(m_settings.fontSize(), each.after) << each.before;
    }
}

TEST_F(EditorViewTest, ARevisionKeepsTheSelectionAsFarAsTheNewTextGoes) {
    select(u"Beta"_s);
    textView().setSelection({2400, 2410});
    note(u"Beta"_s)->document()->replaceAll(u"breve"_s);
    note(u"Beta"_s)->raiseRevision();
    EXPECT_EQ(textView().selection(), (TextSelection{5, 5}));
    EXPECT_FALSE(note(u"Beta"_s)->isDirty());
}

TEST_F(EditorViewTest, APasteIntoAnEmptyNoteMayDecideItsFormatAndALetterMayNot) {
    m_settings.setAutoDetectFormat(true);
    int detections = 0;
    m_store->detectFormatOf = [&](QStringView) {
        ++detections;
        return std::optional<NoteFormat>();
    };
    const auto paste = [&](const QString& text) {
        QGuiApplication::clipboard()->setText(text);
        textView().paste();
    };
    const auto empty = [&] {
        textView().selectAll();
        textView().deleteSelection();
        EXPECT_EQ(textView().storage().length(), 0);
        detections = 0;
    };
    select(u"Vuota"_s);
    QTest::keyClicks(&textView(), u"a"_s);
    EXPECT_EQ(detections, 0);
    paste(u"{\"a\": 1}"_s);
    EXPECT_EQ(detections, 0) << "not into a note with text";
    empty();
    paste(u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s);
    EXPECT_EQ(detections, 0) << "one character, of several units";
    empty();
    paste(u"{}"_s);
    EXPECT_EQ(detections, 1);
    QTest::keyClicks(&textView(), u"a"_s);
    EXPECT_EQ(detections, 1);
}

TEST_F(EditorViewTest, TakesTheFocusWhenAskedAndUncovered) {
    QWidget other;
    other.setFocusPolicy(Qt::StrongFocus);
    other.setParent(m_view.get());
    other.show();
    const auto settle = [] { QCoreApplication::processEvents(); };
    other.setFocus();
    ASSERT_FALSE(textView().hasFocus());
    m_store->raiseEditorFocusToken();
    EXPECT_FALSE(textView().hasFocus()) << "not before the panes have settled";
    settle();
    EXPECT_TRUE(textView().hasFocus());

    other.setFocus();
    m_view->setActive(false);
    EXPECT_TRUE(textView().isReadOnly());
    m_store->raiseEditorFocusToken();
    settle();
    EXPECT_FALSE(textView().hasFocus());
    m_view->setActive(true);
    settle();
    EXPECT_TRUE(textView().hasFocus());
    EXPECT_FALSE(textView().isReadOnly());
}

TEST_F(EditorViewTest, TheFocusGoesAlongToAnotherNote) {
    textView().setFocus();
    select(u"Beta"_s);
    EXPECT_TRUE(textView().hasFocus());
}

TEST_F(EditorViewTest, ATextViewEndsWithItsDocument) {
    const QPointer<ZoomableTextView> alfa = &textView();
    select(u"Beta"_s);
    const QPointer<ZoomableTextView> beta = &textView();
    m_store->loadAll();
    EXPECT_FALSE(alfa);
    EXPECT_FALSE(beta);
    EXPECT_EQ(textView().storage().text(), u"# Alfa\n"_s);
}

TEST_F(EditorViewTest, TheStoreMayReplaceTheTextThroughTheView) {
    m_store->replaceText(*note(u"Alfa"_s), u"altro"_s);
    EXPECT_EQ(textView().storage().text(), u"altro"_s);
    EXPECT_TRUE(note(u"Alfa"_s)->isDirty());
    textView().undo();
    EXPECT_EQ(textView().storage().text(), u"# Alfa\n"_s);
}

TEST_F(EditorViewTest, HasAnAccessibleName) {
    EXPECT_EQ(textView().accessibleName(), u"Testo della nota"_s);
}

} // namespace

} // namespace quillary
