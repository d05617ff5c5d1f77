#pragma once

#include "QuillaryCore/Find/LiteralAnchor.h"
#include "QuillaryCore/Text/TextRange.h"

#include <QString>

#include <functional>
#include <optional>

namespace quillary {

/// A regular expression that asks for words, or for words with an ending: `\w+`, with or without letters behind it and
/// `\b` at either end. It finds what ICU's engine finds. Each run of word characters holds one match at most, whose
/// end is the last one that fits and whose start is the first, so that no text takes more time than its length.
class WordPattern {
public:
    using Accept = std::function<bool(TextRange)>;

    /// Nothing for a pattern of another form, and for an ending of which ICU knows more spellings than the plain ones.
    static std::optional<WordPattern> make(QStringView pattern, bool caseSensitive, bool wholeWord);

    /// Calls `accept` with each match from front to back, until it gives false.
    void forEach(QStringView text, const Accept& accept) const;

private:
    WordPattern() = default;

    std::optional<TextRange> matchIn(QStringView text, TextRange run) const;
    bool endsAt(QStringView text, qsizetype end) const;

    bool m_startsAtBoundary = false;
    bool m_endsAtBoundary = false;
    bool m_caseSensitive = false;
    QString m_ending; // folded unless case matters
    LiteralAnchors m_anchors;
};

} // namespace quillary
