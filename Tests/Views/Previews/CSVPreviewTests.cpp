#include "Quillary/Previews/CSVPreview.h"

#include "Quillary/Previews/CSVGrid.h"
#include "Quillary/Previews/PreviewHeader.h"
#include "Quillary/Theme/Contrast.h"
#include "Quillary/Theme/Palettes.h"
#include "Quillary/Theme/Theme.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QScrollBar>
#include <QTest>
#include <QToolTip>
#include <QtMath>

#include <gtest/gtest.h>

#include <algorithm>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// A preview on show.
class CSVPreviewOf {
public:
    explicit CSVPreviewOf(const QString& text, double baseSize = 13) : view(text, baseSize) {
        view.resize(500, 300);
        view.show();
        if (!QTest::qWaitForWindowExposed(&view)) {
            ADD_FAILURE() << "the view is not exposed";
        }
    }

    QString summary() const { return view.findChild<PreviewHeader*>()->summary(); }

    CSVGrid& grid() const { return *view.findChild<CSVGrid*>(); }

    QCheckBox& headerBox() const { return *view.findChild<QCheckBox*>(); }

    QString cell(int row, int column) const { return grid().model()->index(row, column).data().toString(); }

    QString headerCell(int column) const {
        return grid().model()->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    }

    Qt::Alignment alignment(int row, int column) const {
        return grid().model()->index(row, column).data(Qt::TextAlignmentRole).value<Qt::Alignment>();
    }

    void clickCell(int row, int column, Qt::KeyboardModifiers modifiers = {}) {
        const QRect place = grid().visualRect(grid().model()->index(row, column));
        QTest::mouseClick(grid().viewport(), Qt::LeftButton, modifiers, place.center());
    }

    CSVPreview view;
};

} // namespace

TEST(CSVPreview, TheSummaryCountsRowsAndColumnsAndNamesTheDelimiter) {
    EXPECT_EQ(CSVPreviewOf(u"a,b\n1,2\n3,4\n"_s).summary(), u"2 righe · 2 colonne · separatore «,»"_s);
    EXPECT_EQ(CSVPreviewOf(u"a\tb\tc\n1\t2\t3\n"_s).summary(), u"1 righe · 3 colonne · separatore «tab»"_s);
    EXPECT_EQ(CSVPreviewOf(u"a;b\n"_s).summary(), u"0 righe · 2 colonne · separatore «;»"_s);
}

TEST(CSVPreview, OneRowIsAHeaderWithNothingBelow) {
    const CSVPreviewOf preview(u"nome,età"_s);
    EXPECT_EQ(preview.summary(), u"0 righe · 2 colonne · separatore «,»"_s);
    EXPECT_TRUE(preview.grid().horizontalHeader()->isVisible());
    EXPECT_EQ(preview.headerCell(1), u"età"_s);
    EXPECT_EQ(preview.grid().model()->rowCount(), 0);
}

TEST(CSVPreview, WithoutRowsSaysThatThereIsNoData) {
    const CSVPreviewOf preview(u"\n\n"_s);
    EXPECT_FALSE(preview.grid().isVisible());
    const QList<QLabel*> labels = preview.view.findChildren<QLabel*>();
    EXPECT_TRUE(std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
        return label->text() == u"Nessun dato"_s && label->isVisible();
    }));
    EXPECT_EQ(preview.summary(), u"0 righe · 0 colonne · separatore «,»"_s);
}

TEST(CSVPreview, ColumnsAreNumericByTheirCellsBelowTheFirstRow) {
    struct Case {
        QString text;
        QList<qsizetype> numeric;
    };

    const QList<Case> cases = {
        {u"a;b\n1,5;x\n2.5;y\n"_s, {0}}, // a comma is as good as a dot
        {u"a;b\n1.000,5;1\n"_s, {1}},    // two dots
        {u"a,b\n,x\n,y\n"_s, {}},        // all empty
        {u"a,b\n,1\n2,\n"_s, {0, 1}},    // empty ones are left out
        {u"a,b\n 1,1 \n"_s, {}},         // no blanks allowed
        {u"1,2\nx,3\n"_s, {1}},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(CSVPreviewOf(each.text).view.numericColumns(), each.numeric) << each.text.toStdString();
    }
}

