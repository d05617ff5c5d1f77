#include "QuillaryCore/Unicode/LocalizedContainment.h"

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

struct Containment {
    QString query;
    QString text;
    bool found;
};

const Containment containments[] = {
    {u"nota"_s, u"Una NOTA di prova"_s, true},
    {u"NOTA"_s, u"una nota"_s, true},
    {u"nota"_s, u"note"_s, false},
    {u"nota"_s, u"not"_s, false},
    {u"nota"_s, u""_s, false},
    {u""_s, u"nota"_s, false},
    {u""_s, u""_s, false},
    {u"a b"_s, u"xA By"_s, true},
    {u"[2]."_s, u"voce [2]. fine"_s, true},
    {u"@"_s, u"`"_s, false},
    {u"["_s, u"{"_s, false},
    // accents matter, how they are composed does not
    {u"perche"_s, u"perch\u00E9"_s, false},
    {u"perch"_s, u"perch\u00E9"_s, true},
    {u"perch\u00E9"_s, u"PERCH\u00C9"_s, true},
    {u"perch\u00E9"_s, u"Perche\u0301"_s, true},
    {u"perche\u0301"_s, u"PERCH\u00C9 no"_s, true},
    {u"perch\u00E9"_s, u"perche"_s, false},
    {u"perch\u00E9"_s, u"perch\u00E8"_s, false},
    {u"\u00E8"_s, u"tutto \u00C8 qui"_s, true},
    {u"\u00E8"_s, u"e\u0300"_s, true},
    {u"e"_s, u"e\u0300"_s, false},
    {u"\u0300"_s, u"e\u0300"_s, false},
    {u"q\u0307\u0323"_s, u"Q\u0323\u0307"_s, true},
    {u"\u1EC7"_s, u"E\u0302\u0323"_s, true},
    {u"\u1EB9"_s, u"\u1EC7"_s, false},
    // letters whose other case is more than one letter, or one of another script
    {u"strasse"_s, u"Stra\u00DFe"_s, true},
    {u"stra\u00DFe"_s, u"STRASSE"_s, true},
    {u"s"_s, u"\u00DF"_s, false},
    {u"as"_s, u"a\u00DF"_s, false},
    {u"\u00DF"_s, u"\u1E9E"_s, true},
    {u"fine"_s, u"\uFB01ne"_s, true},
    {u"\uFB01ne"_s, u"FINE"_s, true},
    {u"ine"_s, u"\uFB01ne"_s, false},
    {u"fest"_s, u"fe\uFB06"_s, true},
    {u"k"_s, u"\u212A"_s, true},
    {u"\u212B"_s, u"a\u030A"_s, true},
    {u"sole"_s, u"\u017Fole"_s, true},
    {u"\u03C3"_s, u"\u03A3\u03C2"_s, true},
    {u"\u039F\u0394\u039F\u03A3"_s, u"\u03BF\u03B4\u03BF\u03C2"_s, true},
    {u"\u1FB3"_s, u"\u0391\u0399"_s, true},
    {u"\u0416\u0423\u041A"_s, u"\u0436\u0443\u043A"_s, true},
    {u"i"_s, u"\u0130"_s, false},
    {u"\u0130"_s, u"i\u0307"_s, true},
    // width, ligatures of numbers and the like are other characters
    {u"a"_s, u"\uFF41"_s, false},
    {u"\uFF21"_s, u"\uFF41"_s, true},
    {u"2"_s, u"\u00B2"_s, false},
    {u"ab"_s, u"a\u00ADb"_s, false},
    // a match takes whole characters
    {u"\U0001F468"_s, u"\U0001F468\u200D\U0001F469"_s, false},
    {u"\U0001F469"_s, u"\U0001F468\u200D\U0001F469"_s, false},
    {u"\U0001F600"_s, u"ah \U0001F600!"_s, true},
    {u"\U0001F1F9\U0001F1EE"_s, u"\U0001F1EE\U0001F1F9\U0001F1EE\U0001F1F9"_s, false},
    {u"1"_s, u"1\uFE0F\u20E3"_s, false},
    {u"1"_s, u"1\uFE0F\u20E3 1"_s, true},
    {u"a\n"_s, u"a\r\n"_s, false},
    {u"\u1100"_s, u"\uAC00"_s, false},
    {u"\uAC00"_s, u"\u1100\u1161"_s, true},
    {u"\uD55C\uAD6D"_s, u"\u1112\u1161\u11AB\u1100\u116E\u11A8"_s, true},
    {u"\uD558"_s, u"\uD55C"_s, false},
    {u"\u65E5\u672C"_s, u"\u5728\u65E5\u672C"_s, true},
    {u"\u8C48"_s, u"\uF900"_s, true},
    {u"\U00010428"_s, u"\U00010400"_s, true},
    // an earlier try that fails must not hide the match
    {u"aab"_s, u"aaab"_s, true},
    {u"abab\u00E9"_s, u"ababABAB\u00C9"_s, true},
    {u"ab"_s, u"ab\u0301ab"_s, true},
    {u"aa"_s, u"aa\u0301aa"_s, true},
};

} // namespace

TEST(TextMatcher, FindsAsAPersonWould) {
    for (const Containment& each : containments) {
        SCOPED_TRACE(QString(each.query + u" in "_s + each.text).toStdString());
        EXPECT_EQ(TextMatcher(each.query, u"it").matches(each.text), each.found);
        const QString filler = u"una riga di testo; "_s.repeated(40);
        if (!each.text.isEmpty()) {
            const bool inFiller = TextMatcher(each.query, u"it").matches(filler);
            const QString within = filler + each.text + filler;
            EXPECT_EQ(TextMatcher(each.query, u"it").matches(within), each.found || inFiller);
        }
    }
}

TEST(TextMatcher, TheTurkishIsAreTwoLetters) {
    EXPECT_FALSE(TextMatcher(u"istanbul", u"it").matches(u"\u0130stanbul"));
    EXPECT_TRUE(TextMatcher(u"istanbul", u"tr_TR").matches(u"\u0130stanbul"));
    EXPECT_FALSE(TextMatcher(u"istanbul", u"tr").matches(u"Istanbul"));
    EXPECT_TRUE(TextMatcher(u"\u0131", u"az").matches(u"I"));
    EXPECT_TRUE(TextMatcher(u"istanbul", u"it").matches(u"ISTANBUL"));
    EXPECT_TRUE(TextMatcher(u"i", u"trv").matches(u"I"));
}

TEST(TextMatcher, ALoneSurrogateIsNoHalfOfAPair) {
    const QString lead(QChar(0xD83D));
    const QString trail(QChar(0xDE00));
    const QString pair = lead + trail;
    EXPECT_TRUE(TextMatcher(lead, u"it").matches(QString(u'a' + lead + u'b')));
    EXPECT_FALSE(TextMatcher(lead, u"it").matches(pair));
    EXPECT_FALSE(TextMatcher(trail, u"it").matches(pair));
}

} // namespace quillary
