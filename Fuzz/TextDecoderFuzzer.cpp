#include "QuillaryCore/Notes/TextDecoder.h"

#include "QuillaryCore/Platform/FilePath.h"

#include <cstdlib>

/// Decodes the input as a note and takes it for a file name. A text must be well formed, no longer than its bytes, and
/// the same after it was saved; a name must come back byte for byte.

namespace {

using namespace quillary;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));

    const QString text = TextDecoder::decode(bytes);
    require(text.isValidUtf16());
    require(text.size() <= bytes.size());
    // A mark at the start of a text is taken for the file's when the text is read again.
    if (!text.startsWith(u'\uFEFF')) {
        require(TextDecoder::decode(text.toUtf8()) == text);
    }

    const QString name = FilePath::textFromBytes(bytes);
    require(FilePath::bytesFromText(name) == bytes);
    require(FilePath::displayText(name).isValidUtf16());
    return 0;
}
