#pragma once

#include "QuillaryCore/Formats/JSONTreeRows.h"

#include <functional>

namespace quillary {

/// A JSON value as a list of rows, as a preview shows it.
class JSONTree {
public:
    /// Whether the container with this path, at this depth, shows its children.
    using Predicate = std::function<bool(const JSONPath& path, qint64 depth)>;

    /// The row of the value and, behind each container that `isExpanded` opens, the rows of its children. Takes time
    /// for what is shown, not for what the value holds; scalars are never asked about.
    static JSONTreeRows rows(const JSONValue& value, const Predicate& isExpanded);

    /// A value as text for use elsewhere: a container pretty-printed with two spaces a level, a string without
    /// quotes, any other as it is written.
    static QString valueToCopy(const JSONValue& value);
};

} // namespace quillary
