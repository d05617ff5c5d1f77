#include "Quillary/Platform/DirectoryWatcher.h"

#include <sys/stat.h>
#include <utility>

namespace quillary {

std::unique_ptr<DirectoryWatcher> DirectoryWatcher::watch(const FilePath& directory, std::function<void()> onChange,
                                                          Entries entries) {
    // Taken before the watch: a directory that is replaced in between then counts as not current, and not the reverse.
    const std::optional<Identity> identity = identityOf(directory);
    std::shared_ptr<InotifyHub> hub = InotifyHub::shared();
    if (!identity || !hub) {
        return nullptr;
    }
    auto interest = std::make_shared<InotifyHub::Interest>();
    interest->onChange = std::move(onChange);
    interest->seesHiddenEntries = entries == Entries::all;
    if (!hub->add(directory.bytes(), interest)) {
        return nullptr;
    }
    return std::unique_ptr<DirectoryWatcher>(
        new DirectoryWatcher(directory, *identity, std::move(hub), std::move(interest)));
}

DirectoryWatcher::DirectoryWatcher(FilePath directory, Identity identity, std::shared_ptr<InotifyHub> hub,
                                   std::shared_ptr<InotifyHub::Interest> interest)
    : m_directory(std::move(directory)), m_identity(identity), m_hub(std::move(hub)), m_interest(std::move(interest)) {}

DirectoryWatcher::~DirectoryWatcher() {
    m_interest->onChange = nullptr;
    m_hub->remove(m_interest);
}

bool DirectoryWatcher::isCurrent() const {
    return m_interest->isAlive() && identityOf(m_directory) == m_identity;
}

std::optional<DirectoryWatcher::Identity> DirectoryWatcher::identityOf(const FilePath& directory) {
    struct stat status = {};
    if (stat(directory.bytes().constData(), &status) != 0) {
        return std::nullopt;
    }
    return Identity{status.st_dev, status.st_ino};
}

} // namespace quillary
