#include "Quillary/Platform/MountWatcher.h"

#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace quillary {

std::unique_ptr<MountWatcher> MountWatcher::watch(std::function<void()> onChange) {
    const int descriptor = open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return nullptr;
    }
    return std::unique_ptr<MountWatcher>(new MountWatcher(descriptor, std::move(onChange)));
}

// The kernel marks the file as exceptional once for each change of the table of mounts (proc(5)).
MountWatcher::MountWatcher(int descriptor, std::function<void()> onChange)
    : m_descriptor(descriptor), m_notifier(descriptor, QSocketNotifier::Exception) {
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, [onChange = std::move(onChange)] {
        // The action may end the watcher and with it this copy of the action.
        const auto pending = onChange;
        pending();
    });
}

MountWatcher::~MountWatcher() {
    m_notifier.setEnabled(false);
    close(m_descriptor);
}

} // namespace quillary
