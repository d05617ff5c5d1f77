#include "Quillary/Platform/ThreadPriority.h"

#include <sys/resource.h>

namespace quillary {

void lowerPriorityOfThisThread() {
    // On Linux "the process 0" is the calling thread alone, and the priority for the disk follows the niceness.
    constexpr int niceness = 10;
    setpriority(PRIO_PROCESS, 0, niceness);
}

} // namespace quillary
