#include "Quillary/State/AppAppearance.h"

#include <QCoreApplication>

namespace quillary {

using namespace Qt::StringLiterals;

QString rawValue(AppAppearance appearance) {
    switch (appearance) {
    case AppAppearance::light:
        return u"light"_s;
    case AppAppearance::dark:
        return u"dark"_s;
    case AppAppearance::system:
        break;
    }
    return u"system"_s;
}

AppAppearance appAppearanceFromRawValue(QStringView rawValue) {
    for (const AppAppearance appearance : allAppAppearances) {
        if (quillary::rawValue(appearance) == rawValue) {
            return appearance;
        }
    }
    return AppAppearance::system;
}

QString displayName(AppAppearance appearance) {
    switch (appearance) {
    case AppAppearance::light:
        return QCoreApplication::translate("AppAppearance", "Chiaro");
    case AppAppearance::dark:
        return QCoreApplication::translate("AppAppearance", "Scuro");
    case AppAppearance::system:
        break;
    }
    return QCoreApplication::translate("AppAppearance", "Sistema");
}

} // namespace quillary
