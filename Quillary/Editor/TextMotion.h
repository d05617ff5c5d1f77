#pragma once

#include "QuillaryCore/Text/TextStorage.h"

/// Where words of a text begin and end, for the caret and for double clicks. The rules are those of Qt's own text
/// widgets: runs of blanks, runs of punctuation and runs of anything else, never over the end of a line. The results
/// lie in no grapheme cluster.
namespace quillary::TextMotion {

/// The start of the next word, or the end of the line; from there, the start of the next line.
qsizetype nextWord(const TextStorage& text, qsizetype position);

/// The start of the word before, or of the line; from there, the end of the line before.
qsizetype previousWord(const TextStorage& text, qsizetype position);

/// The word at a position; behind a word and its blanks, that word. Empty at the edges of an empty line.
TextRange wordAt(const TextStorage& text, qsizetype position);

} // namespace quillary::TextMotion
