#pragma once

#include <QString>

#include <array>

namespace quillary {

/// The look that the user forces upon the application, or the system's.
enum class AppAppearance {
    system,
    light,
    dark,
};

/// All looks, in the order in which the user is offered them.
inline constexpr std::array allAppAppearances = {AppAppearance::system, AppAppearance::light, AppAppearance::dark};

/// What stands for a look in the preferences.
QString rawValue(AppAppearance appearance);

/// The look that a stored text stands for; `system` for an unknown one.
AppAppearance appAppearanceFromRawValue(QStringView rawValue);

/// What the user reads.
QString displayName(AppAppearance appearance);

} // namespace quillary
