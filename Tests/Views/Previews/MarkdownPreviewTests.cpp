#include "MarkdownPreviewOf.h"
#include "Quillary/Theme/Palettes.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QEasingCurve>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

using Position = MarkdownPreview::Position;

} // namespace

// Links

TEST(MarkdownPreview, AClickOnALinkAsksToOpenIt) {
    MarkdownPreviewOf preview(u"vedi [qui](altra.md#parte) e <https://esempio.it/a> e testo"_s);
    preview.click(0, 6);
    EXPECT_EQ(preview.opened, QStringList(u"altra.md#parte"_s));
    preview.click(0, 15);
    EXPECT_EQ(preview.opened.last(), u"https://esempio.it/a"_s);
    preview.click(0, 1);
    preview.click(0, 34);
    EXPECT_EQ(preview.opened.size(), 2);
}

TEST(MarkdownPreview, APressThatIsDraggedOffALinkDoesNotFollowIt) {
    MarkdownPreviewOf preview(u"[qui](altra.md) e altro testo"_s);
    preview.press(preview.placeOf(0, 1));
    preview.moveTo(preview.placeOf(0, 12));
    preview.release(preview.placeOf(0, 12));
    EXPECT_TRUE(preview.opened.isEmpty());
}

TEST(MarkdownPreview, TheCursorTellsOfALink) {
    MarkdownPreviewOf preview(u"[qui](altra.md) e altro testo"_s);
    QTest::mouseMove(preview.view.viewport(), preview.placeOf(0, 12));
    EXPECT_EQ(preview.view.viewport()->cursor().shape(), Qt::IBeamCursor);
    QTest::mouseMove(preview.view.viewport(), preview.placeOf(0, 1));
    EXPECT_EQ(preview.view.viewport()->cursor().shape(), Qt::PointingHandCursor);
    QTest::mouseMove(preview.view.viewport(), {300, 300});
    EXPECT_EQ(preview.view.viewport()->cursor().shape(), Qt::IBeamCursor);
}

TEST(MarkdownPreview, LinksInTablesHeadingsListsAndQuotesAreFollowed) {
    MarkdownPreviewOf preview(u"# [a](1)\n\n- [b](2)\n\n> [c](3)\n\n|x|y|\n|-|-|\n|d|[e](4)|\n"_s);
    for (const qsizetype row : {0, 1, 2}) {
        preview.click(row, 0);
    }
    preview.click(4, 2);
    EXPECT_EQ(preview.opened, (QStringList{u"1"_s, u"2"_s, u"3"_s, u"4"_s}));
}

TEST(MarkdownPreview, AnAnchorScrollsToItsHeading) {
    MarkdownPreviewOf preview(u"[giù](#La%20meta)\n\n"_s % manyParagraphs(300) % u"## La meta\n\n"_s %
                              manyParagraphs(300));
    const qsizetype heading = 301;
    QElapsedTimer time;
    time.start();
    preview.click(0, 1);
    EXPECT_EQ(preview.view.topRow(), 0) << "it goes there in steps";
    ASSERT_TRUE(QTest::qWaitFor([&] { return preview.view.topRow() == heading; }));
    ASSERT_TRUE(QTest::qWaitFor([&] { return preview.view.contentRect(heading).top() == 0; }));
    EXPECT_GE(time.elapsed(), 240);
    EXPECT_TRUE(preview.opened.isEmpty());
}

TEST(MarkdownPreview, AnAnchorNearTheEndScrollsToTheEnd) {
    MarkdownPreviewOf preview(u"[giù](#fine)\n\n"_s % manyParagraphs(300) % u"# Fine"_s);
    EXPECT_TRUE(preview.view.followLink(u"#fine"_s));
    ASSERT_TRUE(QTest::qWaitFor([&] { return preview.bar().value() == preview.bar().maximum(); }));
}

TEST(MarkdownPreview, ScrollingByHandEndsTheAnimation) {
    MarkdownPreviewOf preview(u"[giù](#fine)\n\n"_s % manyParagraphs(300) % u"# Fine"_s);
    EXPECT_TRUE(preview.view.followLink(u"#fine"_s));
    preview.bar().setValue(5);
    QTest::qWait(300); // nothing may come after it, and nothing tells of that
    EXPECT_EQ(preview.bar().value(), 5);
}

