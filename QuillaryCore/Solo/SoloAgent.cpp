#include "QuillaryCore/Solo/SoloAgent.h"

#include "QuillaryCore/Solo/JSONFields.h"

namespace quillary {

using namespace Qt::StringLiterals;

std::optional<SoloAgent> SoloAgent::fromJson(const QJsonObject& object) {
    JSONFields fields(object);
    const SoloAgent agent{
        .id = fields.integer(u"id"_s),
        .name = fields.text(u"name"_s),
        .command = fields.text(u"command"_s),
        .projectId = fields.optionalInteger(u"projectId"_s),
        .projectName = fields.optionalText(u"projectName"_s),
    };
    return fields.isValid() ? std::optional(agent) : std::nullopt;
}

} // namespace quillary
