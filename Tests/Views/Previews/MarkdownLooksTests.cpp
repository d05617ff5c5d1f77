#include "Quillary/Previews/MarkdownPreview.h"
#include "Quillary/Theme/Palettes.h"
#include "Quillary/Theme/Theme.h"

#include <QFontInfo>
#include <QFontMetricsF>
#include <QImage>
#include <QTest>
#include <QtMath>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

constexpr std::array sizes = {9.0, 13.0, 28.0};

/// What a colour that lets the ground through looks like on it.
QColor blended(const QColor& ground, const QColor& color) {
    const auto mix = [alpha = color.alphaF()](float below, float above) { return below + (above - below) * alpha; };
    return QColor::fromRgbF(mix(ground.redF(), color.redF()), mix(ground.greenF(), color.greenF()),
                            mix(ground.blueF(), color.blueF()));
}

bool isLike(const QColor& a, const QColor& b) {
    return std::abs(a.red() - b.red()) <= 2 && std::abs(a.green() - b.green()) <= 2 &&
           std::abs(a.blue() - b.blue()) <= 2;
}

/// A preview as it is painted on a light ground.
class MarkdownPage {
public:
    explicit MarkdownPage(const QString& text, double baseSize = 13) : view(text, baseSize, {}) {
        view.setPalette(lightPalette());
        view.resize(600, 700);
        view.show();
        if (!QTest::qWaitForWindowExposed(&view)) {
            ADD_FAILURE() << "the view is not exposed";
        }
        image = view.viewport()->grab().toImage();
    }

    QColor ground() const { return lightPalette().color(QPalette::Base); }

    QColor at(double x, double y) const {
        return image.pixelColor(static_cast<int>(std::floor(x)), static_cast<int>(std::floor(y)));
    }

    QRectF content(qsizetype row) const { return view.contentRect(row); }

    /// What a character covers.
    QRectF character(qsizetype row, qsizetype offset) const { return view.rectOf({row, offset}); }

    /// The darkest colour in a place.
    QColor darkest(const QRectF& place) const {
        QColor found = Qt::white;
        for (int y = qCeil(place.top()); y < place.bottom(); ++y) {
            for (int x = qCeil(place.left()); x < place.right(); ++x) {
                found = image.pixelColor(x, y).lightness() < found.lightness() ? image.pixelColor(x, y) : found;
            }
        }
        return found;
    }

    /// How many pixels of a place have a colour.
    int count(const QRectF& place, const QColor& color) const {
        int found = 0;
        for (int y = qCeil(place.top()); y < place.bottom(); ++y) {
            for (int x = qCeil(place.left()); x < place.right(); ++x) {
                found += isLike(image.pixelColor(x, y), color) ? 1 : 0;
            }
        }
        return found;
    }

    MarkdownPreview view;
    QImage image;
};

QColor separatorOnWhite() {
    return blended(Qt::white, Theme::separator(lightPalette()));
}

} // namespace

TEST(MarkdownLooks, HeadingsOfTwoLevelsHaveALineBelowAndRoomAbove) {
    for (const double size : sizes) {
        for (int level = 1; level <= 6; ++level) {
            SCOPED_TRACE(testing::Message() << size << " level " << level);
            const MarkdownPage page(QString(level, u'#') % u" Titolo"_s, size);
            const QRectF content = page.content(0);
            const QRectF text = page.character(0, 0);
            const bool hasLine = level <= 2;
            EXPECT_NEAR(text.top() - content.top(), hasLine ? size * 0.4 : 0, 0.01);
            // The line is six below the text; rows end on whole pixels.
            const double below = content.bottom() - text.bottom();
            EXPECT_GE(below, hasLine ? 7 : 0);
            EXPECT_LT(below, hasLine ? 8 : 1);
            for (const double x : {content.left(), content.center().x(), content.right() - 1}) {
                const QColor expected = hasLine ? separatorOnWhite() : page.ground();
                EXPECT_TRUE(isLike(page.at(x, content.bottom() - 1), expected)) << x;
            }
        }
    }
}

TEST(MarkdownLooks, LinesOfAParagraphStandApartByTheSize) {
    for (const double size : sizes) {
        const MarkdownPage page(u"uno\ndue"_s, size);
        EXPECT_NEAR(page.character(0, 4).top() - page.character(0, 0).bottom(), size * 0.3, 0.51) << size;
    }
}

