#pragma once

#include "QuillaryCore/Text/TextRange.h"

#include <QStringView>

namespace quillary {

/// Very long lines are laid out and drawn in chunks, of which only those near the viewport are looked at. A chunk ends
/// behind a blank where there is one, else between two characters.
namespace DiffChunks {

/// The most units of a chunk.
inline constexpr qsizetype length = 2000;

/// How many chunks a line has; an empty one has one.
qsizetype count(QStringView line);

/// The stretch of a chunk.
TextRange range(QStringView line, qsizetype chunk);

} // namespace DiffChunks

} // namespace quillary
