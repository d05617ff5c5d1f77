#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <optional>

namespace quillary {

/// Reads the fields of one object by their types and remembers whether any was missing or of another type. A null
/// counts as missing.
class JSONFields {
public:
    explicit JSONFields(QJsonObject object) : m_object(std::move(object)) {}

    bool isValid() const { return m_isValid; }

    /// Counts something that the caller found as invalid.
    void invalidate() { m_isValid = false; }

    /// A whole number, which may be written as 7.0; what has a fraction or leaves the range of 64 bits is invalid.
    qint64 integer(const QString& key) { return required(optionalInteger(key)); }

    QString text(const QString& key) { return required(optionalText(key)); }

    bool boolean(const QString& key) { return required(optionalBoolean(key)); }

    std::optional<qint64> optionalInteger(const QString& key);
    std::optional<QString> optionalText(const QString& key);
    std::optional<bool> optionalBoolean(const QString& key);
    std::optional<QJsonObject> optionalObject(const QString& key);

    /// A required list.
    QJsonArray array(const QString& key);

private:
    template <typename T>
    T required(const std::optional<T>& value) {
        m_isValid = m_isValid && value.has_value();
        return value.value_or(T());
    }

    /// The value of a key if it is there; the caller has to find it of its type.
    std::optional<QJsonValue> present(const QString& key) const;

    QJsonObject m_object;
    bool m_isValid = true;
};

/// A whole number that a JSON value stands for, as `JSONFields::integer` reads it.
std::optional<qint64> wholeNumber(const QJsonValue& value);

} // namespace quillary
