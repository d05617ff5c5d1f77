#include "Quillary/Solo/Cancellation.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace quillary {

Cancellation::Cancellation() : m_descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

Cancellation::~Cancellation() {
    close(m_descriptor);
}

void Cancellation::cancel() const {
    eventfd_write(m_descriptor, 1);
}

bool Cancellation::isCancelled() const {
    pollfd waiting{m_descriptor, POLLIN, 0};
    return poll(&waiting, 1, 0) > 0;
}

} // namespace quillary
