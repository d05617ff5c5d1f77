#pragma once

#include <QtGlobal>

#include <compare>

namespace quillary {

/// A place in the text that the Markdown preview shows: a row and a position in its text.
struct MarkdownPosition {
    qsizetype row = 0;
    qsizetype offset = 0;

    friend auto operator<=>(const MarkdownPosition&, const MarkdownPosition&) = default;
};

} // namespace quillary
