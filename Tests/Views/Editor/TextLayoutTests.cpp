#include "Quillary/Editor/TextLayout.h"

#include "Quillary/Theme/Palettes.h"
#include "Quillary/Theme/Theme.h"

#include "Tests/Views/Editor/HostileTexts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>

#include <gmock/gmock.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;
using testing::ElementsAre;

QFont editorFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(11);
    return font;
}

class TextLayoutTest : public testing::Test {
protected:
    void open(const QString& text, qreal width = 300, bool wraps = true) {
        m_layout.reset();
        m_storage = std::make_unique<TextStorage>(text);
        m_layout = makeLayout(width, wraps);
    }

    std::unique_ptr<TextLayout> makeLayout(qreal width, bool wraps) {
        auto layout = std::make_unique<TextLayout>(*m_storage);
        layout->setFont(editorFont());
        layout->setWraps(wraps);
        layout->setWidth(width);
        return layout;
    }

    static QList<qsizetype> rowStarts(TextLayout& layout) {
        QList<qsizetype> starts;
        for (std::optional<TextLayout::Row> row = layout.rowHolding(0); row; row = layout.rowBelow(*row)) {
            starts += row->contents.location;
        }
        return starts;
    }

    /// Where one layout of the whole line breaks its rows.
    static QList<qsizetype> rowStartsOfOneLayout(const QString& line, qreal width) {
        QTextLayout layout(line, editorFont());
        QTextOption option;
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout.setTextOption(option);
        QList<qsizetype> starts;
        layout.beginLayout();
        for (QTextLine row = layout.createLine(); row.isValid(); row = layout.createLine()) {
            row.setLineWidth(width);
            starts += row.textStart();
        }
        layout.endLayout();
        return starts;
    }

    QImage draw(QSize size) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setPen(Qt::black);
        qreal y = 0;
        for (std::optional<TextLayout::Row> row = m_layout->rowHolding(0); row; row = m_layout->rowBelow(*row)) {
            m_layout->drawMarks(painter, *row, {0, y}, image.rect());
            m_layout->drawText(painter, *row, {0, y}, image.rect(), SyntaxColors(lightPalette()));
            y += m_layout->pitch();
        }
        return image;
    }

    static bool hasInk(const QImage& image, const QRect& rect) {
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            for (int x = rect.left(); x <= rect.right(); ++x) {
                if (image.pixelColor(x, y) != QColor(Qt::white)) {
                    return true;
                }
            }
        }
        return false;
    }

    std::unique_ptr<TextStorage> m_storage;
    std::unique_ptr<TextLayout> m_layout;
};

TEST_F(TextLayoutTest, ThePitchIsOneAndAFifthOfTheFontsLineSpacing) {
    open({});
    EXPECT_EQ(m_layout->pitch(), qRound(1.2 * QFontMetricsF(editorFont()).lineSpacing()));
    EXPECT_GT(m_layout->baseline(), QFontMetricsF(editorFont()).ascent());
}

TEST_F(TextLayoutTest, AnEmptyTextHasOneRow) {
    open({});
    const TextLayout::Row row = m_layout->rowHolding(0);
    EXPECT_TRUE(row.isLast);
    EXPECT_EQ(row.contents, (TextRange{0, 0}));
    EXPECT_EQ(m_layout->xOf(row, 0), 0);
    EXPECT_FALSE(m_layout->rowBelow(row));
    EXPECT_FALSE(m_layout->rowAbove(row));
}

