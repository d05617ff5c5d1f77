#pragma once

#include <QStringView>

#include <vector>

namespace quillary {

/// A stretch of a line that is compared as a whole.
struct WordToken {
    enum class Kind : quint8 {
        /// A run of letters, numbers and low lines.
        word,
        /// A run of blanks.
        whitespace,
        /// Any other character, on its own.
        other,
    };

    /// Where it ends in its line, in units.
    qint32 end = 0;
    /// How many characters it has: grapheme clusters.
    qint32 characters = 0;
    Kind kind = Kind::other;
};

/// Replaces `tokens` by those of a line. The class of a character is that of its first scalar, but that it is a low
/// line only if it is nothing more.
void tokenise(QStringView line, std::vector<WordToken>& tokens);

} // namespace quillary
