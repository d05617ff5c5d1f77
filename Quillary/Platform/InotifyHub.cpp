#include "Quillary/Platform/InotifyHub.h"

#include <array>
#include <cerrno>
#include <sys/inotify.h>
#include <unistd.h>

namespace quillary {

namespace {

// The close of a written file stands for its changes, so that a rewrite in place is seen once it is whole. Attributes
// count because other programs set a file's dates after they wrote it.
constexpr uint32_t watchedEvents = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE | IN_ATTRIB |
                                   IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

constexpr std::size_t bufferSize = 64 * 1024;

bool isHidden(const inotify_event& event) {
    return event.len > 0 && event.name[0] == '.';
}

} // namespace

std::shared_ptr<InotifyHub> InotifyHub::shared() {
    static thread_local std::weak_ptr<InotifyHub> hubOfThread;
    std::shared_ptr<InotifyHub> hub = hubOfThread.lock();
    if (!hub) {
        const int descriptor = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
        if (descriptor < 0) {
            return nullptr;
        }
        hub.reset(new InotifyHub(descriptor));
        hubOfThread = hub;
    }
    return hub;
}

InotifyHub::InotifyHub(int descriptor) : m_descriptor(descriptor), m_notifier(descriptor, QSocketNotifier::Read) {
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [this] { readEvents(); });
}

InotifyHub::~InotifyHub() {
    m_notifier.setEnabled(false);
    close(m_descriptor);
}

bool InotifyHub::add(const QByteArray& path, const std::shared_ptr<Interest>& interest) {
    const int watch = inotify_add_watch(m_descriptor, path.constData(), watchedEvents);
    if (watch < 0) {
        return false;
    }
    interest->watch = watch;
    m_interests[watch].append(interest);
    return true;
}

void InotifyHub::remove(const std::shared_ptr<Interest>& interest) {
    const int watch = std::exchange(interest->watch, -1);
    const auto found = m_interests.find(watch);
    if (found == m_interests.end()) {
        return;
    }
    found->removeOne(interest);
    if (found->isEmpty()) {
        m_interests.erase(found);
        inotify_rm_watch(m_descriptor, watch);
    }
}

/// Ends all interests in a watch and gives them.
QList<std::shared_ptr<InotifyHub::Interest>> InotifyHub::end(int watch) {
    const QList<std::shared_ptr<Interest>> ended = m_interests.take(watch);
    for (const auto& interest : ended) {
        interest->watch = -1;
    }
    return ended;
}

void InotifyHub::readEvents() {
    // A listener may drop the last watcher, and the hub would go in the middle of this.
    const std::shared_ptr<InotifyHub> self = shared_from_this();

    alignas(inotify_event) std::array<char, bufferSize> buffer;
    const ssize_t size = read(m_descriptor, buffer.data(), buffer.size());
    QList<std::shared_ptr<Interest>> concerned;
    const auto add = [&concerned](const QList<std::shared_ptr<Interest>>& interests, bool isHiddenEntry = false) {
        for (const auto& interest : interests) {
            if ((!isHiddenEntry || interest->seesHiddenEntries) && !concerned.contains(interest)) {
                concerned.append(interest);
            }
        }
    };
    for (ssize_t offset = 0; offset < size;) {
        const auto& event = *reinterpret_cast<const inotify_event*>(buffer.data() + offset);
        offset += static_cast<ssize_t>(sizeof(inotify_event) + event.len);
        if (event.mask & IN_Q_OVERFLOW) {
            for (const auto& interests : std::as_const(m_interests)) {
                add(interests);
            }
        } else if (event.mask & IN_MOVE_SELF) {
            // The watch would follow the directory to its new place.
            inotify_rm_watch(m_descriptor, event.wd);
            add(end(event.wd));
        } else if (event.mask & (IN_IGNORED | IN_DELETE_SELF | IN_UNMOUNT)) {
            add(end(event.wd));
        } else {
            add(m_interests.value(event.wd), isHidden(event));
        }
    }
    for (const auto& interest : std::as_const(concerned)) {
        if (interest->onChange) {
            const auto onChange = interest->onChange;
            onChange();
        }
    }
}

} // namespace quillary
