#pragma once

#include <QString>

namespace quillary {

/// One agent program that Solo knows.
struct SoloAgentTool {
    qint64 id = 0;
    QString name;
    QString toolType;

    friend bool operator==(const SoloAgentTool&, const SoloAgentTool&) = default;
};

} // namespace quillary
