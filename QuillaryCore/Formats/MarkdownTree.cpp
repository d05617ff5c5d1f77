#include "QuillaryCore/Formats/MarkdownTree.h"

#include <algorithm>

namespace quillary {

namespace {

bool haveEqualCells(const MarkdownTree& a, const MarkdownTree::Node& x, const MarkdownTree& b,
                    const MarkdownTree::Node& y) {
    const MarkdownTree::Cell* cellsOfA = a.cells.data();
    const MarkdownTree::Cell* cellsOfB = b.cells.data();
    return std::equal(cellsOfA + x.firstCell, cellsOfA + x.endOfCells, cellsOfB + y.firstCell, cellsOfB + y.endOfCells,
                      [&](const MarkdownTree::Cell& c, const MarkdownTree::Cell& d) {
                          return c.alignment == d.alignment && a.view(c.text) == b.view(d.text);
                      });
}

} // namespace

bool MarkdownTree::areEqual(const MarkdownTree& a, std::size_t firstOfA, std::size_t endOfA, const MarkdownTree& b,
                            std::size_t firstOfB, std::size_t endOfB) {
    if (endOfA - firstOfA != endOfB - firstOfB) {
        return false;
    }
    for (std::size_t i = 0; i < endOfA - firstOfA; ++i) {
        const Node& x = a.nodes[firstOfA + i];
        const Node& y = b.nodes[firstOfB + i];
        if (x.kind != y.kind) {
            return false;
        }
        // A language is never empty, so that a null view is no language.
        const bool haveEqualNumbers = x.kind == Kind::code ? a.language(x) == b.language(y) : x.number == y.number;
        if (x.check != y.check || x.isOrdered != y.isOrdered || !haveEqualNumbers ||
            x.end - firstOfA != y.end - firstOfB || a.view(x.text) != b.view(y.text) || !haveEqualCells(a, x, b, y)) {
            return false;
        }
    }
    return true;
}

} // namespace quillary
