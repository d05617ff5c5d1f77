// The rows of a comparison of 200,000 lines on the screen, in two halves and in one column: opening once the result
// stands, a frame of scrolling, the change to the other mode and the way to the next change, each beside what a
// QListView with rows of one height takes for as many strings. Times are of the process, drawing included, on the
// offscreen platform.

#include "PeerTable.h"
#include "Quillary/Comparison/DiffList.h"
#include "Quillary/Comparison/OverviewRuler.h"
#include "Quillary/Theme/Style.h"
#include "QuillaryCore/Compare/TextDiff.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QListView>
#include <QScrollBar>
#include <QStringListModel>

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

/// The peer: strings of the same number, in rows of one height.
struct StringList {
    StringList() {
        QStringList strings;
        for (int i = 0; i < lineCount; ++i) {
            strings.append(u"riga %1"_s.arg(i));
        }
        model.setStringList(strings);
        view.setUniformItemSizes(true);
        view.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
        view.setModel(&model);
        showAt(view);
    }

    QStringListModel model;
    QListView view;
};

void scroll(QAbstractScrollArea& area) {
    QScrollBar& bar = *area.verticalScrollBar();
    for (int frame = 0; frame < frames; ++frame) {
        // A page and a bit: nothing of the last frame can be kept.
        bar.setValue((bar.value() + area.viewport()->height() + 37) % std::max(1, bar.maximum()));
        settle();
    }
}

void measure(const TextDiffResult& result, DiffMode mode, StringList& peer) {
    std::printf("%s\n", mode == DiffMode::sideBySide ? "Two halves" : "One column");
    compareWithPeer(
        "  opening once the result stands (100 ms)", "QListView over QStringListModel", 1.0, 3.0,
        [&] { const Rows opened(result, mode); }, [] { const StringList opened; });
    Rows rows(result, mode);
    compareWithPeer(
        "  100 frames by a page, folded (8 ms each)", "QListView, 100 frames", 2.0, 5.0, [&] { scroll(*rows.list); },
        [&] { scroll(peer.view); });
    std::printf("  100 times the next change: %.2f ms\n", millisecondsOf([&] {
                    for (int i = 0; i < frames; ++i) {
                        rows.list->goToChange(1);
                        settle();
                    }
                }));
    std::printf("  all lines: %.2f ms\n", millisecondsOf([&] {
                    rows.list->setShowsAllLines(true);
                    settle();
                }));
    compareWithPeer(
        "  100 frames by a page, all lines (8 ms each)", "QListView, 100 frames", 2.0, 5.0, [&] { scroll(*rows.list); },
        [&] { scroll(peer.view); });
    std::printf("  the other mode: %.2f ms\n", millisecondsOf([&] {
                    rows.list->setMode(mode == DiffMode::sideBySide ? DiffMode::unified : DiffMode::sideBySide);
                    settle();
                }));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setStyle(new Style);
    StringList peer;
    const QString before = text(lineCount + 1);
    for (const int changedEach : {2000, 1}) {
        const TextDiffResult result = TextDiff::compare(before, text(changedEach));
        std::printf("%d of %lld rows changed\n", int(result.stats.changed), static_cast<long long>(result.rows.size()));
        measure(result, DiffMode::sideBySide, peer);
        measure(result, DiffMode::unified, peer);
    }
    return 0;
}
