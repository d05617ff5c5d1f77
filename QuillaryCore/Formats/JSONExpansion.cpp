#include "QuillaryCore/Formats/JSONExpansion.h"

#include <limits>

namespace quillary {

bool JSONExpansion::isExpanded(const JSONPath& path, qint64 depth) const {
    const auto chosen = overrides.constFind(path);
    return chosen != overrides.cend() ? *chosen : defaultDepth > depth;
}

void JSONExpansion::expandAll() {
    overrides.clear();
    defaultDepth = std::numeric_limits<qint64>::max();
}

void JSONExpansion::collapse() {
    overrides.clear();
    defaultDepth = 1;
}

void JSONExpansion::toggle(const JSONTreeRow& row) {
    overrides.insert(row.path(), !row.isExpanded());
}

} // namespace quillary
