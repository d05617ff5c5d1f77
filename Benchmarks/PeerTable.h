#pragma once

#include <algorithm>
#include <cstdio>
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
    const double ratio = best.own / best.peer;
    std::printf("%-44s %9.2f ms   %-40s %9.2f ms   ratio %5.2f (aim %.2f, floor %.2f)%s\n", task, best.own, peerName,
                best.peer, ratio, aim, floor, ratio > floor ? "  BELOW THE FLOOR" : "");
    std::fflush(stdout);
    return best;
}

} // namespace quillary
