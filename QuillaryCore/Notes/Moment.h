#pragma once

#include <chrono>

namespace quillary {

/// A point in time, to the nanosecond, in UTC.
using Moment = std::chrono::sys_time<std::chrono::nanoseconds>;

/// What stands for a date that is not known; it goes before every other moment.
inline constexpr Moment distantPast = Moment::min();

/// The present moment.
inline Moment now() {
    return std::chrono::time_point_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now());
}

} // namespace quillary
