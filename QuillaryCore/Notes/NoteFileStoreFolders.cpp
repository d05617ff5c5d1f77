#include "QuillaryCore/Notes/FileContents.h"
#include "QuillaryCore/Notes/FileName.h"
#include "QuillaryCore/Notes/NoteFileStore.h"
#include "QuillaryCore/Platform/AtomicFile.h"
#include "QuillaryCore/Platform/FileMove.h"
#include "QuillaryCore/Platform/FileStatus.h"
#include "QuillaryCore/Unicode/CanonicalEquality.h"

#include <cerrno>
#include <sys/stat.h>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

/// The name of something in the directory; nothing else may be renamed or go to the trash as a folder.
bool isEntryName(QStringView name) {
    return !name.isEmpty() && name != u"." && name != u".." && !name.contains(u'/');
}

/// Whether a folder that is called like this would be listed.
bool isFolderName(QStringView title) {
    const QString name = numberedFileName(NoteFileStore::sanitizedTitle(title), 1, QString());
    return !name.isEmpty() && !isPackageName(FilePath::bytesFromText(name));
}

} // namespace

QString NoteFileStore::uniqueFolderName(QStringView name, const std::optional<QString>& ignoring) const {
    const QString sanitized = sanitizedTitle(name);
    const QString base = sanitized.isEmpty() ? defaultFolderName() : sanitized;
    for (qint64 number = 1;; ++number) {
        const QString candidate = numberedFileName(base, number, QString());
        if (!fileStatus(folderURL(candidate)) ||
            (ignoring && canonicallyEqual(candidate.toLower(), ignoring->toLower()))) {
            return candidate;
        }
    }
}

Result<QString, FileError> NoteFileStore::createFolder(QStringView name) const {
    if (const auto ensured = ensureDirectoryExists(); !ensured) {
        return ensured.error();
    }
    QString free = uniqueFolderName(name, std::nullopt);
    while (::mkdir(folderURL(free).bytes().constData(), 0777) != 0) {
        const SystemError error = SystemError::last();
        const QString next = error.code == EEXIST ? uniqueFolderName(name, std::nullopt) : free;
        if (next == free) {
            return FileError(error);
        }
        free = next;
    }
    return free;
}

Result<QString, FileError> NoteFileStore::renameFolder(const QString& name, QStringView to) const {
    if (!isFolderName(to)) {
        return FileError(NoteStoreError::invalidName());
    }
    if (!isEntryName(name)) {
        return FileError(SystemError{ENOENT});
    }
    const QString free = uniqueFolderName(to, name);
    if (canonicallyEqual(free, name)) {
        return name;
    }
    if (const auto moved = moveFile(folderURL(name), folderURL(free)); !moved) {
        return FileError(moved.error());
    }
    return free;
}

Status<FileError> NoteFileStore::deleteFolder(const QString& name, bool keepingNotes) const {
    if (!isEntryName(name)) {
        return FileError(SystemError{ENOENT});
    }
    if (keepingNotes) {
        QList<NoteFileInfo> notes;
        if (const auto listed = collectNotes(name, notes, nullptr); !listed) {
            return listed;
        }
        for (const NoteFileInfo& note : std::as_const(notes)) {
            if (const auto moved = moveNote(note.url, std::nullopt); !moved) {
                return moved.error();
            }
        }
    }
    return moveToTrash(folderURL(name));
}

FilePath NoteFileStore::layoutURL() const {
    return m_directory.appending(u".quillary.json");
}

SidebarLayout NoteFileStore::loadLayout() const {
    const auto layout = withFileContents(layoutURL(), maxReadableBytes, &SidebarLayout::decode);
    return layout ? layout->value_or(SidebarLayout()) : SidebarLayout();
}

Status<FileError> NoteFileStore::saveLayout(const SidebarLayout& layout) const {
    auto file = AtomicFile::open(layoutURL());
    if (!file) {
        return FileError(file.error());
    }
    if (const auto written = file->write(layout.encoded()); !written) {
        return FileError(written.error());
    }
    if (const auto replaced = file->replace(); !replaced) {
        return FileError(replaced.error());
    }
    return Done();
}

} // namespace quillary
