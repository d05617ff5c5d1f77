#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace quillary {

/// One call of a desktop portal, whose answer comes as a signal of an object made for it. It deletes itself when the
/// answer is there.
class PortalRequest : public QObject {
    Q_OBJECT

public:
    /// The results; none if the portal isn't there or the user said no.
    using Answer = std::function<void(const std::optional<QVariantMap>&)>;

    /// A token of its own for each call, to be put into the options of the call as "handle_token".
    static QString nextToken();

    PortalRequest(const QDBusConnection& bus, const QString& token, const QDBusMessage& call, Answer answer,
                  QObject* parent);

private Q_SLOTS:
    void responded(uint code, const QVariantMap& results);

private:
    void finish(const std::optional<QVariantMap>& results);

    Answer m_answer;
};

} // namespace quillary
