#pragma once

#include "Quillary/Platform/InotifyHub.h"
#include "QuillaryCore/Platform/FilePath.h"

#include <functional>
#include <memory>
#include <optional>
#include <sys/types.h>

namespace quillary {

/// Tells of changes among the entries of one directory for as long as it lives: what is created, deleted, moved,
/// rewritten or given other attributes in it, and its own end or move. It doesn't see what happens inside
/// sub-directories. It tells that something changed, never what.
class DirectoryWatcher {
public:
    /// Which entries of the directory count.
    enum class Entries {
        visible,
        all,
    };

    /// Watches a directory. `onChange` runs on the event loop of the calling thread, once for events that came
    /// together. Null if there is no such directory, or if the system refuses, as when its limit of watches is reached.
    static std::unique_ptr<DirectoryWatcher> watch(const FilePath& directory, std::function<void()> onChange,
                                                   Entries entries = Entries::visible);

    ~DirectoryWatcher();
    DirectoryWatcher(const DirectoryWatcher&) = delete;
    DirectoryWatcher& operator=(const DirectoryWatcher&) = delete;

    const FilePath& directory() const { return m_directory; }

    /// Whether the path still leads to the directory that is watched. After the deletion or the move of the directory,
    /// or of one above it, it doesn't, and only a new watcher helps.
    bool isCurrent() const;

private:
    /// What tells a directory from every other while both exist.
    struct Identity {
        dev_t device;
        ino_t inode;

        friend bool operator==(const Identity&, const Identity&) = default;
    };

    static std::optional<Identity> identityOf(const FilePath& directory);

    DirectoryWatcher(FilePath directory, Identity identity, std::shared_ptr<InotifyHub> hub,
                     std::shared_ptr<InotifyHub::Interest> interest);

    FilePath m_directory;
    Identity m_identity;
    std::shared_ptr<InotifyHub> m_hub;
    std::shared_ptr<InotifyHub::Interest> m_interest;
};

} // namespace quillary
