#include "Quillary/Previews/MarkdownRows.h"

#include "QuillaryCore/Formats/MarkdownInline.h"

#include <QHash>
#include <QMap>
#include <QStringList>

#include <gtest/gtest.h>

#include <optional>
#include <random>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// The frames of a row from outside in, each with its marker where it begins with the row: ">" a quote, "*" a bullet,
/// "1." a number, "[ ]" and "[x]" tasks.
QString framesOf(const MarkdownRows& rows, qsizetype index) {
    QString told;
    const MarkdownRow& row = rows.rows[static_cast<std::size_t>(index)];
    int begun = row.begun;
    for (qint32 frame = row.frame; frame >= 0; --begun) {
        const MarkdownFrame& around = rows.frames[static_cast<std::size_t>(frame)];
        QString sign = u">"_s;
        switch (around.marker) {
        case MarkdownFrame::Marker::none:
            break;
        case MarkdownFrame::Marker::bullet:
            sign = u"*"_s;
            break;
        case MarkdownFrame::Marker::number:
            sign = QString::number(around.number) + u'.';
            break;
        case MarkdownFrame::Marker::open:
            sign = u"[ ]"_s;
            break;
        case MarkdownFrame::Marker::done:
            sign = u"[x]"_s;
            break;
        }
        const bool begins = around.isQuote() || begun > 0;
        told.prepend((begins ? sign : u"-"_s) + u' ');
        frame = around.parent;
    }
    return told;
}

QString toldRow(const MarkdownRows& rows, qsizetype index) {
    const MarkdownRow& row = rows.rows[static_cast<std::size_t>(index)];
    switch (row.kind) {
    case MarkdownRow::Kind::heading:
        return u"h%1 "_s.arg(row.level) + rows.styledText(row).text;
    case MarkdownRow::Kind::paragraph:
        return rows.styledText(row).text;
    case MarkdownRow::Kind::code:
        return u"`"_s + rows.rawText(row) + u"`"_s;
    case MarkdownRow::Kind::table: {
        QStringList cells;
        const qsizetype columns = rows.tables[static_cast<std::size_t>(row.part.source)].columnCount();
        for (qsizetype column = 0; column < columns; ++column) {
            cells.append(rows.cellText(row, column).text);
        }
        return cells.join(u'|');
    }
    case MarkdownRow::Kind::rule:
        return u"---"_s;
    case MarkdownRow::Kind::blank:
        return u"(blank)"_s;
    }
    return {};
}

QStringList told(const QString& text) {
    const MarkdownRows rows = MarkdownRows::of(text);
    QStringList lines;
    for (qsizetype index = 0; index < static_cast<qsizetype>(rows.rows.size()); ++index) {
        lines.append(framesOf(rows, index) + toldRow(rows, index));
    }
    return lines;
}

} // namespace

TEST(MarkdownRows, BlocksBecomeRows) {
    struct Case {
        QString text;
        QStringList rows;
    };

    const QList<Case> cases = {
        {QString(), {}},
        {u"# Uno\n\ndue *tre*\nquattro\n\n---\n"_s, {u"h1 Uno"_s, u"due tre\nquattro"_s, u"---"_s}},
        {u"- a\n- b\n\n  c\n"_s, {u"* a"_s, u"* b"_s, u"- c"_s}},
        {u"3. a\n7. b\n"_s, {u"3. a"_s, u"4. b"_s}},
        {u"- [ ] a\n- [x] b\n- [X]\n"_s, {u"[ ] a"_s, u"[x] b"_s, u"[x] (blank)"_s}},
        {u"1. [x] a\n"_s, {u"[x] a"_s}},
        {u"- - - a\n"_s, {u"* * * a"_s}},
        {u"-\n- b\n"_s, {u"* (blank)"_s, u"* b"_s}},
        {u"> a\n> > b\n> - c\n"_s, {u"> a"_s, u"> > b"_s, u"> * c"_s}},
        {u">\n"_s, {}},
        {u"- >\n"_s, {u"* (blank)"_s}},
        {u"```js\nx\n\ny\n```\n"_s, {u"`x\n\ny`"_s}},
        {u"```\n```\n"_s, {u"``"_s}},
        {u"|a|b|\n|-|-|\n|1|**2**|\n"_s, {u"a|b"_s, u"1|2"_s}},
        {u"<b>a</b>\n"_s, {u"<b>a</b>"_s}},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(told(each.text), each.rows) << each.text.toStdString();
    }
}

