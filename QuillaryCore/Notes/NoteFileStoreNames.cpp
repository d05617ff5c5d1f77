#include "QuillaryCore/Notes/FileName.h"
#include "QuillaryCore/Notes/NoteFileStore.h"
#include "QuillaryCore/Platform/AtomicFile.h"
#include "QuillaryCore/Platform/FileCopy.h"
#include "QuillaryCore/Platform/FileMove.h"
#include "QuillaryCore/Platform/FileStatus.h"
#include "QuillaryCore/Platform/UTF8Writer.h"
#include "QuillaryCore/Unicode/CanonicalEquality.h"

#include <cerrno>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

bool isPathTaken(const FilePath& path) {
    return fileStatus(path).hasValue();
}

bool areSamePath(const FilePath& a, const FilePath& b) {
    return canonicallyEqual(a.standardized().text(), b.standardized().text());
}

bool areSamePathButForCase(const FilePath& a, const FilePath& b) {
    return canonicallyEqual(a.standardized().text().toLower(), b.standardized().text().toLower());
}

/// Whether a note that is to move from one path to another stays where it is. Of two folders whose names differ only in
/// composition each is a place of its own.
bool staysInPlace(const FilePath& from, const FilePath& to) {
    return areSamePath(from, to) &&
           (from.standardized().parent() == to.standardized().parent() || !isPathTaken(to.parent()));
}

/// Calls `attempt` with a free path and, as long as another program takes that path first, with the next one.
template <typename FindFree, typename Attempt>
Result<FilePath, SystemError> underFreeName(FindFree findFree, Attempt attempt) {
    FilePath url = findFree();
    for (;;) {
        const Status<SystemError> done = attempt(url);
        if (done) {
            return url;
        }
        const FilePath next = done.error().code == EEXIST ? findFree() : url;
        if (next == url) {
            return done.error();
        }
        url = next;
    }
}

Status<SystemError> createFile(const FilePath& url, QStringView contents) {
    auto file = AtomicFile::openNew(url);
    if (!file) {
        return file.error();
    }
    UTF8Writer writer(*file);
    if (const auto written = writer.write(contents); !written) {
        return written;
    }
    if (const auto finished = writer.finish(); !finished) {
        return finished;
    }
    const auto created = file->create();
    return created ? Status<SystemError>(Done()) : Status<SystemError>(created.error());
}

} // namespace

FilePath NoteFileStore::uniqueURL(QStringView title, QStringView fileExtension, const std::optional<QString>& folder,
                                  const std::optional<FilePath>& ignoring) const {
    const QString sanitized = sanitizedTitle(title);
    const QString base = sanitized.isEmpty() ? fallbackTitle() : sanitized;
    const QString extension = fileExtension.isEmpty() ? QString() : u'.' + fileExtension.toString();
    const FilePath parent = parentURL(folder);
    for (qint64 number = 1;; ++number) {
        const FilePath candidate = parent.appending(numberedFileName(base, number, extension));
        if (!isPathTaken(candidate) || (ignoring && areSamePathButForCase(candidate, *ignoring))) {
            return candidate;
        }
    }
}

Result<FilePath, FileError> NoteFileStore::createNote(QStringView title, NoteFormat format, QStringView contents,
                                                      const std::optional<QString>& folder) const {
    if (const auto ensured = ensureDirectoryExists(); !ensured) {
        return ensured.error();
    }
    FilePath url;
    auto created = underFreeName([&] { return url = uniqueURL(title, fileExtension(format), folder); },
                                 [&](const FilePath& free) { return createFile(free, contents); });
    if (!created) {
        return FileError(NoteStoreError::creationFailed(FilePath::displayText(url.fileName())));
    }
    return *std::move(created);
}

Result<FilePath, FileError> NoteFileStore::importFile(const FilePath& url) const {
    if (const auto ensured = ensureDirectoryExists(); !ensured) {
        return ensured.error();
    }
    const QString lowercased = url.extension().toLower();
    const QString extension = isRecognizedExtension(lowercased) ? lowercased : u"txt"_s;
    auto imported = underFreeName([&] { return uniqueURL(url.title(), extension, std::nullopt); },
                                  [&](const FilePath& free) { return copyFile(url, free); });
    if (!imported) {
        return FileError(imported.error());
    }
    return *std::move(imported);
}

Result<FilePath, FileError> NoteFileStore::move(const FilePath& source, QStringView title, QStringView fileExtension,
                                                const std::optional<QString>& folder,
                                                const std::optional<FilePath>& ignoring) const {
    auto moved = underFreeName(
        [&] {
            const FilePath destination = uniqueURL(title, fileExtension, folder, ignoring);
            return staysInPlace(source, destination) ? source : destination;
        },
        [&](const FilePath& free) { return free == source ? Status<SystemError>(Done()) : moveFile(source, free); });
    if (!moved) {
        return FileError(moved.error());
    }
    return *std::move(moved);
}

Result<FilePath, FileError> NoteFileStore::rename(const FilePath& url, QStringView title) const {
    if (sanitizedTitle(title).isEmpty()) {
        return FileError(NoteStoreError::invalidName());
    }
    return move(url, title, url.extension(), folder(url), url);
}

Result<FilePath, FileError> NoteFileStore::changeFormat(const FilePath& url, NoteFormat format) const {
    if (noteFormatFromExtension(url.extension()) == format) {
        return url;
    }
    return move(url, url.title(), fileExtension(format), folder(url), url);
}

Result<FilePath, FileError> NoteFileStore::moveNote(const FilePath& url, const std::optional<QString>& folder) const {
    if (this->folder(url) == folder) {
        return url;
    }
    return move(url, url.title(), url.extension(), folder, std::nullopt);
}

} // namespace quillary
