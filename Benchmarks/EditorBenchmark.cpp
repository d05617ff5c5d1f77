#include "PeerTable.h"
#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/State/NoteDocument.h"

#include <QApplication>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QWindow>

#include <malloc.h>
#include <memory>

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

/// What has no peer that ends in reasonable time.
template <typename Work>
void measureAlone(const char* task, double limit, Work&& work) {
    double best = std::numeric_limits<double>::infinity();
    for (int round = 0; round < 7; ++round) {
        best = std::min(best, millisecondsOf(work));
    }
    std::printf("%-44s %9.2f ms   (limit %.0f ms)%s\n", task, best, limit, best > limit ? "  OVER THE LIMIT" : "");
    std::fflush(stdout);
}

void measureMemory(const char* task, const QString& text) {
    const double before = allocatedBytes();
    const OwnEditor own(QString(text.constData(), text.size()), true);
    const double perUnit = (allocatedBytes() - before) / static_cast<double>(text.size());
    std::printf("%-44s %9.2f bytes a unit (limit 3)%s\n", task, perUnit, perUnit > 3 ? "  OVER THE LIMIT" : "");
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
    {
        OwnEditor own(mediumLines, true);
        auto& syntax = own.view.textLayout().layer(TextLayout::Layer::syntax);
        auto& marks = own.view.textLayout().layer(TextLayout::Layer::marks);
        measureAlone("20,000 colours and 10,000 marks", 20, [&] {
            syntax.clear();
            marks.clear();
            for (qsizetype i = 0; i < 20'000; ++i) {
                syntax.add({i * 50, 8}, 0xFF0000FF);
            }
            for (qsizetype i = 0; i < 10'000; ++i) {
                marks.add({i * 100 + 20, 5}, 0xFFFFFF00);
            }
            own.view.viewport()->repaint();
        });
    }
    return 0;
}
