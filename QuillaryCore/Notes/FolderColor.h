#pragma once

#include <QString>

#include <array>
#include <optional>

namespace quillary {

/// The colours that a folder can have.
enum class FolderColor {
    red,
    orange,
    yellow,
    green,
    teal,
    blue,
    purple,
    gray,
};

/// In the order in which menus list them.
inline constexpr std::array allFolderColors{
    FolderColor::red,  FolderColor::orange, FolderColor::yellow, FolderColor::green,
    FolderColor::teal, FolderColor::blue,   FolderColor::purple, FolderColor::gray,
};

/// The colour that is stored as `rawValue`; none if there is no such colour.
std::optional<FolderColor> folderColorFromRawValue(QStringView rawValue);

/// What a colour is stored as: its name.
QString rawValue(FolderColor color);

} // namespace quillary
