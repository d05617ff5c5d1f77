#include "QuillaryCore/Notes/NoteSnippet.h"

#include <gtest/gtest.h>

namespace quillary {

using namespace Qt::StringLiterals;

TEST(NoteSnippet, IsTheFirstLineWithSomethingToShow) {
    const struct {
        QString text;
        QString snippet;
    } cases[] = {
        {u""_s, u""_s},
        {u"una riga"_s, u"una riga"_s},
        {u"una\ndue"_s, u"una"_s},
        {u"\n\n  \t\nqui\nla"_s, u"qui"_s},
        {u"   "_s, u""_s},
        {u"\u00A0\u3000x\u2009\t"_s, u"x"_s},
        // every line end there is
        {u"a\r\nb"_s, u"a"_s},
        {u"\r\n\r\nb"_s, u"b"_s},
        {u"a\rb"_s, u"a"_s},
        {u"a\u000Bb"_s, u"a"_s},
        {u"a\u000Cb"_s, u"a"_s},
        {u"a\u0085b"_s, u"a"_s},
        {u"a\u2028b"_s, u"a"_s},
        {u"a\u2029b"_s, u"a"_s},
        {u"a\u001Cb"_s, u"a\u001Cb"_s},
        // the marks of a heading, in every format
        {u"  ## Title  \nrest"_s, u"Title"_s},
        {u"#\nBody"_s, u"Body"_s},
        {u"#tag"_s, u"tag"_s},
        {u"#### \nx"_s, u"x"_s},
        {u"###\n\n##\n  # \n"_s, u""_s},
        {u"# #x"_s, u"#x"_s},
        {u"#\t\u00A0x"_s, u"x"_s},
        {u"#\uFE0F\u20E3 tasto"_s, u"#\uFE0F\u20E3 tasto"_s},
        {u"##\u0301x"_s, u"#\u0301x"_s},
        // and no other marks
        {u"{\n  \"a\": 1\n}"_s, u"{"_s},
        {u"**forte** [a](b)"_s, u"**forte** [a](b)"_s},
        {u"- voce"_s, u"- voce"_s},
        {u"> # x"_s, u"> # x"_s},
        // a blank that carries a mark is trimmed by itself
        {u" \u0301x"_s, u"\u0301x"_s},
    };

    for (const auto& [text, snippet] : cases) {
        EXPECT_EQ(NoteSnippet::make(text, 100), snippet) << text.toStdString();
    }
}

TEST(NoteSnippet, IsCutToItsLimitInCharacters) {
    EXPECT_EQ(NoteSnippet::make(QString(250, u'a'), 100), QString(100, u'a'));
    EXPECT_EQ(NoteSnippet::make(u"parola lunga", 8), u"parola l"_s);
    EXPECT_EQ(NoteSnippet::make(u"abc", 0), u""_s);
    const QString family = u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s;
    EXPECT_EQ(NoteSnippet::make(family.repeated(120), 100), family.repeated(100));
    EXPECT_EQ(NoteSnippet::make(QString(QString(99, u'a') + family + u'b'), 100), QString(QString(99, u'a') + family));
}

TEST(NoteSnippet, LooksAtFourThousandCharacters) {
    EXPECT_EQ(NoteSnippet::make(QString(QString(3999, u'\n') + u"xy"_s), 100), u"x"_s);
    EXPECT_EQ(NoteSnippet::make(QString(QString(4000, u'\n') + u"xy"_s), 100), u""_s);
    EXPECT_EQ(NoteSnippet::make(QString(u"\r\n"_s.repeated(3999) + u"xy"_s), 100), u"x"_s);
    EXPECT_EQ(NoteSnippet::make(QString(u"\r\n"_s.repeated(4000) + u"xy"_s), 100), u""_s);
    EXPECT_EQ(NoteSnippet::make(QString(QString(3999, u' ') + u"e\u0301x"_s), 100), u"e\u0301"_s);
    EXPECT_EQ(NoteSnippet::make(QString(QString(4000, u'#') + u"x"_s), 100), u""_s);
    EXPECT_EQ(NoteSnippet::make(QString(4000, u'a'), 5000), QString(4000, u'a'));
    EXPECT_EQ(NoteSnippet::make(QString(4100, u'a'), 5000), QString(4000, u'a'));
}

TEST(NoteSnippet, TrimsALineThatTheSearchCutsOff) {
    EXPECT_EQ(NoteSnippet::make(QString(u'a' + QString(5000, u' ') + u'b'), 100), u"a"_s);
}

} // namespace quillary
