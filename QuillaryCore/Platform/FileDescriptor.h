#pragma once

#include <unistd.h>
#include <utility>

namespace quillary {

/// Owns an open file of the system and closes it.
class FileDescriptor {
public:
    FileDescriptor() = default;

    explicit FileDescriptor(int number) : m_number(number) {}

    FileDescriptor(FileDescriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}

    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }

    ~FileDescriptor() { close(); }

    int number() const { return m_number; }

    explicit operator bool() const { return m_number >= 0; }

    void close() {
        if (m_number >= 0) {
            ::close(std::exchange(m_number, -1));
        }
    }

    /// Hands the open file over to the caller.
    int release() { return std::exchange(m_number, -1); }

private:
    int m_number = -1;
};

} // namespace quillary
