#pragma once

#include "QuillaryCore/Find/SearchMatch.h"
#include "QuillaryCore/Find/SearchOptions.h"

#include <QString>

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

namespace quillary {

/// The pattern of a query as the rules build it.
inline QString referencePattern(const QString& query, SearchOptions options) {
    using namespace Qt::StringLiterals;
    QString pattern;
    for (const QChar unit : query) {
        if (!options.regex && u"\\*?+[](){}^$|.-#&/"_s.contains(unit)) {
            pattern += u'\\';
        }
        pattern += unit;
    }
    return options.wholeWord ? u"\\b(?:"_s % pattern % u")\\b"_s : pattern;
}

/// What ICU finds by the pattern of a query, without anything of our own in between; nothing for a pattern that is not
/// well formed, and for a search that took more steps than are allowed, 0 being any number.
inline std::optional<std::vector<SearchMatch>> referenceMatches(const QString& query, SearchOptions options,
                                                                const QString& text, qsizetype limit = 10'000,
                                                                int32_t mostSteps = 200) {
    const auto icuText = [](const QString& from) {
        return icu::UnicodeString(from.isEmpty() ? u"" : QStringView(from).utf16(), static_cast<int32_t>(from.size()));
    };
    UErrorCode status = U_ZERO_ERROR;
    UParseError where{};
    const std::unique_ptr<icu::RegexPattern> pattern(icu::RegexPattern::compile(
        icuText(referencePattern(query, options)),
        UREGEX_MULTILINE | (options.caseSensitive ? 0U : uint32_t{UREGEX_CASE_INSENSITIVE}), where, status));
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    const icu::UnicodeString searched = icuText(text);
    const std::unique_ptr<icu::RegexMatcher> matcher(pattern->matcher(searched, status));
    matcher->setTimeLimit(mostSteps, status);
    std::vector<SearchMatch> matches;
    while (static_cast<qsizetype>(matches.size()) < std::max<qsizetype>(limit, 1) && matcher->find(status)) {
        const auto rangeOf = [&](int group) -> std::optional<TextRange> {
            const int32_t start = matcher->start(group, status);
            return start < 0 ? std::nullopt : std::optional(TextRange{start, matcher->end(group, status) - start});
        };
        const TextRange range = *rangeOf(0);
        if (range.isEmpty()) {
            continue;
        }
        SearchMatch& match = matches.emplace_back(SearchMatch{range});
        for (int group = 1; group <= matcher->groupCount(); ++group) {
            match.groups.push_back(rangeOf(group));
        }
    }
    return U_FAILURE(status) ? std::nullopt : std::optional(matches);
}

} // namespace quillary
