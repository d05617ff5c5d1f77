#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace quillary {

/// Tells when a file system is mounted or unmounted, which no directory tells of, for as long as it lives.
class MountWatcher {
public:
    /// `onChange` runs on the event loop of the calling thread. Null if the system doesn't tell of mounts.
    static std::unique_ptr<MountWatcher> watch(std::function<void()> onChange);

    ~MountWatcher();
    MountWatcher(const MountWatcher&) = delete;
    MountWatcher& operator=(const MountWatcher&) = delete;

private:
    MountWatcher(int descriptor, std::function<void()> onChange);

    int m_descriptor;
    QSocketNotifier m_notifier;
};

} // namespace quillary