TEST(MarkdownRows, DistancesAreThoseOfTheInnermostList) {
    using Gap = MarkdownRow::Gap;
    const MarkdownRows rows = MarkdownRows::of(u"a\n\n- b\n- c\n\n  d\n\n> e\n>\n> f\n"_s);
    QList<Gap> gaps;
    for (const MarkdownRow& row : rows.rows) {
        gaps.append(row.gap);
    }
    EXPECT_EQ(gaps, (QList<Gap>{Gap::none, Gap::block, Gap::item, Gap::nested, Gap::block, Gap::nested}));
}

TEST(MarkdownRows, AnchorsAreOfTopLevelHeadingsOnly) {
    const MarkdownRows rows = MarkdownRows::of(
        u"# A b\n\ntesto\n\n> # In una citazione\n\n## A b\n\n- # In una lista\n\n### [testo](altra.md)\n"_s);
    EXPECT_EQ(rows.anchors(), (QMap<qsizetype, QString>{{0, u"a-b"_s}, {3, u"a-b-1"_s}, {5, u"testo"_s}}));
    EXPECT_EQ(rows.rowOfAnchor(u"a-b"_s), 0);
    EXPECT_EQ(rows.rowOfAnchor(u"a-b-1"_s), 3);
    EXPECT_EQ(rows.rowOfAnchor(u"testo"_s), 5);
    for (const QString& unknown : {u"in-una-citazione"_s, u"a-b-2"_s, u"a-b-0"_s, u"a-b-01"_s, u"a"_s, QString()}) {
        EXPECT_EQ(rows.rowOfAnchor(unknown), std::nullopt) << unknown.toStdString();
    }
}

TEST(MarkdownRows, AnAnchorLeadsToTheFirstHeadingThatHasIt) {
    // Whatever the names are, numbers of their own included.
    std::mt19937 random(20240901);
    const QStringList names = {u"a"_s, u"A"_s, u"a-1"_s, u"a-1-1"_s, u"a-01"_s, u"!"_s, u"-1"_s, u"b"_s, u"a-2"_s};
    for (int round = 0; round < 300; ++round) {
        QString text;
        for (int i = 0; i < 12; ++i) {
            const QString& name = names[static_cast<qsizetype>(random() % static_cast<unsigned>(names.size()))];
            text += (random() % 4 == 0 ? u"> # "_s : u"# "_s) + name + u"\n\n"_s;
        }
        const MarkdownRows rows = MarkdownRows::of(text);
        // Every block here has one row.
        QHash<QString, qsizetype> expected;
        const QMap<qsizetype, QString> anchors = rows.anchors();
        for (auto anchor = anchors.cbegin(); anchor != anchors.cend(); ++anchor) {
            if (!expected.contains(*anchor)) {
                expected.insert(*anchor, anchor.key());
            }
        }
        for (auto anchor = expected.cbegin(); anchor != expected.cend(); ++anchor) {
            ASSERT_EQ(rows.rowOfAnchor(anchor.key()), *anchor) << text.toStdString() << anchor.key().toStdString();
        }
        for (const QString& wanted : names) {
            ASSERT_EQ(rows.rowOfAnchor(wanted).has_value(), expected.contains(wanted));
        }
    }
}