TEST_F(TextLayoutTest, EveryTerminatorEndsARowAndTakesNoWidth) {
    for (const QString& terminator :
         {u"\n"_s, u"\r\n"_s, u"\r"_s, u"\u2028"_s, u"\u2029"_s, u"\u0085"_s, u"\v"_s, u"\f"_s}) {
        for (const bool wraps : {true, false}) {
            open(u"ab"_s + terminator + u"c"_s, 300, wraps);
            const TextLayout::Row first = m_layout->rowHolding(0);
            EXPECT_EQ(first.contents, (TextRange{0, 2}));
            EXPECT_EQ(first.next, 2 + terminator.size());
            EXPECT_FALSE(first.isLast);
            const std::optional<TextLayout::Row> second = m_layout->rowBelow(first);
            ASSERT_TRUE(second);
            EXPECT_EQ(second->contents, (TextRange{2 + terminator.size(), 1}));
            EXPECT_TRUE(second->isLast);
            EXPECT_EQ(m_layout->positionAt(first, 10'000), 2);
            EXPECT_NEAR(m_layout->xOf(first, 2), 2 * m_layout->blankWidth(), 1);
        }
    }
}

TEST_F(TextLayoutTest, RowsGoUpTheSameWayAsDown) {
    QRandomGenerator random(3);
    for (const bool wraps : {true, false}) {
        open(hostileText(random, 2000), 200, wraps);
        QList<TextLayout::Row> down;
        for (std::optional<TextLayout::Row> row = m_layout->rowHolding(0); row; row = m_layout->rowBelow(*row)) {
            EXPECT_EQ(m_layout->indexOf(*row), down.size());
            down += *row;
        }
        EXPECT_EQ(m_layout->rowCount(), down.size());
        EXPECT_EQ(down.constLast().next, m_storage->length());
        std::optional<TextLayout::Row> row = m_layout->rowHolding(m_storage->length());
        for (qsizetype i = down.size() - 1; i >= 0; --i) {
            ASSERT_TRUE(row);
            EXPECT_EQ(*row, down[i]);
            EXPECT_EQ(m_layout->rowAt(i), down[i]);
            row = m_layout->rowAbove(*row);
        }
        EXPECT_FALSE(row);
    }
}

TEST_F(TextLayoutTest, ALongLineHasTheRowsOfOneLayoutInSpiteOfItsCuts) {
    const QString line = words(60'000);
    open(line);
    EXPECT_EQ(rowStarts(*m_layout), rowStartsOfOneLayout(line, 300));
}

TEST_F(TextLayoutTest, EditsInALongLineLeaveNoShortRows) {
    QRandomGenerator random(5);
    QString line = words(30'000);
    open(line);
    rowStarts(*m_layout);
    for (int i = 0; i < 60; ++i) {
        const qsizetype offset = random.bounded(static_cast<int>(line.size()));
        const qsizetype removed = std::min<qsizetype>(random.bounded(60), line.size() - offset);
        const QString inserted = words(random.bounded(60));
        line.replace(offset, removed, inserted);
        m_storage->replace({offset, removed}, inserted);
        ASSERT_EQ(rowStarts(*m_layout), rowStartsOfOneLayout(line, 300)) << "edit " << i;
    }
}

TEST_F(TextLayoutTest, FollowsEditsAsIfLaidOutAnew) {
    for (const bool wraps : {true, false}) {
        QRandomGenerator random(11);
        open(hostileText(random, 300), 200, wraps);
        for (int step = 0; step < 150; ++step) {
            const auto offset = static_cast<qsizetype>(random.bounded(static_cast<qint64>(m_storage->length() + 1)));
            const qsizetype removed = std::min<qsizetype>(random.bounded(9), m_storage->length() - offset);
            m_storage->replace({offset, removed}, hostileText(random, random.bounded(5)));
            const std::unique_ptr<TextLayout> fresh = makeLayout(200, wraps);
            ASSERT_EQ(rowStarts(*m_layout), rowStarts(*fresh)) << "step " << step;
            ASSERT_EQ(m_layout->rowCount(), fresh->rowCount());
        }
    }
}

TEST_F(TextLayoutTest, ARowInTheMiddleIsReachedWithoutWhatLiesBeforeIt) {
    open(words(1'000'000));
    const TextLayout::Row row = m_layout->rowHolding(500'000);
    EXPECT_LE(row.contents.location, 500'000);
    EXPECT_GE(row.contents.end(), 500'000);
    const std::optional<TextLayout::Row> above = m_layout->rowAbove(row);
    ASSERT_TRUE(above);
    EXPECT_EQ(above->next, m_layout->rowHolding(above->next).contents.location);
}

TEST_F(TextLayoutTest, TheEndOfAWrappedRowBelongsToItOnlyWhenAskedFor) {
    open(words(400));
    const TextLayout::Row first = m_layout->rowHolding(0);
    ASSERT_FALSE(first.endsLine);
    const qsizetype border = first.contents.end();
    EXPECT_EQ(m_layout->rowHolding(border).contents.location, border);
    EXPECT_EQ(m_layout->rowHolding(border, TextLayout::Side::before), first);
    EXPECT_EQ(m_layout->rowHolding(0, TextLayout::Side::before), first);
}

TEST_F(TextLayoutTest, ALineStartIsNeverTheEndOfTheRowAbove) {
    open(u"uno\ndue"_s);
    EXPECT_EQ(m_layout->rowHolding(4, TextLayout::Side::before).contents.location, 4);
}

TEST_F(TextLayoutTest, PlacesOfALongUnwrappedLineRunOnOverItsCuts) {
    open(QString(100'000, u'x'), 300, false);
    const TextLayout::Row row = m_layout->rowHolding(70'000);
    EXPECT_EQ(row.contents, (TextRange{0, 100'000}));
    const qreal unit = m_layout->xOf(row, 1);
    for (const qsizetype position : {0, 1023, 1024, 1025, 54'321, 100'000}) {
        const qreal x = m_layout->xOf(row, position);
        EXPECT_NEAR(x, static_cast<qreal>(position) * unit, 2);
        EXPECT_EQ(m_layout->positionAt(row, x), position);
    }
    EXPECT_NEAR(m_layout->contentWidth(), 100'000 * unit, 2);
}

TEST_F(TextLayoutTest, PlacesInAVeryLongUnwrappedLineDoNotOverflow) {
    open(QString(32'000'000, u'x'), 300, false);
    const TextLayout::Row row = m_layout->rowHolding(0);
    const qreal x = m_layout->xOf(row, 31'999'999);
    EXPECT_GT(x, 32'000'000 * 5.0);
    EXPECT_EQ(m_layout->positionAt(row, x), 31'999'999);
}

TEST_F(TextLayoutTest, TabsStopAtEveryFourthBlankAlsoBehindACut) {
    open(u"a\tb"_s, 300, false);
    EXPECT_NEAR(m_layout->xOf(m_layout->rowHolding(0), 2), 4 * m_layout->blankWidth(), 0.1);
    open(u"abc\t"_s.repeated(3000), 300, false);
    EXPECT_NEAR(m_layout->xOf(m_layout->rowHolding(0), 12'000), 3000 * 4 * m_layout->blankWidth(), 1);
}

TEST_F(TextLayoutTest, LinesFromRightToLeftStandAtTheRightEdge) {
    const QString hebrew = u"\u05E9\u05DC\u05D5\u05DD \u05E2\u05D5\u05DC\u05DD"_s;
    for (const bool wraps : {true, false}) {
        open(hebrew, 300, wraps);
        const TextLayout::Row row = m_layout->rowHolding(0);
        EXPECT_TRUE(row.isRightToLeft);
        EXPECT_NEAR(m_layout->xOf(row, 0), 300, 1);
        EXPECT_LT(m_layout->xOf(row, hebrew.size()), 290);
        EXPECT_EQ(m_layout->positionAt(row, 1000), 0);
        EXPECT_EQ(m_layout->positionAt(row, 0), hebrew.size());
    }
}

TEST_F(TextLayoutTest, ThePiecesOfALongLineFromRightToLeftRunToTheLeft) {
    const QString word = u"\u05E9\u05DC\u05D5\u05DD "_s;
    open(word.repeated(2000), 300, false);
    const TextLayout::Row row = m_layout->rowHolding(0);
    qreal last = m_layout->xOf(row, 0) + 1;
    for (qsizetype position = 0; position <= 10'000; position += 500) {
        const qreal x = m_layout->xOf(row, position);
        EXPECT_LT(x, last) << position;
        EXPECT_EQ(m_layout->positionAt(row, x), position);
        last = x;
    }
}

TEST_F(TextLayoutTest, APositionFromThePointerLiesInNoCluster) {
    QRandomGenerator random(9);
    for (const bool wraps : {true, false}) {
        open(hostileText(random, 600), 200, wraps);
        for (std::optional<TextLayout::Row> row = m_layout->rowHolding(0); row; row = m_layout->rowBelow(*row)) {
            for (int x = -5; x < 250; x += 3) {
                const qsizetype position = m_layout->positionAt(*row, x);
                ASSERT_EQ(m_storage->clusterBoundaryAtOrBefore(position), position);
                ASSERT_GE(position, row->contents.location);
                ASSERT_LE(position, row->contents.end());
            }
        }
    }
}

TEST_F(TextLayoutTest, UnitsThatTheToolkitDrawsBadlyHaveAWidthOfTheirOwn) {
    for (const char16_t unit : {char16_t(0xFFFC), char16_t(0), char16_t(1), char16_t(0x1B), char16_t(0x7F)}) {
        open(u"a"_s + QChar(unit) + u"b"_s, 300, false);
        const TextLayout::Row row = m_layout->rowHolding(0);
        EXPECT_GT(m_layout->xOf(row, 2), m_layout->xOf(row, 1) + 1) << static_cast<int>(unit);
        EXPECT_GT(m_layout->xOf(row, 3), m_layout->xOf(row, 2) + 1);
    }
}

TEST_F(TextLayoutTest, TextDoesNotOverlapAtAnObjectReplacementCharacter) {
    open(u"\uFFFCb"_s);
    const QImage image = draw({300, 40});
    const TextLayout::Row row = m_layout->rowHolding(0);
    const int border = qRound(m_layout->xOf(row, 1));
    EXPECT_TRUE(hasInk(image, QRect(0, 0, border - 1, m_layout->pitch())));
    EXPECT_TRUE(hasInk(image, QRect(border + 1, 0, qRound(m_layout->blankWidth()), m_layout->pitch())));
}

TEST_F(TextLayoutTest, ARangeCoversItsUnitsAndATerminatorABlank) {
    open(u"abcd\nef"_s);
    const TextLayout::Row row = m_layout->rowHolding(0);
    const HorizontalSpan all{0, 300};
    const auto unit = [&](qsizetype position) { return m_layout->xOf(row, position); };
    EXPECT_THAT(m_layout->spansOf(row, {1, 2}, all), ElementsAre(HorizontalSpan{unit(1), unit(3)}));
    EXPECT_THAT(
        m_layout->spansOf(row, {2, 4}, all),
        ElementsAre(HorizontalSpan{unit(2), unit(4)}, HorizontalSpan{unit(4), unit(4) + m_layout->blankWidth()}));
    EXPECT_THAT(m_layout->spansOf(row, {5, 2}, all), testing::IsEmpty());
    EXPECT_THAT(m_layout->spansOf(row, {0, 4}, all), ElementsAre(HorizontalSpan{0, unit(4)}));
}

TEST_F(TextLayoutTest, ARangeInMixedDirectionsCoversSeveralStretches) {
    const QString text = u"abc \u05D0\u05D1\u05D2 def"_s;
    open(text);
    const TextLayout::Row row = m_layout->rowHolding(0);
    // From "c" to the first Hebrew letter, which stands at the right end of its word.
    const std::vector<HorizontalSpan> spans = m_layout->spansOf(row, {2, 3}, {0, 300});
    ASSERT_EQ(spans.size(), 2U);
    EXPECT_LT(spans[0].right, spans[1].left);
    const std::vector<HorizontalSpan> whole = m_layout->spansOf(row, {0, text.size()}, {0, 300});
    ASSERT_EQ(whole.size(), 1U);
    EXPECT_NEAR(whole[0].right, m_layout->xOf(row, text.size()), 1);
}

TEST_F(TextLayoutTest, SyntaxColoursShowAndCauseNoNewLayout) {
    open(u"nero rosso"_s);
    const QImage plain = draw({300, 40});
    m_layout->syntax().add({5, 5}, SyntaxTokenKind::string);
    const QImage colored = draw({300, 40});
    const int border = qRound(m_layout->xOf(m_layout->rowHolding(0), 5));
    EXPECT_EQ(colored.copy(0, 0, border, 40), plain.copy(0, 0, border, 40));
    bool hasRed = false;
    for (int y = 0; y < 40; ++y) {
        for (int x = border; x < 300; ++x) {
            const QColor color = colored.pixelColor(x, y);
            EXPECT_GE(color.red(), color.blue());
            hasRed = hasRed || (color.red() > 180 && color.blue() < 100);
        }
    }
    EXPECT_TRUE(hasRed);
}

TEST_F(TextLayoutTest, CharactersWithoutAGlyphShowWhereTheyStandAndMoveNothing) {
    const QRgb sign = Theme::secondaryText(lightPalette()).rgb();
    const auto hasSignAt = [&](int x) {
        const QImage image = draw({300, m_layout->pitch()});
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixel(x, y) == sign) {
                return true;
            }
        }
        return false;
    };
    open(u"ab"_s);
    const int border = qRound(m_layout->xOf(m_layout->rowHolding(0), 1));
    const qreal end = m_layout->xOf(m_layout->rowHolding(0), 2);
    EXPECT_FALSE(hasSignAt(border));
    for (const char16_t unit : {u'\u200B', u'\u200C', u'\u200D', u'\u200E', u'\u202D', u'\u2060', u'\uFEFF'}) {
        open(u"a"_s + QChar(unit) + u"b"_s);
        EXPECT_TRUE(hasSignAt(border)) << std::hex << static_cast<int>(unit);
        EXPECT_NEAR(m_layout->xOf(m_layout->rowHolding(0), 3), end, 0.5) << std::hex << static_cast<int>(unit);
    }
    // An override still turns the text behind it around.
    open(u"a\u202Ebcd"_s);
    EXPECT_TRUE(hasSignAt(qRound(m_layout->xOf(m_layout->rowHolding(0), 1))));
    EXPECT_LT(m_layout->xOf(m_layout->rowHolding(0), 4), m_layout->xOf(m_layout->rowHolding(0), 3));
}

TEST_F(TextLayoutTest, JoinersAtTheirOrdinaryWorkDoNotShow) {
    const QRgb sign = Theme::secondaryText(lightPalette()).rgb();
    for (const QString& text : {u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s, u"\u0645\u06CC\u200C\u062E"_s,
                                u"\u0915\u094D\u200D\u0937"_s}) {
        open(text);
        const QImage image = draw({300, m_layout->pitch()});
        int signs = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                signs += image.pixel(x, y) == sign;
            }
        }
        EXPECT_EQ(signs, 0) << text.toStdString();
    }
}

TEST_F(TextLayoutTest, LayersFollowEveryReplacementOfAChange) {
    open(u"uno due tre quattro"_s);
    m_layout->syntax().setAll({{{4, 3}, SyntaxTokenKind::keyword}, {{12, 7}, SyntaxTokenKind::string}});
    m_layout->marks().add({8, 3}, qRgb(255, 255, 0));
    m_storage->beginEditing();
    m_storage->replace({0, 3}, u"1");
    m_storage->replace({9, 1}, u"--");
    m_storage->endEditing();
    EXPECT_EQ(m_storage->text(), u"1 due tre--quattro"_s);
    const TextRange whole{0, m_storage->length()};
    EXPECT_THAT(m_layout->syntax().within(whole), ElementsAre(SyntaxRanges::Span{{2, 3}, SyntaxTokenKind::keyword},
                                                              SyntaxRanges::Span{{11, 7}, SyntaxTokenKind::string}));
    EXPECT_THAT(m_layout->marks().within(whole), ElementsAre(ColorRanges::Span{{6, 3}, qRgb(255, 255, 0)}));
}

TEST_F(TextLayoutTest, MarksFillThePitchWithoutStripes) {
    open(u"uno\ndue\ntre"_s);
    m_layout->marks().add({0, 11}, qRgb(255, 255, 0));
    const QImage image = draw({300, 3 * m_layout->pitch()});
    for (int y = 0; y < image.height(); ++y) {
        EXPECT_NE(image.pixelColor(1, y), QColor(Qt::white)) << y;
    }
}

TEST_F(TextLayoutTest, APreeditIsShownButIsNoText) {
    open(u"ab"_s);
    const qreal before = m_layout->xOf(m_layout->rowHolding(0), 2);
    Preedit preedit;
    preedit.position = 1;
    preedit.text = u"xyz"_s;
    preedit.caret = 2;
    m_layout->setPreedit(preedit);
    const TextLayout::Row row = m_layout->rowHolding(0);
    EXPECT_EQ(row.contents, (TextRange{0, 2}));
    EXPECT_NEAR(m_layout->xOf(row, 2), before * 5 / 2, 0.5);
    EXPECT_NEAR(m_layout->xOf(row, 1), before * 3 / 2, 0.5) << "the caret stands within the preedit";
    EXPECT_EQ(m_storage->text(), u"ab"_s);
    m_layout->setPreedit({});
    EXPECT_NEAR(m_layout->xOf(m_layout->rowHolding(0), 2), before, 0.1);
}

TEST_F(TextLayoutTest, OpensALargeTextByLookingAtItsFirstRowsOnly) {
    open(u"Una riga di sessanta caratteri o quasi, come tante altre qui.\n"_s.repeated(500'000));
    EXPECT_EQ(m_layout->rowAt(0).contents.location, 0);
    EXPECT_EQ(m_layout->rowAt(m_layout->rowCount()).next, m_storage->length());
}

} // namespace

} // namespace quillary
