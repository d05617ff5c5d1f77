#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quillary {

/// What launchers on X11 know a start by (Startup Notification Protocol).
namespace StartupNotification {

/// When the user asked for the start, by the X server's clock; none if the startup id does not tell.
std::optional<quint32> time(const QString& startupId);

/// The message to launchers that a start is over.
QByteArray endMessage(const QString& startupId);

/// Takes over a start from another process or a launcher: windows that come up now ask for the focus with its time, and
/// it is over. Does nothing except on X11.
void takeOver(const QString& startupId);

} // namespace StartupNotification

} // namespace quillary
