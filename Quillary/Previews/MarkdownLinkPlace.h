#pragma once

#include <QtGlobal>

namespace quillary {

/// Which link of a row of the Markdown preview: the place of its cell, 0 outside tables, and its place among the links
/// of that text. Both stay what they are whatever part of the row is in view.
struct MarkdownLinkPlace {
    qsizetype column = 0;
    qsizetype link = 0;

    friend bool operator==(const MarkdownLinkPlace&, const MarkdownLinkPlace&) = default;
};

} // namespace quillary
