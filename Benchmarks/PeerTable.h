#pragma once

#include "Report.h"

#include <algorithm>
#include <ctime>
#include <limits>

namespace quillary {

/// The CPU time of the calling process in milliseconds.
inline double processMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// The CPU time of one call.
template <typename Work>
double millisecondsOf(Work&& work) {
    const double start = processMilliseconds();
    work();
    return processMilliseconds() - start;
}

/// What the compiler must not think away.
template <typename Value>
void keep(const Value& value) {
    [[maybe_unused]] static const volatile void* volatile sink;
    sink = &value;
}

struct Milliseconds {
    double own = std::numeric_limits<double>::infinity();
    double peer = std::numeric_limits<double>::infinity();
};

/// The best of seven of both, taken by turns in one run, and a line of the table with their ratio.
template <typename Own, typename Peer>
Milliseconds compareWithPeer(const char* task, const char* peerName, double aim, double floor, Own&& own, Peer&& peer) {
    constexpr int rounds = 7;
    Milliseconds best;
    for (int round = 0; round < rounds; ++round) {
        best.own = std::min(best.own, millisecondsOf(own));
        best.peer = std::min(best.peer, millisecondsOf(peer));
    }
    reportRatio(task, best.own, "ms", peerName, best.peer, aim, floor);
    return best;
}

/// The best of seven of what has no peer, and a line of the table.
template <typename Work>
void measureAlone(const char* task, double limit, Work&& work) {
    constexpr int rounds = 7;
    double best = std::numeric_limits<double>::infinity();
    for (int round = 0; round < rounds; ++round) {
        best = std::min(best, millisecondsOf(work));
    }
    reportFigure(task, best, "ms", limit);
}

} // namespace quillary
