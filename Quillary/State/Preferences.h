#pragma once

#include "QuillaryCore/Platform/FilePath.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include <initializer_list>
#include <utility>

namespace quillary {

/// The user's preferences as one JSON object in one file, so that booleans, numbers and texts keep their types. The
/// file is read anew by each call: another process may have written it.
class Preferences {
public:
    /// `preferences.json` in the application's directory below the user's configuration directory.
    static FilePath defaultFile();

    explicit Preferences(FilePath file);

    /// All that is stored; empty if the file is missing or is no JSON object.
    QJsonObject values() const;

    /// Changes one key and leaves the others as they are on disk; an undefined value removes the key. A file that isn't
    /// a JSON object is set aside under another name first. A file that can't be read or set aside is left alone, and
    /// so is the key.
    void set(const QString& key, const QJsonValue& value) const;

    /// The same for several keys in one write, so that all or none of them change.
    void set(std::initializer_list<std::pair<QString, QJsonValue>> values) const;

private:
    enum class Condition {
        missing,
        good,
        broken,
        unreadable,
    };

    struct Contents {
        Condition condition;
        QJsonObject values;
    };

    Contents read() const;
    bool setAside() const;

    FilePath m_file;
};

} // namespace quillary
