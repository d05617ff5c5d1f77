#pragma once

#include "QuillaryCore/Formats/Highlighting/EmbeddedRegions.h"
#include "QuillaryCore/Formats/SyntaxLanguage.h"
#include "QuillaryCore/Formats/SyntaxToken.h"

#include <QList>

#include <optional>

namespace quillary::highlighting {

/// Whether a text of a language may hold script and style elements, and a window of it begin within one.
constexpr bool hasEmbeddedElements(SyntaxLanguage language) {
    return language == SyntaxLanguage::html || language == SyntaxLanguage::php;
}

/// The tokens of a text as if it were all there is, but for an element that is open at its start; their locations are
/// moved by `offset`.
QList<SyntaxToken> tokensOfText(QStringView text, SyntaxLanguage language, std::optional<EmbeddedElement> open,
                                qsizetype offset);

} // namespace quillary::highlighting
