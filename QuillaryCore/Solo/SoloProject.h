#pragma once

#include <QString>

namespace quillary {

/// One project of Solo.
struct SoloProject {
    qint64 id = 0;
    QString name;
    QString path;

    friend bool operator==(const SoloProject&, const SoloProject&) = default;
};

} // namespace quillary
