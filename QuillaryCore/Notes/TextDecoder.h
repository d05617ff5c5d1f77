#pragma once

#include <QByteArrayView>
#include <QString>

namespace quillary {

/// Turns the bytes of a note into its text. The first reading that fits wins: UTF-16 by its mark; UTF-8, its mark taken
/// off; Windows code page 1252; UTF-8 with U+FFFD for each ill-formed sequence. Line ends stay as they are.
class TextDecoder {
public:
    /// Never fails.
    static QString decode(QByteArrayView bytes);
};

} // namespace quillary
