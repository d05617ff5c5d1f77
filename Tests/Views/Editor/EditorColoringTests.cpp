#include "Quillary/Theme/Palettes.h"
#include "Quillary/Theme/Theme.h"
#include "QuillaryCore/Formats/SyntaxHighlighter.h"

#include "Tests/Views/Editor/EditorViewTest.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>

#include <gmock/gmock.h>

namespace quillary {

namespace {

/// The editor with notes of source text.
class EditorColoringTest : public EditorViewTest {
protected:
    /// Opens a note of its own with a text and selects it.
    void openNote(const QString& name, const QString& text) {
        write(name, text);
        start();
        select(name.section(u'.', 0, -2));
    }

    std::vector<SyntaxRanges::Span> colors() {
        return textView().textLayout().syntax().within({0, textView().storage().length()});
    }

    /// What a colouring of the window as it is now gives.
    std::vector<SyntaxRanges::Span> expectedColors(SyntaxLanguage language) {
        std::vector<SyntaxRanges::Span> spans;
        for (const SyntaxToken& token :
             SyntaxHighlighter::tokens(textView().storage(), language, *textView().highlightedWindow())) {
            spans.push_back({token.range, token.kind});
        }
        return spans;
    }

    bool areColorsFresh(SyntaxLanguage language) { return colors() == expectedColors(language); }

    TextRange whole() { return {0, textView().storage().length()}; }

    QImage image() { return textView().viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32); }

    /// Longer than a colouring waits.
    static void letDelaysPass() { QTest::qWait(250); }
};

/// A JSON text of at least so many units, in lines.
QString jsonLines(qsizetype length) {
    QString text = u"[\n"_s;
    while (text.size() < length) {
        text += u"  {\"nome\": \"Anna\", \"anni\": 31, \"vera\": true},\n"_s;
    }
    return text;
}

const QString shortJson = u"{\"a\": 1, \"b\": true}\n"_s;

TEST_F(EditorColoringTest, EveryFormatHasTheColoursOfItsLanguageAtOnce) {
    struct Case {
        QString name;
        QString text;
        std::optional<SyntaxLanguage> language;
    };

    for (const Case& each :
         {Case{u"N.json"_s, shortJson, SyntaxLanguage::json},
          Case{u"N.html"_s, u"<b class=\"x\">y</b>"_s, SyntaxLanguage::html},
          Case{u"N.css"_s, u"a { color: red }"_s, SyntaxLanguage::css},
          Case{u"N.js"_s, u"const a = 1"_s, SyntaxLanguage::javascript},
          Case{u"N.php"_s, u"<?php echo $a; ?>"_s, SyntaxLanguage::php}, Case{u"N.txt"_s, shortJson, std::nullopt},
          Case{u"N.md"_s, shortJson, std::nullopt}, Case{u"N.csv"_s, shortJson, std::nullopt}}) {
        openNote(each.name, each.text);
        EXPECT_EQ(textView().highlightedLanguage(), each.language) << each.name.toStdString();
        EXPECT_EQ(colors().empty(), !each.language) << each.name.toStdString();
        if (each.language) {
            EXPECT_EQ(textView().highlightedWindow(), whole());
            EXPECT_TRUE(areColorsFresh(*each.language));
        } else {
            EXPECT_EQ(textView().highlightedWindow(), std::nullopt);
        }
        ASSERT_TRUE(QFile::remove(m_directory.filePath(u"note/"_s + each.name)));
    }
}

TEST_F(EditorColoringTest, AChangeOfFormatColoursAnewOrTakesTheColoursAway) {
    openNote(u"N.json"_s, shortJson);
    m_store->changeFormat(*note(u"N"_s), NoteFormat::javascript);
    EXPECT_EQ(textView().highlightedLanguage(), SyntaxLanguage::javascript);
    EXPECT_TRUE(areColorsFresh(SyntaxLanguage::javascript));
    m_store->changeFormat(*note(u"N"_s), NoteFormat::plain);
    EXPECT_EQ(textView().highlightedLanguage(), std::nullopt);
    EXPECT_THAT(colors(), testing::IsEmpty());
    m_store->changeFormat(*note(u"N"_s), NoteFormat::json);
    EXPECT_TRUE(areColorsFresh(SyntaxLanguage::json));
}

TEST_F(EditorColoringTest, ColoursShiftWithTheTextAndAreRenewedAfterTheLastKey) {
    openNote(u"N.json"_s, shortJson);
    const std::vector<SyntaxRanges::Span> before = colors();
    QElapsedTimer sinceKey;
    QTest::keyClicks(&textView(), u"12 "_s);
    sinceKey.start();
    std::vector<SyntaxRanges::Span> shifted = before;
    for (SyntaxRanges::Span& span : shifted) {
        span.range.location += 3;
    }
    EXPECT_EQ(colors(), shifted);
    ASSERT_TRUE(QTest::qWaitFor([&] { return areColorsFresh(SyntaxLanguage::json); }));
    EXPECT_GE(sinceKey.elapsed(), 119);
    EXPECT_EQ(colors().size(), before.size() + 1) << "the number that was typed";
}

TEST_F(EditorColoringTest, EachKeyPutsOffTheColouring) {
    openNote(u"N.json"_s, shortJson);
    for (int i = 0; i < 4; ++i) {
        QTest::keyClicks(&textView(), u"1"_s);
        QTest::qWait(50);
        EXPECT_FALSE(areColorsFresh(SyntaxLanguage::json)) << "a burst of keys gives one colouring";
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return areColorsFresh(SyntaxLanguage::json); }));
}

