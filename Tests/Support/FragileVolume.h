#pragma once

#include <QByteArray>

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <limits>
#include <map>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

struct fuse_in_header;

namespace quillary::test {

/// In what a volume can differ from those of this system.
struct VolumeTraits {
    /// Takes names that differ in the case of ASCII letters for one, and gives the spelling of the first.
    bool ignoresCase = false;
    /// Gives the kind of an entry with its name.
    bool tellsKinds = true;
    /// How it refuses renames that must not replace anything, and second names; 0 if it doesn't.
    int renameWithoutReplacingError = 0;
    int linkError = ENOSYS;
    /// Makes locks of whole files locks of their bytes, as NFS does: only who may write a file can have it alone.
    bool locksBytes = false;
    /// Answers to a removal as if it had been asked a second time, as NFS may after a lost answer.
    bool repeatsRemovals = false;
    /// The same for a renaming onto what is there.
    bool repeatsRenamings = false;
};

/// A volume as a share on a bad network is one: it shows a directory in another place, answers each request late if it
/// is told to, hangs, and dies with requests unanswered. A FUSE file system, served by a thread of this program in the
/// kernel's own protocol (linux/fuse.h).
///
/// What is done with the shown directory itself goes past the volume, and the kernel keeps what it knows of a file.
class FragileVolume {
public:
    /// Mounts it; both directories are there.
    FragileVolume(QByteArray place, const QByteArray& shown, VolumeTraits traits = {});
    ~FragileVolume();
    FragileVolume(const FragileVolume&) = delete;
    FragileVolume& operator=(const FragileVolume&) = delete;

    /// Whether it could be mounted; see `noVolume`.
    bool isMounted() const { return m_isMounted; }

    /// How long each answer takes.
    void setDelay(std::chrono::milliseconds delay);

    /// From now on no request is answered any more.
    void hang();

    /// Whether somebody waits for an answer of the volume that hangs.
    bool holdsRequest() const;

    /// Waits until somebody waits for an answer of the volume that hangs.
    void waitForHeldRequest();

    /// Its server ends: whoever waits is told so, and whatever is asked for after that fails ("Transport endpoint is
    /// not connected"), until the volume is unmounted.
    void die();

    /// How a volume can come to its end: it dies, or it is unmounted, and then goes on for whoever has something open.
    enum class End { death, unmount };

    static constexpr int never = -1;

    /// Comes to its end before the answer to a request; 0 is the next one.
    void endAtRequest(int number, End end);

    /// Whether that end has come.
    bool hasEnded() const;

    /// From now on what a file holds from an offset on can't be read ("Input/output error").
    void failReadsFrom(qint64 offset);

    /// How many requests were answered so far.
    int requests() const;

    /// Takes it from its place, as the end of this object does.
    void unmount();

private:
    /// An entry of the shown directory that the kernel has a number for.
    struct Node {
        int descriptor;
        std::pair<quint64, quint64> identity;
    };

    using Bytes = QByteArray;

    void serve();
    bool isAnswerDue();
    bool isUnreadable(qint64 end) const;
    void answer(const fuse_in_header& request, const char* arguments);
    void reply(quint64 request, int error, const Bytes& bytes = {}) const;
    int descriptorOf(quint64 node) const;
    QByteArray pathOf(quint64 node) const;
    Bytes spelled(int directory, const char* name) const;
    std::optional<Bytes> entryOf(quint64 parent, const char* name);
    std::optional<Bytes> factsOf(int descriptor) const;
    Bytes answerTo(const fuse_in_header& request, const char* arguments, int& error);
    Bytes answerToFiles(const fuse_in_header& request, const char* arguments, int& error);
    Bytes answerToNames(const fuse_in_header& request, const char* arguments, int& error);
    Bytes answerToAttributes(const fuse_in_header& request, const char* arguments, int& error) const;
    Bytes setFacts(const fuse_in_header& request, const char* arguments, int& error) const;
    Bytes entries(int descriptor, quint64 offset, quint32 size, int& error) const;

    QByteArray m_place;
    VolumeTraits m_traits;
    int m_device = -1;
    int m_wake = -1;
    bool m_isMounted = false;

    /// What the server's thread alone touches.
    std::vector<Node> m_nodes;
    std::map<std::pair<quint64, quint64>, quint64> m_numbers;

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::chrono::milliseconds m_delay{0};
    int m_requests = 0;
    int m_endingRequest = -1;
    qint64 m_unreadableFrom = std::numeric_limits<qint64>::max();
    End m_end = End::death;
    bool m_hangs = false;
    bool m_holdsRequest = false;
    bool m_isStopped = false;
    bool m_hasEnded = false;
    std::thread m_server;
};

/// What a test that is skipped says.
inline constexpr const char* noVolume =
    "FUSE is refused here: /dev/fuse must be there, and this user must be allowed to mount (as for the tests that need "
    "mounts of their own)";

} // namespace quillary::test
