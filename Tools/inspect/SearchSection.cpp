#include "QuillaryCore/Find/TextSearch.h"
#include "QuillaryCore/Unicode/LocalizedContainment.h"
#include "Tools/inspect/Sections.h"

namespace quillary::inspect {

namespace {

using namespace Qt::StringLiterals;

/// A search with all that it works on.
struct SearchRequest {
    QString text;
    QString query;
    SearchOptions options;
    qsizetype limit = TextSearch::defaultLimit;
};

SearchRequest searchRequest(Arguments& arguments) {
    SearchRequest request{arguments.text(u"text"_s), arguments.text(u"query"_s), {}};
    request.options.caseSensitive = arguments.boolean(u"caseSensitive"_s);
    request.options.wholeWord = arguments.boolean(u"wholeWord"_s);
    request.options.regex = arguments.boolean(u"regex"_s);
    request.limit = arguments.optionalInteger(u"limit"_s).value_or(request.limit);
    return request;
}

void writeFailure(AnswerWriter& answer, TextSearchError error) {
    answer.member(u"failure", description(error));
}

Prepared matches(Arguments& arguments) {
    using Matches = Result<std::vector<SearchMatch>, TextSearchError>;
    return prepared(
        [request = searchRequest(arguments)]() -> Matches {
            const auto search = TextSearch::make(request.query, request.options);
            if (!search) {
                return search.error();
            }
            return search->matches(request.text, request.limit);
        },
        [](AnswerWriter& answer, const Matches& result) {
            if (!result) {
                writeFailure(answer, result.error());
                return;
            }
            answer.key(u"matches");
            answer.beginArray();
            for (const SearchMatch& match : *result) {
                answer.beginArray();
                answer.integer(match.range.location);
                answer.integer(match.range.length);
                answer.endArray();
            }
            answer.endArray();
        });
}

Prepared replacements(Arguments& arguments) {
    using Replacements = Result<QStringList, TextSearchError>;
    return prepared(
        [request = searchRequest(arguments), replacementTemplate = arguments.text(u"template"_s)]() -> Replacements {
            const auto search = TextSearch::make(request.query, request.options);
            if (!search) {
                return search.error();
            }
            QStringList texts;
            for (const SearchMatch& match : search->matches(request.text, request.limit)) {
                texts.append(search->replacement(match, request.text, replacementTemplate));
            }
            return texts;
        },
        [](AnswerWriter& answer, const Replacements& result) {
            if (!result) {
                writeFailure(answer, result.error());
                return;
            }
            answer.textsMember(u"replacements", *result);
        });
}

Prepared filter(Arguments& arguments) {
    return prepared(
        [query = arguments.text(u"query"_s), texts = arguments.texts(u"texts"_s)] {
            const TextMatcher matcher(query);
            std::vector<qsizetype> found;
            for (qsizetype i = 0; i < texts.size(); ++i) {
                if (matcher.matches(texts[i])) {
                    found.push_back(i);
                }
            }
            return found;
        },
        [](AnswerWriter& answer, const std::vector<qsizetype>& found) {
            answer.key(u"indices");
            answer.beginArray();
            for (const qsizetype position : found) {
                answer.integer(position);
            }
            answer.endArray();
        });
}

} // namespace

void addSearchOperations(OperationTable& table) {
    table.insert(u"search.filter"_s, filter);
    table.insert(u"search.matches"_s, matches);
    table.insert(u"search.replacements"_s, replacements);
}

} // namespace quillary::inspect
