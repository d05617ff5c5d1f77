#include "Quillary/Theme/ToolTip.h"

#include <QTextDocument>
#include <QTextDocumentFragment>

#include <gtest/gtest.h>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

/// What a help text shows: as HTML if it looks like that.
QString shownTip(const QString& tip) {
    return Qt::mightBeRichText(tip) ? QTextDocumentFragment::fromHtml(tip).toPlainText() : tip;
}

} // namespace

TEST(PlainToolTip, ShowsEveryTextAsItStands) {
    for (const QString& text : {u""_s, u"Una nota.md"_s, u"Rossi & figli"_s, u"Il \"testo\""_s, u"a < b > c"_s,
                                u"<b>grassetto"_s, u"Uso di <a> e <img>"_s, u"&lt;b&gt;"_s, u"&amp; <p>"_s,
                                u"<p>  due  spazi"_s, u"<?xml"_s, u"<!DOCTYPE html>"_s, u"/home/io/<i>note"_s}) {
        EXPECT_EQ(shownTip(plainToolTip(text)), text) << text.toStdString();
    }
}
