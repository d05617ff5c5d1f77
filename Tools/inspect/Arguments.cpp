#include "Tools/inspect/Arguments.h"

#include <QFile>
#include <QStringDecoder>

#include <cmath>

namespace quillary::inspect {

using namespace Qt::StringLiterals;

namespace {

std::optional<qint64> wholeNumber(const QJsonValue& value) {
    // What is no integer of 64 bits gives whatever default is asked for.
    const qint64 integer = value.toInteger(0);
    return integer == value.toInteger(1) ? std::optional(integer) : std::nullopt;
}

} // namespace

void Arguments::fail(const QString& error) {
    if (!m_error) {
        m_error = error;
    }
}

QJsonValue Arguments::required(const QString& name) {
    const QJsonValue value = m_object.value(name);
    if (value.isUndefined()) {
        fail(u"missing argument: "_s + name);
    }
    return value;
}

bool Arguments::isInFile(const QString& name) const {
    const bool may = name == u"text"_s || name == u"old"_s || name == u"new"_s;
    return may && !has(name) && has(name + u"File"_s);
}

std::optional<QString> Arguments::fileText(const QString& name) {
    const QJsonValue path = m_object.value(name + u"File"_s);
    if (!path.isString()) {
        fail(u"argument of the wrong type: "_s + name + u"File"_s);
        return std::nullopt;
    }
    QFile file(path.toString());
    if (!file.open(QIODevice::ReadOnly)) {
        fail(u"cannot read "_s + path.toString() + u": "_s + file.errorString());
        return std::nullopt;
    }
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return QString(decoder(file.readAll()));
}

QString Arguments::text(const QString& name) {
    if (isInFile(name)) {
        return fileText(name).value_or(QString());
    }
    const QJsonValue value = required(name);
    if (!value.isUndefined() && !value.isString()) {
        fail(u"argument of the wrong type: "_s + name);
    }
    return value.toString();
}

std::optional<QString> Arguments::optionalText(const QString& name) {
    if (isInFile(name)) {
        return fileText(name);
    }
    const QJsonValue value = m_object.value(name);
    if (value.isUndefined() || value.isNull()) {
        return std::nullopt;
    }
    if (!value.isString()) {
        fail(u"argument of the wrong type: "_s + name);
        return std::nullopt;
    }
    return value.toString();
}

qint64 Arguments::integer(const QString& name) {
    const QJsonValue value = required(name);
    const std::optional<qint64> number = wholeNumber(value);
    if (!number && !value.isUndefined()) {
        fail(u"argument of the wrong type: "_s + name);
    }
    return number.value_or(0);
}

std::optional<qint64> Arguments::optionalInteger(const QString& name) {
    const QJsonValue value = m_object.value(name);
    if (value.isUndefined() || value.isNull()) {
        return std::nullopt;
    }
    return integer(name);
}

double Arguments::real(const QString& name) {
    const QJsonValue value = required(name);
    if (!value.isUndefined() && !value.isDouble()) {
        fail(u"argument of the wrong type: "_s + name);
    }
    return value.toDouble();
}

bool Arguments::boolean(const QString& name) {
    const QJsonValue value = required(name);
    if (!value.isUndefined() && !value.isBool()) {
        fail(u"argument of the wrong type: "_s + name);
    }
    return value.toBool();
}

Moment Arguments::moment(const QString& name) {
    return momentFromSeconds(real(name));
}

QJsonObject Arguments::object(const QString& name) {
    const QJsonValue value = required(name);
    if (!value.isUndefined() && !value.isObject()) {
        fail(u"argument of the wrong type: "_s + name);
    }
    return value.toObject();
}

QJsonArray Arguments::array(const QString& name) {
    const QJsonValue value = required(name);
    if (!value.isUndefined() && !value.isArray()) {
        fail(u"argument of the wrong type: "_s + name);
    }
    return value.toArray();
}

QStringList Arguments::texts(const QString& name) {
    QStringList result;
    for (const QJsonValue value : array(name)) {
        if (!value.isString()) {
            fail(u"argument of the wrong type: "_s + name);
        }
        result.append(value.toString());
    }
    return result;
}

QList<qint64> Arguments::integers(const QString& name) {
    QList<qint64> result;
    for (const QJsonValue value : array(name)) {
        const std::optional<qint64> number = wholeNumber(value);
        if (!number) {
            fail(u"argument of the wrong type: "_s + name);
        }
        result.append(number.value_or(0));
    }
    return result;
}

double secondsSince1970(Moment moment) {
    const qint64 nanoseconds = moment.time_since_epoch().count();
    constexpr qint64 aSecond = 1'000'000'000;
    const qint64 whole = nanoseconds / aSecond;
    return static_cast<double>(whole) + static_cast<double>(nanoseconds % aSecond) / 1e9;
}

Moment momentFromSeconds(double seconds) {
    // Beyond about 292 years a moment in nanoseconds has no place for more.
    const double whole = std::floor(seconds);
    if (!(std::abs(whole) < 9.2e9)) {
        return whole < 0 ? Moment::min() : Moment::max();
    }
    const auto fraction = static_cast<qint64>(std::llround((seconds - whole) * 1e9));
    return Moment(std::chrono::nanoseconds(static_cast<qint64>(whole) * 1'000'000'000 + fraction));
}

} // namespace quillary::inspect
