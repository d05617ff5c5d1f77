#pragma once

#include "QuillaryCore/Text/TextRange.h"

#include <QStringView>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace quillary {

/// A regular expression of ICU in multi-line mode, in which `^` and `$` match at every line. Immutable; copies share
/// the compiled pattern.
class RegularExpression {
public:
    /// A match while it is being looked at.
    class Match {
    public:
        TextRange range() const { return *group(0); }

        int groupCount() const;

        /// What a group took, 0 being the whole; absent if it took no part.
        std::optional<TextRange> group(int number) const;

    private:
        friend class RegularExpression;
        struct Source;

        explicit Match(const Source& source) : m_source(source) {}

        const Source& m_source;
    };

    /// Told of each match; false ends the search.
    using Accept = std::function<bool(const Match&)>;

    /// Nothing if the pattern is not well formed.
    static std::optional<RegularExpression> make(QStringView pattern, bool caseSensitive);

    /// Calls `accept` with each match, empty ones included, from front to back until it gives false or the time is
    /// over. Where the engine's memory is not enough for a match, the search goes on in the next line. A pattern that
    /// looks around or refers to its groups is searched on another thread, on which `accept` is called while this one
    /// waits.
    void forEach(QStringView text, std::chrono::milliseconds timeLimit, const Accept& accept) const;

private:
    struct Compiled;

    explicit RegularExpression(std::shared_ptr<const Compiled> compiled) : m_compiled(std::move(compiled)) {}

    std::shared_ptr<const Compiled> m_compiled;
};

/// Whether the pattern `\b` matches at a position, which must not lie within a surrogate pair: one of the characters
/// around it is a word's and the other is not. Marks and format characters count as part of the one before them.
bool isWordBoundary(QStringView text, qsizetype position);

} // namespace quillary
