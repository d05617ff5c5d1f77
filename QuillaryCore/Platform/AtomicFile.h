#pragma once

#include "QuillaryCore/Notes/Moment.h"
#include "QuillaryCore/Platform/FileDescriptor.h"
#include "QuillaryCore/Platform/FilePath.h"
#include "QuillaryCore/Platform/FileStatus.h"
#include "QuillaryCore/Platform/SystemError.h"
#include "QuillaryCore/Result.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace quillary {

/// New contents of a file that take its name in one step: whoever opens the name finds the old contents or the new
/// ones, whole, also after a crash or a loss of power. Until then they are in a file without a name in the same
/// directory, or in one with a short hidden name where the file system can't do that. Dropped before its end it leaves
/// nothing behind.
class AtomicFile {
public:
    /// How the contents wait for their name; a file system that has no files without a name hides one.
    enum class Waiting { withoutName, underHiddenName };

    /// Begins new contents for a path. An existing file there must be an ordinary one, no link, and writable.
    static Result<AtomicFile, SystemError> open(const FilePath& target, Waiting waiting = Waiting::withoutName);

    /// Begins a new file for a path without a look at what is there.
    static Result<AtomicFile, SystemError> openNew(const FilePath& target, Waiting waiting = Waiting::withoutName);

    AtomicFile(AtomicFile&&) noexcept = default;
    AtomicFile& operator=(AtomicFile&&) = delete;
    ~AtomicFile();

    /// The facts of the file that stood at the path when this began; absent if there was none.
    const std::optional<FileStatus>& replaced() const { return m_replaced; }

    /// The file that takes the new contents, for attributes that it shall have.
    int descriptor() const { return m_file.number(); }

    /// Adds bytes to the new contents.
    Status<SystemError> write(QByteArrayView bytes);

    /// Gives the contents the path in the place of what is there, with owner, mode and extended attributes of the file
    /// that stood there. The creation date, if there is one, is kept as such. The result is the new file's status.
    Result<FileStatus, SystemError> replace(const std::optional<Moment>& created = std::nullopt);

    /// Gives the contents the path if nothing is there; otherwise the failure is EEXIST.
    Result<FileStatus, SystemError> create(const std::optional<Moment>& created = std::nullopt);

    /// Removes a file of an open directory that a process left behind which ended before its time. Other names, and
    /// files that are still being written or are less than a minute old, stay.
    static void removeIfAbandoned(int directory, const char* name, Moment now = quillary::now());

private:
    AtomicFile() = default;

    Status<SystemError> openDirectory(const FilePath& target);
    Status<SystemError> openFile(quint32 mode, Waiting waiting);
    Status<SystemError> openHidden(quint32 mode);
    Status<SystemError> giveHiddenName();
    void copyAttributes() const;
    void takeOwnerAndMode() const;

    FileDescriptor m_directory;
    FileDescriptor m_file;
    QByteArray m_name;
    /// Empty as long as the file has no name.
    QByteArray m_hiddenName;
    std::optional<FileStatus> m_replaced;
};

} // namespace quillary
