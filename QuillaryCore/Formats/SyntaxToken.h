#pragma once

#include "QuillaryCore/Formats/SyntaxTokenKind.h"
#include "QuillaryCore/Text/TextRange.h"

#include <QTypeInfo>

namespace quillary {

/// A coloured stretch of a text.
struct SyntaxToken {
    SyntaxTokenKind kind = SyntaxTokenKind::keyword;
    TextRange range;

    friend bool operator==(const SyntaxToken&, const SyntaxToken&) = default;
};

} // namespace quillary

Q_DECLARE_TYPEINFO(quillary::SyntaxToken, Q_PRIMITIVE_TYPE);
