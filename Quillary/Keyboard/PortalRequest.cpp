#include "Quillary/Keyboard/PortalRequest.h"

#include <QDBusPendingCallWatcher>

#include <utility>

namespace quillary {

using namespace Qt::StringLiterals;

QString PortalRequest::nextToken() {
    static int last = 0;
    return u"quillary"_s % QString::number(++last);
}

PortalRequest::PortalRequest(const QDBusConnection& bus, const QString& token, const QDBusMessage& call, Answer answer,
                             QObject* parent)
    : QObject(parent), m_answer(std::move(answer)) {
    // The answer may come before the call returns, so that its path must be known in advance.
    const QString sender = bus.baseService().mid(1).replace(u'.', u'_');
    const QString path = u"/org/freedesktop/portal/desktop/request/"_s % sender % u'/' % token;
    QDBusConnection connection(bus);
    connection.connect(call.service(), path, u"org.freedesktop.portal.Request"_s, u"Response"_s, this,
                       SLOT(responded(uint, QVariantMap)));
    auto* const watcher = new QDBusPendingCallWatcher(connection.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        if (watcher->isError()) {
            finish(std::nullopt);
        }
    });
}

void PortalRequest::responded(uint code, const QVariantMap& results) {
    finish(code == 0 ? std::optional(results) : std::nullopt);
}

void PortalRequest::finish(const std::optional<QVariantMap>& results) {
    if (const Answer answer = std::exchange(m_answer, nullptr)) {
        answer(results);
        deleteLater();
    }
}

} // namespace quillary
