#include "QuillaryCore/Formats/MarkdownTree.h"

#include <algorithm>

namespace quillary {

namespace {

bool haveEqualCells(const MarkdownTree& a, const MarkdownTree::Node& x, const MarkdownTree& b,
                    const MarkdownTree::Node& y) {
    const MarkdownTree::Table& tableOfA = a.table(x);
    const MarkdownTree::Table& tableOfB = b.table(y);
    const MarkdownTree::Cell* cellsOfA = a.cells.data();
    const MarkdownTree::Cell* cellsOfB = b.cells.data();
    return tableOfA.columns == tableOfB.columns &&
           std::equal(cellsOfA + tableOfA.firstCell, cellsOfA + tableOfA.endOfCells, cellsOfB + tableOfB.firstCell,
                      cellsOfB + tableOfB.endOfCells, [&](const MarkdownTree::Cell& c, const MarkdownTree::Cell& d) {
                          return c.alignment == d.alignment && a.view(c.text) == b.view(d.text);
                      });
}

// What a node says, without what lies in it. The nodes are of one kind.
bool sayTheSame(const MarkdownTree& a, const MarkdownTree::Node& x, const MarkdownTree& b,
                const MarkdownTree::Node& y) {
    using Kind = MarkdownTree::Kind;
    switch (x.kind) {
    case Kind::heading:
    case Kind::paragraph:
        return x.level == y.level && a.view(x.text) == b.view(y.text);
    case Kind::code:
        // A language is never empty, so that a null view is no language.
        return a.language(x) == b.language(y) && a.view(x.text) == b.view(y.text);
    case Kind::list:
        return x.isOrdered == y.isOrdered && x.number == y.number;
    case Kind::table:
        return haveEqualCells(a, x, b, y);
    case Kind::item:
        return x.check == y.check;
    case Kind::quote:
    case Kind::rule:
        return true;
    }
    Q_UNREACHABLE();
}

} // namespace

QStringView MarkdownTree::language(const Node& code) const {
    const auto index = static_cast<quint32>(&code - nodes.data());
    const auto found = std::partition_point(languages.begin(), languages.end(),
                                            [index](const Language& candidate) { return candidate.node < index; });
    return found != languages.end() && found->node == index ? view(found->text) : QStringView();
}

bool MarkdownTree::areEqual(const MarkdownTree& a, std::size_t firstOfA, std::size_t endOfA, const MarkdownTree& b,
                            std::size_t firstOfB, std::size_t endOfB) {
    if (endOfA - firstOfA != endOfB - firstOfB) {
        return false;
    }
    for (std::size_t i = 0; i < endOfA - firstOfA; ++i) {
        const Node& x = a.nodes[firstOfA + i];
        const Node& y = b.nodes[firstOfB + i];
        if (x.kind != y.kind || x.end - firstOfA != y.end - firstOfB || !sayTheSame(a, x, b, y)) {
            return false;
        }
    }
    return true;
}

} // namespace quillary
