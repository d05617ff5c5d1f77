#include "Quillary/Platform/UserTime.h"

#include <private/qtx11extras_p.h>

namespace quillary {

void tellQtOfUserTime(quint32 time) {
    if (QX11Info::isPlatformX11()) {
        QX11Info::setAppTime(time);
        QX11Info::setAppUserTime(time);
    }
}

} // namespace quillary
