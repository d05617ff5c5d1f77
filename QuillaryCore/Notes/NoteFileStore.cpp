#include "QuillaryCore/Notes/NoteFileStore.h"

#include "QuillaryCore/Notes/FileContents.h"
#include "QuillaryCore/Notes/FileName.h"
#include "QuillaryCore/Notes/NoteNaming.h"
#include "QuillaryCore/Notes/TextDecoder.h"
#include "QuillaryCore/Platform/AtomicFile.h"
#include "QuillaryCore/Platform/CreationDate.h"
#include "QuillaryCore/Platform/DirectoryReader.h"
#include "QuillaryCore/Platform/FileStatus.h"
#include "QuillaryCore/Platform/Trash.h"
#include "QuillaryCore/Platform/UTF8Writer.h"

#include <QCoreApplication>

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

bool isHidden(QByteArrayView name) {
    return name.startsWith('.');
}

bool hasRecognizedExtension(QByteArrayView name) {
    const qsizetype dot = name.lastIndexOf('.');
    if (dot <= 0 || dot + 1 == name.size()) {
        return false;
    }
    return isRecognizedExtension(QUtf8StringView(name.sliced(dot + 1)));
}

void describe(NoteFileInfo& info, FilePath url, const FileStatus& status, const std::optional<QString>& folder) {
    info.created = creation_date::of(url, status);
    info.modified = status.modified;
    info.size = status.size;
    info.folder = folder;
    info.url = std::move(url);
}

} // namespace

QString NoteFileStore::fallbackTitle() {
    return QCoreApplication::translate("NoteFileStore", "Senza titolo");
}

QString NoteFileStore::defaultFolderName() {
    return QCoreApplication::translate("NoteFileStore", "Nuova cartella");
}

QString NoteFileStore::sanitizedTitle(QStringView title) {
    return NoteNaming::sanitizedTitle(title);
}

NoteFileStore::NoteFileStore(const FilePath& directory) : m_directory(directory.standardized()) {}

Status<FileError> NoteFileStore::ensureDirectoryExists() const {
    const QByteArray& path = m_directory.bytes();
    for (qsizetype slash = path.indexOf('/', 1); slash > 0; slash = path.indexOf('/', slash + 1)) {
        // One that can't be made may be there all the same; the last step tells.
        ::mkdir(path.first(slash).constData(), 0777);
    }
    if (::mkdir(path.constData(), 0777) == 0) {
        return Done();
    }
    const SystemError error = SystemError::last();

    struct stat facts {};

    if (error.code == EEXIST && ::stat(path.constData(), &facts) == 0) {
        if (S_ISDIR(facts.st_mode)) {
            return Done();
        }
        return FileError(SystemError{ENOTDIR});
    }
    return FileError(error);
}

FilePath NoteFileStore::folderURL(QStringView name) const {
    return m_directory.appending(name);
}

FilePath NoteFileStore::parentURL(const std::optional<QString>& folder) const {
    return folder ? folderURL(*folder) : m_directory;
}

Status<FileError> NoteFileStore::collectNotes(const std::optional<QString>& folder, QList<NoteFileInfo>& notes,
                                              QStringList* folders) const {
    const FilePath parent = parentURL(folder);
    auto reader = DirectoryReader::open(parent);
    if (!reader) {
        return FileError(reader.error());
    }
    QByteArray prefix = parent.bytes();
    if (!prefix.endsWith('/')) {
        prefix += '/';
    }
    while (const auto entry = reader->next()) {
        if (isHidden(entry->name)) {
            AtomicFile::removeIfAbandoned(reader->descriptor(), entry->name.data());
            continue;
        }
        const bool mayBeNote =
            entry->kind.value_or(FileKind::regular) == FileKind::regular && hasRecognizedExtension(entry->name);
        const bool mayBeFolder = folders != nullptr &&
                                 entry->kind.value_or(FileKind::directory) == FileKind::directory &&
                                 !isPackageName(entry->name);
        if (mayBeFolder && entry->kind) {
            folders->append(FilePath::textFromBytes(entry->name));
            continue;
        }
        if (!mayBeNote && !mayBeFolder) {
            continue;
        }
        const auto status = fileStatus(reader->descriptor(), entry->name.data());
        if (!status) {
            continue;
        }
        if (mayBeNote && status->kind == FileKind::regular) {
            QByteArray path(prefix.size() + entry->name.size(), Qt::Uninitialized);
            std::copy(prefix.cbegin(), prefix.cend(), path.begin());
            std::copy(entry->name.begin(), entry->name.end(), path.begin() + prefix.size());
            describe(notes.emplaceBack(), FilePath::fromBytes(std::move(path)), *status, folder);
        } else if (mayBeFolder && status->kind == FileKind::directory) {
            folders->append(FilePath::textFromBytes(entry->name));
        }
    }
    if (reader->error()) {
        return FileError(*reader->error());
    }
    return Done();
}

