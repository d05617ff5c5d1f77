#include "PeerTable.h"
#include "Quillary/Previews/CSVPreview.h"
#include "Quillary/Previews/JSONPreview.h"
#include "Quillary/Previews/JSONRowsView.h"
#include "Quillary/Previews/MarkdownPreview.h"
#include "Quillary/Theme/Style.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBrowser>
#include <QWindow>

#include <algorithm>
#include <array>
#include <cstdio>
#include <malloc.h>
#include <memory>

/// Notes at the limit of 1,000,000 units as previews: from the text to the painted screen, a page further, and their
/// memory; Markdown beside a QTextBrowser that does the same.

namespace {

using namespace quillary;
using namespace Qt::StringLiterals;

constexpr qsizetype units = 1'000'000;
constexpr double baseSize = 13;
constexpr QSize windowSize(800, 700);
constexpr int pages = 50;

QString filled(const QString& part) {
    return part.repeated(units / part.size() + 1).first(units);
}

QString richMarkdown() {
    return filled(
        u"## Titolo di una parte\n\nUn capoverso con **grassetto**, *corsivo*, `codice` e un [link](altra.md), "
        "lungo come tanti e quindi su più righe.\n\n- voce\n- [x] fatta\n  - dentro\n\n> citazione\n\n"
        "| a | b |\n|---|--:|\n| uno | 1 |\n| due | 2 |\n\n```js\nconst a = 1; // nota\nreturn a + \"b\";\n```\n\n"_s);
}

QString recordsOfJSON() {
    QString text = u"["_s;
    while (text.size() < units - 100) {
        text += u"{\"id\":%1,\"nome\":\"Nome di qualcuno\",\"attivo\":true,\"tags\":[\"a\",\"b\"]},"_s.arg(text.size());
    }
    return text + u"null]"_s;
}

QString numbersOfJSON() {
    return u'[' + QString(u"1,"_s).repeated(units / 2 - 2) + u"1]";
}

QString smallArraysOfJSON() {
    return u'[' + QString(u"[1],"_s).repeated(units / 4 - 1) + u"1]";
}

QString deepArraysOfJSON() {
    constexpr int depth = 99;
    const QString deep = QString(depth, u'[') + QString(depth, u']') + u',';
    return u'[' + deep.repeated(units / deep.size()) + u"1]";
}

QString recordsOfCSV() {
    QString text = u"id,nome,città,importo\n"_s;
    while (text.size() < units - 60) {
        text += u"%1,Nome di qualcuno,\"Città, provincia\",1234.50\n"_s.arg(text.size());
    }
    return text;
}

/// Whether the command line asks for this task, by a part of its name; it may ask for nothing.
bool isWanted(const char* task) {
    const QStringList arguments = QApplication::arguments();
    return arguments.size() < 2 || QLatin1StringView(task).contains(arguments.at(1));
}

double allocatedBytes() {
    const auto information = mallinfo2();
    return static_cast<double>(information.uordblks) + static_cast<double>(information.hblkhd);
}

/// Before its window is exposed a widget paints nothing.
void expose(QWidget& view) {
    view.resize(windowSize);
    view.show();
    do {
        QApplication::processEvents();
    } while (!view.windowHandle()->isExposed());
    view.repaint();
}

/// A window as the detail pane is one, into which previews are put.
struct Window : QWidget {
    Window() { expose(*this); }