TEST(MarkdownLooks, InlineCodeIsSmallerThanItsTextAndHasAGround) {
    struct Case {
        QString text;
        double factor;
    };

    for (const double size : sizes) {
        for (const Case& each : {Case{u"`mmm` x"_s, 1}, Case{u"# `mmm` x"_s, 1.7}, Case{u"## `mmm` x"_s, 1.4},
                                 Case{u"###### `mmm` x"_s, 0.92}, Case{u"|`mmm` x|\n|-|"_s, 0.95}}) {
            SCOPED_TRACE(testing::Message() << each.text.toStdString() << ' ' << size);
            const MarkdownPage page(each.text, size);
            const QRectF code = page.character(0, 1);
            const bool isBold = each.text.startsWith(u"# "_s) || each.text.startsWith(u'|');
            const QFont font =
                Theme::monospacedFont(size * each.factor * 0.9, isBold ? QFont::DemiBold : QFont::Normal);
            EXPECT_NEAR(code.width(), QFontMetricsF(font).horizontalAdvance(u'm'), 0.6);
            QColor ground = page.ground();
            if (each.text.startsWith(u'|')) {
                ground = blended(ground, Theme::subtleFill(lightPalette()));
            }
            const QColor filled = blended(ground, Theme::subtleFill(lightPalette()));
            const QRectF wide(page.character(0, 0).united(page.character(0, 2)));
            EXPECT_GT(page.count(wide, filled), wide.width() * wide.height() * 0.2);
            const QRectF beside = page.character(0, 4);
            EXPECT_LT(page.count(beside, filled), beside.width() * beside.height() * 0.1)
                << "not behind the text beside it";
        }
    }
}

TEST(MarkdownLooks, QuotesHaveBarsOfOneWidthAndFainterText) {
    const MarkdownPage page(u"fuori\n\n> citazione\n>\n> > dentro\n> > > in fondo\n"_s);
    const QColor secondary = blended(Qt::white, Theme::secondaryText(lightPalette()));
    const double whole = 255 - blended(Qt::white,
                                       [&] {
                                           QColor bar = Theme::secondaryText(lightPalette());
                                           bar.setAlphaF(0.35F);
                                           return bar;
                                       }())
                                   .lightness();
    const double left = page.content(0).left();
    EXPECT_LT(page.darkest(page.content(0)).lightness(), secondary.lightness() - 20);
    for (int depth = 1; depth <= 3; ++depth) {
        SCOPED_TRACE(depth);
        const QRectF content = page.content(depth);
        EXPECT_DOUBLE_EQ(content.left(), left + depth * (1.5 + 12));
        EXPECT_NEAR(page.darkest(content).lightness(), secondary.lightness(), 6);
        // Each bar lets as little of the ground through as any other, from its first row to the last.
        for (int bar = 1; bar <= depth; ++bar) {
            const double start = left + (bar - 1) * 13.5;
            for (const double y : {content.top() + 1, content.center().y(), content.bottom() - 2}) {
                double ink = 0;
                for (int x = static_cast<int>(std::floor(start)) - 1; x < start + 3; ++x) {
                    ink += (255 - page.at(x, y).lightness()) / whole;
                }
                EXPECT_NEAR(ink, 1.5, 0.1) << "bar " << bar << " at " << y;
            }
        }
    }
    // No gap and no knot where rows meet.
    for (int y = qCeil(page.content(1).top()) + 1; y < page.content(3).bottom() - 1; ++y) {
        EXPECT_EQ(page.at(left, y), page.at(left, page.content(1).center().y())) << y;
    }
}

TEST(MarkdownLooks, CodeStandsInARoundedBoxWithRoomAround) {
    for (const double size : sizes) {
        SCOPED_TRACE(size);
        const MarkdownPage page(u"```\nx\n```\n\n```swift\nx\n```\n"_s, size);
        for (const qsizetype row : {0, 1}) {
            const QRectF content = page.content(row);
            const QRectF text = page.character(row, 0);
            EXPECT_DOUBLE_EQ(text.left(), content.left() + 10);
            const double language = row == 0 ? 0 : MarkdownStyle(size).languageHeight;
            EXPECT_NEAR(text.top(), content.top() + 10 + language, 0.01);
            EXPECT_GE(content.bottom() - text.bottom(), 10);
            EXPECT_LT(content.bottom() - text.bottom(), 11);
            const QRectF above(content.left() + 10, content.top() + 4, content.width() - 20,
                               text.top() - content.top() - 4);
            EXPECT_EQ(page.darkest(above).lightness() < 200, row == 1) << "the language's name";
            EXPECT_EQ(page.at(content.left(), std::ceil(content.top())), page.ground()) << "the corner is round";
            const QColor border =
                blended(blended(Qt::white, Theme::subtleFill(lightPalette())), Theme::separator(lightPalette()));
            EXPECT_NEAR(page.at(content.left(), content.center().y()).lightness(), border.lightness(), 8);
        }
        EXPECT_NEAR(MarkdownStyle(size).language.pointSizeF(), 9.5 * 0.75, 0.01) << "whatever the size";
        EXPECT_TRUE(QFontInfo(MarkdownStyle(size).code).fixedPitch());
    }
}