Result<NoteFileStore::Listing, FileError> NoteFileStore::list() const {
    Listing listing;
    QList<NoteFileInfo>& notes = listing.notes;
    if (const auto listed = collectNotes(std::nullopt, notes, &listing.folders); !listed) {
        return listed.error();
    }
    for (const QString& folder : std::as_const(listing.folders)) {
        const qsizetype count = notes.size();
        if (!collectNotes(folder, notes, nullptr)) {
            notes.resize(count);
            // A folder may have gone meanwhile, but if all of them have, with their volume, nothing is known of them.
            if (const auto directory = DirectoryReader::open(m_directory); !directory) {
                return FileError(directory.error());
            }
        }
    }
    return listing;
}

Result<QList<NoteFileInfo>, FileError> NoteFileStore::listNotes() const {
    auto listing = list();
    if (!listing) {
        return listing.error();
    }
    return std::move(listing->notes);
}

Result<QStringList, FileError> NoteFileStore::listFolders() const {
    auto reader = DirectoryReader::open(m_directory);
    if (!reader) {
        return FileError(reader.error());
    }
    QStringList folders;
    while (const auto entry = reader->next()) {
        if (isHidden(entry->name) || isPackageName(entry->name)) {
            continue;
        }
        // Some file systems tell the kind of an entry only when it is asked for by itself.
        std::optional<FileKind> kind = entry->kind;
        if (!kind) {
            const auto status = fileStatus(reader->descriptor(), entry->name.data());
            kind = status ? std::optional(status->kind) : std::nullopt;
        }
        if (kind == FileKind::directory) {
            folders.append(FilePath::textFromBytes(entry->name));
        }
    }
    if (reader->error()) {
        return FileError(*reader->error());
    }
    return folders;
}

Result<NoteFileInfo, FileError> NoteFileStore::info(const FilePath& url) const {
    const auto status = fileStatus(url);
    if (!status) {
        return FileError(status.error());
    }
    if (status->kind != FileKind::regular) {
        return FileError(notAnOrdinaryFile(status->kind));
    }
    NoteFileInfo info;
    describe(info, url, *status, folder(url));
    return info;
}

std::optional<QString> NoteFileStore::folder(const FilePath& url) const {
    const FilePath parent = url.parent().standardized();
    return parent == m_directory ? std::nullopt : std::optional(parent.fileName());
}

Result<QString, FileError> NoteFileStore::read(const FilePath& url, std::optional<qint64> expectedSize) const {
    return withFileContents(url, maxReadableBytes, &TextDecoder::decode, expectedSize);
}

Result<Moment, FileError> NoteFileStore::write(QStringView text, const FilePath& url) const {
    bool isGiven = false;
    return write([text, isGiven]() mutable { return std::exchange(isGiven, true) ? QStringView() : text; }, url);
}

Result<Moment, FileError> NoteFileStore::write(const TextChunks& nextChunk, const FilePath& url) const {
    auto file = AtomicFile::open(url);
    if (!file) {
        return FileError(file.error());
    }
    // Without an older file there is no date to keep; the new file's birth is the note's.
    std::optional<Moment> created;
    if (file->replaced()) {
        const Moment date = creation_date::of(url, *file->replaced());
        created = date == distantPast ? std::nullopt : std::optional(date);
    }
    UTF8Writer writer(*file);
    for (QStringView chunk = nextChunk(); !chunk.isEmpty(); chunk = nextChunk()) {
        if (const auto written = writer.write(chunk); !written) {
            return FileError(written.error());
        }
    }
    if (const auto finished = writer.finish(); !finished) {
        return FileError(finished.error());
    }
    const auto status = file->replace(created);
    if (!status) {
        return FileError(status.error());
    }
    return status->modified == distantPast ? now() : status->modified;
}

Status<FileError> NoteFileStore::moveToTrash(const FilePath& url) const {
    if (const auto moved = trash::moveToTrash(url); !moved) {
        return FileError(moved.error());
    }
    return Done();
}

} // namespace quillary