TEST(MarkdownPreview, AnAnchorThatNoTopLevelHeadingHasDoesNothing) {
    MarkdownPreviewOf preview(manyParagraphs(100) % u"> # Dentro\n\n- # Voce\n"_s);
    for (const QString& url : {u"#manca"_s, u"#dentro"_s, u"#voce"_s, u"#"_s}) {
        EXPECT_FALSE(preview.view.followLink(url));
    }
    EXPECT_TRUE(preview.opened.isEmpty());
    EXPECT_EQ(preview.view.topRow(), 0);
}

TEST(MarkdownPreview, TheTabKeyGoesFromLinkToLinkAndReturnFollows) {
    MarkdownPreviewOf preview(u"[a](1) e [b](2)\n\n"_s % manyParagraphs(200) % u"[c](3)\n"_s);
    preview.view.setFocus();
    QTest::keyClick(&preview.view, Qt::Key_Return);
    EXPECT_TRUE(preview.opened.isEmpty());
    for (const QString& url : {u"1"_s, u"2"_s, u"3"_s}) {
        QTest::keyClick(&preview.view, Qt::Key_Tab);
        QTest::keyClick(&preview.view, Qt::Key_Return);
        EXPECT_EQ(preview.opened.last(), url);
    }
    EXPECT_GT(preview.view.topRow(), 150) << "the link is brought into view";
    QTest::keyClick(&preview.view, Qt::Key_Backtab, Qt::ShiftModifier);
    QTest::keyClick(&preview.view, Qt::Key_Return);
    EXPECT_EQ(preview.opened.last(), u"2"_s);
}

TEST(MarkdownPreview, TheTabKeyGoesThroughTheLinksOfALongTextOnce) {
    constexpr int count = 260;
    QString text;
    for (int i = 0; i < count; ++i) {
        text += u"[%1](%2) e altre parole "_s.arg(QString(50, u'x')).arg(i);
    }
    MarkdownPreviewOf preview(text);
    ASSERT_GT(preview.view.rows().rows.size(), 2U);
    preview.view.setFocus();
    QStringList all;
    for (int i = 0; i < count; ++i) {
        QTest::keyClick(&preview.view, Qt::Key_Tab);
        QTest::keyClick(&preview.view, Qt::Key_Return);
        all.append(QString::number(i));
    }
    EXPECT_EQ(preview.opened, all);
    EXPECT_GT(preview.view.topRow(), 0) << "the last link is brought into view";
    QTest::keyClick(&preview.view, Qt::Key_Tab);
    QTest::keyClick(&preview.view, Qt::Key_Return);
    EXPECT_EQ(preview.opened, all) << "there is none behind it";
}

// Selection

TEST(MarkdownPreview, ADragSelectsAcrossRows) {
    MarkdownPreviewOf preview(u"# Titolo\n\nuno **due** tre\n\n- voce `codice`\n- altra\n"_s);
    preview.drag({0, 2}, {3, 3});
    EXPECT_EQ(preview.view.selectedText(), u"tolo\n\nuno due tre\n\nvoce codice\nalt"_s);
    QTest::keyClick(&preview.view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), preview.view.selectedText());
    preview.drag({3, 3}, {1, 4});
    EXPECT_EQ(preview.view.selectedText(), u"due tre\n\nvoce codice\nalt"_s) << "upwards too";
    preview.click(1, 1);
    EXPECT_FALSE(preview.view.hasSelection());
}

TEST(MarkdownPreview, ATextWithALinkTakesNoSelectionOfItsOwn) {
    MarkdownPreviewOf preview(u"con un [link](x.md) dentro\n\nsenza nulla dentro\n\n`]( ` pare\n"_s);
    preview.drag({0, 0}, {0, 5});
    EXPECT_FALSE(preview.view.hasSelection());
    QTest::mouseDClick(preview.view.viewport(), Qt::LeftButton, {}, preview.placeOf(0, 1));
    EXPECT_FALSE(preview.view.hasSelection());
    preview.drag({2, 4}, {2, 7});
    EXPECT_FALSE(preview.view.hasSelection());
    preview.drag({1, 0}, {1, 5});
    EXPECT_EQ(preview.view.selectedText(), u"senza"_s);
}

