// Find in thirty million units of mixed records: literals beside PCRE2 with its compiler and beside QString::indexOf, a
// pattern of words beside ICU itself.

#include "PeerTable.h"
#include "QuillaryCore/Find/TextSearch.h"

#include "Tests/Core/Find/PatternReference.h"

#define PCRE2_CODE_UNIT_WIDTH 16
#include <QString>
#include <QStringList>

#include <cstdlib>
#include <pcre2.h>
#include <random>

namespace {

using namespace Qt::StringLiterals;
using quillary::compareWithPeer;
using quillary::SearchMatch;
using quillary::SearchOptions;
using quillary::TextSearch;

constexpr qsizetype mostMatches = TextSearch::defaultLimit;

/// Records of words, numbers and quoted strings, one a line.
QString makeDocument(qsizetype length) {
    const QStringList words =
        u"il la di che non per una sono con del questo alla come anche nella essere stato quando progetto lavoro "
        u"settimana "
        u"domani ricordare comprare telefono riunione the of and running to walking in nothing is that string for it "
        u"was "
        u"morning on are building they Things with his Meeting at be this from have reading or by one had not but"_s
            .split(u' ');
    std::mt19937 random(1);
    QString text;
    text.reserve(length + 200);
    while (text.size() < length) {
        text += u"{\"id\": %1, \"value\": %2, \"name\": \""_s.arg(random() % 1'000'000).arg(random() % 10'000 / 7.0);
        for (int i = 0; i < 8; ++i) {
            text += words[static_cast<qsizetype>(random() % static_cast<std::size_t>(words.size()))];
            text += u' ';
        }
        text += u"\", \"done\": true}\n"_s;
    }
    return text;
}

/// The same search by PCRE2, compiled to machine code, up to as many matches.
class PcreSearch {
public:
    PcreSearch(const QString& pattern, uint32_t flags) {
        int error = 0;
        PCRE2_SIZE where = 0;
        m_code = pcre2_compile(units(pattern), static_cast<PCRE2_SIZE>(pattern.size()), flags, &error, &where, nullptr);
        if (m_code == nullptr || pcre2_jit_compile(m_code, PCRE2_JIT_COMPLETE) != 0) {
            std::abort();
        }
        m_match = pcre2_match_data_create_from_pattern(m_code, nullptr);
    }

    ~PcreSearch() {
        pcre2_match_data_free(m_match);
        pcre2_code_free(m_code);
    }

    PcreSearch(const PcreSearch&) = delete;
    PcreSearch& operator=(const PcreSearch&) = delete;

    std::vector<SearchMatch> matches(const QString& text) const {
        std::vector<SearchMatch> found;
        PCRE2_SIZE from = 0;
        while (static_cast<qsizetype>(found.size()) < mostMatches &&
               pcre2_jit_match(m_code, units(text), static_cast<PCRE2_SIZE>(text.size()), from, 0, m_match, nullptr) >
                   0) {
            const PCRE2_SIZE* const ends = pcre2_get_ovector_pointer(m_match);
            found.push_back({{static_cast<qsizetype>(ends[0]), static_cast<qsizetype>(ends[1] - ends[0])}});
            from = ends[1];
        }
        return found;
    }

private:
    static PCRE2_SPTR units(const QString& text) { return reinterpret_cast<PCRE2_SPTR>(text.utf16()); }

    pcre2_code* m_code = nullptr;
    pcre2_match_data* m_match = nullptr;
};

std::vector<SearchMatch> indexOfMatches(const QString& query, const QString& text,
                                        Qt::CaseSensitivity caseSensitivity) {
    std::vector<SearchMatch> found;
    for (qsizetype at = text.indexOf(query, 0, caseSensitivity);
         at >= 0 && static_cast<qsizetype>(found.size()) < mostMatches;
         at = text.indexOf(query, at + query.size(), caseSensitivity)) {
        found.push_back({{at, query.size()}});
    }
    return found;
}

void require(bool holds) {
    if (!holds) {
        std::fputs("the matches differ\n", stderr);
        std::abort();
    }
}

void compareLiteral(const QString& text, const QString& query, bool caseSensitive) {
    const auto search = TextSearch::make(query, {.caseSensitive = caseSensitive});
    const PcreSearch peer(query,
                          PCRE2_LITERAL | PCRE2_UTF | PCRE2_NO_UTF_CHECK | (caseSensitive ? 0U : PCRE2_CASELESS));
    const Qt::CaseSensitivity sensitivity = caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive;
    const std::vector<SearchMatch> matches = search->matches(text);
    require(matches == peer.matches(text) && matches == indexOfMatches(query, text, sensitivity));
    const QByteArray task = u"\"%1\" %2, %3 found"_s.arg(query, caseSensitive ? u"as it is"_s : u"without case"_s)
                                .arg(matches.size())
                                .toUtf8();
    static std::size_t found = 0;
    constexpr double aim = 1.0;
    const auto own = [&] { found += search->matches(text).size(); };
    compareWithPeer(task.constData(), "PCRE2 with JIT", aim, quillary::unbounded, own,
                    [&] { found += peer.matches(text).size(); });
    compareWithPeer(task.constData(), "QString::indexOf", aim, aim, own,
                    [&] { found += indexOfMatches(query, text, sensitivity).size(); });
    quillary::keep(found);
}

void comparePattern(const QString& text, const QString& pattern) {
    const SearchOptions options{.caseSensitive = false, .wholeWord = false, .regex = true};
    const auto search = TextSearch::make(pattern, options);
    const PcreSearch peer(pattern, PCRE2_CASELESS | PCRE2_MULTILINE | PCRE2_UTF | PCRE2_UCP | PCRE2_NO_UTF_CHECK);
    const std::vector<SearchMatch> matches = search->matches(text);
    require(matches == quillary::referenceMatches(pattern, options, text, mostMatches, 0) &&
            matches == peer.matches(text));
    const QByteArray task = u"%1, %2 found"_s.arg(pattern).arg(matches.size()).toUtf8();
    static std::size_t found = 0;
    constexpr double aim = 0.16;
    const auto own = [&] { found += search->matches(text).size(); };
    compareWithPeer(task.constData(), "ICU", aim, 1.0, own,
                    [&] { found += quillary::referenceMatches(pattern, options, text, mostMatches, 0)->size(); });
    compareWithPeer(task.constData(), "PCRE2 with JIT and Unicode classes", 1.0, quillary::unbounded, own,
                    [&] { found += peer.matches(text).size(); });
    quillary::keep(found);
}

} // namespace

int main() {
    const QString text = makeDocument(30'000'000) % u"una finestra sul cortile"_s;
    for (const bool caseSensitive : {true, false}) {
        compareLiteral(text, u"finestra"_s, caseSensitive);
        compareLiteral(text, u"assente"_s, caseSensitive);
        compareLiteral(text, u"telefono"_s, caseSensitive);
        compareLiteral(text, u"zq"_s, caseSensitive);
        compareLiteral(text, u"x"_s, caseSensitive);
        compareLiteral(text, u"tasks"_s, caseSensitive);
        compareLiteral(text, u"\"id\": 123456,"_s, caseSensitive);
    }
    comparePattern(text, u"\\b\\w+ing\\b"_s);
    comparePattern(text, u"\\w+ing\\b"_s);
    comparePattern(text, u"\\d+\\.\\d+"_s);
    comparePattern(text, u"\\bfinestra\\b"_s);
    return 0;
}
