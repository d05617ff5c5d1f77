#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace quillary {

/// One inotify descriptor for all directory watchers of a thread, since a user has only a few descriptors (128 by
/// default) and many watches. The kernel gives one watch for one directory however often it is asked for; this shares
/// it.
class InotifyHub : public std::enable_shared_from_this<InotifyHub> {
public:
    /// One interest in one directory. It ends when its owner drops it, or with the directory's deletion or move.
    struct Interest {
        std::function<void()> onChange;
        bool seesHiddenEntries = false;
        int watch = -1;

        bool isAlive() const { return watch >= 0; }
    };

    /// The hub of the calling thread, made when nobody holds one; null if the system refuses another descriptor.
    static std::shared_ptr<InotifyHub> shared();

    ~InotifyHub();
    InotifyHub(const InotifyHub&) = delete;
    InotifyHub& operator=(const InotifyHub&) = delete;

    /// Watches the directory at a path for the interest's sake; false if it is none or the system refuses.
    bool add(const QByteArray& path, const std::shared_ptr<Interest>& interest);

    /// Ends an interest, and the watch with the last one in it.
    void remove(const std::shared_ptr<Interest>& interest);

private:
    explicit InotifyHub(int descriptor);

    void readEvents();
    QList<std::shared_ptr<Interest>> end(int watch);

    int m_descriptor;
    QSocketNotifier m_notifier;
    QHash<int, QList<std::shared_ptr<Interest>>> m_interests;
};

} // namespace quillary
