#pragma once

#include <QtGlobal>

#include <compare>

namespace quillary {

/// A place in the text that the Markdown preview shows: a row and a position in its text.
struct MarkdownPosition {
    qsizetype row = 0;
    qsizetype offset = 0;

    friend bool operator==(const MarkdownPosition&, const MarkdownPosition&) = default;

    friend std::strong_ordering operator<=>(const MarkdownPosition& a, const MarkdownPosition& b) {
        return a.row != b.row ? a.row <=> b.row : a.offset <=> b.offset;
    }
};

} // namespace quillary