TEST(MarkdownRows, LongTextsAreShownInPiecesThatLoseNothing) {
    QString text;
    for (int i = 0; text.size() < 200'000; ++i) {
        text += u"parola%1 "_s.arg(i);
    }
    text.chop(1);
    const MarkdownRows rows = MarkdownRows::of(text);
    EXPECT_GT(rows.rows.size(), 10U);
    QString joined;
    for (const MarkdownRow& row : rows.rows) {
        const QString piece = rows.styledText(row).text;
        EXPECT_LE(piece.size(), MarkdownRows::longText);
        joined += piece;
    }
    EXPECT_EQ(joined, text);
    EXPECT_TRUE(rows.rows.front().isFirst && !rows.rows.front().isLast);
    EXPECT_TRUE(rows.rows.back().isLast && !rows.rows.back().isFirst);
}

TEST(MarkdownRows, TextsThatKeepChangingTheirLookAreShownInPiecesToo) {
    for (const int count : {500, 5'000}) {
        const QString text = u"`a`b "_s.repeated(count);
        const MarkdownRows rows = MarkdownRows::of(text);
        EXPECT_GT(rows.rows.size(), 1U);
        QString joined;
        for (const MarkdownRow& row : rows.rows) {
            const MarkdownStyledText piece = rows.styledText(row);
            EXPECT_LE(piece.runs.size(), static_cast<std::size_t>(MarkdownRows::mostRuns) + 1);
            joined += piece.text;
        }
        EXPECT_EQ(joined, u"ab "_s.repeated(count).chopped(1));
    }
    EXPECT_EQ(MarkdownRows::of(u"`a`b "_s.repeated(300)).rows.size(), 1U);
}

TEST(MarkdownRows, PiecesAreShortWhereAScreenTakesLongToLayOut) {
    const QString word(100'000, u'x');
    const QString words = u"parola "_s.repeated(14'000);
    const QString ideographs(100'000, QChar(0x6F22));
    const QString table = u"|a|\n|-|\n|%1|\n"_s;

    struct Case {
        const char* name;
        QString text;
        qsizetype units;
        qsizetype runs;
    };

    for (const Case& each :
         {Case{"words", words, 6000, 1}, Case{"ideographs", ideographs, 6000, 1},
          Case{"an endless word", word, 2000, 1}, Case{"an endless word among others", QString(words % word), 2000, 1},
          Case{"changing looks", u"`a`b "_s.repeated(5000), 6000, 100},
          Case{"words in a cell", table.arg(words.trimmed()), 2000, 1},
          Case{"an endless word in a cell", table.arg(word), 2000, 1},
          Case{"changing looks in a cell", table.arg(u"`a`b "_s.repeated(5000).trimmed()), 2000, 100}}) {
        const MarkdownRows rows = MarkdownRows::of(each.text);
        EXPECT_GT(rows.rows.size(), 10U) << each.name;
        qsizetype whole = 0;
        for (const MarkdownRow& row : rows.rows) {
            const MarkdownStyledText piece =
                row.kind == MarkdownRow::Kind::table ? rows.cellText(row, 0) : rows.styledText(row);
            EXPECT_LE(piece.text.size(), each.units) << each.name;
            EXPECT_LE(piece.runs.size(), static_cast<std::size_t>(each.runs) + 1) << each.name;
            whole += piece.text.size();
        }
        // No shorter than need be, either.
        const qsizetype needed = each.runs > 1 ? whole / each.runs : 3 * whole / each.units / 2;
        EXPECT_LE(rows.rows.size(), static_cast<std::size_t>(needed) + 3) << each.name;
    }
}

TEST(MarkdownRows, APieceHasTheLinksThatLieInItAndNoOther) {
    QString text = u"[una "_s + u"parola "_s.repeated(2000) + u"sola](lungo) "_s;
    QStringList all = {u"lungo"_s};
    for (int i = 0; i < 1000; ++i) {
        text += u"[uno *due*](%1) tre "_s.arg(i);
        all.append(QString::number(i));
    }
    const MarkdownRows rows = MarkdownRows::of(text);
    ASSERT_GT(rows.rows.size(), 3U);
    QStringList joined;
    for (const MarkdownRow& row : rows.rows) {
        EXPECT_TRUE(rows.mayHoldLink(row));
        const MarkdownStyledText piece = rows.styledText(row);
        QList<bool> isUsed(piece.links.size(), false);
        for (const MarkdownStyledText::Run& run : piece.runs) {
            if (run.link >= 0) {
                ASSERT_LT(run.link, piece.links.size());
                isUsed[run.link] = true;
            }
        }
        EXPECT_FALSE(isUsed.contains(false));
        for (const QString& link : piece.links) {
            // One that is cut lies in both pieces.
            if (joined.isEmpty() || joined.last() != link) {
                joined.append(link);
            }
        }
    }
    EXPECT_EQ(joined, all);
}

TEST(MarkdownRows, LongTextsWithLinksAreKnownLikeShortOnes) {
    const QString words = u"parola "_s.repeated(3000);
    const QString table = u"|a|b|\n|-|-|\n|%1|1|\n|%2|1|\n"_s;
    const MarkdownRows rows =
        MarkdownRows::of(words % u"\n\n"_s % words % u"`]( `\n\n"_s % table.arg(words, QString(words + u"[a](b)"_s)));
    for (const MarkdownRow& row : rows.rows) {
        if (row.kind == MarkdownRow::Kind::paragraph) {
            EXPECT_EQ(rows.mayHoldLink(row), row.part.source == 1);
        } else {
            EXPECT_EQ(rows.mayHoldLink(row), row.part.start == 2);
            EXPECT_EQ(rows.mayHoldLink(row, 0), row.part.start == 2);
            EXPECT_FALSE(rows.mayHoldLink(row, 1));
        }
    }
}

TEST(MarkdownRows, LongCodeIsShownInPiecesThatLoseNothing) {
    QString code;
    for (int i = 0; i < 300; ++i) {
        code += QString((i % 7 == 0) ? 9000 : i, QChar(u'a' + i % 26)) + u'\n';
    }
    code.chop(1);
    const MarkdownRows rows = MarkdownRows::of(u"```\n"_s % code % u"\n```\n"_s);
    QString joined;
    for (const MarkdownRow& row : rows.rows) {
        EXPECT_LE(rows.lengthOf(row), 4000);
        EXPECT_EQ(joined.size(), row.part.start);
        joined += rows.rawText(row);
        if (!row.isCut && !row.isLast) {
            joined += u'\n';
        }
    }
    EXPECT_EQ(joined, code);
}

TEST(MarkdownRows, LongCellsAreShownInPiecesThatLoseNothing) {
    const QString cell = QString(u"abcde fgh "_s).repeated(5000).trimmed();
    const MarkdownRows rows = MarkdownRows::of(u"|x|y|\n|-|-|\n|"_s % cell % u"|b|\n|1|2|\n"_s);
    QString joined;
    for (const MarkdownRow& row : rows.rows) {
        if (row.part.start == 1) {
            joined += rows.cellText(row, 0).text;
            EXPECT_EQ(rows.cellText(row, 1).text, row.piece == 0 ? u"b"_s : QString());
        }
    }
    EXPECT_EQ(joined, cell);
}

TEST(MarkdownRows, LinesOfATableAreCutByWhatAllTheirCellsHoldTogether) {
    struct Case {
        const char* name;
        QString cell;
        int columns;
    };

    for (const Case& each :
         {Case{"marks", u"`a`b "_s.repeated(2000), 1}, Case{"marks beside marks", u"*a*b "_s.repeated(300), 20},
          Case{"long cells beside each other", u"abcde fgh "_s.repeated(1000), 40},
          Case{"marks without end", u"*a_[b`"_s.repeated(1900), 3}}) {
        const QString line = u'|' + QString(each.cell + u'|').repeated(each.columns) + u'\n';
        const MarkdownRows rows = MarkdownRows::of(u'|' + QString(u"h|"_s).repeated(each.columns) + u"\n|"_s +
                                                   QString(u"-|"_s).repeated(each.columns) + u'\n' + line + u"|1|\n"_s);
        QStringList joined(each.columns);
        for (const MarkdownRow& row : rows.rows) {
            qsizetype units = 0;
            std::size_t runs = 0;
            for (int column = 0; column < each.columns; ++column) {
                const MarkdownStyledText text = rows.cellText(row, column);
                units += text.text.size();
                runs += text.runs.size();
                if (row.part.start == 1) {
                    joined[column] += text.text;
                }
            }
            EXPECT_LE(units, MarkdownRows::longText) << each.name;
            EXPECT_LE(runs, 3U * static_cast<std::size_t>(MarkdownRows::mostRuns)) << each.name;
            const bool isLastOfLine = row.isLast || (&row + 1)->part.start != row.part.start;
            EXPECT_EQ(row.isCut, !isLastOfLine) << each.name;
        }
        EXPECT_EQ(joined.first(), MarkdownInline::styled(each.cell.trimmed()).text) << each.name;
        EXPECT_EQ(joined.last(), joined.first()) << each.name;
    }
}

TEST(MarkdownRows, NestingHasABoundAndMarkersHaveNone) {
    const MarkdownRows quotes = MarkdownRows::of(QString(100'000, u'>') % u" a"_s);
    ASSERT_EQ(quotes.rows.size(), 1U);
    EXPECT_EQ(quotes.frames.size(), std::size_t(MarkdownRows::shownDepth));

    const MarkdownRows lists = MarkdownRows::of(QString(u"- "_s).repeated(100'000) % u"a"_s);
    ASSERT_EQ(lists.rows.size(), 1U);
    EXPECT_EQ(lists.frames.size(), std::size_t(MarkdownRows::shownDepth));
    EXPECT_EQ(framesOf(lists, 0).count(u'*'), MarkdownRows::shownDepth);

    // What goes on below the bound has its own markers.
    QString text;
    for (int depth = 0; depth < 30; ++depth) {
        text += QString(2 * depth, u' ') + u"- a\n"_s;
    }
    text += QString(60, u' ') + u"1. b\n"_s + QString(60, u' ') + u"2. c\n- d\n"_s;
    const MarkdownRows rows = MarkdownRows::of(text);
    ASSERT_EQ(rows.rows.size(), 33U);
    const QString around = QString(u"- "_s).repeated(MarkdownRows::shownDepth - 1);
    EXPECT_EQ(framesOf(rows, 29), around + u"* "_s);
    EXPECT_EQ(framesOf(rows, 30), around + u"1. "_s);
    EXPECT_EQ(framesOf(rows, 31), around + u"2. "_s);
    EXPECT_EQ(framesOf(rows, 32), u"* "_s);
}

TEST(MarkdownRows, ItemsWithTheSameMarkerShareIt) {
    const MarkdownRows rows = MarkdownRows::of(u"- a\n- b\n- [ ] c\n- [x] d\n- e\n\ntesto\n\n+ f\n\n1. g\n"_s);
    EXPECT_EQ(rows.frames.size(), 4U);
    EXPECT_EQ(told(u"- a\n- b\n- [ ] c\n- [x] d\n- e\n\ntesto\n\n+ f\n\n1. g\n"_s),
              (QStringList{u"* a"_s, u"* b"_s, u"[ ] c"_s, u"[x] d"_s, u"* e"_s, u"testo"_s, u"* f"_s, u"1. g"_s}));
}

TEST(MarkdownRows, AQuoteWithNothingInItLeavesNoMark) {
    EXPECT_EQ(told(u"- a\n\n  >\n\n  b\n"_s), (QStringList{u"* a"_s, u"- b"_s}));
    EXPECT_EQ(told(u"- >\n\n  b\n"_s), (QStringList{u"* b"_s}));
}

TEST(MarkdownRows, TextsWithLinksAreKnown) {
    const MarkdownRows rows =
        MarkdownRows::of(u"[a](b)\n\n`]( `\n\nsenza\n\n# <http://x.it>\n\n|a|b|\n|-|-|\n|1|http://x.it|\n|1|2|\n"_s);
    QList<bool> found;
    for (const MarkdownRow& row : rows.rows) {
        found.append(rows.mayHoldLink(row));
    }
    EXPECT_EQ(found, (QList<bool>{true, true, false, true, false, true, false}));
}
