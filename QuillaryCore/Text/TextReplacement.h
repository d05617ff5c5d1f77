#pragma once

#include "QuillaryCore/Text/TextRange.h"

#include <QString>

namespace quillary {

/// One of several replacements in a text: the range that goes, in the unchanged text, and what comes in its place.
struct TextReplacement {
    TextRange range;
    QString text;

    friend bool operator==(const TextReplacement&, const TextReplacement&) = default;
};

/// The same with the text by reference.
struct TextReplacementView {
    TextRange range;
    QStringView text;
};

} // namespace quillary
