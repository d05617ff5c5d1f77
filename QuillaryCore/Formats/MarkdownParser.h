#pragma once

#include "QuillaryCore/Formats/MarkdownBlock.h"

#include <QString>

/// Reads the blocks of a Markdown text: a line-oriented language, smaller than CommonMark's. Every text has a reading.
namespace quillary::MarkdownParser {

/// The top-level blocks of the text, which they share. It takes time in proportion to the text's length and a stack of
/// fixed size, however deeply lists and quotes are nested.
MarkdownBlocks parse(const QString& text);

} // namespace quillary::MarkdownParser
