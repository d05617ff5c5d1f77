#include "Tests/Support/OwnMounts.h"

#include <QByteArray>
#include <QString>

#include <fcntl.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace quillary::test {

namespace {

bool writeFile(const char* path, const QByteArray& text) {
    const int descriptor = ::open(path, O_WRONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return false;
    }
    const bool isWritten = ::write(descriptor, text.constData(), static_cast<size_t>(text.size())) == text.size();
    ::close(descriptor);
    return isWritten;
}

/// A line of a map of identifiers that knows one, which stays what it is.
QByteArray itself(unsigned id) {
    const QByteArray number = QByteArray::number(id);
    return number + ' ' + number + " 1";
}

bool hideMountsFromOthers() {
    return ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

/// Keeps the right to mount and gives up all others.
void keepOnlyMounting() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct sets[_LINUX_CAPABILITY_U32S_3]{};
    sets[CAP_TO_INDEX(CAP_SYS_ADMIN)].effective = CAP_TO_MASK(CAP_SYS_ADMIN);
    sets[CAP_TO_INDEX(CAP_SYS_ADMIN)].permitted = CAP_TO_MASK(CAP_SYS_ADMIN);
    ::syscall(SYS_capset, &header, sets);
}

/// Whether this process is in a user namespace afterwards in which it may mount. A refusal can leave it in one where it
/// is nobody.
bool enterUserNamespace() {
    const unsigned user = ::geteuid();
    const unsigned group = ::getegid();
    if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        return false;
    }
    // A user may tell of his own group only once he can't drop others any more.
    const bool isMapped = writeFile("/proc/self/setgroups", "deny") && writeFile("/proc/self/uid_map", itself(user)) &&
                          writeFile("/proc/self/gid_map", itself(group));
    keepOnlyMounting();
    return isMapped && hideMountsFromOthers();
}

/// Whether it would work, tried by a process that has nothing to lose.
bool canEnterUserNamespace() {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(enterUserNamespace() ? 0 : 1);
    }
    int status = 0;
    return child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

void enterOwnMounts() {
    if (::geteuid() == 0) {
        if (::unshare(CLONE_NEWNS) == 0) {
            hideMountsFromOthers();
        }
    } else if (canEnterUserNamespace()) {
        enterUserNamespace();
    }
}

} // namespace quillary::test
