#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <mutex>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

struct SharedName {
    std::mutex mutex;
    QString value = interfaceLocaleOf(QLocale::system());
};

SharedName& sharedName() {
    static SharedName name;
    return name;
}

} // namespace

QString interfaceLocale() {
    SharedName& name = sharedName();
    const std::scoped_lock lock(name.mutex);
    return name.value;
}

QString interfaceLocaleOf(const QLocale& user) {
    // Italian is the one language that the interface speaks.
    const QString region = QLocale::territoryToCode(user.territory());
    return region.isEmpty() ? u"it"_s : u"it_"_s + region;
}

void setInterfaceLocale(const QString& name) {
    SharedName& shared = sharedName();
    const std::scoped_lock lock(shared.mutex);
    shared.value = name;
}

} // namespace quillary