TEST(CSVPreview, WidthsFollowTheLongestCellWithinBounds) {
    const QString text = u"a,"_s % QString(1000, u'x') % u",0123456789\nb,c,d\n"_s;
    EXPECT_EQ(CSVPreviewOf(text).view.columnWidths(), (QList<double>{56, 360, 10 * 13 * 0.62 + 20}));
    const CSVPreviewOf preview(text);
    EXPECT_EQ(preview.grid().columnWidth(0), 56);
    EXPECT_EQ(preview.grid().columnWidth(1), 360);
    EXPECT_EQ(preview.grid().columnWidth(2), 101);
}

TEST(CSVPreview, NumericCellsStandAtTheRightButNotInTheHeader) {
    const CSVPreviewOf preview(u"n,t\n1,x\n"_s);
    EXPECT_TRUE(preview.alignment(0, 0).testFlag(Qt::AlignRight));
    EXPECT_TRUE(preview.alignment(0, 1).testFlag(Qt::AlignLeft));
    EXPECT_TRUE(preview.grid()
                    .model()
                    ->headerData(0, Qt::Horizontal, Qt::TextAlignmentRole)
                    .value<Qt::Alignment>()
                    .testFlag(Qt::AlignLeft));
}

TEST(CSVPreview, TheBoxTurnsTheFirstRowIntoAnOrdinaryOneAndBack) {
    CSVPreviewOf preview(u"nome,anni\nAda,36\nLin,x\n"_s);
    const QList<qsizetype> numeric = preview.view.numericColumns();
    EXPECT_EQ(preview.headerBox().text(), u"Prima riga come intestazione"_s);
    EXPECT_TRUE(preview.headerBox().isChecked());
    EXPECT_EQ(preview.cell(0, 0), u"Ada"_s);
    EXPECT_EQ(preview.grid().model()->headerData(0, Qt::Vertical, Qt::DisplayRole).toString(), u"1"_s);

    QTest::mouseClick(&preview.headerBox(), Qt::LeftButton, {}, {8, preview.headerBox().height() / 2});
    EXPECT_FALSE(preview.view.firstRowIsHeader());
    EXPECT_EQ(preview.summary(), u"3 righe · 2 colonne · separatore «,»"_s);
    EXPECT_FALSE(preview.grid().horizontalHeader()->isVisible());
    EXPECT_EQ(preview.cell(0, 0), u"nome"_s);
    EXPECT_EQ(preview.cell(1, 0), u"Ada"_s);
    EXPECT_EQ(preview.grid().model()->headerData(1, Qt::Vertical, Qt::DisplayRole).toString(), u"2"_s);
    EXPECT_EQ(preview.view.numericColumns(), numeric);

    QTest::mouseClick(&preview.headerBox(), Qt::LeftButton, {}, {8, preview.headerBox().height() / 2});
    EXPECT_EQ(preview.summary(), u"2 righe · 2 colonne · separatore «,»"_s);
    EXPECT_EQ(preview.cell(0, 0), u"Ada"_s);
}

TEST(CSVPreview, MeasuresFollowTheSize) {
    for (const double size : {9.0, 13.0, 28.0}) {
        const CSVPreviewOf preview(u"a,b\n1,2\n"_s, size);
        EXPECT_EQ(preview.grid().horizontalHeader()->height(), qRound(size * 1.9));
        EXPECT_EQ(preview.grid().verticalHeader()->width(), qRound(size * 0.62 + 12));
        EXPECT_TRUE(preview.grid().horizontalHeader()->font().weight() == QFont::DemiBold);
        for (const QFont& font : {preview.grid().font(), preview.grid().horizontalHeader()->font(),
                                  preview.grid().verticalHeader()->font()}) {
            EXPECT_NEAR(font.pointSizeF(), size * 0.95 * 0.75, 0.01);
        }
    }
    const CSVPreviewOf tall(u"a\n"_s.repeated(1000));
    EXPECT_EQ(tall.grid().verticalHeader()->width(), qRound(4 * 13 * 0.62 + 12)) << "as wide as its longest number";
}

