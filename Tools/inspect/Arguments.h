#pragma once

#include "QuillaryCore/Notes/Moment.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace quillary::inspect {

/// The arguments of one request. A missing argument or one of the wrong type gives an empty value and is remembered;
/// the program answers with the first such error and does not run the operation.
class Arguments {
public:
    explicit Arguments(QJsonObject object) : m_object(std::move(object)) {}

    /// A required text. For "text", "old" and "new" the request may name a UTF-8 file instead, by the same name with
    /// "File" behind it.
    QString text(const QString& name);

    /// A text that may be null or absent, or in a file as a required one.
    std::optional<QString> optionalText(const QString& name);

    /// A whole number.
    qint64 integer(const QString& name);
    std::optional<qint64> optionalInteger(const QString& name);

    double real(const QString& name);
    bool boolean(const QString& name);

    /// Seconds since 1970-01-01 00:00:00 UTC.
    Moment moment(const QString& name);

    QJsonObject object(const QString& name);
    QJsonArray array(const QString& name);

    /// A list of texts.
    QStringList texts(const QString& name);

    /// A list of whole numbers.
    QList<qint64> integers(const QString& name);

    /// Whether an argument is there and not null.
    bool has(const QString& name) const {
        return !m_object.value(name).isUndefined() && !m_object.value(name).isNull();
    }

    /// Remembers an error of the operation's own finding, as an unknown raw value.
    void fail(const QString& error);

    const std::optional<QString>& error() const { return m_error; }

private:
    QJsonValue required(const QString& name);
    bool isInFile(const QString& name) const;
    std::optional<QString> fileText(const QString& name);

    QJsonObject m_object;
    std::optional<QString> m_error;
};

/// A moment as requests and answers have it: seconds since 1970-01-01 00:00:00 UTC.
double secondsSince1970(Moment moment);
Moment momentFromSeconds(double seconds);

} // namespace quillary::inspect
