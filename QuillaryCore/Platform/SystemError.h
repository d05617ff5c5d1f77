#pragma once

#include <QString>

namespace quillary {

/// A failure that the operating system reports, by its number.
struct SystemError {
    int code = 0;

    /// The failure of the system call that this thread made last.
    static SystemError last();

    /// The system's own text for it.
    QString localizedDescription() const;

    friend bool operator==(SystemError, SystemError) = default;
};

} // namespace quillary
