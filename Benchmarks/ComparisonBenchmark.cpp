// The rows of a comparison of 200,000 lines on the screen, in two halves and in one column: opening once the result
// stands, frames of scrolling, all lines, the other mode and the way to the next change. Times are of the process,
// drawing included, on the offscreen platform.

#include "PeerTable.h"
#include "Quillary/Comparison/DiffList.h"
#include "Quillary/Comparison/OverviewRuler.h"
#include "Quillary/Theme/Style.h"
#include "QuillaryCore/Compare/TextDiff.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QScrollBar>

#include <algorithm>
#include <random>

namespace {

using namespace quillary;
using namespace Qt::StringLiterals;

constexpr int lineCount = 200'000;
constexpr int frames = 100;
constexpr QSize viewSize(900, 700);

/// Lines of a few words; every `changedEach`-th differs in one of them.
QString text(int changedEach) {
    std::mt19937 random(1);
    QString result;
    for (int line = 0; line < lineCount; ++line) {
        result += u"riga %1"_s.arg(line);
        for (std::size_t word = 2 + random() % 12; word > 0; --word) {
            result += QStringView(u" parola").left(2 + qsizetype(random() % 6));
        }
        result += line % changedEach == 0 ? u" cambiata\n"_s : u" com'era\n"_s;
    }
    return result;
}

/// Everything that is due, drawing included.
void settle() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

void showAt(QWidget& widget) {
    widget.resize(viewSize);
    widget.show();
    settle();
}

/// The list and the ruler beside it.
struct Rows {
    Rows(const TextDiffResult& result, DiffMode mode) {
        auto* const layout = new QHBoxLayout(&window);
        layout->addWidget(list, 1);
        layout->addWidget(ruler);
        list->setMode(mode);
        // As in the program, where the pane is on show before the result comes.
        showAt(window);
        list->setRows(result.rows);
        ruler->setLineHeight(list->metrics().pitch);
        ruler->setRows(result.rows);
        settle();
    }

    QWidget window;
    DiffList* list = new DiffList(&window);
    OverviewRuler* ruler = new OverviewRuler(&window);
};

void scroll(DiffList& list) {
    QScrollBar& bar = *list.verticalScrollBar();
    for (int frame = 0; frame < frames; ++frame) {
        // A page and a bit: nothing of the last frame can be kept.
        bar.setValue((bar.value() + list.viewport()->height() + 37) % std::max(1, bar.maximum()));
        settle();
    }
}

void goThroughChanges(DiffList& list) {
    list.setCurrentItem(0);
    for (int change = 0; change < frames; ++change) {
        list.goToChange(1);
        settle();
    }
}

void measure(const TextDiffResult& result, DiffMode mode) {
    const auto named = [&](const char* task) -> QByteArray {
        return QByteArray::number(result.stats.changed) + " changes in " +
               (mode == DiffMode::sideBySide ? "two halves: " : "one column: ") + QByteArray(task);
    };
    constexpr double opening = 100;
    constexpr double frame = 8;
    measureAlone(named("opening").constData(), opening, [&] { const Rows opened(result, mode); });
    Rows rows(result, mode);
    DiffList& list = *rows.list;
    measureAlone(named("100 frames").constData(), frames * frame, [&list] { scroll(list); });
    measureAlone(named("100 changes").constData(), frames * frame, [&list] { goThroughChanges(list); });
    measureAlone(named("all lines and back").constData(), 2 * opening, [&list] {
        for (const bool showsAll : {true, false}) {
            list.setShowsAllLines(showsAll);
            settle();
        }
    });
    list.setShowsAllLines(true);
    measureAlone(named("100 frames of all lines").constData(), frames * frame, [&list] { scroll(list); });
    measureAlone(named("the other mode and back").constData(), 2 * opening, [&list, mode] {
        for (const DiffMode each : {DiffMode::sideBySide, DiffMode::unified, mode}) {
            list.setMode(each);
            settle();
        }
    });
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setStyle(new Style);
    const QString before = text(lineCount + 1);
    for (const int changedEach : {2000, 1}) {
        const TextDiffResult result = TextDiff::compare(before, text(changedEach));
        measure(result, DiffMode::sideBySide);
        measure(result, DiffMode::unified);
    }
    return 0;
}
