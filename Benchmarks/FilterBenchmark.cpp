// The sidebar's filter: ten thousand notes of 4 KB against one query, beside QString::contains without case, which
// knows neither composition nor the borders of characters.

#include "PeerTable.h"
#include "QuillaryCore/Unicode/LocalizedContainment.h"

#include <QStringList>

#include <algorithm>
#include <random>

namespace {

using namespace Qt::StringLiterals;
using quillary::compareWithPeer;
using quillary::TextMatcher;

constexpr int noteCount = 10'000;
constexpr qsizetype noteLength = 4096;
constexpr double aimedRatio = 0.12;
constexpr double highestRatio = 0.5;

/// Notes of common Italian words, with accents, capitals and punctuation as they come.
QStringList makeNotes() {
    const QStringList words =
        u"il la di che non per una sono con del questo alla come anche pi\u00F9 nella essere stato quando progetto "
        u"lavoro settimana domani ricordare comprare telefono riunione perch\u00E9 citt\u00E0 \u00E8 cos\u00EC libro "
        u"casa Roma Milano Giulia Marco, allora. domenica; prima (dopo) sempre\n - voce\n\n# Titolo\n 12 2026 10:30"_s
            .split(u' ');
    std::mt19937 random(1);
    QStringList notes;
    for (int i = 0; i < noteCount; ++i) {
        QString note;
        note.reserve(noteLength + 32);
        while (note.size() < noteLength) {
            note += words[static_cast<qsizetype>(random() % static_cast<std::size_t>(words.size()))];
            note += u' ';
        }
        note.truncate(noteLength);
        notes.append(note);
    }
    return notes;
}

void compareQuery(const char* task, const QStringList& notes, const QString& query) {
    static qsizetype found = 0;
    compareWithPeer(
        task, "QString::contains without case", aimedRatio, highestRatio,
        [&] {
            const TextMatcher matcher(query, u"it");
            found +=
                std::count_if(notes.begin(), notes.end(), [&](const QString& note) { return matcher.matches(note); });
        },
        [&] {
            found += std::count_if(notes.begin(), notes.end(),
                                   [&](const QString& note) { return note.contains(query, Qt::CaseInsensitive); });
        });
    quillary::keep(found);
}

} // namespace

int main() {
    const QStringList notes = makeNotes();
    compareQuery("a word that no note has", notes, u"finestra"_s);
    compareQuery("a word of common letters", notes, u"teatrali"_s);
    compareQuery("two letters that no note has together", notes, u"wk"_s);
    compareQuery("a word with k and s", notes, u"sketch"_s);
    compareQuery("a word with an accent", notes, u"virt\u00F9"_s);
    compareQuery("a lone letter with an accent", notes, u"\u00FC"_s);
    compareQuery("a word with double s", notes, u"rosso"_s);
    compareQuery("a word in Greek", notes, u"\u03BB\u03CC\u03B3\u03BF\u03C2"_s);
    compareQuery("a word in Chinese", notes, u"\u7B14\u8BB0"_s);
    compareQuery("a word in Korean", notes, u"\uBA54\uBAA8"_s);
    compareQuery("a word that some notes have", QStringList(notes) << u"Vecchia FINESTRA."_s, u"finestra"_s);
    return 0;
}
