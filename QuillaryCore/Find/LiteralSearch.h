#pragma once

#include "QuillaryCore/Find/LiteralAnchor.h"
#include "QuillaryCore/Text/TextRange.h"

#include <QString>

#include <functional>
#include <optional>

namespace quillary {

/// Finds a literal exactly where ICU's regular expression of the same literal does. A scan looks for an anchor and
/// compares where it shows; where that comes to nothing too often the rest is read by the algorithm of Knuth, Morris
/// and Pratt, so that no text takes more time than its length.
class LiteralSearch {
public:
    using Accept = std::function<bool(TextRange)>;

    /// Nothing for an empty literal and for one with a lone surrogate, of which only ICU knows where it finds it.
    static std::optional<LiteralSearch> make(const QString& literal, bool caseSensitive, bool wholeWord);

    /// Calls `accept` with each occurrence that does not overlap the one before it, until it gives false.
    void forEach(QStringView text, const Accept& accept) const;

private:
    class Run;

    LiteralSearch() = default;

    QString m_literal; // folded unless case matters
    bool m_caseSensitive = false;
    bool m_wholeWord = false;
    LiteralAnchors m_anchors;
};

} // namespace quillary
