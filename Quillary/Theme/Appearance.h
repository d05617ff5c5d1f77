#pragma once

#include "Quillary/Platform/DesktopColorScheme.h"
#include "Quillary/State/AppSettings.h"

#include <QObject>

namespace quillary {

/// Gives the running application the palette of the chosen appearance; the system's is followed live, and so is its
/// wish for more contrast.
class Appearance : public QObject {
    Q_OBJECT

public:
    /// Sets the Fusion style. The application object must exist.
    explicit Appearance(QObject* parent = nullptr);

    /// Takes the appearance from now on.
    void apply(AppAppearance appearance);

private:
    void update();

    DesktopColorScheme m_desktop;
    AppAppearance m_appearance = AppAppearance::system;
};

} // namespace quillary
