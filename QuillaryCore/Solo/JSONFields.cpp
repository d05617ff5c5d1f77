#include "QuillaryCore/Solo/JSONFields.h"

#include <QJsonArray>

namespace quillary {

std::optional<QJsonValue> JSONFields::present(const QString& key) const {
    const QJsonValue value = m_object.value(key);
    return value.isUndefined() || value.isNull() ? std::nullopt : std::optional(value);
}

std::optional<qint64> JSONFields::optionalInteger(const QString& key) {
    const std::optional<QJsonValue> value = present(key);
    const std::optional<qint64> number = value ? wholeNumber(*value) : std::nullopt;
    m_isValid = m_isValid && value.has_value() == number.has_value();
    return number;
}

std::optional<QString> JSONFields::optionalText(const QString& key) {
    const std::optional<QJsonValue> value = present(key);
    m_isValid = m_isValid && (!value || value->isString());
    return value && value->isString() ? std::optional(value->toString()) : std::nullopt;
}

std::optional<bool> JSONFields::optionalBoolean(const QString& key) {
    const std::optional<QJsonValue> value = present(key);
    m_isValid = m_isValid && (!value || value->isBool());
    return value && value->isBool() ? std::optional(value->toBool()) : std::nullopt;
}

std::optional<QJsonObject> JSONFields::optionalObject(const QString& key) {
    const std::optional<QJsonValue> value = present(key);
    m_isValid = m_isValid && (!value || value->isObject());
    return value && value->isObject() ? std::optional(value->toObject()) : std::nullopt;
}

QJsonArray JSONFields::array(const QString& key) {
    const QJsonValue value = m_object.value(key);
    m_isValid = m_isValid && value.isArray();
    return value.toArray();
}

std::optional<qint64> wholeNumber(const QJsonValue& value) {
    // What is no whole number of 64 bits gives the value named for that case, whatever it is.
    const qint64 number = value.toInteger(0);
    return number == value.toInteger(1) ? std::optional(number) : std::nullopt;
}

} // namespace quillary
