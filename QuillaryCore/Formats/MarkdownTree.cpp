#include "QuillaryCore/Formats/MarkdownTree.h"

#include <algorithm>

namespace quillary {

namespace {

bool haveEqualCells(const MarkdownTree& a, const MarkdownTree::Node& x, const MarkdownTree& b,
                    const MarkdownTree::Node& y) {
    const MarkdownTree::Table& s = a.table(x);
    const MarkdownTree::Table& t = b.table(y);
    const std::size_t lines = s.endOfLines - s.firstLine;
    if (s.columns != t.columns || lines != t.endOfLines - t.firstLine ||
        !std::equal(a.alignments.data() + s.firstAlignment, a.alignments.data() + s.firstAlignment + s.columns,
                    b.alignments.data() + t.firstAlignment)) {
        return false;
    }
    for (std::size_t line = 0; line < lines; ++line) {
        const std::size_t count = a.cellCount(s.firstLine + line);
        const MarkdownTree::Text* const cells = a.cells.data() + a.lines[s.firstLine + line];
        const MarkdownTree::Text* const others = b.cells.data() + b.lines[t.firstLine + line];
        if (count != b.cellCount(t.firstLine + line) ||
            !std::equal(cells, cells + count, others, [&](const MarkdownTree::Text& c, const MarkdownTree::Text& d) {
                return a.view(c) == b.view(d);
            })) {
            return false;
        }
    }
    return true;
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
        return x.isOrdered == y.isOrdered && x.extent.number == y.extent.number;
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
        if (x.kind != y.kind || a.endOf(firstOfA + i) - firstOfA != b.endOf(firstOfB + i) - firstOfB ||
            !sayTheSame(a, x, b, y)) {
            return false;
        }
    }
    return true;
}

} // namespace quillary
