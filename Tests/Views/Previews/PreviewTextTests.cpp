#include "Quillary/Previews/PreviewText.h"

#include <QTextDocument>

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// What a reader of HTML, as QToolTip is one, makes of a text.
QString asRead(const QString& html) {
    QTextDocument document;
    document.setHtml(html);
    return document.toPlainText();
}

} // namespace

TEST(PreviewText, LayoutsGetTextsOfTheSameLengthWithoutWhatConfusesThem) {
    const QString text = u"a\nb\t\u0000\u001B\uFFFC\u2029\u0085è"_s;
    const QString shown = PreviewText::shown(text);
    EXPECT_EQ(shown, u"a\u2028b\t\u2400\u241B\u25A1\u2028\u25A1è"_s);
    EXPECT_EQ(PreviewText::shown(u"niente"_s), u"niente"_s);
}

TEST(PreviewText, OneLineHasNoLineEndsAndIsNoLongerThanAsked) {
    EXPECT_EQ(PreviewText::oneLine(u"a\r\nb\tc"_s), u"a  b c"_s);
    EXPECT_EQ(PreviewText::oneLine(u"abcdef"_s, 3), u"abc…"_s);
    EXPECT_EQ(PreviewText::oneLine(u"abc"_s, 3), u"abc"_s);
    // Not within a character.
    EXPECT_EQ(PreviewText::oneLine(u"ab😀d"_s, 3), u"ab…"_s);
    EXPECT_EQ(PreviewText::oneLine(u"abe\u0301d"_s, 3), u"ab…"_s);
}

TEST(PreviewText, ToolTipsNeverReadMarkup) {
    for (const QString& text :
         {u"<b>grassetto</b>"_s, u"<img src=\"http://esempio.it/x.png\">"_s, u"a & b &amp; c"_s}) {
        EXPECT_EQ(asRead(PreviewText::toolTip(text)), text);
    }
    EXPECT_LT(PreviewText::toolTip(QString(1'000'000, u'x')).size(), 2000);
}

TEST(PreviewText, ALinksToolTipShowsWhereItLeads) {
    struct Case {
        QString target;
        QString shown;
    };

    const QList<Case> cases = {
        {u"https://esempio.it/a?b=c#d"_s, u"https://esempio.it/a?b=c#d"_s},
        // A name that only looks like another.
        {u"https://www.р\u0430ypal.com/"_s, u"https://www.xn--ypal-43d9g.com/"_s},
        // What comes before "@" is no host.
        {u"https://banca.it@esempio.it/"_s, u"https://banca.it@esempio.it/"_s},
        {u"altra nota.md"_s, u"altra nota.md"_s},
        {u"città.md#parte"_s, u"città.md#parte"_s},
        {u"#parte"_s, u"#parte"_s},
        // Signs that turn the direction of the text, or that nobody sees.
        {u"nota\u202Efdp.exe"_s, u"nota%E2%80%AEfdp.exe"_s},
        {u"a\u200Bb\nc.md"_s, u"a%E2%80%8Bb%0Ac.md"_s},
        {u"<b>x</b>"_s, u"<b>x</b>"_s},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(asRead(PreviewText::linkToolTip(each.target)), each.shown);
    }
}
