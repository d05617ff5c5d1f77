#include "QuillaryCore/Find/TextSearch.h"

#include "Tests/Core/Find/PatternReference.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr SearchOptions literal{};
constexpr SearchOptions sensitive{.caseSensitive = true};
constexpr SearchOptions wholeWord{.wholeWord = true};
constexpr SearchOptions regex{.regex = true};
constexpr SearchOptions sensitiveRegex{.caseSensitive = true, .regex = true};
constexpr SearchOptions wholeWordRegex{.wholeWord = true, .regex = true};

QStringList found(const QString& query, SearchOptions options, const QString& text, qsizetype limit = 10'000) {
    const auto search = TextSearch::make(query, options);
    if (!search) {
        return {description(search.error())};
    }
    QStringList result;
    for (const SearchMatch& match : search->matches(text, limit)) {
        result << u"%1:%2"_s.arg(match.range.location).arg(text.mid(match.range.location, match.range.length));
    }
    return result;
}

QStringList replaced(const QString& query, SearchOptions options, const QString& text, const QString& replacement) {
    const auto search = TextSearch::make(query, options);
    QStringList result;
    for (const SearchMatch& match : search->matches(text)) {
        result << search->replacement(match, text, replacement);
    }
    return result;
}

} // namespace

TEST(SearchOptions, AreAllOffAndComparedByFields) {
    EXPECT_FALSE(SearchOptions().caseSensitive || SearchOptions().wholeWord || SearchOptions().regex);
    EXPECT_EQ(SearchOptions{}, literal);
    EXPECT_NE(sensitive, literal);
    EXPECT_NE(wholeWord, literal);
    EXPECT_NE(regex, literal);
    EXPECT_EQ(qHash(regex), qHash(SearchOptions{.regex = true}));
    EXPECT_NE(qHash(regex), qHash(wholeWord));
}

TEST(TextSearch, KeepsTheOptionsThatItWasGiven) {
    const auto search = TextSearch::make(u"a"_s, wholeWordRegex);
    ASSERT_TRUE(search);
    EXPECT_EQ(search->options(), wholeWordRegex);
}