TEST(CSVPreview, CellsHaveTheirPaddingAndTheHeaderItsGround) {
    for (const double size : {9.0, 13.0, 28.0}) {
        SCOPED_TRACE(size);
        CSVPreviewOf preview(u"MM,n\nMM,1\nMM,2\n"_s, size);
        preview.view.setPalette(lightPalette());
        const QColor ground = Theme::editorBackground(lightPalette());
        const auto firstInk = [&](const QImage& image, const QRect& place) {
            for (int x = place.left(); x < place.right(); ++x) {
                for (int y = place.top() + 1; y < place.bottom(); ++y) {
                    if (image.pixelColor(x, y) != ground) {
                        return x - place.left();
                    }
                }
            }
            return -1;
        };
        const QImage header = preview.grid().horizontalHeader()->grab().toImage();
        const QImage cells = preview.grid().viewport()->grab().toImage();
        const QRect cell = preview.grid().visualRect(preview.grid().model()->index(0, 0));
        // The letter has its own side bearing.
        const int bearing = qCeil(size * 0.2);
        for (const int x : {firstInk(header, {0, 0, cell.width() - 1, header.height()}), firstInk(cells, cell)}) {
            EXPECT_GE(x, 8);
            EXPECT_LE(x, 8 + bearing);
        }
        const QRect number = preview.grid().visualRect(preview.grid().model()->index(0, 1));
        EXPECT_GT(firstInk(cells, number), number.width() / 2) << "a number stands at the right";
        EXPECT_LT(firstInk(header, {cell.width(), 0, number.width() - 1, header.height()}), 8 + bearing + 1)
            << "but its heading at the left";
        EXPECT_EQ(header.pixelColor(3, 3), ground);
    }
}

TEST(CSVPreview, NoNumberStandsBesideTheHeader) {
    CSVPreviewOf preview(u"a\n1\n"_s);
    preview.view.setPalette(lightPalette());
    const QImage image = preview.grid().grab().toImage();
    const QSize corner(preview.grid().verticalHeader()->width() - 1, preview.grid().horizontalHeader()->height() - 1);
    for (int y = 0; y < corner.height(); ++y) {
        for (int x = 0; x < corner.width(); ++x) {
            ASSERT_EQ(image.pixelColor(x, y), Theme::editorBackground(lightPalette())) << x << ' ' << y;
        }
    }
}

TEST(CSVPreview, RowNumbersAreFaintAndCanBeRead) {
    for (const QPalette& palette : {lightPalette(), darkPalette()}) {
        CSVPreviewOf preview(u"a\n1\n"_s, 28);
        preview.view.setPalette(palette);
        const QColor ground = palette.color(QPalette::Base);
        double most = 0;
        const QImage image = preview.grid().verticalHeader()->grab().toImage();
        const int row = preview.grid().rowHeight(0);
        for (int y = 2; y < row - 2; ++y) {
            for (int x = 0; x < image.width() - 2; ++x) {
                most = std::max(most, contrast(image.pixelColor(x, y), ground));
            }
        }
        EXPECT_GE(most, textContrast);
        EXPECT_LT(most, contrast(palette.color(QPalette::Text), ground) * 0.7);
    }
}

TEST(CSVPreview, RaggedRowsHaveEmptyCells) {
    const CSVPreviewOf preview(u"a,b,c\n1\n1,2,3,4\n"_s);
    EXPECT_EQ(preview.grid().model()->columnCount(), 4);
    EXPECT_EQ(preview.cell(0, 2), QString());
    EXPECT_EQ(preview.cell(1, 3), u"4"_s);
    EXPECT_EQ(preview.headerCell(3), QString());
}

TEST(CSVPreview, MarkupIsText) {
    const CSVPreviewOf preview(u"<b>a</b>,x\n<img src=x>,y\n"_s);
    EXPECT_EQ(preview.headerCell(0), u"<b>a</b>"_s);
    EXPECT_EQ(preview.cell(0, 0), u"<img src=x>"_s);
}

