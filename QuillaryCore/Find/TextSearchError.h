#pragma once

#include <QString>

namespace quillary {

/// Why a query makes no search.
enum class TextSearchError {
    emptyQuery,
    invalidPattern,
};

/// What the user is told.
QString description(TextSearchError error);

} // namespace quillary
