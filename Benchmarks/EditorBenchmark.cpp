#include "PeerTable.h"
#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Find/TextSearch.h"
#include "QuillaryCore/Formats/SyntaxHighlighter.h"

#include <QApplication>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTextCursor>
#include <QWindow>

#include <algorithm>
#include <malloc.h>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

/// Opening, typing and scrolling in large notes to the painted screen, beside a QPlainTextEdit that does the same.

namespace {

using namespace quillary;
using namespace Qt::StringLiterals;

constexpr qsizetype largeUnits = 32 * 1024 * 1024;
constexpr qsizetype mediumUnits = 1024 * 1024;
constexpr int keys = 20;
constexpr int scrollSteps = 50;
constexpr QSize windowSize(800, 700);

QString linesOf(qsizetype units) {
    QString text;
    text.reserve(units + 64);
    for (int line = 0; text.size() < units; ++line) {
        text += u"Riga %1 di un testo come tanti, lunga poco meno di sessanta\n"_s.arg(line, 6);
    }
    text.truncate(units);
    return text;
}

QString oneLineOf(qsizetype units) {
    return linesOf(units).replace(u'\n', u' ');
}

QFont fixedFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(10);
    return font;
}

double allocatedBytes() {
    const auto information = mallinfo2();
    return static_cast<double>(information.uordblks) + static_cast<double>(information.hblkhd);
}

/// Before its window is exposed a widget paints nothing.
void expose(QWidget& view) {
    do {
        QApplication::processEvents();
    } while (!view.windowHandle()->isExposed());
    view.repaint();
}

struct OwnEditor {
    OwnEditor(const QString& text, bool wraps) : document(text), view(document) {
        view.setEditorFont(fixedFont());
        view.setWraps(wraps);
        view.resize(windowSize);
        view.show();
        expose(view);
    }

    void putCaret(double part) {
        const auto position = static_cast<qsizetype>(static_cast<double>(view.storage().length()) * part);
        view.setSelection({position, position});
        view.scrollToRange({position, 0});
    }

    NoteDocument document;
    ZoomableTextView view;
};

struct PeerEditor {
    PeerEditor(const QString& text, bool wraps) {
        view.setFont(fixedFont());
        view.setLineWrapMode(wraps ? QPlainTextEdit::WidgetWidth : QPlainTextEdit::NoWrap);
        view.resize(windowSize);
        view.setPlainText(text);
        view.show();
        expose(view);
    }

    void putCaret(double part) {
        QTextCursor cursor = view.textCursor();
        cursor.setPosition(static_cast<int>(static_cast<double>(view.document()->characterCount() - 1) * part));
        view.setTextCursor(cursor);
    }

    QPlainTextEdit view;
};

template <typename Editor>
void type(Editor& editor, int count) {
    for (int i = 0; i < count; ++i) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_X, {}, u"x"_s);
        QApplication::sendEvent(&editor.view, &press);
        editor.view.viewport()->repaint();
    }
}

template <typename Editor>
void scroll(Editor& editor) {
    QScrollBar& bar = *editor.view.verticalScrollBar();
    bar.setValue(bar.maximum() / 2);
    for (int i = 0; i < scrollSteps; ++i) {
        bar.triggerAction(QScrollBar::SliderPageStepAdd);
        editor.view.viewport()->repaint();
    }
}

template <typename Editor>
void jump(Editor& editor) {
    QScrollBar& bar = *editor.view.verticalScrollBar();
    bar.setValue(bar.maximum());
    editor.view.viewport()->repaint();
    bar.setValue(0);
    editor.view.viewport()->repaint();
}

void compareKeys(const char* task, const QString& text, bool wraps, double aim, double floor, int count = keys) {
    OwnEditor own(text, wraps);
    PeerEditor peer(text, wraps);
    own.putCaret(0.5);
    peer.putCaret(0.5);
    compareWithPeer(
        task, "QPlainTextEdit", aim, floor, [&] { type(own, count); }, [&] { type(peer, count); });
}

void measureMemory(const char* task, const QString& text) {
    const double before = allocatedBytes();
    const OwnEditor own(QString(text.constData(), text.size()), true);
    const double perUnit = (allocatedBytes() - before) / static_cast<double>(text.size());
    reportFigure(task, perUnit, "bytes a unit", 3);
}

QString jsonOf(qsizetype units) {
    QString text = u"[\n"_s;
    text.reserve(units + 128);
    for (int entry = 0; text.size() < units; ++entry) {
        text +=
            u"  {\"nome\": \"Nota numero %1\", \"valore\": %1.5, \"attiva\": true, \"altro\": null},\n"_s.arg(entry);
    }
    text.truncate(units);
    return text;
}

