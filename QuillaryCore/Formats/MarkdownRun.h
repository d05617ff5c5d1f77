#pragma once

#include <QString>

#include <optional>

namespace quillary {

/// A stretch of inline text that looks the same throughout.
struct MarkdownRun {
    QString text;
    bool emphasis = false;
    bool strong = false;
    bool strike = false;
    bool code = false;
    /// The destination of the link that the text is part of, as it was written.
    std::optional<QString> link;

    /// Whether the two differ in nothing but the text.
    bool looksLike(const MarkdownRun& other) const {
        return emphasis == other.emphasis && strong == other.strong && strike == other.strike && code == other.code &&
               link == other.link;
    }

    friend bool operator==(const MarkdownRun&, const MarkdownRun&) = default;
};

} // namespace quillary
