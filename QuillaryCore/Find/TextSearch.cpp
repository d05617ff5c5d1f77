#include "QuillaryCore/Find/TextSearch.h"

#include "QuillaryCore/Find/ReplacementTemplate.h"

#include <algorithm>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView metacharacters("\\*?+[](){}^$|./");

bool isMetacharacter(QChar unit) {
    return metacharacters.contains(unit);
}

/// A pattern that matches the query itself.
QString escapedPattern(const QString& query) {
    QString pattern;
    pattern.reserve(query.size() * 2);
    for (const QChar unit : query) {
        if (isMetacharacter(unit)) {
            pattern += u'\\';
        }
        pattern += unit;
    }
    return pattern;
}

bool isPlain(QStringView pattern) {
    return std::none_of(pattern.begin(), pattern.end(), isMetacharacter);
}

/// The literal that a query stands for, if it is one, and whether only as a whole word.
struct Literal {
    QString text;
    bool wholeWord = false;
};

std::optional<Literal> literalOf(const QString& query, SearchOptions options) {
    if (!options.regex || isPlain(query)) {
        return Literal{query, options.wholeWord};
    }
    constexpr QLatin1StringView boundary("\\b");
    if (query.size() > 2 * boundary.size() && query.startsWith(boundary) && query.endsWith(boundary)) {
        const QString word = query.sliced(boundary.size(), query.size() - 2 * boundary.size());
        return isPlain(word) ? std::optional(Literal{word, true}) : std::nullopt;
    }
    return std::nullopt;
}

} // namespace

Result<TextSearch, TextSearchError> TextSearch::make(const QString& query, SearchOptions options) {
    if (query.isEmpty()) {
        return TextSearchError::emptyQuery;
    }
    TextSearch search(options);
    if (const std::optional<Literal> literal = literalOf(query, options)) {
        search.m_literal = LiteralSearch::make(literal->text, options.caseSensitive, literal->wholeWord);
        if (search.m_literal) {
            return search;
        }
    }
    if (options.regex) {
        search.m_words = WordPattern::make(query, options.caseSensitive, options.wholeWord);
        if (search.m_words) {
            return search;
        }
    }
    QString pattern = options.regex ? query : escapedPattern(query);
    if (options.wholeWord) {
        pattern = u"\\b(?:"_s % pattern % u")\\b"_s;
    }
    search.m_expression = RegularExpression::make(pattern, options.caseSensitive);
    if (!search.m_expression) {
        return TextSearchError::invalidPattern;
    }
    return search;
}

std::vector<SearchMatch> TextSearch::matches(QStringView text, qsizetype limit) const {
    std::vector<SearchMatch> found;
    const auto isEnough = [&] { return static_cast<qsizetype>(found.size()) >= limit; };
    const auto add = [&](TextRange range) {
        found.push_back({range});
        return !isEnough();
    };
    if (m_literal) {
        m_literal->forEach(text, add);
        return found;
    }
    if (m_words) {
        m_words->forEach(text, add);
        return found;
    }
    m_expression->forEach(text, timeLimit, [&](const RegularExpression::Match& match) {
        if (!match.range().isEmpty()) {
            SearchMatch& added = found.emplace_back(SearchMatch{match.range()});
            for (int group = 1; group <= match.groupCount(); ++group) {
                added.groups.push_back(match.group(group));
            }
            return !isEnough();
        }
        return true;
    });
    return found;
}

QString TextSearch::replacement(const SearchMatch& match, QStringView text, QStringView replacementTemplate) const {
    return m_options.regex ? expandedTemplate(replacementTemplate, match, text) : replacementTemplate.toString();
}

} // namespace quillary
