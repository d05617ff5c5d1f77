#pragma once

#include "QuillaryCore/SeededHash.h"

#include <QByteArray>
#include <QHash>
#include <QString>

namespace quillary {

/// An absolute path on disk as the exact bytes that the system knows it by. Two paths are equal when their bytes are.
///
/// Names leave and enter as text in a reversible form: bytes that are no UTF-8 become lone low surrogates
/// (U+DC80 to U+DCFF for 0x80 to 0xFF), so that every name on disk can be listed, kept and reached again.
/// What is shown to a person goes through displayText.
class FilePath {
public:
    FilePath() = default;

    /// A path of these bytes, as the system gave them.
    static FilePath fromBytes(QByteArray bytes);

    /// A path of this text in reversible form.
    static FilePath fromText(QStringView text);

    const QByteArray& bytes() const { return m_bytes; }

    bool isEmpty() const { return m_bytes.isEmpty(); }

    /// The whole path as text in reversible form.
    QString text() const;

    /// The last component with its extension, in reversible form; empty for the root.
    QString fileName() const;

    /// The last component without its last extension, in reversible form. A name that only begins with a dot
    /// (".profile") has no extension.
    QString title() const;

    /// What follows the last dot of the last component, as it is spelled; empty if there is none.
    QString extension() const;

    /// The directory that holds it; the root is its own parent.
    FilePath parent() const;

    /// With one more component at the end.
    FilePath appending(QStringView component) const;

    /// Without empty, "." and ".." components and without a slash at the end. Links are not followed.
    FilePath standardized() const;

    /// The reversible form of a name on disk.
    static QString textFromBytes(QByteArrayView bytes);

    /// The bytes of a name in reversible form; a surrogate that stands for no byte becomes U+FFFD.
    static QByteArray bytesFromText(QStringView text);

    /// A text in reversible form for a person to read: what can't be shown is U+FFFD.
    static QString displayText(QStringView text);

    friend bool operator==(const FilePath&, const FilePath&) = default;

    friend size_t qHash(const FilePath& path, size_t seed = 0) { return SeededHash(seed)(path.m_bytes); }

private:
    explicit FilePath(QByteArray bytes) : m_bytes(std::move(bytes)) {}

    QByteArray m_bytes;
};

} // namespace quillary
