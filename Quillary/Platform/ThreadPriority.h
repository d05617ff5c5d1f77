#pragma once

namespace quillary {

/// Lets all ordinary threads of the machine go before the calling one, both for the processor and for the disk.
void lowerPriorityOfThisThread();

} // namespace quillary
