#pragma once

#include "QuillaryCore/Compare/DiffRow.h"
#include "QuillaryCore/Compare/DiffStats.h"

#include <QString>

namespace quillary {

/// What a comparison says in words.
namespace DiffTexts {

/// A row as a screen reader tells it: its kind, its numbers and its text, of very long lines the beginning.
QString description(const DiffRow& row);

/// The label of a fold.
QString fold(qsizetype count);

/// The statistics as a sentence.
QString sentence(const DiffStats& stats);

} // namespace DiffTexts

} // namespace quillary
