#include "Quillary/Theme/ElidedLabel.h"
#include "Quillary/Theme/WrappingLabel.h"

#include <QPixmap>
#include <QTest>

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// The columns in which a widget has painted something on a white ground.
QList<int> inkedColumns(QWidget& widget) {
    QImage image(widget.size(), QImage::Format_RGB32);
    image.fill(Qt::white);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    QList<int> columns;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixelColor(x, y) != Qt::white) {
                columns.append(x);
                break;
            }
        }
    }
    return columns;
}

} // namespace

TEST(WrappingLabel, BreaksAWordThatIsWiderThanItself) {
    WrappingLabel label;
    label.setText(QString(250, u'w'));
    const int line = label.fontMetrics().lineSpacing();
    EXPECT_GE(label.heightForWidth(200), 3 * line);
    EXPECT_LT(label.heightForWidth(2000), label.heightForWidth(200));
    label.resize(200, label.heightForWidth(200));
    EXPECT_GT(inkedColumns(label).size(), 100);
    EXPECT_LE(label.sizeHint().width(), 361);
}

TEST(WrappingLabel, KeepsLineEndsAndEmptyLines) {
    WrappingLabel label;
    label.setText(u"uno\n\ndue"_s);
    EXPECT_EQ(label.heightForWidth(300), 3 * label.fontMetrics().lineSpacing());
}

TEST(WrappingLabel, ShowsNoMoreLinesThanItMay) {
    WrappingLabel label;
    label.setMaximumLines(2);
    label.setText(u"parola "_s.repeated(100));
    EXPECT_EQ(label.heightForWidth(100), 2 * label.fontMetrics().lineSpacing());
    label.setText(u"uno\ndue\ntre"_s);
    EXPECT_EQ(label.heightForWidth(100), 2 * label.fontMetrics().lineSpacing());
    label.setText(u"uno"_s);
    EXPECT_EQ(label.heightForWidth(100), label.fontMetrics().lineSpacing());
}

TEST(WrappingLabel, ReadsMarkupAsText) {
    WrappingLabel label;
    label.setText(u"<b>x</b>"_s);
    EXPECT_EQ(label.sizeHint().width(), label.fontMetrics().horizontalAdvance(u"<b>x</b>"_s) + 1);
}

TEST(ElidedLabel, GivesWayDownToItsEllipsis) {
    ElidedLabel label;
    label.setText(u"Un titolo che non finisce mai"_s);
    EXPECT_LT(label.minimumSizeHint().width(), label.sizeHint().width() / 4);
    label.resize(label.sizeHint().width() / 2, label.sizeHint().height());
    const QList<int> columns = inkedColumns(label);
    ASSERT_FALSE(columns.isEmpty());
    EXPECT_LT(columns.last(), label.width());
}