TEST_F(EditorColoringTest, ColoursAreNoEditAndNoStepOfTheHistory) {
    openNote(u"N.json"_s, shortJson);
    const NoteItemPtr item = note(u"N"_s);
    EXPECT_FALSE(item->isDirty());
    EXPECT_FALSE(item->document()->undoManager().canUndo());
    QTest::keyClicks(&textView(), u"1"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return areColorsFresh(SyntaxLanguage::json); }));
    textView().undo();
    EXPECT_EQ(textView().storage().text(), shortJson);
    EXPECT_FALSE(item->document()->undoManager().canUndo());
    EXPECT_TRUE(QTest::qWaitFor([&] { return areColorsFresh(SyntaxLanguage::json); }));
}

TEST_F(EditorColoringTest, ColoursSurviveWrappingZoomAndTheme) {
    openNote(u"N.json"_s, jsonLines(5'000));
    const std::vector<SyntaxRanges::Span> before = colors();
    m_settings.setWrapLines(false);
    m_settings.setFontSize(20);
    m_settings.setFontStyle(EditorFontStyle::system);
    EXPECT_EQ(colors(), before);
    const auto hasStringColor = [&](bool dark) {
        const AdaptiveColor& color = Theme::syntaxColor(SyntaxTokenKind::number);
        const QRgb wanted = (dark ? color.dark : color.light).rgb();
        const QImage seen = image();
        for (int y = 0; y < seen.height(); ++y) {
            for (int x = 0; x < seen.width(); ++x) {
                if (seen.pixel(x, y) == wanted) {
                    return true;
                }
            }
        }
        return false;
    };
    textView().setPalette(lightPalette());
    EXPECT_TRUE(hasStringColor(false));
    EXPECT_FALSE(hasStringColor(true));
    textView().setPalette(darkPalette());
    EXPECT_TRUE(hasStringColor(true));
    EXPECT_FALSE(hasStringColor(false));
    EXPECT_EQ(colors(), before);
}

TEST_F(EditorColoringTest, TheWindowIsTheWholeTextUpToItsLimit) {
    openNote(u"N.json"_s, jsonLines(300'000).left(300'000));
    ASSERT_EQ(textView().storage().length(), 300'000);
    EXPECT_EQ(textView().highlightedWindow(), whole());
    EXPECT_GT(colors().back().range.end(), 299'000);
}

TEST_F(EditorColoringTest, BeyondTheLimitTheWindowIsTheVisibleTextWithItsMargins) {
    openNote(u"N.json"_s, jsonLines(300'001).left(300'001));
    ASSERT_EQ(textView().storage().length(), 300'001);
    const TextRange window = *textView().highlightedWindow();
    EXPECT_EQ(window.location, 0);
    EXPECT_GE(window.length, textView().visibleRange()->end() + 40'000);
    EXPECT_LT(window.length, textView().visibleRange()->end() + 40'000 + 100);
    EXPECT_EQ(textView().storage().unitAt(window.end() - 1), u'\n') << "whole lines";
    EXPECT_TRUE(areColorsFresh(SyntaxLanguage::json));
}

TEST_F(EditorColoringTest, AVeryLongNoteIsColouredByItsWindowWhereverItIsScrolledTo) {
    openNote(u"N.json"_s, jsonLines(1'200'000));
    const TextRange first = *textView().highlightedWindow();
    QScrollBar& bar = *textView().verticalScrollBar();
    for (const int target : {bar.maximum() / 2, bar.maximum(), bar.maximum() / 3, 0}) {
        bar.setValue(target);
        ASSERT_TRUE(QTest::qWaitFor([&] {
            const TextRange window = *textView().highlightedWindow();
            const TextRange visible = *textView().visibleRange();
            return window.location <= visible.location && window.end() >= visible.end();
        }));
        const TextRange window = *textView().highlightedWindow();
        const TextRange visible = *textView().visibleRange();
        EXPECT_NEAR(window.location, std::max<qsizetype>(0, visible.location - 40'000), 100);
        EXPECT_NEAR(window.end(), std::min(whole().end(), visible.end() + 40'000), 100);
        EXPECT_TRUE(areColorsFresh(SyntaxLanguage::json));
    }
    EXPECT_EQ(*textView().highlightedWindow(), first);
}

TEST_F(EditorColoringTest, ScrollingWithinTheWindowColoursNothingAnew) {
    openNote(u"N.json"_s, jsonLines(400'000));
    // A sign of the colouring that there was.
    textView().setHighlights(SyntaxLanguage::json, textView().highlightedWindow(), {});
    textView().verticalScrollBar()->setValue(500);
    ASSERT_LT(textView().visibleRange()->end(), textView().highlightedWindow()->end() - 20'000);
    letDelaysPass();
    EXPECT_THAT(colors(), testing::IsEmpty()) << "a window at the text's start has no edge there";
    textView().verticalScrollBar()->setValue(textView().verticalScrollBar()->maximum() / 2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !colors().empty(); }));
}

TEST_F(EditorColoringTest, ScrollingWhileAColouringIsPendingAddsNone) {
    openNote(u"N.json"_s, jsonLines(400'000));
    textView().setHighlights(SyntaxLanguage::json, textView().highlightedWindow(), {});
    QElapsedTimer sinceKey;
    QTest::keyClicks(&textView(), u" "_s);
    sinceKey.start();
    textView().verticalScrollBar()->setValue(textView().verticalScrollBar()->maximum() / 2);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !colors().empty(); }));
    EXPECT_GE(sinceKey.elapsed(), 119) << "the scroll would have been sooner";
}

TEST_F(EditorColoringTest, VisibleTextBeyondTheLimitGetsNoColoursUntilLessIsVisible) {
    m_settings.setWrapLines(false);
    m_settings.setFontSize(9);
    QString line = u"{\"a\": 1}, "_s.repeated(400) + u'\n';
    openNote(u"N.json"_s, line.repeated(300));
    m_view->resize(500, 1600);
    ASSERT_TRUE(QTest::qWaitFor([&] { return textView().viewport()->height() > 1500; }));
    textView().resetHighlightedLanguage();
    m_settings.setFontSize(10);
    EXPECT_EQ(textView().highlightedLanguage(), SyntaxLanguage::json);
    EXPECT_THAT(colors(), testing::IsEmpty());
    EXPECT_GT(textView().highlightedWindow()->length, 300'000);
    EXPECT_LT(textView().highlightedWindow()->length, whole().length);
    m_view->resize(500, 300);
    textView().verticalScrollBar()->setValue(textView().verticalScrollBar()->maximum());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !colors().empty(); }));
}

TEST_F(EditorColoringTest, ALongNoteThatHasNoRoomOnTheScreenIsNotColoured) {
    write(u"N.json"_s, jsonLines(300'001));
    m_store = std::make_unique<NotesStore>(&m_settings);
    QWidget host;
    m_view = std::make_unique<EditorView>(m_store.get(), &m_settings, m_find.get(), &host);
    m_view->resize(0, 0);
    host.show();
    select(u"N"_s);
    EXPECT_EQ(textView().visibleRange(), std::nullopt);
    EXPECT_EQ(textView().highlightedLanguage(), SyntaxLanguage::json);
    EXPECT_EQ(textView().highlightedWindow(), whole());
    EXPECT_THAT(colors(), testing::IsEmpty());
    m_view.reset();
}

TEST_F(EditorColoringTest, OneLineWithoutWrappingIsColouredAroundWhatIsSeenOfIt) {
    m_settings.setWrapLines(false);
    openNote(u"N.json"_s, u"{\"a\": 1}, "_s.repeated(100'000));
    EXPECT_FALSE(colors().empty());
    textView().horizontalScrollBar()->setValue(textView().horizontalScrollBar()->maximum() / 2);
    ASSERT_TRUE(QTest::qWaitFor([&] {
        const TextRange visible = *textView().visibleRange();
        return !textView().textLayout().syntax().within(visible).empty();
    }));
    EXPECT_LT(textView().highlightedWindow()->length, 100'000);
}

TEST_F(EditorColoringTest, ANewTextFromOutsideIsColouredAtOnce) {
    openNote(u"N.json"_s, shortJson);
    note(u"N"_s)->document()->replaceAll(u"[1, 2, 3]"_s);
    note(u"N"_s)->raiseRevision();
    EXPECT_TRUE(areColorsFresh(SyntaxLanguage::json));
    EXPECT_EQ(colors().size(), 3U);
}

TEST_F(EditorColoringTest, ARevisionThatComesWithAnotherDocumentIsAbsorbed) {
    openNote(u"N.json"_s, shortJson);
    select(u"Alfa"_s);
    note(u"N"_s)->raiseRevision();
    select(u"N"_s);
    textView().setHighlights(SyntaxLanguage::json, textView().highlightedWindow(), {});
    m_settings.setFontSize(20);
    EXPECT_THAT(colors(), testing::IsEmpty()) << "nothing is left of it to colour anew for";
}

TEST_F(EditorColoringTest, ARefreshWithoutAChangeColoursNothingAnew) {
    openNote(u"N.json"_s, shortJson);
    textView().setHighlights(SyntaxLanguage::json, textView().highlightedWindow(), {});
    m_store->resort();
    m_store->raiseEditorFocusToken();
    select(u"Alfa"_s);
    select(u"N"_s);
    EXPECT_THAT(colors(), testing::IsEmpty());
}

TEST_F(EditorColoringTest, APendingColouringNeverReachesAnotherNote) {
    openNote(u"N.json"_s, shortJson);
    write(u"O.txt"_s, shortJson);
    m_store->refreshFromDisk();
    QTest::keyClicks(&textView(), u"1"_s);
    select(u"O"_s);
    letDelaysPass();
    EXPECT_THAT(colors(), testing::IsEmpty());
    EXPECT_EQ(textView().highlightedLanguage(), std::nullopt);
    select(u"N"_s);
    EXPECT_TRUE(areColorsFresh(SyntaxLanguage::json)) << "and is made up for";
}

TEST_F(EditorColoringTest, LongNotesThatAreLoadedAreLaidOutAheadOfTime) {
    write(u"Lunga.json"_s, jsonLines(250'000));
    write(u"Quasi.txt"_s, u"x"_s.repeated(200'000));
    m_settings.setFontSize(17);
    start();
    const NoteItemPtr longNote = note(u"Lunga"_s);
    const auto view = [&] { return dynamic_cast<ZoomableTextView*>(longNote->document()->editorView.get()); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return longNote->document() && view(); }, 10'000));
    EXPECT_FALSE(view()->isVisible());
    EXPECT_EQ(view()->width(), m_view->width());
    EXPECT_EQ(longNote->document()->appliedStyle, m_settings.editorStyle());
    EXPECT_EQ(view()->textLayout().font(), textView().textLayout().font());
    EXPECT_NE(m_view->textView(), view());

    // What happens in it does not reach the store while it is not on show, and decides no format later on.
    int detections = 0;
    m_store->detectFormatOf = [&](QStringView) {
        ++detections;
        return std::optional<NoteFormat>();
    };
    view()->selectAll();
    view()->deleteSelection();
    view()->replaceText({0, 0}, u"{}"_s);
    EXPECT_FALSE(longNote->isDirty());
    QTest::keyClicks(&textView(), u"a"_s);
    EXPECT_EQ(detections, 0);

    letDelaysPass();
    ASSERT_TRUE(QTest::qWaitFor([&] { return note(u"Quasi"_s)->document() != nullptr; }));
    EXPECT_EQ(note(u"Quasi"_s)->document()->editorView.get(), nullptr);
    ZoomableTextView* const warmed = view();
    select(u"Lunga"_s);
    EXPECT_EQ(&textView(), warmed);

    // One that another program makes long is found as well, though there was nothing to lay out for a while.
    write(u"Quasi.txt"_s, u"x"_s.repeated(200'001));
    m_store->refreshFromDisk();
    EXPECT_TRUE(QTest::qWaitFor([&] { return note(u"Quasi"_s)->document()->editorView.get() != nullptr; }, 20'000));
}

} // namespace

} // namespace quillary