TEST(TextSearch, RefusesAnEmptyQueryWhateverTheOptionsSay) {
    for (int bits = 0; bits < 8; ++bits) {
        const SearchOptions options{(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0};
        const auto search = TextSearch::make({}, options);
        ASSERT_FALSE(search);
        EXPECT_EQ(search.error(), TextSearchError::emptyQuery);
        EXPECT_EQ(description(search.error()), u"Nessun testo da cercare"_s);
    }
}

TEST(TextSearch, RefusesAPatternThatIsNotWellFormed) {
    for (const QString& query : QStringList{u"("_s, u")"_s, u"["_s, u"*"_s, u"a{2,1}"_s, u"\\"_s, u"(?<n"_s,
                                            u"\\p{nix}"_s, u"(?<=a*)b"_s, QString(5'000, u'(')}) {
        const auto search = TextSearch::make(query, regex);
        ASSERT_FALSE(search) << query.left(20).toStdString();
        EXPECT_EQ(search.error(), TextSearchError::invalidPattern);
        EXPECT_EQ(description(search.error()), u"Espressione regolare non valida"_s);
        EXPECT_TRUE(TextSearch::make(query, literal));
    }
}

TEST(TextSearch, FindsWhatTheQueryMeans) {
    struct Case {
        const char* name;
        QString query;
        SearchOptions options;
        QString text;
        QStringList expected;
    };

    const QString thumb = u"\U0001F44D"_s;
    const std::vector<Case> cases{
        {"a dot is a dot", u"a.b"_s, literal, u"axb a.b"_s, {u"4:a.b"_s}},
        {"a dot of a pattern is any character", u"a.b"_s, regex, u"axb a.b"_s, {u"0:axb"_s, u"4:a.b"_s}},
        {"a parenthesis", u"("_s, literal, u"f(x)"_s, {u"1:("_s}},
        {"every metacharacter stands for itself",
         u"\\*?+[](){}^$|./-#&\\E\\Q"_s,
         literal,
         u"x\\*?+[](){}^$|./-#&\\E\\Qx"_s,
         {u"1:\\*?+[](){}^$|./-#&\\E\\Q"_s}},
        {"a blank is a query", u" "_s, literal, u"a b"_s, {u"1: "_s}},
        {"blanks around a query count", u" a "_s, literal, u"a a a"_s, {u"1: a "_s}},
        {"case does not matter by default",
         u"nota"_s,
         literal,
         u"Nota NOTA nota"_s,
         {u"0:Nota"_s, u"5:NOTA"_s, u"10:nota"_s}},
        {"case matters if asked for", u"nota"_s, sensitive, u"Nota NOTA nota"_s, {u"10:nota"_s}},
        {"nor beyond ASCII", u"perch\u00C9"_s, literal, u"perch\u00E9"_s, {u"0:perch\u00E9"_s}},
        {"composition matters", u"perche\u0301"_s, literal, u"perch\u00E9"_s, {}},
        {"accents matter", u"perche"_s, literal, u"perch\u00E9"_s, {}},
        {"sharp s is two", u"STRASSE"_s, literal, u"stra\u00DFe"_s, {u"0:stra\u00DFe"_s}},
        {"two are sharp s", u"stra\u00DFe"_s, literal, u"STRASSE"_s, {u"0:STRASSE"_s}},
        {"no half of a letter", u"s"_s, literal, u"\u00DF"_s, {}},
        {"nor in a longer query", u"as"_s, literal, u"a\u00DF"_s, {}},
        {"ligatures", u"office"_s, literal, u"O\uFB03ce of\uFB01ce"_s, {u"0:O\uFB03ce"_s, u"5:of\uFB01ce"_s}},
        {"kelvin and long s", u"sk"_s, literal, u"\u017F\u212A"_s, {u"0:\u017F\u212A"_s}},
        {"matches do not overlap", u"aa"_s, literal, u"aaaaa"_s, {u"0:aa"_s, u"2:aa"_s}},
        {"of itself", u"aba"_s, literal, u"ababa"_s, {u"0:aba"_s}},
        {"across lines", u"a\nb"_s, literal, u"a\nb"_s, {u"0:a\nb"_s}},
        {"the query is the text", u"tutto"_s, literal, u"tutto"_s, {u"0:tutto"_s}},
        {"the query is longer", u"tutto"_s, literal, u"tutt"_s, {}},
        {"an empty text", u"a"_s, literal, QString(), {}},
        {"an empty text and a pattern", u".*"_s, regex, QString(), {}},
        {"NUL", u"a%1b"_s.arg(QChar(0)), literal, u"a%1b"_s.arg(QChar(0)), {u"0:a%1b"_s.arg(QChar(0))}},
        {"outside the basic plane", thumb, literal, u"a"_s % thumb % thumb, {u"1:"_s % thumb, u"3:"_s % thumb}},
        {"outside it a dot takes two units", u"."_s, regex, thumb % u"a"_s, {u"0:"_s % thumb, u"2:a"_s}},
        {"case outside the basic plane", u"\U00010400x"_s, literal, u"\U00010428X"_s, {u"0:\U00010428X"_s}},
        {"a lone surrogate",
         QString(QChar(0xD83D)),
         literal,
         u"a"_s % QChar(0xD83D) % u"b"_s,
         {u"1:"_s % QChar(0xD83D)}},
        {"no half of a pair", QString(QChar(0xD83D)), literal, thumb, {}},

        {"whole words", u"foo"_s, wholeWord, u"foo foobar barfoo foo_ (foo)"_s, {u"0:foo"_s, u"24:foo"_s}},
        {"behind a refused one", u"aa"_s, wholeWord, u"aaa aa"_s, {u"4:aa"_s}},
        {"no boundary behind a plus", u"c++"_s, wholeWord, u"c++ c++a"_s, {u"4:c++"_s}},
        {"a boundary looks through marks", u"a"_s, wholeWord, u"a\u0301 a\u00ADb a"_s, {u"7:a"_s}},
        {"between boundaries", u"\\bfoo\\b"_s, regex, u"foo foobar FOO"_s, {u"0:foo"_s, u"11:FOO"_s}},
        {"a boundary and no more", u"\\b\\b"_s, regex, u"foo"_s, {}},
        {"a backslash before a boundary", u"\\bfoo\\\\b"_s, regex, u"foo foo\\b"_s, {u"4:foo\\b"_s}},
        {"a pattern without repetitions", u"[fg].o\\b"_s, regex, u"foo goob gxo"_s, {u"0:foo"_s, u"9:gxo"_s}},
        {"in each branch", u"foo|bar"_s, wholeWordRegex, u"foo foobar bar"_s, {u"0:foo"_s, u"11:bar"_s}},
        {"none of them", u"foo|bar"_s, wholeWordRegex, u"foobar"_s, {}},

        {"no empty lines", u".*"_s, regex, u"uno\n\ndue\n"_s, {u"0:uno"_s, u"5:due"_s}},
        {"CR LF is a line's end", u".*"_s, regex, u"uno\r\n\r\ndue"_s, {u"0:uno"_s, u"7:due"_s}},
        {"anchors at every line", u"^\\w"_s, regex, u"uno\ndue\r\ntre"_s, {u"0:u"_s, u"4:d"_s, u"9:t"_s}},
        {"and at its end", u"\\w$"_s, regex, u"uno\ndue"_s, {u"2:o"_s, u"6:e"_s}},
        {"the start of a line is no match", u"^"_s, regex, u"uno\ndue"_s, {}},
        {"nor is a boundary", u"\\b"_s, regex, u"uno due"_s, {}},
        {"the search goes on behind empty matches", u"x*"_s, regex, u"axxbx"_s, {u"1:xx"_s, u"4:x"_s}},
        {"a pattern without case", u"[A-C]+"_s, regex, u"abcd"_s, {u"0:abc"_s}},
        {"a pattern with case", u"[A-C]+"_s, sensitiveRegex, u"abcABd"_s, {u"3:AB"_s}},
        {"a dot does not cross lines", u"o.d"_s, regex, u"uno\ndue"_s, {}},
        {"a pattern may", u"o\\nd"_s, regex, u"uno\ndue"_s, {u"2:o\nd"_s}},
        {"a query without metacharacters is itself", u"due"_s, regex, u"uno DUE"_s, {u"4:DUE"_s}},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(found(each.query, each.options, each.text), each.expected) << each.name;
    }
}

TEST(TextSearch, EndsAtTheLimitWithTheFirstOnes) {
    const QString text = u"a1 a2 a3 a4 a5"_s;
    for (const SearchOptions& options : {literal, wholeWordRegex}) {
        const QString query = options.regex ? u"a."_s : u"a"_s;
        for (const auto& [limit, count] :
             {std::pair(3, 3), std::pair(5, 5), std::pair(9, 5), std::pair(1, 1), std::pair(0, 1), std::pair(-7, 1)}) {
            const QStringList all = found(query, options, text);
            ASSERT_EQ(all.size(), 5);
            EXPECT_EQ(found(query, options, text, limit), all.first(count)) << limit;
        }
    }
}

TEST(TextSearch, CountsNoEmptyMatchesTowardsTheLimit) {
    EXPECT_EQ(found(u"x*"_s, regex, u"aaaaxbbbbx"_s, 2), QStringList({u"4:x"_s, u"9:x"_s}));
}

TEST(TextSearch, GivesTenThousandMatchesByDefault) {
    const auto search = TextSearch::make(u"a"_s, {});
    ASSERT_TRUE(search);
    EXPECT_EQ(search->matches(QString(20'000, u'a')).size(), 10'000U);
    EXPECT_EQ(TextSearch::defaultLimit, 10'000);
}

TEST(TextSearch, NumbersTheGroupsOfThePatternWhateverSurroundsIt) {
    const auto search = TextSearch::make(u"(foo)|(bar)"_s, wholeWordRegex);
    ASSERT_TRUE(search);
    const QString text = u"bar foo"_s;
    const std::vector<SearchMatch> matches = search->matches(text);
    ASSERT_EQ(matches.size(), 2U);
    EXPECT_EQ(matches[0].groups, (std::vector<std::optional<TextRange>>{std::nullopt, TextRange{0, 3}}));
    EXPECT_EQ(matches[1].groups, (std::vector<std::optional<TextRange>>{TextRange{4, 3}, std::nullopt}));
    EXPECT_EQ(search->replacement(matches[0], text, u"[$1|$2]"), u"[|bar]"_s);
}

TEST(TextSearch, ReplacesByATemplateOnlyWithAPattern) {
    const QString text = u"Mario Rossi"_s;
    EXPECT_EQ(replaced(u"(\\w+) (\\w+)"_s, regex, text, u"$2, $1-x"_s), QStringList{u"Rossi, Mario-x"_s});
    EXPECT_EQ(replaced(u"Mario"_s, literal, text, u"$1-x \\$0 $"_s), QStringList{u"$1-x \\$0 $"_s});
    EXPECT_EQ(replaced(u"mario"_s, regex, text, u"<$0>"_s), QStringList{u"<Mario>"_s});
    EXPECT_EQ(replaced(u"mario"_s, regex, text, u"$1"_s), QStringList{QString()});
}

TEST(TextSearch, FindsWhatThePatternOfTheQueryFinds) {
    const QStringList queries{u"a"_s,   u"ss"_s, u"as"_s,     u"\u00DF"_s, u"fi"_s,      u"ff"_s,     u"ab"_s,
                              u"aba"_s, u"c+"_s, u"\u03C3"_s, u"\u0345"_s, u"a\u0301"_s, u"i"_s,      u"\u0130"_s,
                              u"k b"_s, u" "_s,  u"\n"_s,     u"\u01C6"_s, u"\u1F80"_s,  u"e\u0300"_s};
    const QStringList pieces =
        queries + QStringList{u"S"_s,      u"\uFB03"_s, u"\u212A"_s,     u"\u017F"_s, u"_"_s, u"\u200D"_s,
                              u"\u1E9E"_s, u"\u0399"_s, u"\U0001F44D"_s, u"\u03C2"_s, u"B"_s};
    std::uint32_t random = 1;
    const auto next = [&random](qsizetype below) {
        random = random * 1'664'525U + 1'013'904'223U;
        return static_cast<qsizetype>((random >> 8) % static_cast<std::uint32_t>(below));
    };
    for (int round = 0; round < 4'000; ++round) {
        QString text;
        for (qsizetype i = next(40); i >= 0; --i) {
            text += pieces[next(pieces.size())];
        }
        const QString query = round % 4 == 0 ? text.mid(next(text.size()), 1 + next(6)) : queries[next(queries.size())];
        const SearchOptions options{.caseSensitive = next(2) == 0, .wholeWord = next(2) == 0};
        const auto expected = referenceMatches(query, options, text);
        ASSERT_TRUE(expected);
        const auto search = TextSearch::make(query, options);
        ASSERT_TRUE(search);
        ASSERT_EQ(search->matches(text), *expected)
            << query.toStdString() << " in " << text.toStdString() << options.caseSensitive << options.wholeWord;
    }
}

} // namespace quillary