    template <typename View>
    void put(View& view) {
        view.setParent(this);
        view.setGeometry(rect());
        view.show();
        QApplication::sendPostedEvents();
        view.repaint();
    }
};

template <typename Work>
void measure(const QByteArray& task, double limit, Work&& work) {
    double best = std::numeric_limits<double>::infinity();
    constexpr int rounds = 7;
    for (int round = 0; round < rounds; ++round) {
        best = std::min(best, work());
    }
    reportFigure(task, best, "ms", limit);
}

void printMemory(const QByteArray& task, double before, const QString& text) {
    const double share = (allocatedBytes() - before) / static_cast<double>(text.size()) / sizeof(QChar);
    reportFigure(task, share, "times the text", 10);
}

template <typename View, typename... Arguments>
void measurePreview(const char* name, Window& window, const QString& text, Arguments... arguments) {
    if (!isWanted(name)) {
        return;
    }
    const QByteArray toggle = QByteArray(name).append(", from text to screen");
    measure(toggle, 150, [&] {
        std::unique_ptr<View> view;
        const double time = millisecondsOf([&] {
            view = std::make_unique<View>(text, baseSize, arguments...);
            window.put(*view);
        });
        return time;
    });
    // What two screens show, the first and the last, costs the same for every text, and is many times a small one.
    if (text.size() < units / 10) {
        return;
    }
    const double before = allocatedBytes();
    auto view = std::make_unique<View>(text, baseSize, arguments...);
    window.put(*view);
    printMemory(QByteArray(name).append(", memory"), before, text);
}

/// What a page takes, in milliseconds.
struct PageTime {
    /// From the key to the screen.
    double frame = std::numeric_limits<double>::infinity();
    /// The longest that the view holds the thread at a time to prepare for the next page.
    double step = std::numeric_limits<double>::infinity();
};

/// Lets the view come to rest, as it does between two keys. Gives the longest time that nothing else could be done.
double longestStepUntilAtRest() {
    double longest = 0;
    for (bool isBusy = true; isBusy;) {
        const double time = millisecondsOf(
            [&] { isBusy = QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents); });
        longest = std::max(longest, time);
    }
    return longest;
}

/// What is between two pages: the second may come as soon as the first is painted, or when the view has come to rest.
enum class Between : quint8 { nothing, rest };

/// What several pages take, each scrolled to and painted.
std::array<PageTime, pages> pageTimes(QAbstractScrollArea& view, int first, Between between) {
    QScrollBar& bar = *view.verticalScrollBar();
    const auto longestStep = [between] { return between == Between::rest ? longestStepUntilAtRest() : 0; };
    bar.setValue(first);
    view.viewport()->repaint();
    longestStep();
    std::array<PageTime, pages> times;
    for (PageTime& time : times) {
        time.frame = millisecondsOf([&] {
            bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
            view.viewport()->repaint();
        });
        time.step = longestStep();
    }
    return times;
}

double slowestPage(QAbstractScrollArea& view, int first) {
    return std::ranges::max(pageTimes(view, first, Between::rest), {}, &PageTime::frame).frame;
}

/// The pages of three stretches of a text. Each round has a view of its own, in which nothing is laid out before; a
/// page takes what it took in its best round, since what disturbs the machine hits another page each time.
PageTime slowestOfText(Window& window, const QString& text, Between between) {
    constexpr int rounds = 5;
    PageTime slowest{0, 0};
    for (const int quarter : {1, 2, 3}) {
        std::array<PageTime, pages> best;
        for (int round = 0; round < rounds; ++round) {
            MarkdownPreview view(text, baseSize, {});
            window.put(view);
            const auto times = pageTimes(view, view.verticalScrollBar()->maximum() / 4 * quarter, between);
            std::ranges::transform(best, times, best.begin(), [](const PageTime& a, const PageTime& b) {
                return PageTime{std::min(a.frame, b.frame), std::min(a.step, b.step)};
            });
        }
        for (const PageTime& time : best) {
            slowest.frame = std::max(slowest.frame, time.frame);
            slowest.step = std::max(slowest.step, time.step);
        }
    }
    return slowest;
}

void measureScrolling(const char* name, Window& window, const QString& text) {
    if (!isWanted(name)) {
        return;
    }
    const PageTime prepared = slowestOfText(window, text, Between::rest);
    reportFigure(QByteArray(name).append(", slowest of 150 pages"), prepared.frame, "ms", 8);
    reportFigure(QByteArray(name).append(", longest step between pages"), prepared.step, "ms", 8);
    // Nobody turns pages without a rest; if somebody did, each would keep up with a display of 60 frames a second.
    const PageTime unprepared = slowestOfText(window, text, Between::nothing);
    reportFigure(QByteArray(name).append(", slowest page without a rest"), unprepared.frame, "ms", 16);
}

