#pragma once

#include "QuillaryCore/Formats/SyntaxLanguage.h"
#include "QuillaryCore/Formats/SyntaxToken.h"

#include <QList>

#include <optional>

namespace quillary {

class TextStorage;

/// Colours source text by ordered lists of lexical rules. A rule's matches are found over the whole text, each from
/// where the one before ended; a match becomes a token if none of its units belongs to a token already, so that the
/// order of the rules is their priority. Script and style elements of HTML, and the PHP regions of PHP, are coloured by
/// their own rules first.
///
/// Each rule is a pattern of ICU's dialect, read by hand in time proportional to the text. The patterns stand in the
/// tests, which compare the two.
class SyntaxHighlighter {
public:
    /// The longest stretch that is coloured, in UTF-16 units.
    static constexpr qsizetype maxLength = 300'000;

    /// The tokens of a range of the text, or of the whole, by location; they never overlap, and their locations are
    /// units of the whole text. A range coloured as if it were all the text, but for a script or style element of HTML
    /// or PHP that was opened before it. No tokens if the range is empty, longer than `maxLength`, or not in the text.
    static QList<SyntaxToken> tokens(QStringView text, SyntaxLanguage language, std::optional<TextRange> range = {});

    /// The same for a range of a stored text, of which only the range is copied.
    static QList<SyntaxToken> tokens(const TextStorage& text, SyntaxLanguage language, TextRange range);
};

} // namespace quillary
