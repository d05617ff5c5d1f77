#pragma once

#include "QuillaryCore/Notes/NoteFormat.h"

#include <QStringView>

#include <optional>

/// Says what kind of note a text without a name is, where the text itself announces it.
namespace quillary::FormatDetector {

/// `php`, `html`, `json`, `csv`, or nothing; surrounding whitespace doesn't count. Only a text that begins with a
/// bracket is read as a whole, once.
std::optional<NoteFormat> detect(QStringView text);

/// Whether the text begins as a table: at least two rows of the same length of at least two fields, and more than two
/// by two. It looks at the first 20,000 characters, and there at 30 rows.
bool looksLikeCSV(QStringView text);

} // namespace quillary::FormatDetector
