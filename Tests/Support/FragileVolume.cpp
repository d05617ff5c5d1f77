#include "Tests/Support/FragileVolume.h"

#include <QStringBuilder>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <linux/fuse.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/uio.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace quillary::test {

namespace {

constexpr std::size_t largestWrite = 128 * 1024;
/// In seconds, how long the kernel may keep names and facts.
constexpr quint64 validity = 3600;
constexpr std::size_t largestRequest = largestWrite + 4096;

template <typename Structure>
QByteArray bytesOf(const Structure& structure) {
    return {reinterpret_cast<const char*>(&structure), sizeof(structure)};
}

template <typename Structure>
const Structure& as(const char* arguments) {
    return *reinterpret_cast<const Structure*>(arguments);
}

fuse_attr attributesOf(const struct stat& facts) {
    fuse_attr attributes = {};
    attributes.ino = facts.st_ino;
    attributes.size = static_cast<quint64>(facts.st_size);
    attributes.blocks = static_cast<quint64>(facts.st_blocks);
    attributes.atime = static_cast<quint64>(facts.st_atim.tv_sec);
    attributes.mtime = static_cast<quint64>(facts.st_mtim.tv_sec);
    attributes.ctime = static_cast<quint64>(facts.st_ctim.tv_sec);
    attributes.atimensec = static_cast<quint32>(facts.st_atim.tv_nsec);
    attributes.mtimensec = static_cast<quint32>(facts.st_mtim.tv_nsec);
    attributes.ctimensec = static_cast<quint32>(facts.st_ctim.tv_nsec);
    attributes.mode = facts.st_mode;
    attributes.nlink = static_cast<quint32>(facts.st_nlink);
    attributes.uid = facts.st_uid;
    attributes.gid = facts.st_gid;
    attributes.blksize = static_cast<quint32>(facts.st_blksize);
    return attributes;
}

QByteArray opened(int descriptor) {
    fuse_open_out answer = {};
    answer.fh = static_cast<quint64>(descriptor);
    return bytesOf(answer);
}

/// Of calls that give nothing but success.
QByteArray checked(int result, int& error) {
    error = result == 0 ? 0 : errno;
    return {};
}

} // namespace

FragileVolume::FragileVolume(QByteArray place, const QByteArray& shown, VolumeTraits traits)
    : m_place(std::move(place)), m_traits(traits) {
    const int root = ::open(shown.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    m_device = ::open("/dev/fuse", O_RDWR | O_CLOEXEC | O_NONBLOCK);
    m_wake = ::eventfd(0, EFD_CLOEXEC);
    // The numbers of nodes begin with that of the root, which is 1.
    m_nodes = {{-1, {}}, {root, {}}};
    char options[128];
    std::snprintf(options, sizeof(options), "fd=%d,rootmode=40000,user_id=%u,group_id=%u,default_permissions", m_device,
                  ::geteuid(), ::getegid());
    m_isMounted =
        m_device >= 0 && ::mount("quillary-test", m_place.constData(), "fuse", MS_NODEV | MS_NOSUID, options) == 0;
    if (m_isMounted) {
        m_server = std::thread([this] { serve(); });
    } else {
        ::close(m_device);
    }
}

FragileVolume::~FragileVolume() {
    unmount();
    for (const Node& node : m_nodes) {
        ::close(node.descriptor);
    }
    ::close(m_wake);
}

void FragileVolume::setDelay(std::chrono::milliseconds delay) {
    const std::lock_guard lock(m_mutex);
    m_delay = delay;
}

void FragileVolume::hang() {
    const std::lock_guard lock(m_mutex);
    m_hangs = true;
}

bool FragileVolume::holdsRequest() const {
    const std::lock_guard lock(m_mutex);
    return m_holdsRequest;
}

void FragileVolume::waitForHeldRequest() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_holdsRequest; });
}

void FragileVolume::die() {
    {
        const std::lock_guard lock(m_mutex);
        m_isStopped = true;
    }
    m_changed.notify_all();
    ::eventfd_write(m_wake, 1);
    if (m_server.joinable()) {
        m_server.join();
    }
}

void FragileVolume::endAtRequest(int number, End end) {
    const std::lock_guard lock(m_mutex);
    m_endingRequest = m_requests + number;
    m_end = end;
}

bool FragileVolume::hasEnded() const {
    const std::lock_guard lock(m_mutex);
    return m_hasEnded;
}

void FragileVolume::failReadsFrom(qint64 offset) {
    const std::lock_guard lock(m_mutex);
    m_unreadableFrom = offset;
}

