#pragma once

#include "QuillaryCore/Find/LiteralSearch.h"
#include "QuillaryCore/Find/SearchMatch.h"
#include "QuillaryCore/Find/SearchOptions.h"
#include "QuillaryCore/Find/TextSearchError.h"
#include "QuillaryCore/Find/WordPattern.h"
#include "QuillaryCore/Result.h"
#include "QuillaryCore/Unicode/RegularExpression.h"

#include <QString>

#include <chrono>
#include <optional>
#include <vector>

namespace quillary {

/// What the user looks for, ready to be looked for in texts. A query and its options are a regular expression in ICU's
/// syntax, whose anchors match at every line and whose dot stops at line ends. Literal queries, and patterns of plain
/// words, are found without its engine, in the same places. Immutable.
class TextSearch {
public:
    /// The greatest number of matches that a caller asks for by default.
    static constexpr qsizetype defaultLimit = 10'000;

    /// After this time a search gives what it has found so far. Only regular expressions can take so long.
    static constexpr std::chrono::milliseconds timeLimit{1'000};

    /// Fails if the query is empty or no regular expression. Blanks count.
    static Result<TextSearch, TextSearchError> make(const QString& query, SearchOptions options);

    const SearchOptions& options() const { return m_options; }

    /// The matches in text order, those of no units left out. Ends behind the match that makes them as many as `limit`,
    /// so that one match is given even if that is 0 or less.
    std::vector<SearchMatch> matches(QStringView text, qsizetype limit = defaultLimit) const;

    /// The text that stands in for a match of `text`, which must be as it was searched. With a regular expression `$0`
    /// is the match and `$1` its first group, as far as the digits can name a group; a backslash takes the next
    /// character literally.
    QString replacement(const SearchMatch& match, QStringView text, QStringView replacementTemplate) const;

private:
    explicit TextSearch(SearchOptions options) : m_options(options) {}

    SearchOptions m_options;
    // One of them.
    std::optional<LiteralSearch> m_literal;
    std::optional<WordPattern> m_words;
    std::optional<RegularExpression> m_expression;
};

} // namespace quillary
