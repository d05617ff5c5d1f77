#include "QuillaryCore/Find/TextSearch.h"

#include "Fuzz/FuzzText.h"

#include "Tests/Core/Find/PatternReference.h"

#include <iterator>

/// Reads the input as options, a query and a text, mostly of characters that are hard to tell from each other or that
/// mean something in a pattern, and compares the matches with those of ICU alone; then replaces by the rest as a
/// template, which must only end.

namespace {

using namespace quillary;

/// Letters of several cases, those that stand for several, what patterns are made of, and what a boundary looks
/// through.
constexpr char16_t trickyUnits[] = {
    u'a',  u'A',  u'b',  u'e',   u'f',   u'i',   u'I',   u'k',   u'l',   u's',   u'S',   u't',   u'n',   u'g',
    u' ',  u'_',  u'\n', u'\r',  u'.',   u'*',   u'+',   u'?',   u'(',   u')',   u'[',   u']',   u'{',   u'}',
    u'|',  u'^',  u'$',  u'\\',  u'w',   u'd',   u'0',   u'1',   u'2',   u',',   u'-',   u':',   u'=',   u'!',
    u'<',  0xDF,  0x17F, 0x212A, 0x1E9E, 0xFB00, 0xFB03, 0xFB05, 0x130,  0x131,  0x307,  0x301,  0x345,  0x3C3,
    0x3C2, 0x3A3, 0xAD,  0x200D, 0x2028, 0x85,   0x1F80, 0x1F88, 0xD83D, 0xDC4D, 0xD801, 0xDC00, 0xDC28, 0x0,
};

QString textOf(const std::uint8_t* data, std::size_t size) {
    QString text;
    for (std::size_t i = 0; i < size; ++i) {
        text += QChar(trickyUnits[data[i] % std::size(trickyUnits)]);
    }
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t longestQuery = 24;
    constexpr std::size_t longestText = 2'000;
    if (size < 2 || size > longestText) {
        return 0;
    }
    const SearchOptions options{(data[0] & 1) != 0, (data[0] & 2) != 0, (data[0] & 4) != 0};
    const std::size_t queryLength = std::min(data[1] % longestQuery, size - 2);
    const QString query = textOf(data + 2, queryLength);
    const QString text = textOf(data + 2 + queryLength, size - 2 - queryLength);
    const auto search = TextSearch::make(query, options);
    if (query.isEmpty()) {
        fuzz::require(!search && search.error() == TextSearchError::emptyQuery, "no query, no search");
        return 0;
    }
    const qsizetype limit = (data[0] & 8) != 0 ? 3 : TextSearch::defaultLimit;
    const auto expected = referenceMatches(query, options, text, limit);
    if (!expected) {
        // No pattern, or one that ICU took too long for.
        return 0;
    }
    fuzz::require(search.hasValue(), "a pattern of ICU is a search");
    const std::vector<SearchMatch> matches = search->matches(text, limit);
    fuzz::require(matches == *expected, "the matches are those of the pattern");
    for (const SearchMatch& match : matches) {
        const QString plain = search->replacement(match, text, query);
        fuzz::require(options.regex || plain == query, "a literal replacement is itself");
    }
    return 0;
}