TEST(MarkdownPreview, DoubleAndTripleClicksSelectWordsAndTexts) {
    MarkdownPreviewOf preview(u"una parola sola\n\naltro"_s);
    QTest::mouseDClick(preview.view.viewport(), Qt::LeftButton, {}, preview.placeOf(0, 6));
    EXPECT_EQ(preview.view.selectedText(), u"parola"_s);
    preview.release(preview.placeOf(0, 6));
    preview.press(preview.placeOf(0, 6));
    EXPECT_EQ(preview.view.selectedText(), u"una parola sola"_s);
    preview.release(preview.placeOf(0, 6));
}

TEST(MarkdownPreview, ShiftAndClickExtendsTheSelection) {
    MarkdownPreviewOf preview(u"uno due tre quattro"_s);
    preview.drag({0, 4}, {0, 7});
    const QRectF rect = preview.view.rectOf({0, 12});
    QTest::mouseClick(preview.view.viewport(), Qt::LeftButton, Qt::ShiftModifier,
                      QPointF(rect.left() + 1, rect.center().y()).toPoint());
    EXPECT_EQ(preview.view.selectedText(), u"due tre "_s);
}

TEST(MarkdownPreview, SelectingAllTakesWhatIsNotOnTheScreenToo) {
    QString text;
    QStringList words;
    for (int i = 0; i < 2000; ++i) {
        text += u"- voce %1\n"_s.arg(i);
        words.append(u"voce %1"_s.arg(i));
    }
    MarkdownPreviewOf preview(text);
    QTest::keyClick(&preview.view, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&preview.view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), words.join(u'\n'));
}

TEST(MarkdownPreview, TablesAreCopiedWithTabsAndCodeAsItIs) {
    MarkdownPreviewOf preview(u"|a|b|\n|-|-|\n|1|2|\n\n```\nx\n\n  y\n```\n"_s);
    preview.view.selectAll();
    EXPECT_EQ(preview.view.selectedText(), u"a\tb\n1\t2\n\nx\n\n  y"_s);
}

TEST(MarkdownPreview, ADragBeyondTheEdgeScrolls) {
    MarkdownPreviewOf preview(manyParagraphs(200));
    preview.press(preview.placeOf(1, 0));
    preview.moveTo({200, preview.view.viewport()->height() + 60});
    ASSERT_TRUE(QTest::qWaitFor([&] { return preview.view.topRow() > 3; }));
    preview.release({200, preview.view.viewport()->height() + 60});
    EXPECT_GT(preview.view.selectionEnd().row, 5);
}

// What is painted

TEST(MarkdownPreview, BlocksLookLikeWhatTheyAre) {
    MarkdownPreviewOf preview(u"> citazione\n\n- [x] fatto\n- [ ] da fare\n\n---\n"_s);
    preview.view.setPalette(lightPalette());
    const QImage image = preview.painted();
    const auto colorAt = [&](double x, double y) {
        return image.pixelColor(QPointF(x, y).toPoint() * static_cast<int>(image.devicePixelRatio()));
    };
    const QRectF quote = preview.view.contentRect(0);
    const QColor ground = lightPalette().color(QPalette::Base);
    EXPECT_NE(colorAt(quote.left() - 13, quote.center().y()), ground) << "the bar";
    EXPECT_EQ(colorAt(quote.left() - 6, quote.center().y()), ground);
    const QRectF done = preview.view.contentRect(1);
    const QRectF open = preview.view.contentRect(2);
    const auto boxHas = [&](const QRectF& content, const QColor& color) {
        for (int y = qRound(content.top()); y < content.bottom(); ++y) {
            for (int x = qRound(content.left()) - 22; x < content.left(); ++x) {
                if (colorAt(x, y) == color) {
                    return true;
                }
            }
        }
        return false;
    };
    EXPECT_TRUE(boxHas(done, lightPalette().color(QPalette::Link)));
    EXPECT_FALSE(boxHas(open, lightPalette().color(QPalette::Link)));
    const QRectF rule = preview.view.contentRect(3);
    EXPECT_NE(colorAt(rule.center().x(), rule.top() + qRound(13 * 0.4)), ground);
}