/// Notes that are nothing but blocks of a few units, of which a preview has to keep the most.
void measureSmallBlocks(Window& window) {
    QList<std::pair<QByteArray, QString>> texts;
    for (const auto& [name, part] : {std::pair("paragraphs of one letter", u"a\n\n"_s),
                                     std::pair("headings of one letter", u"# a\n"_s),
                                     std::pair("headings without text", u"#\n"_s),
                                     std::pair("rules", u"---\n"_s),
                                     std::pair("items of one letter", u"- a\n"_s),
                                     std::pair("items without text", u"-\n"_s),
                                     std::pair("numbered items of one letter", u"1. a\n"_s),
                                     std::pair("numbered items without text", u"1.\n"_s),
                                     std::pair("tasks", u"- [ ] a\n"_s),
                                     std::pair("items and headings by turns", u"-\n#\n"_s),
                                     std::pair("lists of both kinds by turns", u"-\n1.\n"_s),
                                     std::pair("quotes of one letter", u">a\n\n"_s),
                                     std::pair("quotes and items by turns", u">a\n-\n"_s),
                                     std::pair("items within items", u"* - "_s),
                                     std::pair("numbered items in each other", u"1. "_s),
                                     std::pair("quotes and items in each other", u"> - "_s),
                                     std::pair("code blocks without code", u"~~~a\n~~~\n"_s),
                                     std::pair("tables of one cell", u"|\n|-\n\n"_s),
                                     std::pair("code spans of one letter", u"`a`b"_s),
                                     std::pair("links of one letter", u"[a](b)"_s)}) {
        texts.emplaceBack(name, filled(part));
    }
    texts.emplaceBack("a table of empty rows", u"|a|\n|-|\n"_s + filled(u"|\n"_s));
    texts.emplaceBack("a table of rows of one letter", u"|a|\n|-|\n"_s + filled(u"|a\n"_s));
    constexpr qsizetype columns = 100'000;
    texts.emplaceBack("a table of 100,000 columns and rows", u'|' + QString(u"a|"_s).repeated(columns) + u"\n|" +
                                                                 QString(u"-|"_s).repeated(columns) + u'\n' +
                                                                 QString(u"b|\n"_s).repeated(columns));
    for (const auto& [name, text] : texts) {
        measurePreview<MarkdownPreview>(QByteArray("Markdown, ").append(name).constData(), window, text,
                                        MarkdownPreview::OpenLink());
    }
    if (const char* const name = "Markdown, the last of 250,000 anchors"; isWanted(name)) {
        MarkdownPreview view(filled(u"# a\n"_s), baseSize, {});
        window.put(view);
        measure(name, 100, [&] { return millisecondsOf([&] { keep(view.followLink(u"#a-249999"_s)); }); });
    }
}

