#pragma once

#include "QuillaryCore/Result.h"
#include "QuillaryCore/Solo/JSONFields.h"
#include "QuillaryCore/Solo/SoloError.h"

#include <QByteArray>
#include <QJsonDocument>

#include <optional>

namespace quillary {

/// The wrapper around every answer of Solo's command line.
template <typename Payload>
struct SoloEnvelope {
    bool ok = false;
    std::optional<Payload> data;
    std::optional<QString> errorMessage;

    /// Reads an envelope whole: `read` makes the payload of the fields of `data`, and whatever is missing or of
    /// another type, there or here, spoils it.
    template <typename ReadPayload>
    static std::optional<SoloEnvelope> decode(const QByteArray& json, ReadPayload read) {
        using namespace Qt::StringLiterals;
        const QJsonDocument document = QJsonDocument::fromJson(json);
        if (!document.isObject()) {
            return std::nullopt;
        }
        SoloEnvelope envelope;
        JSONFields fields(document.object());
        envelope.ok = fields.boolean(u"ok"_s);
        if (const std::optional<QJsonObject> data = fields.optionalObject(u"data"_s)) {
            JSONFields payload(*data);
            envelope.data = read(payload);
            if (!payload.isValid()) {
                return std::nullopt;
            }
        }
        if (const std::optional<QJsonObject> error = fields.optionalObject(u"error"_s)) {
            JSONFields inError(*error);
            envelope.errorMessage = inError.optionalText(u"message"_s);
            if (!inError.isValid()) {
                return std::nullopt;
            }
        }
        return fields.isValid() ? std::optional(envelope) : std::nullopt;
    }

    /// The payload, or what the user is told instead: a command that fails is taken to mean that Solo can't be reached.
    Result<Payload, SoloError> payload() const {
        if (ok && data) {
            return *data;
        }
        return SoloError::notRunning(errorMessage.value_or(QString()));
    }
};

} // namespace quillary