TEST(CSVPreview, CopiesACellAsItIs) {
    CSVPreviewOf preview(u"a,b\n\"due\nrighe\",2\n"_s);
    preview.clickCell(0, 0);
    QTest::keyClick(&preview.grid(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"due\nrighe"_s);
}

TEST(CSVPreview, CopiesSeveralCellsAsRowsAndColumns) {
    CSVPreviewOf preview(u"a,b,c\n1,2,3\n4,\"x\ty\",6\n7,8,9\n"_s);
    preview.clickCell(0, 1);
    preview.clickCell(1, 2, Qt::ShiftModifier);
    EXPECT_EQ(preview.grid().selectedText(), u"2\t3\n\"x\ty\"\t6"_s);
    QTest::keyClick(&preview.grid(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&preview.grid(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"1\t2\t3\n4\t\"x\ty\"\t6\n7\t8\t9"_s);
}

TEST(CSVPreview, AClickOnARowsNumberSelectsTheRow) {
    CSVPreviewOf preview(u"a,b\n1,2\n3,4\n"_s);
    QHeaderView& numbers = *preview.grid().verticalHeader();
    QTest::mouseClick(numbers.viewport(), Qt::LeftButton, {}, {4, numbers.sectionViewportPosition(1) + 4});
    EXPECT_EQ(preview.grid().selectedText(), u"3\t4"_s);
}

TEST(CSVPreview, TheHeaderStaysWhileRowsScroll) {
    QString text = u"nome,numero\n"_s;
    for (int i = 0; i < 5000; ++i) {
        text += u"riga %1,%1\n"_s.arg(i);
    }
    CSVPreviewOf preview(text);
    preview.grid().verticalScrollBar()->setValue(preview.grid().verticalScrollBar()->maximum());
    EXPECT_EQ(preview.grid().rowAt(preview.grid().viewport()->height() - 4), 4999);
    EXPECT_TRUE(preview.grid().horizontalHeader()->isVisible());

    // A new text in the same shape keeps the place; so does the choice of the header.
    preview.view.setFirstRowIsHeader(false);
    const int place = preview.grid().verticalScrollBar()->value();
    preview.view.rebuild(text + u"ancora,1\n"_s, 13);
    EXPECT_EQ(preview.grid().verticalScrollBar()->value(), place);
    EXPECT_FALSE(preview.view.firstRowIsHeader());
    EXPECT_EQ(preview.summary(), u"5002 righe · 2 colonne · separatore «,»"_s);
}

TEST(CSVPreview, ShowsTablesOfAnyShape) {
    CSVPreviewOf wide(QString(300'000, u','));
    EXPECT_EQ(wide.grid().model()->columnCount(), 300'001);
    wide.grid().horizontalScrollBar()->setValue(wide.grid().horizontalScrollBar()->maximum());
    wide.grid().viewport()->repaint();

    CSVPreviewOf tall(u"x\n"_s.repeated(300'000));
    EXPECT_EQ(tall.grid().model()->rowCount(), 299'999);
    tall.grid().verticalScrollBar()->setValue(tall.grid().verticalScrollBar()->maximum());
    tall.grid().viewport()->repaint();

    CSVPreviewOf one(u'"' % QString(900'000, u'x') % u"\"\n"_s);
    one.headerBox().click();
    one.grid().viewport()->repaint();
    EXPECT_LT(one.cell(0, 0).size(), 1000);
}

TEST(CSVPreview, TheGroundBesideTheCellsHasNoToolTip) {
    const CSVPreviewOf preview(u"a,b\n1,2"_s);
    QWidget* const viewport = preview.grid().viewport();
    const QPoint place(viewport->width() - 5, viewport->height() - 5);
    ASSERT_FALSE(preview.grid().indexAt(place).isValid());
    QHelpEvent event(QEvent::ToolTip, place, viewport->mapToGlobal(place));
    QApplication::sendEvent(viewport, &event);
    EXPECT_FALSE(QToolTip::isVisible());
}