/// Lines of tables whose cells are long or full of marks.
void measureLargeCells(Window& window) {
    const QString head = u"|a|b|\n|-|-|\n|"_s;
    const QString sixty = u'|' + QString(u"a|"_s).repeated(60) + u"\n|" + QString(u"-|"_s).repeated(60) + u"\n|";
    const QString words = filled(u"parola "_s).first(16'000) + u'|';
    const QList<std::pair<const char*, QString>> cases = {
        {"Markdown, a cell of code spans", head + filled(u"`a`b "_s)},
        {"Markdown, a cell of 12,000 units of marks", head + filled(u"*a*b "_s).first(12'000)},
        {"Markdown, a cell of marks without end", head + filled(u"*a_[b`"_s)},
        {"Markdown, a cell of one word", head + QString(units, u'x')},
        {"Markdown, sixty cells of 16,000 units in a line", sixty + words.repeated(60)},
    };
    for (const auto& [name, text] : cases) {
        measurePreview<MarkdownPreview>(name, window, text, MarkdownPreview::OpenLink());
        measureScrolling(name, window, text);
    }
}

void measureMarkdown(Window& window) {
    struct Case {
        const char* name;
        QString text;
    };

    const QList<Case> cases = {
        {"Markdown of all blocks", richMarkdown()},
        {"Markdown, a list of 50,000 items", filled(u"- voce come tante\n"_s)},
        {"Markdown, a table of 20,000 rows", u"|nome|cognome|città|note|\n|-|-|-|-|\n"_s +
                                                 filled(u"|Ada|Lovelace|Londra|prima programmatrice e altro|\n"_s)},
        {"Markdown, quotes 100,000 deep", QString(100'000, u'>') + u" a"},
        {"Markdown, one paragraph", filled(u"parola "_s)},
        {"Markdown, one word", QString(units, u'x')},
        {"Markdown, one block of JavaScript",
         u"```js\n"_s + filled(u"const somma = (a, b) => a + b; // commento\n"_s).first(280'000)},
        {"Markdown, marks without end", filled(u"*a_[b`"_s)},
    };
    for (const Case& each : cases) {
        measurePreview<MarkdownPreview>(each.name, window, each.text, MarkdownPreview::OpenLink());
        measureScrolling(each.name, window, each.text);
    }
}

void measureJSON(Window& window) {
    const std::function<void(const QString&)> ignore = [](const QString&) {};
    for (const auto& [name, text] :
         {std::pair("JSON, records", recordsOfJSON()), std::pair("JSON, half a million numbers", numbersOfJSON()),
          std::pair("JSON, small arrays", smallArraysOfJSON()), std::pair("JSON, deep arrays", deepArraysOfJSON())}) {
        if (!isWanted(name)) {
            continue;
        }
        measurePreview<JSONPreview>(name, window, text, ignore);
        const double before = allocatedBytes();
        JSONPreview view(text, baseSize, ignore);
        window.put(view);
        const QList<QPushButton*> buttons = view.findChildren<QPushButton*>();
        measure(QByteArray(name).append(", \"Comprimi\" and \"Espandi tutto\""), 100, [&] {
            return millisecondsOf([&] {
                buttons.at(2)->click();
                QApplication::sendPostedEvents();
                view.repaint();
                buttons.at(1)->click();
                QApplication::sendPostedEvents();
                view.findChild<JSONRowsView*>()->viewport()->repaint();
            });
        });
        printMemory(QByteArray(name).append(", memory with all open"), before, text);
        measure(QByteArray(name).append(", slowest of 50 pages"), 8,
                [&] { return slowestPage(*view.findChild<JSONRowsView*>(), 1000); });
    }
}

void measureCSV(Window& window) {
    for (const auto& [name, text] :
         {std::pair("CSV, records", recordsOfCSV()), std::pair("CSV, one cell a row", filled(u"x\n"_s)),
          std::pair("CSV, one row", filled(u"abcdefgh,"_s))}) {
        if (!isWanted(name)) {
            continue;
        }
        measurePreview<CSVPreview>(name, window, text);
        CSVPreview view(text, baseSize);
        window.put(view);
        measure(QByteArray(name).append(", slowest of 50 pages"), 8,
                [&] { return slowestPage(*view.findChild<QAbstractScrollArea*>(), 1000); });
    }
}

void compareMarkdown(Window& window) {
    if (!isWanted("Markdown of 200,000 units")) {
        return;
    }
    // The peer takes more than a minute for a whole million units.
    const QString text = richMarkdown().first(units / 5);
    compareWithPeer(
        "Markdown of 200,000 units, from text to screen", "QTextBrowser::setMarkdown", 0.02, 0.2,
        [&] {
            MarkdownPreview view(text, baseSize, {});
            window.put(view);
        },
        [&] {
            QTextBrowser view;
            view.setMarkdown(text);
            window.put(view);
        });
    MarkdownPreview own(text, baseSize, {});
    QTextBrowser peer;
    peer.setMarkdown(text);
    window.put(own);
    window.put(peer);
    compareWithPeer(
        "Markdown of 200,000 units, 50 pages", "QTextBrowser", 1, 2, [&] { keep(slowestPage(own, 0)); },
        [&] { keep(slowestPage(peer, 0)); });
    compareWithPeer(
        "Markdown of 200,000 units, another width", "QTextBrowser", 0.02, 0.2,
        [&] {
            own.resize(500, 700);
            own.viewport()->repaint();
            own.resize(windowSize);
            own.viewport()->repaint();
        },
        [&] {
            peer.resize(500, 700);
            peer.viewport()->repaint();
            peer.resize(windowSize);
            peer.viewport()->repaint();
        });
}

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    QApplication::setStyle(new Style);
    Window window;
    measureMarkdown(window);
    measureSmallBlocks(window);
    measureLargeCells(window);
    measureJSON(window);
    measureCSV(window);
    compareMarkdown(window);
    return 0;
}
