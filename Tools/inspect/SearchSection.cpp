#include "QuillaryCore/Unicode/LocalizedContainment.h"
#include "Tools/inspect/Sections.h"

namespace quillary::inspect {

namespace {

using namespace Qt::StringLiterals;

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
}

} // namespace quillary::inspect
