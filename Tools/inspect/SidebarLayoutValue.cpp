#include "Tools/inspect/SidebarLayoutValue.h"

#include <QJsonDocument>

namespace quillary::inspect {

using namespace Qt::StringLiterals;

SidebarLayout layoutArgument(Arguments& arguments) {
    const QJsonObject object = arguments.object(u"layout"_s);
    const std::optional<SidebarLayout> layout = SidebarLayout::decode(QJsonDocument(object).toJson());
    if (!layout) {
        arguments.fail(u"argument of the wrong type: layout"_s);
    }
    return layout.value_or(SidebarLayout());
}

void writeLayout(AnswerWriter& answer, const SidebarLayout& layout) {
    answer.key(u"layout");
    answer.beginObject();
    answer.textsMember(u"collapsedFolders", layout.collapsedFolders);
    answer.key(u"folderColors");
    answer.beginObject();
    for (auto entry = layout.folderColors.begin(); entry != layout.folderColors.end(); ++entry) {
        answer.member(entry.key(), rawValue(entry.value()));
    }
    answer.endObject();
    answer.textsMember(u"folderOrder", layout.folderOrder);
    answer.key(u"noteOrder");
    answer.beginObject();
    for (auto entry = layout.noteOrder.begin(); entry != layout.noteOrder.end(); ++entry) {
        answer.textsMember(entry.key(), entry.value());
    }
    answer.endObject();
    answer.endObject();
}

} // namespace quillary::inspect
