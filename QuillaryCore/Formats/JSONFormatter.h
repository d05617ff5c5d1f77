#pragma once

#include "QuillaryCore/Formats/JSONValue.h"

#include <QString>

namespace quillary {

/// Writes JSON values as text.
class JSONFormatter {
public:
    /// The value over several lines, with `indent` spaces a level (none if it is negative) and without a line feed at
    /// the end. Empty containers stay on one line.
    static QString prettyPrinted(const JSONValue& value, qint64 indent);

    /// The value without any space.
    static QString minified(const JSONValue& value);

    /// A JSON string literal. Only quotes, backslashes and what lies below U+0020 are escaped.
    static QString quoted(QStringView text);
};

} // namespace quillary