void measureLayers(const QString& text) {
    constexpr qsizetype colorCount = 20'000;
    constexpr qsizetype markCount = 10'000;
    OwnEditor own(text, true);
    std::vector<SyntaxRanges::Span> colors;
    for (qsizetype i = 0; i < colorCount; ++i) {
        colors.push_back({{i * 50, 8}, SyntaxTokenKind::string});
    }
    std::vector<ColorRanges::Span> marks;
    for (qsizetype i = 0; i < markCount; ++i) {
        marks.push_back({{i * 100 + 20, 5}, 0x80FFFF00});
    }
    measureAlone("20,000 colours", 10, [&] {
        own.view.textLayout().syntax().setAll(colors);
        own.view.viewport()->repaint();
    });
    measureAlone("10,000 marks", 10, [&] {
        own.view.textLayout().marks().setAll(marks);
        own.view.viewport()->repaint();
    });
}

void color(ZoomableTextView& view, SyntaxLanguage language, TextRange window) {
    std::vector<SyntaxRanges::Span> spans;
    for (const SyntaxToken& token : SyntaxHighlighter::tokens(view.storage(), language, window)) {
        spans.push_back({token.range, token.kind});
    }
    view.setHighlights(language, window, std::move(spans));
}

/// As much as one colouring may take on.
void measureColoring() {
    struct Case {
        const char* task;
        SyntaxLanguage language;
        QString text;
    };

    const QString css = u".riga { color: #1a2b3c; margin: 4px auto; }\n"_s;
    const QString script = u"function somma(a, b) { return a + b * 2; } // commento\nconst nome = \"Anna\";\n"_s;
    const QString html = u"<p class=\"riga\" id='x'>Testo &amp; <b>altro</b></p>\n"_s;
    const QString php = u"<?php $nome = 'Anna'; echo strlen($nome) + 12; ?>\n"_s;
    for (const Case& each :
         {Case{"colouring 300,000 units of JSON", SyntaxLanguage::json, jsonOf(SyntaxHighlighter::maxLength)},
          Case{"colouring 300,000 units of CSS", SyntaxLanguage::css, css},
          Case{"colouring 300,000 units of JavaScript", SyntaxLanguage::javascript, script},
          Case{"colouring 300,000 units of HTML", SyntaxLanguage::html, html},
          Case{"colouring 300,000 units of PHP", SyntaxLanguage::php, php}}) {
        QString text = each.text.repeated(1 + SyntaxHighlighter::maxLength / each.text.size());
        text.truncate(SyntaxHighlighter::maxLength);
        OwnEditor own(text, true);
        measureAlone(each.task, 40, [&] {
            color(own.view, each.language, {0, text.size()});
            own.view.viewport()->repaint();
        });
    }
}

/// The middle one and the slowest of a hundred keys, in a text that is coloured around the caret.
void measureColoredKeys(const char* task, const QString& text, bool wraps) {
    constexpr int keyCount = 200;
    OwnEditor own(text, wraps);
    own.putCaret(0.5);
    const qsizetype start = std::max<qsizetype>(0, own.view.selection().caret - SyntaxHighlighter::maxLength / 2);
    color(own.view, SyntaxLanguage::json, {start, std::min(SyntaxHighlighter::maxLength, text.size() - start)});
    own.view.viewport()->repaint();
    std::vector<double> times;
    for (int i = 0; i < keyCount; ++i) {
        times.push_back(millisecondsOf([&] { type(own, 1); }));
    }
    std::sort(times.begin(), times.end());
    const double median = times[keyCount / 2];
    const double nearlyAll = times[keyCount * 99 / 100];
    const QByteArray key = QByteArray("a key in coloured ") + task;
    reportFigure(key, median, "ms", 8);
    reportFigure(key + ", 99 of 100", nearlyAll, "ms", 16);
}

std::vector<TextReplacement> replacementsOf(const QString& text, const TextSearch& search) {
    std::vector<TextReplacement> replacements;
    for (const SearchMatch& match : search.matches(text)) {
        replacements.push_back({match.range, search.replacement(match, text, u"sostituto")});
    }
    return replacements;
}

