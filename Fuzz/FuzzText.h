#pragma once

#include <QString>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace quillary::fuzz {

/// Ends the run with a word about what was violated.
inline void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "violated: %s\n", what);
        std::abort();
    }
}

/// The bytes of a run as a text. Bytes that are no UTF-8 become lone surrogates, so that these occur too.
inline QString textFrom(const std::uint8_t* data, std::size_t size) {
    QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    text.replace(QChar::ReplacementCharacter, QChar(0xD800));
    return text;
}

} // namespace quillary::fuzz
