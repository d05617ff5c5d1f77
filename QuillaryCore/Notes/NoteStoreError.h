#pragma once

#include <QString>

namespace quillary {

/// The failures that the file layer itself decides; what the operating system reports travels as SystemError.
class NoteStoreError {
public:
    enum class Kind {
        fileTooLarge,
        creationFailed,
        invalidName,
    };

    /// A note of `bytes` bytes is too large to be opened. `name` is its file name with the extension.
    static NoteStoreError fileTooLarge(const QString& name, qint64 bytes) { return {Kind::fileTooLarge, name, bytes}; }

    /// A file of this name could not be made.
    static NoteStoreError creationFailed(const QString& name) { return {Kind::creationFailed, name, 0}; }

    /// Nothing of the name that was asked for can be part of a file name, or a folder of that name would not be listed.
    static NoteStoreError invalidName() { return {Kind::invalidName, {}, 0}; }

    Kind kind() const { return m_kind; }

    /// The name in the message; empty for `invalidName`.
    const QString& name() const { return m_name; }

    /// The size of a file that is too large, else 0.
    qint64 bytes() const { return m_bytes; }

    /// The message for the user.
    QString errorDescription() const;

    friend bool operator==(const NoteStoreError&, const NoteStoreError&) = default;

private:
    NoteStoreError(Kind kind, const QString& name, qint64 bytes) : m_kind(kind), m_name(name), m_bytes(bytes) {}

    Kind m_kind;
    QString m_name;
    qint64 m_bytes;
};

} // namespace quillary
