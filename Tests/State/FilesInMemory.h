#pragma once

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>

#include <memory>
#include <optional>

namespace quillary::test {

/// For as long as it lives, temporary directories and the trash are in memory where that is possible, for a test
/// whose writes are flushed by the thousand.
class FilesInMemory {
public:
    FilesInMemory() {
        if (QFileInfo(QStringLiteral("/dev/shm")).isWritable()) {
            qputenv("TMPDIR", "/dev/shm");
        }
        m_data = std::make_unique<QTemporaryDir>();
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_data->path()));
    }

    FilesInMemory(const FilesInMemory&) = delete;
    FilesInMemory& operator=(const FilesInMemory&) = delete;

    ~FilesInMemory() {
        restore("TMPDIR", m_temporary);
        restore("XDG_DATA_HOME", m_home);
    }

private:
    static void restore(const char* name, const std::optional<QByteArray>& value) {
        if (value) {
            qputenv(name, *value);
        } else {
            qunsetenv(name);
        }
    }

    static std::optional<QByteArray> valueOf(const char* name) {
        return qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt;
    }

    std::optional<QByteArray> m_temporary = valueOf("TMPDIR");
    std::optional<QByteArray> m_home = valueOf("XDG_DATA_HOME");
    std::unique_ptr<QTemporaryDir> m_data;
};

} // namespace quillary::test
