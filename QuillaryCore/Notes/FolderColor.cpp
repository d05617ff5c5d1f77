#include "QuillaryCore/Notes/FolderColor.h"

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

constexpr QLatin1StringView colorNames[] = {
    "red"_L1, "orange"_L1, "yellow"_L1, "green"_L1, "teal"_L1, "blue"_L1, "purple"_L1, "gray"_L1,
};

} // namespace

std::optional<FolderColor> folderColorFromRawValue(QStringView rawValue) {
    for (const FolderColor color : allFolderColors) {
        if (rawValue == colorNames[static_cast<std::size_t>(color)]) {
            return color;
        }
    }
    return std::nullopt;
}

QString rawValue(FolderColor color) {
    return colorNames[static_cast<std::size_t>(color)];
}

} // namespace quillary
