#pragma once

#include "QuillaryCore/Formats/JSONTreeRow.h"

#include <QHash>

namespace quillary {

/// Which containers of a JSON tree are open: all above a depth, but for those that the user opened or closed.
struct JSONExpansion {
    /// Containers above this depth are open.
    qint64 defaultDepth = 2;
    /// What the user chose, container by container.
    QHash<JSONPath, bool> overrides;

    bool isExpanded(const JSONPath& path, qint64 depth) const;

    /// Opens everything.
    void expandAll();

    /// Closes everything but the whole text.
    void collapse();

    /// Opens a closed container and closes an open one.
    void toggle(const JSONTreeRow& row);
};

} // namespace quillary