TEST(MarkdownLooks, CodeBeyondTheLongestThatIsColouredStaysPlain) {
    const QString line = u"let a\n"_s;
    const qsizetype longest = 300'000;
    for (const qsizetype length : {longest, longest + 1}) {
        // The line feed before the fence is not the code's.
        QString code = line.repeated(longest / line.size() + 1).first(length);
        code.back() = u'x';
        const MarkdownPage page(u"```js\n"_s % code % u"\n```"_s);
        const QRect keyword = page.character(0, 0).united(page.character(0, 2)).toRect();
        bool isColoured = false;
        for (int y = keyword.top(); y < keyword.bottom(); ++y) {
            for (int x = keyword.left(); x < keyword.right(); ++x) {
                isColoured |= page.image.pixelColor(x, y).saturation() > 120;
            }
        }
        EXPECT_EQ(isColoured, length == longest);
    }
}

TEST(MarkdownLooks, CellsHaveRoomAround) {
    for (const double size : sizes) {
        SCOPED_TRACE(size);
        const MarkdownPage page(u"|a|b|\n|-|-|\n|c|d|\n"_s, size);
        for (const qsizetype row : {0, 1}) {
            const QRectF content = page.content(row);
            const QRectF text = page.character(row, 0);
            EXPECT_DOUBLE_EQ(text.left(), content.left() + 10);
            EXPECT_DOUBLE_EQ(text.top(), content.top() + 6);
            EXPECT_GE(content.bottom() - text.bottom(), 7) << "with the line below";
            EXPECT_LT(content.bottom() - text.bottom(), 8);
        }
        const MarkdownStyle style(size);
        EXPECT_NEAR(style.cell.pointSizeF(), size * 0.95 * 0.75, 0.01);
        EXPECT_NEAR(style.headerCell.pointSizeF(), size * 0.95 * 0.75, 0.01);
        EXPECT_EQ(style.headerCell.weight(), QFont::DemiBold);
        EXPECT_EQ(style.cell.weight(), QFont::Normal);
    }
}

TEST(MarkdownLooks, MarkersHaveTheirColoursAndBoxesTheirSize) {
    for (const double size : sizes) {
        SCOPED_TRACE(size);
        const MarkdownPage page(u"- punto\n\n1. numero\n2. [x] fatto\n3. [ ] da fare\n"_s, size);
        const auto marker = [&](qsizetype row) {
            const QRectF content = page.content(row);
            return QRectF(page.content(0).left() - 40, content.top(), content.left() - page.content(0).left() + 40,
                          content.height());
        };
        const QColor secondary = blended(Qt::white, Theme::secondaryText(lightPalette()));
        const QColor accent = lightPalette().color(QPalette::Link);
        EXPECT_NEAR(page.darkest(marker(0)).lightness(), secondary.lightness(), 12);
        EXPECT_LT(page.darkest(marker(1)).lightness(), secondary.lightness() - 20) << "a number is text";
        EXPECT_GT(page.count(marker(2), accent), size);
        EXPECT_EQ(page.count(marker(3), accent), 0);
        EXPECT_NEAR(page.darkest(marker(3)).lightness(), secondary.lightness(), 12);
        for (const qsizetype row : {2, 3}) {
            int first = -1;
            int last = -1;
            const QRectF place = marker(row);
            for (int x = qCeil(place.left()); x < place.right() - 1; ++x) {
                if (page.darkest({double(x), place.top(), 1, place.height()}).lightness() < 230) {
                    first = first < 0 ? x : first;
                    last = x;
                }
            }
            EXPECT_NEAR(last - first + 1, size * 0.9, 1) << "a box, and no number beside it";
        }
    }
}

TEST(MarkdownLooks, ARuleHasTheSameRoomAboveAndBelow) {
    for (const double size : sizes) {
        const MarkdownPage page(u"---"_s, size);
        const QRectF content = page.content(0);
        EXPECT_EQ(content.height(), std::ceil(2 * size * 0.4 + 1));
        const double y = std::round(content.top() + size * 0.4);
        for (const double x : {content.left(), content.right() - 1}) {
            EXPECT_TRUE(isLike(page.at(x, y), separatorOnWhite())) << size;
            EXPECT_EQ(page.at(x, y - 1), page.ground());
            EXPECT_EQ(page.at(x, y + 1), page.ground());
        }
    }
}
