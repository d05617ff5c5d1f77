#include "Quillary/Previews/MarkdownPreview.h"
#include "Quillary/Theme/Palettes.h"

#include <QApplication>
#include <QImage>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

using namespace quillary;
using namespace Qt::StringLiterals;

/// Tables that are wider than the page, of which only the cells in view are laid out.

namespace {

using CellText = std::function<QString(int)>;

/// A table with a header and a line, or two.
QString wideTable(int columns, const CellText& header, const CellText& cell) {
    const auto line = [columns](const CellText& text) -> QString {
        QString whole = u"|"_s;
        for (int column = 0; column < columns; ++column) {
            whole += text(column) + u'|';
        }
        return whole + u'\n';
    };
    const CellText separator = [](int) { return u"-"_s; };
    return line(header) + line(separator) + line(cell);
}

CellText always(const QString& text) {
    return [text](int) { return text; };
}

class WideTable {
public:
    explicit WideTable(const QString& text, QSize size = {600, 900})
        : view(text, 13, [this](const QString& url) {
              opened.append(url);
              return true;
          }) {
        view.setPalette(lightPalette());
        view.resize(size);
        view.show();
        if (!QTest::qWaitForWindowExposed(&view)) {
            ADD_FAILURE() << "the view is not exposed";
        }
    }

    /// Turns the wheel over a row, the content moving to the left by so many pixels.
    void scrollRight(qsizetype row, int distance) {
        const QPointF place(view.contentRect(row).left() + 20, view.contentRect(row).top() + 8);
        QWheelEvent event(place, view.viewport()->mapToGlobal(place), {}, {-2 * distance, 0}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &event);
    }

    /// Where the cells of a row begin in its text.
    std::vector<qsizetype> cellsOf(qsizetype row) const {
        const QString text = view.rowText(row);
        std::vector<qsizetype> starts = {0};
        for (qsizetype tab = text.indexOf(u'\t'); tab >= 0; tab = text.indexOf(u'\t', tab + 1)) {
            starts.push_back(tab + 1);
        }
        return starts;
    }

    QImage painted() { return view.viewport()->grab().toImage(); }

    /// How many pixels of a column of the image, beginning at a place, have another colour than the ground.
    int inkIn(const QRectF& rect) {
        const QImage image = painted();
        const QRect part = rect.toAlignedRect().intersected(image.rect());
        int count = 0;
        for (int y = part.top(); y <= part.bottom(); ++y) {
            for (int x = part.left(); x <= part.right(); ++x) {
                count += image.pixelColor(x, y).lightness() < 128 ? 1 : 0;
            }
        }
        return count;
    }

    QStringList opened;
    MarkdownPreview view;
};

} // namespace

TEST(MarkdownTablePreview, ARowIsAsHighAsItsHighestCellWhereverThatIs) {
    const QStringList texts = {u"breve"_s,
                               u"**parole in grassetto** e altre, più di quante ne stanno in una riga"_s,
                               u"`codice` e *corsivo*, e poi un [link](altra.md) lungo abbastanza"_s,
                               u"precipitevolissimevolmente-e-ancora-precipitevolissimevolmente"_s,
                               u"العربية من اليمين إلى اليسار في خلية ضيقة"_s,
                               u"漢字かな交じり文を狭いセルに入れると折り返す"_s,
                               QString(u"una cella di molte parole "_s).repeated(6)};
    constexpr int columns = 40;
    for (qsizetype highest = 0; highest < texts.size(); ++highest) {
        for (const int place : {0, 3, 20, columns - 1}) {
            const WideTable table(wideTable(columns, always(u"titolo"_s),
                                            [&](int column) { return column == place ? texts[highest] : u"x"_s; }));
            const QRectF content = table.view.contentRect(1);
            double bottom = 0;
            for (const qsizetype start : table.cellsOf(1)) {
                const QString rest = table.view.rowText(1).sliced(start);
                const qsizetype length = rest.indexOf(u'\t') < 0 ? rest.size() : rest.indexOf(u'\t');
                bottom = std::max(bottom, table.view.rectOf({1, start + std::max<qsizetype>(length - 1, 0)}).bottom());
            }
            const double below = MarkdownStyle::cellPaddingAlong + MarkdownStyle::hairline;
            EXPECT_NEAR(content.bottom() - bottom, below, 1.5) << texts[highest].toStdString() << " at " << place;
        }
    }
}

TEST(MarkdownTablePreview, NothingMovesUpOrDownWhileATableScrollsSideways) {
    WideTable table(
        wideTable(40, always(u"titolo"_s),
                  [](int column) { return QString(u"cella **%1** "_s.arg(column)).repeated(column % 7 + 1); }) +
        u"\ndopo"_s);
    const double below = table.view.contentRect(2).top();
    const double height = table.view.contentRect(1).height();
    for (int step = 0; step < 40; ++step) {
        table.scrollRight(1, 100);
        table.painted();
        ASSERT_EQ(table.view.contentRect(1).height(), height) << step;
        ASSERT_EQ(table.view.contentRect(2).top(), below) << step;
    }
}

TEST(MarkdownTablePreview, CellsThatComeIntoViewAreDrawn) {
    WideTable table(wideTable(30, always(u"titolo"_s), always(u"MMMMMMMM"_s)));
    const QRectF content = table.view.contentRect(1);
    for (int step = 0; step < 30; ++step) {
        for (const double part : {0.0, 0.25, 0.5, 0.75}) {
            const QRectF stretch(content.left() + part * content.width(), content.top(), content.width() / 4,
                                 content.height());
            ASSERT_GT(table.inkIn(stretch), 100) << step << ' ' << part;
        }
        table.scrollRight(1, 97);
    }
}