/// As many matches as a search gives in 1 MB, all replaced in one step, with the search of the new text, and undone.
void compareReplaceAll(const QString& text) {
    OwnEditor own(text, true);
    PeerEditor peer(text, true);
    const auto search = TextSearch::make(u"come"_s, {});
    const auto replaceAll = [&] {
        own.view.replaceTexts(replacementsOf(own.view.storage().text(), *search));
        std::vector<TextRange> marks;
        for (const SearchMatch& match : search->matches(own.view.storage().text())) {
            marks.push_back(match.range);
        }
        own.view.setFindHighlights(marks, std::nullopt);
        own.view.viewport()->repaint();
    };
    const auto replaceAllByPeer = [&] {
        const std::vector<TextReplacement> replacements = replacementsOf(peer.view.toPlainText(), *search);
        QTextCursor cursor(peer.view.document());
        cursor.beginEditBlock();
        std::for_each(replacements.rbegin(), replacements.rend(), [&](const TextReplacement& each) {
            cursor.setPosition(static_cast<int>(each.range.location));
            cursor.setPosition(static_cast<int>(each.range.end()), QTextCursor::KeepAnchor);
            cursor.insertText(each.text);
        });
        cursor.endEditBlock();
        peer.view.viewport()->repaint();
    };
    Milliseconds replaced;
    Milliseconds undone;
    for (int round = 0; round < 7; ++round) {
        replaced.own = std::min(replaced.own, millisecondsOf(replaceAll));
        replaced.peer = std::min(replaced.peer, millisecondsOf(replaceAllByPeer));
        undone.own = std::min(undone.own, millisecondsOf([&] {
                                  own.view.undo();
                                  own.view.viewport()->repaint();
                              }));
        undone.peer = std::min(undone.peer, millisecondsOf([&] {
                                   peer.view.undo();
                                   peer.view.viewport()->repaint();
                               }));
    }
    for (const auto& [task, best] : {std::pair("10,000 replaced in 1 MB of lines", replaced), {"undone", undone}}) {
        reportRatio(task, best.own, "ms", "QPlainTextEdit", best.peer, 1.0, unbounded);
        reportFigure(task, best.own, "ms", 300);
    }
}

/// Two notes that were both on show before, one in the place of the other.
void measureSwitching(const QString& medium, const QString& large) {
    QStackedWidget host;
    NoteDocument first(medium);
    NoteDocument second(large);
    for (NoteDocument* document : {&first, &second}) {
        auto* view = new ZoomableTextView(*document);
        view->setEditorFont(fixedFont());
        host.addWidget(view);
    }
    host.resize(windowSize);
    host.show();
    expose(host);
    const auto show = [&](int index) {
        host.setCurrentIndex(index);
        host.currentWidget()->resize(host.size());
        host.repaint();
    };
    show(1);
    show(0);
    measureAlone("to a note of 32 MB that was on show", 8, [&] { show(1); });
    measureAlone("there and back to one of 1 MB", 16, [&] {
        show(0);
        show(1);
    });
}

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    // What the platform loads for the first text is nobody's cost.
    { const PeerEditor warmUp(linesOf(1000), true); }

    const QString lines = linesOf(largeUnits);
    const QString line = oneLineOf(largeUnits);
    const QString mediumLines = linesOf(mediumUnits);
    const QString mediumLine = oneLineOf(mediumUnits);

    compareWithPeer(
        "open 32 MB of lines", "QPlainTextEdit", 0.1, 0.3, [&] { const OwnEditor own(lines, true); },
        [&] { const PeerEditor peer(lines, true); });
    measureAlone("open 32 MB in one line", 300, [&] { const OwnEditor own(line, true); });
    measureAlone("open 32 MB in one line, unwrapped", 300, [&] { const OwnEditor own(line, false); });
    measureMemory("memory of 32 MB of lines", lines);
    measureMemory("memory of 32 MB in one line", line);

    compareKeys("20 keys in 1 MB of lines", mediumLines, true, 1, 2);
    compareKeys("20 keys in 1 MB of lines, unwrapped", mediumLines, false, 1, 2);
    compareKeys("1 key in one line of 1 MB", mediumLine, true, 0.02, 0.1, 1);
    compareKeys("1 key in one line of 1 MB, unwrapped", mediumLine, false, 0.02, 0.1, 1);
    {
        OwnEditor own(lines, true);
        PeerEditor peer(lines, true);
        own.putCaret(0.5);
        peer.putCaret(0.5);
        compareWithPeer(
            "20 keys in 32 MB of lines", "QPlainTextEdit", 1, 2, [&] { type(own, keys); }, [&] { type(peer, keys); });
        compareWithPeer(
            "50 pages of 32 MB of lines", "QPlainTextEdit", 1, 2, [&] { scroll(own); }, [&] { scroll(peer); });
        compareWithPeer(
            "to the end of 32 MB of lines and back", "QPlainTextEdit", 1, 2, [&] { jump(own); }, [&] { jump(peer); });
    }
    for (const bool wraps : {true, false}) {
        OwnEditor own(line, wraps);
        own.putCaret(0.5);
        measureAlone(wraps ? "1 key in one line of 32 MB" : "1 key in one line of 32 MB, unwrapped", 16,
                     [&] { type(own, 1); });
        measureAlone(wraps ? "50 pages of one line of 32 MB" : "50 paints of one line of 32 MB", 50 * 16,
                     [&] { scroll(own); });
    }
    compareReplaceAll(mediumLines);
    measureLayers(mediumLines);
    measureColoring();
    measureColoredKeys("1 MB of JSON", jsonOf(mediumUnits), true);
    measureColoredKeys("32 MB of JSON", jsonOf(largeUnits), true);
    measureColoredKeys("one line of 1 MB of JSON", jsonOf(mediumUnits).replace(u'\n', u' '), false);
    measureSwitching(jsonOf(mediumUnits), lines);
    return 0;
}
