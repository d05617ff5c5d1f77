#include "QuillaryCore/Unicode/LocalizedContainment.h"

#include "Tests/Core/Unicode/ContainmentReference.h"

#include <gtest/gtest.h>

#include <random>

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
        EXPECT_EQ(TextMatcher(each.query, u"it").matchesByForms(each.text), each.found);
        const QString filler = u"una riga di testo; "_s.repeated(40);
        if (!each.text.isEmpty()) {
            const bool inFiller = TextMatcher(each.query, u"it").matches(filler);
            const QString within = filler + each.text + filler;
            EXPECT_EQ(TextMatcher(each.query, u"it").matches(within), each.found || inFiller);
        }
    }
}

TEST(TextMatcher, FindsNothingWithAnEmptyQuery) {
    EXPECT_FALSE(TextMatcher(QString(), u"it").matches(u"nota"));
    EXPECT_FALSE(TextMatcher(QString(), u"it").matches({}));
}

TEST(TextMatcher, FindsAtEveryPlaceOfATextOfAnyLength) {
    for (const QString& query : {u"nota"_s, u"n"_s, u"k"_s, u"perch\u00E9"_s, u"\u00E8"_s, u"ss"_s, u"\uD55C"_s}) {
        const TextMatcher matcher(query, u"it");
        for (qsizetype length = 0; length <= 70; ++length) {
            const QString filler(length, u'.');
            ASSERT_FALSE(matcher.matches(filler));
            for (qsizetype place = 0; place <= length; ++place) {
                const QString text = filler.first(place) + query.toUpper() + filler.sliced(place);
                ASSERT_TRUE(matcher.matches(text)) << query.toStdString() << " at " << place << " of " << length;
            }
        }
    }
}

TEST(TextMatcher, FindsEveryCharacterThatHasCaseOrCompositionByItsFormAndBack) {
    for (char32_t character = 1; character <= 0x1FFFF; ++character) {
        if (QChar::isSurrogate(character)) {
            continue;
        }
        const QString text = QString::fromUcs4(&character, 1);
        const QString form = caselessForm(text, CaseFolding::ordinary);
        if (form == text) {
            continue;
        }
        ASSERT_TRUE(TextMatcher(form, u"it").matches(text)) << std::hex << static_cast<quint32>(character);
        ASSERT_TRUE(TextMatcher(text, u"it").matches(form)) << std::hex << static_cast<quint32>(character);
        const QString within = u"abc "_s.repeated(9) + text + u" xyz"_s;
        ASSERT_TRUE(TextMatcher(QString(u' ' + form + u' '), u"it").matches(within))
            << std::hex << static_cast<quint32>(character);
    }
}

TEST(TextMatcher, AgreesWithComparingEveryStretchOfClusters) {
    const std::u32string alphabet = U"aAeEkKsSfFiItT .\u00E9\u00C9\u0301\u0300\u0323\u0345\u00DF\u1E9E\u017F"
                                    U"\u212A\uFB00\uFB01\uFB03\uFB06\u0149\u01F0\u030C\u0130\u0307\u03B1\u0391"
                                    U"\u03B9\u0399\u1FB3\u1FB4\u1FB7\u0342\u1112\u1161\u11AB\uD558\uD55C\u09C7"
                                    U"\u09BE\u09CB\u200D\uFE0F\U0001F1EE\U0001F1F9\U0001F468\U00010400\U00010428"
                                    U"\U0002F800\u4E3D";
    std::mt19937 random(3);
    const auto randomText = [&](int longest) {
        // A few letters at a time, or hardly anything would ever match.
        std::u32string letters;
        for (int i = 0; i < 5; ++i) {
            letters += alphabet[random() % alphabet.size()];
        }
        QString text;
        for (auto left = random() % static_cast<unsigned>(longest); left > 0; --left) {
            text += QString::fromUcs4(&letters[random() % letters.size()], 1);
        }
        return text;
    };
    int found = 0;
    for (int round = 0; round < 6000; ++round) {
        const QString text = randomText(24);
        QString query = randomText(5);
        if (round % 2 == 0 && !text.isEmpty()) {
            const auto start = static_cast<qsizetype>(random() % static_cast<std::size_t>(text.size()));
            query = text.sliced(start).first(std::min(text.size() - start, qsizetype{4})).toUpper();
        }
        const TextMatcher matcher(query, u"it");
        const bool expected = containsByStretches(text, query);
        ASSERT_EQ(matcher.matches(text), expected)
            << query.toUtf8().toHex(' ').toStdString() << " in " << text.toUtf8().toHex(' ').toStdString();
        ASSERT_EQ(matcher.matchesByForms(text), expected);
        found += expected;
    }
    EXPECT_GT(found, 600);
}

TEST(TextMatcher, StaysLinearWhereEveryPlaceLooksLikeAMatch) {
    // Each of these takes minutes if candidates are looked at one by one.
    const qsizetype length = 100'000;

    const struct {
        QString query;
        QString text;
    } cases[] = {
        {QString(2000, u'a') + u'b', QString(length, u'a')},
        {u'b' + QString(2000, u'a'), QString(length, u'a')},
        {u"\u00E9"_s.repeated(2000) + u'b', u"\u00E9"_s.repeated(length)},
        {u"a"_s, u"a\u0301"_s.repeated(length / 2)},
        {u"\U0001F1EE"_s, u"\U0001F1EE"_s.repeated(length)},
        {u"\u0301"_s, QString(u'a' + QString(length, QChar(0x301)))},
        {u"\uD558"_s, u"\uD55C"_s.repeated(length)},
    };

    for (const auto& [query, text] : cases) {
        EXPECT_FALSE(TextMatcher(query, u"it").matches(text)) << query.left(3).toStdString();
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
