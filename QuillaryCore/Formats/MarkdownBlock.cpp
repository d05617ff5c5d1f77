#include "QuillaryCore/Formats/MarkdownBlock.h"

#include "QuillaryCore/Formats/MarkdownList.h"
#include "QuillaryCore/Formats/MarkdownTable.h"

namespace quillary {

static_assert(static_cast<int>(MarkdownBlock::Kind::heading) == static_cast<int>(MarkdownTree::Kind::heading) &&
              static_cast<int>(MarkdownBlock::Kind::rule) == static_cast<int>(MarkdownTree::Kind::rule));

std::optional<QStringView> MarkdownBlock::language() const {
    const QStringView name = m_tree->language(node());
    return name.isNull() ? std::nullopt : std::optional(name);
}

MarkdownList MarkdownBlock::list() const {
    return {m_tree, m_node};
}

MarkdownTable MarkdownBlock::table() const {
    return {m_tree, m_node};
}

} // namespace quillary
