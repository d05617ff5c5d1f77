#include "QuillaryCore/Notes/NoteNaming.h"

#include "QuillaryCore/Unicode/DatePattern.h"
#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono;

const QString emojiFamily = u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s;

} // namespace

TEST(DefaultTitle, HoldsDateAndTimeOfTheZone) {
    const Moment moment = Moment(sys_days(2026y / March / 5)) + 8h + 7min + 59s;
    EXPECT_EQ(NoteNaming::defaultTitle(moment, QTimeZone("Europe/Rome")), u"Nota 2026-03-05 09.07"_s);
    EXPECT_EQ(NoteNaming::defaultTitle(moment, QTimeZone::utc()), u"Nota 2026-03-05 08.07"_s);
    EXPECT_EQ(NoteNaming::defaultTitle(moment, QTimeZone("America/Los_Angeles")), u"Nota 2026-03-05 00.07"_s);
    EXPECT_EQ(NoteNaming::defaultTitle(moment, QTimeZone(-9 * 3600)), u"Nota 2026-03-04 23.07"_s);
}

TEST(DefaultTitle, FollowsSummerTime) {
    const Moment moment = Moment(sys_days(2026y / July / 1)) + 22h + 30min;
    EXPECT_EQ(NoteNaming::defaultTitle(moment, QTimeZone("Europe/Rome")), u"Nota 2026-07-02 00.30"_s);
}

TEST(DefaultTitle, IsInWesternDigitsWhateverTheInterfacesLocale) {
    const QString before = interfaceLocale();
    setInterfaceLocale(u"ar_EG"_s);
    EXPECT_EQ(NoteNaming::defaultTitle(Moment{}, QTimeZone::utc()), u"Nota 1970-01-01 00.00"_s);
    setInterfaceLocale(before);
}

TEST(DefaultTitle, KeepsNoFormatter) {
    const qsizetype before = keptDateFormatters();
    EXPECT_EQ(NoteNaming::defaultTitle(Moment{}, QTimeZone("Pacific/Kiritimati")), u"Nota 1969-12-31 13.20"_s);
    EXPECT_EQ(keptDateFormatters(), before);
}

TEST(SanitizedTitle, IsASafeBaseName) {
    const struct {
        QString title;
        QString expected;
    } cases[] = {
        {u""_s, u""_s},
        {QString(), u""_s},
        {u"Idee per cena"_s, u"Idee per cena"_s},
        // separators, control and format characters, line ends: a hyphen each
        {u"a/b:c"_s, u"a-b-c"_s},
        {u"a\\b"_s, u"a-b"_s},
        {u"a\r\nb"_s, u"a--b"_s},
        {u"a\tb"_s, u"a-b"_s},
        {u"a\u007F\u0085b"_s, u"a--b"_s},
        {u"a\u2028b\u2029c"_s, u"a-b-c"_s},
        {u"a\u000B\u000Cb"_s, u"a--b"_s},
        {QString(u"a"_s + QChar(0) + u"b"_s), u"a-b"_s},
        {u"a\u00ADb\u200Bc\u200Dd\uFEFFe"_s, u"a-b-c-d-e"_s},
        {u"a\U000E0020b"_s, u"a-b"_s},
        {emojiFamily, u"\U0001F468-\U0001F469-\U0001F467"_s},
        {u"/"_s, u"-"_s},
        {u"\n nota \n"_s, u"- nota -"_s},
        // everything else stays, surrogates that stand for bytes too
        {u"a*?\"<>|%b"_s, u"a*?\"<>|%b"_s},
        {u"perche\u0301"_s, u"perche\u0301"_s},
        {u"\U0001F600"_s, u"\U0001F600"_s},
        {QString(u"caff"_s + QChar(0xDCE8)), QString(u"caff"_s + QChar(0xDCE8))},
        // blanks at both ends
        {u"  nota  "_s, u"nota"_s},
        {u"\u00A0\u3000nota\u2003"_s, u"nota"_s},
        {u"   "_s, u""_s},
        // full stops at the front
        {u"..."_s, u""_s},
        {u".nota"_s, u"nota"_s},
        {u"...nota.md."_s, u"nota.md."_s},
        {u". x"_s, u" x"_s},
        {u" .x"_s, u"x"_s},
        {u". .x"_s, u" .x"_s},
        {u".\u0301x"_s, u"x"_s},
    };

    for (const auto& [title, expected] : cases) {
        EXPECT_EQ(NoteNaming::sanitizedTitle(title), expected) << title.toStdString();
    }
}

TEST(SanitizedTitle, HasAtMostAHundredAndTwentyCharacters) {
    EXPECT_EQ(NoteNaming::sanitizedTitle(QString(120, u'a')), QString(120, u'a'));
    EXPECT_EQ(NoteNaming::sanitizedTitle(QString(121, u'a')), QString(120, u'a'));
    EXPECT_EQ(NoteNaming::sanitizedTitle(QString(200, u'a')), QString(120, u'a'));
    const QString accents = u"e\u0301"_s;
    EXPECT_EQ(NoteNaming::sanitizedTitle(accents.repeated(120)), accents.repeated(120));
    EXPECT_EQ(NoteNaming::sanitizedTitle(accents.repeated(121)), accents.repeated(120));
    const QString flag = u"\U0001F1EE\U0001F1F9"_s;
    EXPECT_EQ(NoteNaming::sanitizedTitle(flag.repeated(150)), flag.repeated(120));
}

TEST(SanitizedTitle, IsTrimmedAgainWhereItWasCut) {
    const QString title = QString(118, u'a') + u"  bb"_s;
    EXPECT_EQ(NoteNaming::sanitizedTitle(title), QString(118, u'a'));
    // Uncovered by a full stop that went, a blank at the front stays, unless the title is cut.
    EXPECT_EQ(NoteNaming::sanitizedTitle(QString(u". "_s + QString(200, u'a'))), QString(119, u'a'));
    EXPECT_EQ(NoteNaming::sanitizedTitle(QString(u". "_s + QString(119, u'a'))), QString(u' ' + QString(119, u'a')));
}

TEST(SanitizedTitle, DoesNotChangeASanitizedTitle) {
    for (const QString& title : {u"a/b"_s, u".x"_s, u" nota "_s, QString(130, u'b'), emojiFamily}) {
        const QString once = NoteNaming::sanitizedTitle(title);
        EXPECT_EQ(NoteNaming::sanitizedTitle(once), once);
    }
}

} // namespace quillary