TEST(MarkdownTablePreview, WhatIsOutOfViewIsCopiedAndFound) {
    WideTable table(wideTable(40, always(u"titolo"_s), [](int column) { return u"cella%1"_s.arg(column); }));
    table.view.selectAll();
    EXPECT_TRUE(table.view.selectedText().endsWith(u"cella38\tcella39"_s));
    const std::vector<qsizetype> cells = table.cellsOf(1);
    ASSERT_EQ(cells.size(), 40U);
    for (std::size_t i = 1; i < cells.size(); ++i) {
        EXPECT_GT(table.view.rectOf({1, cells[i]}).left(), table.view.rectOf({1, cells[i - 1]}).right());
        EXPECT_EQ(table.view.positionAt(table.view.rectOf({1, cells[i]}).center() - QPointF(1, 0)),
                  (MarkdownPosition{1, cells[i]}));
    }
}

TEST(MarkdownTablePreview, TheTabKeyBringsALinkBesideIntoView) {
    for (const int columns : {40, 100}) {
        WideTable table(wideTable(columns, always(u"titolo"_s), [](int column) {
            return column % 9 == 4 ? u"[uno%1](a%1) e [due](b%1)"_s.arg(column) : u"cella"_s;
        }));
        table.view.setFocus();
        QStringList expected;
        double height = table.view.contentRect(1).height();
        for (int column = 4; column < columns; column += 9) {
            for (const QString& url : {u"a%1"_s.arg(column), u"b%1"_s.arg(column)}) {
                expected.append(url);
                QTest::keyClick(&table.view, Qt::Key_Tab);
                QTest::keyClick(&table.view, Qt::Key_Return);
                const QRectF link = table.view.rectOf(
                    {1, table.cellsOf(1)[static_cast<std::size_t>(column)] + (url.startsWith(u'a') ? 0 : 7)});
                EXPECT_GE(link.left(), table.view.contentRect(1).left()) << url.toStdString();
                EXPECT_LE(link.right(), table.view.contentRect(1).right()) << url.toStdString();
            }
        }
        EXPECT_EQ(table.opened, expected);
        EXPECT_EQ(table.view.contentRect(1).height(), height);
        QTest::keyClick(&table.view, Qt::Key_Backtab, Qt::ShiftModifier);
        QTest::keyClick(&table.view, Qt::Key_Return);
        EXPECT_EQ(table.opened.last(), expected.at(expected.size() - 2));
    }
}

TEST(MarkdownTablePreview, AMarkedLinkStaysMarkedWhileItsTableScrolls) {
    for (const int columns : {40, 100}) {
        WideTable table(
            wideTable(columns, always(u"titolo"_s), [](int column) { return u"[cella](%1)"_s.arg(column); }));
        table.view.setFocus();
        for (int i = 0; i < 3; ++i) {
            QTest::keyClick(&table.view, Qt::Key_Tab);
        }
        table.scrollRight(1, 180);
        QTest::keyClick(&table.view, Qt::Key_Return);
        EXPECT_EQ(table.opened, QStringList{u"2"_s}) << "the focus";

        // The line below the link that the mouse is on moves with it.
        const qsizetype start = table.cellsOf(1)[6];
        QTest::mouseMove(table.view.viewport(), table.view.rectOf({1, start}).center().toPoint());
        ASSERT_EQ(table.view.viewport()->cursor().shape(), Qt::PointingHandCursor);
        table.view.clearFocus();
        const QColor color = table.view.palette().color(QPalette::Link);
        const auto hasLine = [&](qsizetype position) {
            const QRectF letter = table.view.rectOf({1, position});
            const QImage image = table.painted();
            const int y = static_cast<int>(std::round(letter.bottom() - 1));
            for (int x = static_cast<int>(letter.left()) + 1; x < static_cast<int>(letter.right()) - 1; ++x) {
                if (image.pixelColor(x, y) != color) {
                    return false;
                }
            }
            return true;
        };
        EXPECT_TRUE(hasLine(start));
        table.scrollRight(1, 130);
        EXPECT_TRUE(hasLine(table.cellsOf(1)[6]));
        EXPECT_FALSE(hasLine(table.cellsOf(1)[7]));
    }
}

TEST(MarkdownTablePreview, NoCellOfAVeryWideTableReachesIntoAnother) {
    const QString tooLong = QString(u"MMMM "_s).repeated(60);
    const QString usual = u"trenta unità in una sola cella"_s;
    const CellText cells = [&](int column) { return column == 0 ? tooLong : column == 2 ? usual : QString(); };
    WideTable table(wideTable(70, always(u"titolo"_s), cells), {820, 900});
    const std::vector<qsizetype> starts = table.cellsOf(1);
    const auto leftOf = [&](int column) {
        return table.view.rectOf({1, starts[static_cast<std::size_t>(column)]}).left() -
               MarkdownStyle::cellPaddingAcross;
    };
    const QRectF content = table.view.contentRect(1);
    const auto cell = [&](int column) {
        return QRectF(QPointF(leftOf(column) + 2, content.top() + 2),
                      QPointF(leftOf(column + 1) - 2, content.bottom() - 8));
    };
    EXPECT_GT(table.inkIn(cell(0)), 100);
    EXPECT_EQ(table.inkIn(cell(1)), 0);
    EXPECT_LT(table.view.rectOf({1, starts[2] + usual.size() - 1}).right(), leftOf(3))
        << "there is room for usual text";
    EXPECT_NEAR(content.height(), table.view.contentRect(0).height(), 2) << "in one line";
}