TEST(MarkdownPreview, CodeHasTheColoursOfItsLanguage) {
    MarkdownPreviewOf preview(u"```js\nfunction\n```\n\n```\nfunction\n```\n"_s);
    preview.view.setPalette(lightPalette());
    const QImage image = preview.painted();
    const auto isColoured = [&](qsizetype row) {
        const QRect content = preview.view.contentRect(row).toRect();
        for (int y = content.top(); y < content.bottom(); ++y) {
            for (int x = content.left() + 2; x < content.right() - 2; ++x) {
                const QColor color = image.pixelColor(x, y);
                if (color.saturation() > 120) {
                    return true;
                }
            }
        }
        return false;
    };
    EXPECT_TRUE(isColoured(0));
    EXPECT_FALSE(isColoured(1));
}

TEST(MarkdownPreview, LongLinesOfCodeScrollSideways) {
    MarkdownPreviewOf preview(u"```\n"_s % QString(500, u'x') % u"\nfine\n```\n\ntesto"_s);
    const QRectF content = preview.view.contentRect(0);
    const auto turn = [&](QPointF place, int angle) {
        QWheelEvent event(place, preview.view.viewport()->mapToGlobal(place), {}, {angle, 0}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(preview.view.viewport(), &event);
    };
    const double before = preview.view.rectOf({0, 50}).left();
    turn(content.center(), -240);
    const double after = preview.view.rectOf({0, 50}).left();
    EXPECT_NEAR(before - after, 120, 1);
    turn(content.center(), -1'000'000);
    EXPECT_NEAR(preview.view.rectOf({0, 499}).right(), content.right() - 10, 2);
    turn(content.center(), 1'000'000);
    EXPECT_NEAR(preview.view.rectOf({0, 50}).left(), before, 0.01);
    turn(preview.view.contentRect(1).center(), -240);
    EXPECT_NEAR(preview.view.rectOf({1, 0}).left(), preview.view.contentRect(1).left(), 1) << "texts don't";
}

TEST(MarkdownPreview, AWideTableScrollsSidewaysByItself) {
    const QString row = u'|' % QString(u"una cella |"_s).repeated(20) % u'\n';
    MarkdownPreviewOf preview(row % u'|' % QString(u"-|"_s).repeated(20) % u'\n' % row % u'\n' %
                                  QString(u"parola "_s).repeated(3000),
                              {600, 2000});
    const QPointF place = preview.view.contentRect(1).center();
    const double before = preview.view.rectOf({0, 0}).left();
    const double text = preview.view.rectOf({2, 0}).left();
    QWheelEvent event(place, preview.view.viewport()->mapToGlobal(place), {}, {-240, 0}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(preview.view.viewport(), &event);
    EXPECT_NEAR(before - preview.view.rectOf({0, 0}).left(), 120, 1);
    const double textAfter = preview.view.rectOf({2, 0}).left();
    EXPECT_EQ(textAfter, text) << "the long text below it stays";
}

TEST(MarkdownPreview, WhatIsSelectedInAVeryWideTableIsWhatIsSeenThere) {
    constexpr int columns = 100;
    const auto line = [](auto cell) -> QString {
        QString text = u"|"_s;
        for (int column = 0; column < columns; ++column) {
            text += cell(column) + u'|';
        }
        return text + u'\n';
    };
    const auto numbered = [](int column) { return u"**cella** numero%1"_s.arg(column); };
    MarkdownPreviewOf preview(line(numbered) % line([](int) { return u"-"_s; }) % line(numbered));
    const QPoint place = preview.view.contentRect(1).center().toPoint();
    QWheelEvent event(place, preview.view.viewport()->mapToGlobal(place), {}, {-6000, 0}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(preview.view.viewport(), &event);
    QTest::mouseDClick(preview.view.viewport(), Qt::LeftButton, {}, place);
    preview.release(place);
    const QString word = preview.view.selectedText();
    ASSERT_TRUE(word == u"cella" || word.startsWith(u"numero"_s)) << word.toStdString();
    const Position start = preview.view.selectionStart();
    const QString before = preview.view.rowText(1).first(start.offset);
    EXPECT_GT(before.count(u'\t'), 10) << "the first columns are out of view";
    EXPECT_EQ(preview.view.positionAt(preview.view.rectOf(start).center() - QPointF(1, 0)).row, 1);
    const QRectF first = preview.view.rectOf(start);
    const QRectF last = preview.view.rectOf({1, preview.view.selectionEnd().offset - 1});
    EXPECT_LE(first.left(), place.x());
    EXPECT_GE(last.right(), place.x()) << "the word below the mouse";
}

TEST(MarkdownPreview, ALineOfATableThatIsCutLooksLikeOneLine) {
    MarkdownPreviewOf preview(u"|a|b|\n|-|-|\n|"_s % QString(u"*x* y "_s).repeated(700) % u"|z|\n|1|2|\n"_s,
                              {600, 4000});
    preview.view.setPalette(lightPalette());
    const std::vector<MarkdownRow>& rows = preview.view.rows().rows;
    ASSERT_GT(rows.size(), 3U);
    const QImage image = preview.painted();
    const QColor ground = lightPalette().color(QPalette::Base);
    for (std::size_t row = 1; row + 1 < rows.size(); ++row) {
        const QPoint below =
            preview.view.contentRect(static_cast<qsizetype>(row)).bottomLeft().toPoint() + QPoint(4, -1);
        EXPECT_EQ(image.pixelColor(below) != ground, !rows[row].isCut) << row;
    }
    preview.view.selectAll();
    EXPECT_FALSE(preview.view.selectedText().contains(u"\n\n"_s));
}

TEST(MarkdownPreview, ColumnsAlignTheirCells) {
    MarkdownPreviewOf preview(u"|sinistra|centro|destra|\n|:-|:-:|-:|\n|a|b|c|\n"_s);
    const auto middle = [&](qsizetype row, qsizetype offset) {
        return preview.view.rectOf({row, offset}).center().x();
    };
    EXPECT_NEAR(preview.view.rectOf({1, 0}).left(), preview.view.rectOf({0, 0}).left(), 1);
    EXPECT_NEAR(middle(1, 2), (preview.view.rectOf({0, 9}).left() + preview.view.rectOf({0, 14}).right()) / 2, 2);
    EXPECT_NEAR(preview.view.rectOf({1, 4}).right(), preview.view.rectOf({0, 21}).right(), 2);
}

TEST(MarkdownPreview, HeadingsHaveTheSizesOfTheirLevels) {
    QString text;
    for (int level = 1; level <= 6; ++level) {
        text += QString(level, u'#') % u" Titolo `codice`\n\n"_s;
    }
    const MarkdownPreviewOf preview(text, {600, 600}, 20);
    const std::array factors = {1.7, 1.4, 1.18, 1.05, 1.0, 0.92};
    for (int level = 1; level <= 6; ++level) {
        const QFont font = MarkdownStyle(20).headingFont(level);
        EXPECT_NEAR(font.pointSizeF(), 20 * 0.75 * factors.at(static_cast<std::size_t>(level - 1)), 0.01);
        EXPECT_TRUE(font.weight() == QFont::DemiBold || (level > 2 && font.weight() == QFont::Medium));
        QFont regular = font;
        regular.setWeight(QFont::Normal);
        const QString words = u"Heading of any level"_s;
        EXPECT_GT(QFontMetricsF(font).horizontalAdvance(words), QFontMetricsF(regular).horizontalAdvance(words))
            << "also where the font has no medium weight";
    }
    // Code in a heading is set at 0.9 of the heading's own size.
    const double ofCode = preview.view.rectOf({0, 8}).width();
    const double ofSmallCode = preview.view.rectOf({4, 8}).width();
    EXPECT_NEAR(ofCode / ofSmallCode, 1.7, 0.15);
}

TEST(MarkdownPreview, ADarkPaletteRepaintsWithoutRebuilding) {
    MarkdownPreviewOf preview(u"[link](x)"_s);
    preview.view.setPalette(darkPalette());
    EXPECT_EQ(preview.painted().pixelColor(2, 2), darkPalette().color(QPalette::Base));
    preview.view.setPalette(lightPalette());
    EXPECT_EQ(preview.painted().pixelColor(2, 2), lightPalette().color(QPalette::Base));
}

// Screen readers

TEST(MarkdownPreview, ScreenReadersGetTheTextAndItsPlaces) {
    MarkdownPreviewOf preview(u"# Titolo\n\nuno **due**\n\n- voce\n"_s);
    QAccessible::setActive(true);
    QAccessibleInterface* const document = QAccessible::queryAccessibleInterface(&preview.view);
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->role(), QAccessible::Document);
    EXPECT_EQ(document->text(QAccessible::Name), u"Anteprima Markdown"_s);
    QAccessibleTextInterface* const text = document->textInterface();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->text(0, -1), u"Titolo\n\nuno due\n\nvoce"_s);
    EXPECT_EQ(text->characterCount(), 21);
    const QRect character = text->characterRect(12);
    EXPECT_EQ(character.topLeft(),
              preview.view.viewport()->mapToGlobal(preview.view.rectOf({1, 4}).toAlignedRect().topLeft()));
    EXPECT_EQ(text->offsetAtPoint(character.center()), 12);
    text->setSelection(0, 8, 11);
    EXPECT_EQ(preview.view.selectedText(), u"uno"_s);
    int start = 0;
    int end = 0;
    text->selection(0, &start, &end);
    EXPECT_EQ(std::pair(start, end), std::pair(8, 11));

    preview.view.rebuild(u"altro"_s, 13);
    EXPECT_EQ(text->text(0, -1), u"altro"_s);
    QAccessible::setActive(false);
}

// Texts of any shape

TEST(MarkdownPreview, ShowsTextsOfAnyShape) {
    struct Case {
        const char* what;
        QString text;
    };

    QString table = u"|a|b|\n|-|-|\n"_s;
    for (int i = 0; i < 20'000; ++i) {
        table += u"|%1|valore|\n"_s.arg(i);
    }
    QString nested;
    for (int i = 0; i < 1200; ++i) {
        nested += QString(i, u' ') % u"- a\n"_s;
    }
    const QList<Case> cases = {
        {"a list", u"- voce come tante\n"_s.repeated(50'000)},
        {"a table", table},
        {"quotes within quotes", QString(100'000, u'>') % u" a"_s},
        {"lists within lists", QString(u"- "_s).repeated(100'000) % u"a"_s},
        {"lists below lists", nested},
        {"one paragraph", QString(u"parola "_s).repeated(140'000)},
        {"one word", QString(1'000'000, u'x')},
        {"one heading", u"# "_s % QString(900'000, u'x')},
        {"one line of code", u"```js\n"_s % QString(900'000, u'x')},
        {"empty lines of code", u"```\n"_s % QString(900'000, u'\n')},
        {"one cell", u"|a|\n|-|\n|"_s % QString(900'000, u'x') % u"|"_s},
        {"many columns", QString(100'000, u'|') % u"\n"_s % QString(u"|-"_s).repeated(100'001) % u"|\n"_s},
        {"a wide table of short rows", u'|' % QString(u"a|"_s).repeated(20'000) % u"\n|"_s %
                                           QString(u"-|"_s).repeated(20'000) % u'\n' %
                                           QString(u"b|\n"_s).repeated(20'000)},
        {"a cell of marks", u"|a|\n|-|\n|"_s % QString(u"`a`b "_s).repeated(50'000) % u"|"_s},
        {"items without text", QString(u"-\n"_s).repeated(100'000)},
        {"marks without end", QString(u"*a_[b`"_s).repeated(150'000)},
        {"marks that combine", u"a"_s % QString(500'000, QChar(0x301))},
        {"right to left", QString(u"שלום עולם "_s).repeated(50'000)},
        {"NUL and lone surrogates", QString(100'000, QChar(0)) % QString(1000, QChar(0xD800))},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.what);
        MarkdownPreviewOf preview(each.text, {400, 300});
        EXPECT_LT(preview.view.laidOutRowCount(), 200);
        for (const int place : {preview.bar().maximum() / 2, preview.bar().maximum(), 0}) {
            preview.bar().setValue(place);
            preview.painted();
        }
        const double right = preview.view.contentRect(0).right();
        EXPECT_LE(right, 400);
        EXPECT_GT(preview.view.contentRect(0).width(), 100);
    }
}
