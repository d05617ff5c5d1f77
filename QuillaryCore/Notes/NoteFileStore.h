#pragma once

#include "QuillaryCore/Notes/FileError.h"
#include "QuillaryCore/Notes/Moment.h"
#include "QuillaryCore/Notes/NoteFileInfo.h"
#include "QuillaryCore/Notes/NoteFormat.h"
#include "QuillaryCore/Notes/SidebarLayout.h"
#include "QuillaryCore/Platform/FilePath.h"
#include "QuillaryCore/Result.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <functional>
#include <optional>

namespace quillary {

/// The note files, the folders and the sidebar's layout in one directory: the only code that touches them. A plain
/// value without caches; each call asks the file system. Operations block, and may be called from any thread.
///
/// Notes are the ordinary files with a recognised extension, directly in the directory or in one of its folders. Hidden
/// entries, links and packages are neither notes nor folders. A folder is named by its name, the top of the directory
/// by an absent one. Names go through the reversible form of FilePath, so that every name on disk can be reached.
///
/// Failures of the operating system pass through; whatever fails leaves the files as they were. Nothing is ever
/// overwritten but the text of the note that is written, and nothing is deleted: what goes, goes to the system's trash.
class NoteFileStore {
public:
    /// The largest file that is read, in bytes.
    static constexpr qint64 maxReadableBytes = 33'554'432;

    /// The titles of notes and folders that would have none.
    static QString fallbackTitle();
    static QString defaultFolderName();

    /// A title as a safe name without extension; may be empty.
    static QString sanitizedTitle(QStringView title);

    explicit NoteFileStore(const FilePath& directory);

    const FilePath& directory() const { return m_directory; }

    /// Makes the directory and those above it, if need be.
    Status<FileError> ensureDirectoryExists() const;

    /// The directory of a folder, whether it is there or not.
    FilePath folderURL(QStringView name) const;

    // Notes

    /// What the directory holds.
    struct Listing {
        /// The names of all folders in the order that the file system gives.
        QStringList folders;
        /// All notes, those of the top first, otherwise in no order.
        QList<NoteFileInfo> notes;
    };

    /// The folders and the notes by one look at each directory; fails as listNotes does.
    Result<Listing, FileError> list() const;

    /// All notes, those of the top first, otherwise in no order. Folders that can't be listed and files whose facts
    /// can't be read are left out; only a failure to list the directory itself is one.
    Result<QList<NoteFileInfo>, FileError> listNotes() const;

    /// The facts of one ordinary file.
    Result<NoteFileInfo, FileError> info(const FilePath& url) const;

    /// The folder that holds a path; the name of its parent, however deep it lies.
    std::optional<QString> folder(const FilePath& url) const;

    /// The text of a note, decoded by TextDecoder. A file larger than maxReadableBytes is refused with fileTooLarge.
    /// The size that `info` has told a moment before, in bytes, makes it a little faster.
    Result<QString, FileError> read(const FilePath& url, std::optional<qint64> expectedSize = {}) const;

    /// Gives a note this text in one atomic step, in UTF-8 without a mark, and keeps its creation date; a note that
    /// isn't there is made. The result is its new modification date. A lone surrogate becomes U+FFFD.
    Result<Moment, FileError> write(QStringView text, const FilePath& url) const;

    /// The next stretch of a text; empty at its end. What it views lives until the next call.
    using TextChunks = std::function<QStringView()>;

    /// The same for a text in stretches, which may part a surrogate pair.
    Result<Moment, FileError> write(const TextChunks& nextChunk, const FilePath& url) const;

    /// Makes a note under a free name. The folder must be there. What prevents it is reported as creationFailed.
    Result<FilePath, FileError> createNote(QStringView title, NoteFormat format, QStringView contents,
                                           const std::optional<QString>& folder) const;

    /// A path with this extension at which nothing is, numbered from 2 on where the name is taken. A taken path that
    /// differs from `ignoring` at most in letter case is good as well. The name fits into what file systems allow.
    FilePath uniqueURL(QStringView title, QStringView fileExtension, const std::optional<QString>& folder,
                       const std::optional<FilePath>& ignoring = std::nullopt) const;

    /// Copies a foreign file to the top, bytes and dates unchanged; with an extension that isn't recognised it becomes
    /// a
    /// ".txt".
    Result<FilePath, FileError> importFile(const FilePath& url) const;

    /// Gives a note another title. One that has nothing usable is refused with invalidName.
    Result<FilePath, FileError> rename(const FilePath& url, QStringView title) const;

    /// Gives a note the format's own extension, unless its present one is of that format already.
    Result<FilePath, FileError> changeFormat(const FilePath& url, NoteFormat format) const;

    /// Moves a note to a folder, which must be there, or to the top.
    Result<FilePath, FileError> moveNote(const FilePath& url, const std::optional<QString>& folder) const;

    /// Moves a file to the system's trash.
    Status<FileError> moveToTrash(const FilePath& url) const;

    // Folders

    /// The names of all folders in the order that the file system gives.
    Result<QStringList, FileError> listFolders() const;

    /// Makes a folder and gives the name that it got, which may be numbered or made safe.
    Result<QString, FileError> createFolder(QStringView name) const;

    /// Gives a folder another name, and gives the name that it got. One that has nothing usable, or that is a
    /// package's, is refused with invalidName.
    Result<QString, FileError> renameFolder(const QString& name, QStringView to) const;

    /// Moves a folder to the system's trash; before that its notes to the top, if they are to be kept. The first note
    /// that can't be moved ends it, and the folder stays with what is in it.
    Status<FileError> deleteFolder(const QString& name, bool keepingNotes) const;

    // The sidebar's layout

    /// The stored layout; an empty one if it is missing or can't be read.
    SidebarLayout loadLayout() const;

    /// Stores the layout in one atomic step.
    Status<FileError> saveLayout(const SidebarLayout& layout) const;

private:
    FilePath layoutURL() const;
    FilePath parentURL(const std::optional<QString>& folder) const;
    Status<FileError> collectNotes(const std::optional<QString>& folder, QList<NoteFileInfo>& notes,
                                   QStringList* folders) const;
    QString uniqueFolderName(QStringView name, const std::optional<QString>& ignoring) const;
    Result<FilePath, FileError> move(const FilePath& source, QStringView title, QStringView fileExtension,
                                     const std::optional<QString>& folder,
                                     const std::optional<FilePath>& ignoring) const;

    FilePath m_directory;
};

} // namespace quillary
