#pragma once

#include <QHashFunctions>

namespace quillary {

/// How a query is read.
struct SearchOptions {
    bool caseSensitive = false;
    /// Only between word boundaries, as the pattern `\b` sees them.
    bool wholeWord = false;
    /// The query is a regular expression and the replacement a template; else both are taken literally.
    bool regex = false;

    friend bool operator==(const SearchOptions&, const SearchOptions&) = default;

    friend size_t qHash(const SearchOptions& options, size_t seed = 0) {
        return qHashMulti(seed, options.caseSensitive, options.wholeWord, options.regex);
    }
};

} // namespace quillary
