#include "Quillary/Previews/MarkdownCellBound.h"

#include "Quillary/Previews/MarkdownFormats.h"
#include "Quillary/Previews/MarkdownStyle.h"
#include "QuillaryCore/Formats/MarkdownInline.h"

#include <QFontMetricsF>
#include <QPalette>
#include <QTextLayout>
#include <QTextOption>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

QString shownIn(const MarkdownStyledText& text) {
    QString shown = text.text;
    return shown.replace(u'\n', QChar::LineSeparator);
}

/// The height of a text's lines as the layout makes them.
double laidOutHeight(const MarkdownStyledText& text, const QFont& font, double width) {
    QTextLayout layout(shownIn(text), font);
    layout.setFormats(MarkdownFormats::ofText(text, font, QPalette()));
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    const QFontMetricsF metrics(font);
    double height = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        const double ascent = std::max(line.ascent(), metrics.ascent());
        height += ascent + std::max(line.height() - line.ascent(), metrics.height() - metrics.ascent());
    }
    layout.endLayout();
    return height;
}

} // namespace

TEST(MarkdownCellBound, NoCellIsHigherThanItsBound) {
    const QStringList words = {u"a"_s,
                               u"l'organizzazione"_s,
                               u"perché"_s,
                               u"AVATAR"_s,
                               u"Tomorrow,"_s,
                               u"ffi"_s,
                               u"precipitevolissimevolmente"_s,
                               u"fine-settimana"_s,
                               u"(f)"_s,
                               u"**grassetto**"_s,
                               u"*corsivo*"_s,
                               u"`codice`"_s,
                               u"~~via~~"_s,
                               u"[un link](x.md)"_s,
                               u"**`a`***b*c"_s,
                               u"1.234,50"_s,
                               u"…"_s,
                               u"città"_s,
                               u"  "_s};
    std::mt19937 random(7);
    int told = 0;
    for (const double size : {11.0, 13.0, 20.0}) {
        const MarkdownStyle style(size);
        for (const QFont& font : {style.cell, style.headerCell}) {
            MarkdownCellBound bound(font);
            for (int round = 0; round < 300; ++round) {
                QString raw;
                for (auto count = random() % 30; count > 0; --count) {
                    raw += words.at(static_cast<qsizetype>(random()) % words.size()) + u' ';
                }
                const MarkdownStyledText text = MarkdownInline::styled(raw.trimmed());
                const double width = 10 + static_cast<double>(random() % 300);
                const double most = bound.heightOf(text, width);
                EXPECT_GE(most, laidOutHeight(text, font, width)) << raw.toStdString() << " in " << width;
                told += std::isfinite(most) ? 1 : 0;
            }
        }
    }
    EXPECT_GT(told, 500);
}

TEST(MarkdownCellBound, IsHardlyMoreThanUsualTextTakes) {
    const MarkdownStyle style(13);
    MarkdownCellBound bound(style.cell);
    const MarkdownStyledText text = MarkdownInline::styled(
        u"Nel mezzo del cammin di nostra vita mi ritrovai per una selva oscura, **perché** la diritta via era "
        "smarrita. Ahi quanto a dir qual era è cosa dura esta selva selvaggia e *aspra* e forte, che nel pensier "
        "rinova la paura!"_s);
    for (const double width : {80.0, 120.0, 200.0, 340.0}) {
        const double height = laidOutHeight(text, style.cell, width);
        EXPECT_LE(bound.heightOf(text, width), height * 1.15 + QFontMetricsF(style.cell).height()) << width;
    }
}

TEST(MarkdownCellBound, AnEmptyCellHasALine) {
    const MarkdownStyle style(13);
    MarkdownCellBound bound(style.cell);
    EXPECT_GE(bound.heightOf({}, 100), laidOutHeight({}, style.cell, 100));
    EXPECT_LT(bound.heightOf({}, 100), 2 * QFontMetricsF(style.cell).height());
}

TEST(MarkdownCellBound, LineEndsMakeLines) {
    const MarkdownStyle style(13);
    MarkdownCellBound bound(style.cell);
    MarkdownStyledText text;
    text.text = u"a\nb\n\nc"_s;
    text.runs.emplace_back().length = 6;
    EXPECT_GE(bound.heightOf(text, 300), laidOutHeight(text, style.cell, 300));
}

TEST(MarkdownCellBound, TellsNothingOfLettersThatDoNotStandAlone) {
    const MarkdownStyle style(13);
    MarkdownCellBound bound(style.cell);
    for (const QString& raw : {u"e\u0301"_s, u"שלום"_s, u"العربية"_s, u"漢字かな"_s, u"👩‍👩‍👧"_s,
                               u"a\u00ADb"_s, u"a\tb"_s, u"\u0001"_s, u"a\uFFFCb"_s}) {
        MarkdownStyledText text;
        text.text = raw;
        text.runs.emplace_back().length = static_cast<qint32>(raw.size());
        EXPECT_TRUE(std::isinf(bound.heightOf(text, 200))) << raw.toStdString();
        EXPECT_TRUE(std::isinf(bound.heightOf(text, 5))) << raw.toStdString();
    }
    // A line of it that is too long breaks at its dashes too, each of which leaves another rest of a line.
    const MarkdownStyledText dashes = MarkdownInline::styled(u"precipite-volissime-volmente"_s);
    EXPECT_TRUE(std::isinf(bound.heightOf(dashes, 60)));
    EXPECT_TRUE(std::isfinite(bound.heightOf(dashes, 400)));
}
