#include "QuillaryCore/Platform/FileStatus.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace quillary {

namespace {

constexpr qint64 nanosecondsPerSecond = 1'000'000'000;

FileKind kindOf(quint32 mode) {
    switch (mode & S_IFMT) {
    case S_IFREG:
        return FileKind::regular;
    case S_IFDIR:
        return FileKind::directory;
    case S_IFLNK:
        return FileKind::symbolicLink;
    default:
        return FileKind::other;
    }
}

Result<FileStatus, SystemError> statusOf(int directory, const char* name, int flags) {
    Result<FileStatus, SystemError> result = SystemError();
    struct statx facts;
    if (::statx(directory, name, flags | AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, STATX_BASIC_STATS | STATX_BTIME,
                &facts) != 0) {
        result = SystemError::last();
        return result;
    }
    const auto moment = [&facts](unsigned mask, const statx_timestamp& stamp) {
        return (facts.stx_mask & mask) != 0 ? momentFromTimestamp(stamp.tv_sec, stamp.tv_nsec) : distantPast;
    };
    // Where it stands: a copy of what was just written field by field would wait for it.
    FileStatus& status = result.emplace();
    status.kind = kindOf(facts.stx_mode);
    status.device = makedev(facts.stx_dev_major, facts.stx_dev_minor);
    status.inode = facts.stx_ino;
    status.mode = facts.stx_mode & 07777U;
    status.owner = facts.stx_uid;
    status.group = facts.stx_gid;
    status.size = static_cast<qint64>(facts.stx_size);
    status.modified = moment(STATX_MTIME, facts.stx_mtime);
    status.changed = moment(STATX_CTIME, facts.stx_ctime);
    // Some file systems claim to know it and give the beginning of 1970.
    if ((facts.stx_mask & STATX_BTIME) != 0 && facts.stx_btime.tv_sec != 0) {
        status.born = momentFromTimestamp(facts.stx_btime.tv_sec, facts.stx_btime.tv_nsec);
    }
    return result;
}

} // namespace

Result<FileStatus, SystemError> fileStatus(const FilePath& path) {
    return statusOf(AT_FDCWD, path.bytes().constData(), 0);
}

Result<FileStatus, SystemError> fileStatus(int directory, const char* name) {
    return statusOf(directory, name, 0);
}

Result<FileStatus, SystemError> fileStatus(int descriptor) {
    return statusOf(descriptor, "", AT_EMPTY_PATH);
}

SystemError notAnOrdinaryFile(FileKind kind) {
    switch (kind) {
    case FileKind::directory:
        return {EISDIR};
    case FileKind::symbolicLink:
        return {ELOOP};
    default:
        return {EINVAL};
    }
}

Moment momentFromTimestamp(qint64 seconds, quint32 nanoseconds) {
    constexpr qint64 lastWholeSecond = Moment::max().time_since_epoch().count() / nanosecondsPerSecond - 1;
    if (seconds > lastWholeSecond) {
        return Moment::max();
    }
    if (seconds < -lastWholeSecond) {
        return Moment::min();
    }
    return Moment(std::chrono::nanoseconds(seconds * nanosecondsPerSecond + nanoseconds));
}

timespec timestampFromMoment(Moment moment) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(moment);
    timespec stamp{};
    stamp.tv_sec = seconds.time_since_epoch().count();
    stamp.tv_nsec = (moment - seconds).count();
    return stamp;
}

} // namespace quillary
