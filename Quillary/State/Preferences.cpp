#include "Quillary/State/Preferences.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>
#include <QStandardPaths>

#include <utility>

namespace quillary {

using namespace Qt::StringLiterals;

FilePath Preferences::defaultFile() {
    const QString directory = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return FilePath::fromBytes(QFile::encodeName(directory)).appending(u"quillary").appending(u"preferences.json");
}

Preferences::Preferences(FilePath file) : m_file(std::move(file)) {}

QJsonObject Preferences::values() const {
    return read().values;
}

void Preferences::set(const QString& key, const QJsonValue& value) const {
    set({{key, value}});
}

void Preferences::set(std::initializer_list<std::pair<QString, QJsonValue>> values) const {
    Contents contents = read();
    if (contents.condition == Condition::unreadable || (contents.condition == Condition::broken && !setAside())) {
        return;
    }
    for (const auto& [key, value] : values) {
        contents.values.insert(key, value);
    }
    QDir().mkpath(QFile::decodeName(m_file.parent().bytes()));
    QSaveFile file(QFile::decodeName(m_file.bytes()));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(QJsonDocument(contents.values).toJson());
        file.commit();
    }
}

Preferences::Contents Preferences::read() const {
    QFile file(QFile::decodeName(m_file.bytes()));
    if (!file.exists()) {
        return {Condition::missing, {}};
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return {Condition::unreadable, {}};
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        return {Condition::unreadable, {}};
    }
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    if (!document.isObject()) {
        return {Condition::broken, {}};
    }
    return {Condition::good, document.object()};
}

/// Gives the broken file the first free name of "preferences.json.broken", "preferences.json.broken 2" and so on.
bool Preferences::setAside() const {
    const QString path = QFile::decodeName(m_file.bytes());
    const QString base = path % u".broken"_s;
    QString name = base;
    for (int number = 2; QFile::exists(name); ++number) {
        name = base % u' ' % QString::number(number);
    }
    // QFile never renames over an existing file.
    return QFile::rename(path, name);
}

} // namespace quillary
