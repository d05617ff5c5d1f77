#pragma once

#include "QuillaryCore/Compare/DiffSegment.h"
#include "QuillaryCore/Compare/TextDiffResult.h"

#include <QList>
#include <QString>

#include <span>
#include <stop_token>
#include <variant>

namespace quillary {

/// Compares two texts line by line, and lines that took each other's place word by word. Lines and words are equal if
/// they are canonically equivalent. Pure functions; views in their results look into what they were given.
namespace TextDiff {

/// A line that both texts have.
struct Same {
    qsizetype oldIndex = 0;
    qsizetype newIndex = 0;

    friend bool operator==(const Same&, const Same&) = default;
};

/// A line that only the old text has.
struct Removed {
    qsizetype oldIndex = 0;

    friend bool operator==(const Removed&, const Removed&) = default;
};

/// A line that only the new text has.
struct Added {
    qsizetype newIndex = 0;

    friend bool operator==(const Added&, const Added&) = default;
};

/// One step of the script that makes the new lines of the old ones. Indices count from 0.
using Operation = std::variant<Same, Removed, Added>;

/// The segments of two lines, one behind the other.
struct WordSegments {
    QList<DiffSegment> oldSegments;
    QList<DiffSegment> newSegments;

    friend bool operator==(const WordSegments&, const WordSegments&) = default;
};

/// The rows that show two texts side by side. They share the texts, of which each is below 2^31 units. The fewest lines
/// are changed, whatever that takes; `stop` ends it early, from another thread, with a result that means nothing.
TextDiffResult compare(const QString& oldText, const QString& newText, const std::stop_token& stop = {});

/// What two lines that took each other's place have in common, word by word; one unmarked segment a side if that is
/// little. A line without characters has no segments.
WordSegments wordSegments(QStringView oldLine, QStringView newLine);

/// The lines of a text without their ends, LF or CR LF. A lone CR stays in its line, and a line end at the end of the
/// text adds no line.
QList<QStringView> lines(QStringView text);

/// The words of a line: runs of letters, numbers and low lines, runs of blanks, and each other character on its own.
QList<QStringView> tokens(QStringView line);

/// A shortest script from the old lines to the new ones. In a changed stretch all removals come before all additions.
QList<Operation> operations(std::span<const QStringView> oldLines, std::span<const QStringView> newLines);

} // namespace TextDiff

} // namespace quillary
