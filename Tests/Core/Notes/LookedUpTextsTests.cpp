#include "QuillaryCore/Notes/NoteDates.h"
#include "QuillaryCore/Notes/NoteFileStore.h"
#include "QuillaryCore/Notes/NoteFormat.h"
#include "QuillaryCore/Notes/NoteNaming.h"
#include "QuillaryCore/Notes/NoteSortOrder.h"
#include "QuillaryCore/Notes/NoteStoreError.h"

#include <QCoreApplication>
#include <QTranslator>

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono;

/// Shows which texts are looked up: each comes back in brackets.
class BracketingTranslator : public QTranslator {
public:
    bool isEmpty() const override { return false; }

    QString translate(const char* /*context*/, const char* source, const char* /*comment*/,
                      int /*number*/) const override {
        return u'<' + QString::fromUtf8(source) + u'>';
    }
};

Moment noon(year_month_day date) {
    return Moment(sys_days(date)) + 12h;
}

} // namespace

TEST(LookedUpTexts, AreThoseForThePersonAndNeitherProductNamesNorDates) {
    const auto shortText = [](year_month_day date) {
        return NoteDateText::shortText(noon(date), noon(2026y / February / 20), QTimeZone::utc(), u"it"_s);
    };
    const auto group = [](year_month_day date) {
        return NoteDateGroup::title(noon(date), noon(2026y / February / 20), QTimeZone::utc(), u"it"_s);
    };
    BracketingTranslator translator;
    ASSERT_TRUE(QCoreApplication::installTranslator(&translator));
    const std::pair<QString, QString> cases[] = {
        {displayName(NoteFormat::plain), u"<Testo>"_s},
        {displayName(NoteFormat::markdown), u"Markdown"_s},
        {displayName(NoteFormat::json), u"JSON"_s},
        {displayName(NoteFormat::csv), u"CSV"_s},
        {displayName(NoteFormat::html), u"HTML"_s},
        {displayName(NoteFormat::css), u"CSS"_s},
        {displayName(NoteFormat::javascript), u"JavaScript"_s},
        {displayName(NoteFormat::php), u"PHP"_s},
        {displayName(NoteSortOrder::created), u"<Data di creazione>"_s},
        {displayName(NoteSortOrder::modified), u"<Ultima modifica>"_s},
        {displayName(NoteSortOrder::title), u"<Titolo>"_s},
        {displayName(NoteSortOrder::manual), u"<Manuale (trascinando)>"_s},
        {NoteStoreError::fileTooLarge(u"a.md"_s, 40'000'000).errorDescription(),
         u"<«a.md» è troppo grande per essere aperto (40 MB).>"_s},
        {NoteStoreError::creationFailed(u"a.md"_s).errorDescription(), u"<Impossibile creare «a.md».>"_s},
        {NoteStoreError::invalidName().errorDescription(), u"<Il nome non è valido.>"_s},
        {NoteFileStore::fallbackTitle(), u"<Senza titolo>"_s},
        {NoteFileStore::defaultFolderName(), u"<Nuova cartella>"_s},
        {NoteNaming::defaultTitle(noon(2026y / March / 5), QTimeZone::utc()), u"<Nota >2026-03-05 12.00"_s},
        {shortText(2026y / February / 20), u"12:00"_s},
        {shortText(2026y / February / 19), u"<ieri>"_s},
        {shortText(2026y / February / 14), u"sab"_s},
        {shortText(2026y / January / 1), u"1 gen"_s},
        {group(2026y / February / 20), u"<Oggi>"_s},
        {group(2026y / February / 19), u"<Ieri>"_s},
        {group(2026y / February / 14), u"<Ultimi 7 giorni>"_s},
        {group(2026y / January / 22), u"<Ultimi 30 giorni>"_s},
        {group(2026y / January / 1), u"Gennaio"_s},
        {group(2025y / March / 3), u"Marzo 2025"_s},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(text, expected);
    }
}

} // namespace quillary
