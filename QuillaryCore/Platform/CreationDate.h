#pragma once

#include "QuillaryCore/Notes/Moment.h"
#include "QuillaryCore/Platform/FileStatus.h"

#include <QByteArray>
#include <QByteArrayView>

#include <chrono>
#include <optional>

namespace quillary::creation_date {

/// A file's creation date is its birth time, unless it was put in the place of an older file: then it is in this
/// extended attribute, as "CREATED INODE BIRTH" with moments in seconds ("1772701620.123456789") and "-" for a birth
/// time that the file system doesn't keep.
///
/// The attribute counts only for the very file that it was written for, which it names by inode and birth time. So a
/// copy takes its own date, also one that was made with all attributes, and so does a file that another program put in
/// the note's place.
inline constexpr char attributeName[] = "user.quillary.created";

/// Whoever writes the attribute lets at least this much pass between the birth of the file and its last change, so that
/// a file that is younger at its last change needn't be asked for an attribute: in a list of notes that would cost as
/// much as everything else together.
inline constexpr std::chrono::milliseconds leastAge{5};

/// The creation date of a file whose facts are known; distantPast where neither attribute nor birth time is kept.
Moment of(const FilePath& path, const FileStatus& status);
Moment of(int descriptor, const FileStatus& status);

/// Gives an open file a creation date other than its birth time; takes up to the least age. False where the file system
/// keeps no such attribute.
bool store(int descriptor, Moment created);

/// The attribute's bytes and back. Decoding gives nothing for bytes of another form or that name another file.
QByteArray encoded(Moment created, const FileStatus& status);
std::optional<Moment> decoded(QByteArrayView bytes, const FileStatus& status);

} // namespace quillary::creation_date
