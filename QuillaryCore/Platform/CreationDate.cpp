#include "QuillaryCore/Platform/CreationDate.h"

#include <charconv>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <thread>

namespace quillary::creation_date {

namespace {

constexpr qsizetype longestAttribute = 128;

bool mayCarryAttribute(const FileStatus& status) {
    if (!status.born) {
        return true;
    }
    // A clock that was set back makes the difference negative, and then nothing follows from it.
    return status.changed < *status.born || status.changed - *status.born >= leastAge;
}

template <typename Read>
Moment dateFrom(const FileStatus& status, Read read) {
    const Moment birth = status.born.value_or(distantPast);
    if (!mayCarryAttribute(status)) {
        return birth;
    }
    char bytes[longestAttribute];
    const ssize_t length = read(bytes, sizeof bytes);
    return length <= 0 ? birth : decoded(QByteArrayView(bytes, length), status).value_or(birth);
}

void appendMoment(QByteArray& bytes, Moment moment) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(moment);
    bytes += QByteArray::number(qint64(seconds.time_since_epoch().count()));
    bytes += '.';
    bytes += QByteArray::number(qint64((moment - seconds).count())).rightJustified(9, '0');
}

/// A number that takes up the whole of the bytes.
template <typename Number>
std::optional<Number> numberFrom(QByteArrayView bytes) {
    Number number = 0;
    const auto [end, error] = std::from_chars(bytes.begin(), bytes.end(), number);
    return error == std::errc() && end == bytes.end() ? std::optional(number) : std::nullopt;
}

std::optional<Moment> momentFrom(QByteArrayView bytes) {
    const qsizetype dot = bytes.indexOf('.');
    if (dot < 0 || bytes.size() - dot - 1 != 9) {
        return std::nullopt;
    }
    const auto seconds = numberFrom<qint64>(bytes.first(dot));
    const auto nanoseconds = numberFrom<quint32>(bytes.sliced(dot + 1));
    if (!seconds || !nanoseconds) {
        return std::nullopt;
    }
    return momentFromTimestamp(*seconds, *nanoseconds);
}

} // namespace

QByteArray encoded(Moment created, const FileStatus& status) {
    QByteArray bytes;
    appendMoment(bytes, created);
    bytes += ' ';
    bytes += QByteArray::number(status.inode);
    bytes += ' ';
    if (status.born) {
        appendMoment(bytes, *status.born);
    } else {
        bytes += '-';
    }
    return bytes;
}

std::optional<Moment> decoded(QByteArrayView bytes, const FileStatus& status) {
    const qsizetype first = bytes.indexOf(' ');
    const qsizetype second = first < 0 ? -1 : bytes.indexOf(' ', first + 1);
    if (second < 0) {
        return std::nullopt;
    }
    const std::optional<Moment> created = momentFrom(bytes.first(first));
    const auto inode = numberFrom<quint64>(bytes.sliced(first + 1, second - first - 1));
    const QByteArrayView birth = bytes.sliced(second + 1);
    if (!created || !inode || *inode != status.inode) {
        return std::nullopt;
    }
    const bool isOfThisFile = status.born ? momentFrom(birth) == status.born : birth == "-";
    return isOfThisFile ? created : std::nullopt;
}

Moment of(const FilePath& path, const FileStatus& status) {
    return dateFrom(status, [&path](char* bytes, std::size_t size) {
        return ::lgetxattr(path.bytes().constData(), attributeName, bytes, size);
    });
}

Moment of(int descriptor, const FileStatus& status) {
    return dateFrom(status, [descriptor](char* bytes, std::size_t size) {
        return ::fgetxattr(descriptor, attributeName, bytes, size);
    });
}

bool store(int descriptor, Moment created) {
    Result<FileStatus, SystemError> status = fileStatus(descriptor);
    if (!status) {
        return false;
    }
    const QByteArray bytes = encoded(created, *status);
    if (::fsetxattr(descriptor, attributeName, bytes.constData(), static_cast<std::size_t>(bytes.size()), 0) != 0) {
        return false;
    }
    // By the file system's own clock, which is coarse and may be another machine's.
    for (int attempt = 0; attempt < 4; ++attempt) {
        status = fileStatus(descriptor);
        if (!status || mayCarryAttribute(*status)) {
            break;
        }
        std::this_thread::sleep_for(leastAge - (status->changed - *status->born));
        ::fchmod(descriptor, status->mode);
    }
    return true;
}

} // namespace quillary::creation_date
