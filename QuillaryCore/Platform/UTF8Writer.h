#pragma once

#include "QuillaryCore/Platform/SystemError.h"
#include "QuillaryCore/Result.h"

#include <QByteArray>
#include <QStringEncoder>
#include <QStringView>

namespace quillary {

class AtomicFile;

/// Writes text into a file as UTF-8, in pieces of bounded size. A surrogate pair may be parted between two calls; a
/// lone surrogate becomes U+FFFD.
class UTF8Writer {
public:
    /// The file must outlive it.
    explicit UTF8Writer(AtomicFile& file);

    Status<SystemError> write(QStringView text);

    /// Ends the text.
    Status<SystemError> finish();

private:
    Status<SystemError> encode(QStringView text);

    AtomicFile& m_file;
    QStringEncoder m_encoder;
    QByteArray m_buffer;
    /// A high surrogate at the end of the last call; a null character if there was none.
    QChar m_pending;
};

} // namespace quillary