int FragileVolume::requests() const {
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

void FragileVolume::unmount() {
    if (std::exchange(m_isMounted, false)) {
        ::umount2(m_place.constData(), MNT_DETACH);
    }
    die();
}

// The server

/// The end of its descriptor is what the kernel takes for the end of the server.
void FragileVolume::serve() {
    std::vector<char> request(largestRequest);
    pollfd watched[] = {{m_device, POLLIN, 0}, {m_wake, POLLIN, 0}};
    while (::poll(watched, 2, -1) >= 0 && watched[1].revents == 0) {
        const ssize_t size = ::read(m_device, request.data(), request.size());
        if (size < 0 && errno != EAGAIN && errno != EINTR && errno != ENOENT) {
            break;
        }
        if (size < static_cast<ssize_t>(sizeof(fuse_in_header))) {
            continue;
        }
        const auto& header = as<fuse_in_header>(request.data());
        const bool isForgotten = header.opcode == FUSE_FORGET || header.opcode == FUSE_BATCH_FORGET;
        if (isForgotten || header.opcode == FUSE_INTERRUPT) {
            continue;
        }
        if (header.opcode != FUSE_INIT && !isAnswerDue()) {
            break;
        }
        answer(header, request.data() + sizeof(fuse_in_header));
    }
    ::close(m_device);
}

/// Lets the time go by that an answer takes; false if there will be none.
bool FragileVolume::isAnswerDue() {
    std::unique_lock lock(m_mutex);
    if (m_hangs) {
        m_holdsRequest = true;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_isStopped; });
    }
    m_changed.wait_for(lock, m_delay, [this] { return m_isStopped; });
    if (m_endingRequest == m_requests) {
        m_hasEnded = true;
        if (m_end == End::death) {
            return false;
        }
        ::umount2(m_place.constData(), MNT_DETACH);
    }
    ++m_requests;
    return !m_isStopped;
}

/// Whether a stretch up to this end has a part that can't be read. The kernel asks for less after a failure.
bool FragileVolume::isUnreadable(qint64 end) const {
    const std::lock_guard lock(m_mutex);
    return end > m_unreadableFrom;
}

void FragileVolume::answer(const fuse_in_header& request, const char* arguments) {
    int error = 0;
    const Bytes bytes = answerTo(request, arguments, error);
    reply(request.unique, error, bytes);
}

void FragileVolume::reply(quint64 request, int error, const Bytes& bytes) const {
    fuse_out_header header = {};
    header.unique = request;
    header.error = -error;
    header.len = static_cast<quint32>(sizeof(header) + (error == 0 ? static_cast<std::size_t>(bytes.size()) : 0));
    const QByteArray message = bytesOf(header) + (error == 0 ? bytes : Bytes());
    // Nobody may wait for it any more, and then there is no one to tell.
    [[maybe_unused]] const ssize_t written =
        ::write(m_device, message.constData(), static_cast<std::size_t>(message.size()));
}

int FragileVolume::descriptorOf(quint64 node) const {
    return m_nodes[node].descriptor;
}

/// A path to what an open descriptor is of, whatever its name is by now.
QByteArray FragileVolume::pathOf(quint64 node) const {
    return "/proc/self/fd/" + QByteArray::number(descriptorOf(node));
}

std::optional<FragileVolume::Bytes> FragileVolume::factsOf(int descriptor) const {
    struct stat facts {};

    if (::fstatat(descriptor, "", &facts, AT_EMPTY_PATH | AT_SYMLINK_NOFOLLOW) != 0) {
        return std::nullopt;
    }
    fuse_attr_out answer = {};
    answer.attr_valid = validity;
    answer.attr = attributesOf(facts);
    return bytesOf(answer);
}

