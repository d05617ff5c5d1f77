#pragma once

#include <QTemporaryDir>

#include <filesystem>
#include <system_error>

namespace quillary::test {

/// A directory that goes with the test, together with the files whose names are no text, which Qt doesn't find.
class TemporaryDirectory : public QTemporaryDir {
public:
    TemporaryDirectory() = default;
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    ~TemporaryDirectory() {
        std::error_code error;
        std::filesystem::remove_all(path().toStdString(), error);
    }
};

} // namespace quillary::test
