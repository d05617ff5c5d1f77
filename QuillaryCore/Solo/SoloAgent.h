#pragma once

#include <QString>

#include <optional>

class QJsonObject;

namespace quillary {

/// One agent's session that is running in Solo.
struct SoloAgent {
    qint64 id = 0;
    QString name;
    QString command;
    std::optional<qint64> projectId;
    std::optional<QString> projectName;

    /// An agent from an object with these five keys, of which the two of the project may be missing; nothing if
    /// another is missing or one has the wrong type.
    static std::optional<SoloAgent> fromJson(const QJsonObject& object);

    friend bool operator==(const SoloAgent&, const SoloAgent&) = default;
};

} // namespace quillary