/// A name as the directory has it.
FragileVolume::Bytes FragileVolume::spelled(int directory, const char* name) const {
    Bytes spelling(name);
    if (!m_traits.ignoresCase) {
        return spelling;
    }
    DIR* const stream = ::fdopendir(::openat(directory, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (stream == nullptr) {
        return spelling;
    }
    while (const dirent* const entry = ::readdir(stream)) {
        if (spelling.compare(entry->d_name, Qt::CaseInsensitive) == 0) {
            spelling = entry->d_name;
            break;
        }
    }
    ::closedir(stream);
    return spelling;
}

std::optional<FragileVolume::Bytes> FragileVolume::entryOf(quint64 parent, const char* name) {
    const Bytes spelling = spelled(descriptorOf(parent), name);
    const int descriptor = ::openat(descriptorOf(parent), spelling.constData(), O_PATH | O_NOFOLLOW | O_CLOEXEC);

    struct stat facts {};

    if (descriptor < 0 || ::fstatat(descriptor, "", &facts, AT_EMPTY_PATH | AT_SYMLINK_NOFOLLOW) != 0) {
        return std::nullopt;
    }
    const std::pair<quint64, quint64> identity(facts.st_dev, facts.st_ino);
    const auto [number, isNew] = m_numbers.try_emplace(identity, m_nodes.size());
    if (isNew) {
        m_nodes.push_back({descriptor, identity});
    } else {
        ::close(descriptor);
    }
    fuse_entry_out answer = {};
    answer.nodeid = number->second;
    // The kernel doesn't know that one change changes all spellings of a name.
    answer.entry_valid = m_traits.ignoresCase ? 0 : validity;
    answer.attr_valid = validity;
    answer.attr = attributesOf(facts);
    return bytesOf(answer);
}

FragileVolume::Bytes FragileVolume::answerTo(const fuse_in_header& request, const char* arguments, int& error) {
    switch (request.opcode) {
    case FUSE_INIT: {
        fuse_init_out answer = {};
        answer.major = FUSE_KERNEL_VERSION;
        answer.minor = FUSE_KERNEL_MINOR_VERSION;
        answer.max_readahead = as<fuse_init_in>(arguments).max_readahead;
        answer.flags = FUSE_BIG_WRITES | (m_traits.locksBytes ? FUSE_FLOCK_LOCKS : 0U);
        answer.max_background = 12;
        answer.congestion_threshold = 9;
        answer.max_write = largestWrite;
        answer.time_gran = 1;
        return bytesOf(answer);
    }
    case FUSE_GETATTR:
    case FUSE_SETATTR:
    case FUSE_STATFS:
    case FUSE_GETXATTR:
    case FUSE_SETXATTR:
    case FUSE_LISTXATTR:
    case FUSE_REMOVEXATTR:
        return answerToAttributes(request, arguments, error);
    case FUSE_LOOKUP:
    case FUSE_MKDIR:
    case FUSE_UNLINK:
    case FUSE_RMDIR:
    case FUSE_RENAME:
    case FUSE_RENAME2:
    case FUSE_LINK:
    case FUSE_CREATE:
        return answerToNames(request, arguments, error);
    default:
        return answerToFiles(request, arguments, error);
    }
}

FragileVolume::Bytes FragileVolume::answerToNames(const fuse_in_header& request, const char* arguments, int& error) {
    const int parent = descriptorOf(request.nodeid);
    const auto entry = [&](const char* name) {
        const auto found = entryOf(request.nodeid, name);
        error = found ? 0 : errno;
        return found.value_or(Bytes());
    };
    const auto rename = [&](quint64 to, unsigned flags, const char* name) {
        const Bytes source = spelled(parent, name);
        const Bytes target = spelled(descriptorOf(to), name + std::strlen(name) + 1);
        return checked(::renameat2(parent, source.constData(), descriptorOf(to), target.constData(), flags), error);
    };
    switch (request.opcode) {
    case FUSE_LOOKUP:
        return entry(arguments);
    case FUSE_MKDIR: {
        const char* const name = arguments + sizeof(fuse_mkdir_in);
        checked(::mkdirat(parent, name, as<fuse_mkdir_in>(arguments).mode), error);
        return error == 0 ? entry(name) : Bytes();
    }
    case FUSE_UNLINK:
        checked(::unlinkat(parent, spelled(parent, arguments).constData(), 0), error);
        error = m_traits.repeatsRemovals ? ENOENT : error;
        return {};
    case FUSE_RMDIR:
        return checked(::unlinkat(parent, spelled(parent, arguments).constData(), AT_REMOVEDIR), error);
    case FUSE_RENAME:
        rename(as<fuse_rename_in>(arguments).newdir, 0, arguments + sizeof(fuse_rename_in));
        error = m_traits.repeatsRenamings ? ENOENT : error;
        return {};
    case FUSE_RENAME2: {
        const auto& in = as<fuse_rename2_in>(arguments);
        if ((in.flags & RENAME_NOREPLACE) != 0 && m_traits.renameWithoutReplacingError != 0) {
            error = m_traits.renameWithoutReplacingError;
            return {};
        }
        return rename(in.newdir, in.flags, arguments + sizeof(fuse_rename2_in));
    }
    case FUSE_LINK: {
        const char* const name = arguments + sizeof(fuse_link_in);
        error = m_traits.linkError;
        if (error == 0) {
            const QByteArray file = pathOf(as<fuse_link_in>(arguments).oldnodeid);
            checked(::linkat(AT_FDCWD, file.constData(), parent, name, AT_SYMLINK_FOLLOW), error);
        }
        return error == 0 ? entry(name) : Bytes();
    }
    default: {
        const auto& in = as<fuse_create_in>(arguments);
        const char* const name = arguments + sizeof(fuse_create_in);
        const int flags = static_cast<int>(in.flags) | O_CREAT | O_CLOEXEC | O_NOFOLLOW;
        const int descriptor = ::openat(parent, name, flags, in.mode);
        error = descriptor < 0 ? errno : 0;
        return error == 0 ? entry(name) + opened(descriptor) : Bytes();
    }
    }
}

FragileVolume::Bytes FragileVolume::answerToFiles(const fuse_in_header& request, const char* arguments, int& error) {
    switch (request.opcode) {
    case FUSE_OPEN:
    case FUSE_OPENDIR: {
        const int flags = static_cast<int>(as<fuse_open_in>(arguments).flags) & ~(O_CREAT | O_EXCL | O_NOFOLLOW);
        const int descriptor = ::open(pathOf(request.nodeid).constData(), flags | O_CLOEXEC);
        error = descriptor < 0 ? errno : 0;
        return opened(descriptor);
    }
    case FUSE_READ: {
        const auto& in = as<fuse_read_in>(arguments);
        if (isUnreadable(static_cast<qint64>(in.offset + in.size))) {
            error = EIO;
            return {};
        }
        QByteArray read(static_cast<qsizetype>(in.size), Qt::Uninitialized);
        const ssize_t size = ::pread(static_cast<int>(in.fh), read.data(), in.size, static_cast<off_t>(in.offset));
        error = size < 0 ? errno : 0;
        return read.first(std::max<ssize_t>(size, 0));
    }
    case FUSE_WRITE: {
        const auto& in = as<fuse_write_in>(arguments);
        const ssize_t size = ::pwrite(static_cast<int>(in.fh), arguments + sizeof(fuse_write_in), in.size,
                                      static_cast<off_t>(in.offset));
        error = size < 0 ? errno : 0;
        fuse_write_out answer = {};
        answer.size = static_cast<quint32>(size);
        return bytesOf(answer);
    }
    case FUSE_READDIR: {
        const auto& in = as<fuse_read_in>(arguments);
        return entries(static_cast<int>(in.fh), in.offset, in.size, error);
    }
    case FUSE_SETLK: {
        const auto& in = as<fuse_lk_in>(arguments);

        struct flock lock {};

        lock.l_type = static_cast<short>(in.lk.type);
        lock.l_whence = SEEK_SET;
        return checked(::fcntl(static_cast<int>(in.fh), F_OFD_SETLK, &lock), error);
    }
    case FUSE_FSYNC:
    case FUSE_FSYNCDIR:
        return checked(::fsync(static_cast<int>(as<fuse_fsync_in>(arguments).fh)), error);
    case FUSE_RELEASE:
    case FUSE_RELEASEDIR:
        return checked(::close(static_cast<int>(as<fuse_release_in>(arguments).fh)), error);
    default:
        error = ENOSYS;
        return {};
    }
}

/// The stretch of a directory from an offset on that fits.
FragileVolume::Bytes FragileVolume::entries(int descriptor, quint64 offset, quint32 size, int& error) const {
    DIR* const stream = ::fdopendir(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
    if (stream == nullptr) {
        error = errno;
        return {};
    }
    ::seekdir(stream, static_cast<long>(offset));
    Bytes bytes;
    while (const dirent* const entry = ::readdir(stream)) {
        fuse_dirent head = {};
        head.ino = entry->d_ino;
        head.off = static_cast<quint64>(::telldir(stream));
        head.namelen = static_cast<quint32>(std::strlen(entry->d_name));
        head.type = m_traits.tellsKinds ? entry->d_type : static_cast<unsigned char>(DT_UNKNOWN);
        Bytes record = bytesOf(head).first(static_cast<qsizetype>(FUSE_NAME_OFFSET)) + entry->d_name;
        record.append(
            static_cast<qsizetype>(FUSE_DIRENT_ALIGN(static_cast<std::size_t>(record.size()))) - record.size(), '\0');
        if (bytes.size() + record.size() > static_cast<qsizetype>(size)) {
            break;
        }
        bytes += record;
    }
    ::closedir(stream);
    return bytes;
}

FragileVolume::Bytes FragileVolume::answerToAttributes(const fuse_in_header& request, const char* arguments,
                                                       int& error) const {
    const QByteArray path = pathOf(request.nodeid);
    /// The value of an attribute or the list of names, or how long it is.
    const auto sized = [&error](quint32 size, const auto& get) {
        QByteArray value(static_cast<qsizetype>(size), Qt::Uninitialized);
        const ssize_t length = get(size == 0 ? nullptr : value.data(), size);
        error = length < 0 ? errno : 0;
        fuse_getxattr_out answer = {};
        answer.size = static_cast<quint32>(std::max<ssize_t>(length, 0));
        return size == 0 ? bytesOf(answer) : value.first(answer.size);
    };
    switch (request.opcode) {
    case FUSE_GETATTR: {
        const auto facts = factsOf(descriptorOf(request.nodeid));
        error = facts ? 0 : errno;
        return facts.value_or(Bytes());
    }
    case FUSE_SETATTR:
        return setFacts(request, arguments, error);
    case FUSE_GETXATTR:
        return sized(as<fuse_getxattr_in>(arguments).size, [&](char* value, quint32 size) {
            return ::getxattr(path.constData(), arguments + sizeof(fuse_getxattr_in), value, size);
        });
    case FUSE_LISTXATTR:
        return sized(as<fuse_getxattr_in>(arguments).size,
                     [&](char* value, quint32 size) { return ::listxattr(path.constData(), value, size); });
    case FUSE_SETXATTR: {
        const auto& in = as<fuse_setxattr_in>(arguments);
        // Without the flag for it the kernel sends only the first half of the structure.
        const char* const name = arguments + FUSE_COMPAT_SETXATTR_IN_SIZE;
        const char* const value = name + std::strlen(name) + 1;
        return checked(::setxattr(path.constData(), name, value, in.size, static_cast<int>(in.flags)), error);
    }
    case FUSE_REMOVEXATTR:
        return checked(::removexattr(path.constData(), arguments), error);
    default: {
        struct statvfs facts {};

        checked(::statvfs(path.constData(), &facts), error);
        fuse_statfs_out answer = {};
        answer.st.blocks = facts.f_blocks;
        answer.st.bfree = facts.f_bfree;
        answer.st.bavail = facts.f_bavail;
        answer.st.bsize = static_cast<quint32>(facts.f_bsize);
        answer.st.namelen = static_cast<quint32>(facts.f_namemax);
        return bytesOf(answer);
    }
    }
}

FragileVolume::Bytes FragileVolume::setFacts(const fuse_in_header& request, const char* arguments, int& error) const {
    const auto& in = as<fuse_setattr_in>(arguments);
    const QByteArray path = pathOf(request.nodeid);
    const auto attempt = [&error](bool isAsked, const auto& set) {
        if (isAsked && error == 0 && set() != 0) {
            error = errno;
        }
    };
    const auto owner = [&in](unsigned bit, quint32 id) {
        return (in.valid & bit) != 0 ? id : static_cast<quint32>(-1);
    };
    const auto time = [&in](unsigned bit, unsigned now, quint64 seconds, quint32 nanoseconds) {
        const long part = (in.valid & bit) == 0 ? UTIME_OMIT : (in.valid & now) != 0 ? UTIME_NOW : long(nanoseconds);
        return timespec{static_cast<time_t>(seconds), part};
    };
    attempt((in.valid & FATTR_MODE) != 0, [&] { return ::chmod(path.constData(), in.mode); });
    attempt((in.valid & (FATTR_UID | FATTR_GID)) != 0,
            [&] { return ::chown(path.constData(), owner(FATTR_UID, in.uid), owner(FATTR_GID, in.gid)); });
    attempt((in.valid & FATTR_SIZE) != 0, [&] { return ::truncate(path.constData(), static_cast<off_t>(in.size)); });
    attempt((in.valid & (FATTR_ATIME | FATTR_MTIME)) != 0, [&] {
        const timespec times[] = {time(FATTR_ATIME, FATTR_ATIME_NOW, in.atime, in.atimensec),
                                  time(FATTR_MTIME, FATTR_MTIME_NOW, in.mtime, in.mtimensec)};
        return ::utimensat(AT_FDCWD, path.constData(), times, 0);
    });
    const auto facts = factsOf(descriptorOf(request.nodeid));
    return facts.value_or(Bytes());
}

} // namespace quillary::test
