#pragma once

#include <QByteArray>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace quillary {

/// For a ratio or a figure that nothing bounds.
inline constexpr double unbounded = std::numeric_limits<double>::infinity();

namespace report_detail {

/// The file that collects the rows of a Markdown table, if the caller of the benchmark wants one.
inline std::FILE* table() {
    static std::FILE* const file = [] {
        const char* const path = std::getenv("QUILLARY_BENCHMARK_TABLE");
        return path == nullptr ? nullptr : std::fopen(path, "a");
    }();
    return file;
}

struct Text {
    char characters[64] = "";
};

inline Text bound(const char* name, double value, const char* unit) {
    Text text;
    if (std::isfinite(value)) {
        std::snprintf(text.characters, sizeof text.characters, "%s %.6g%s", name, value, unit);
    }
    return text;
}

inline const char* verdict(double value, double aim, double floor) {
    if (value > floor) {
        return "below the floor";
    }
    return value > aim && std::isfinite(aim) ? "short of the aim" : "";
}

} // namespace report_detail

/// A line of the report: a figure beside the peer's and their ratio, which should be at most the aim and must not be
/// above the floor.
inline void reportRatio(const QByteArray& task, double own, const char* unit, const char* peerName, double peer,
                        double aim, double floor) {
    const double ratio = own / peer;
    const report_detail::Text aimText = report_detail::bound("aim", aim, "");
    const report_detail::Text floorText = report_detail::bound("floor", floor, "");
    const char* const verdict = report_detail::verdict(ratio, aim, floor);
    std::printf("%-52s %9.2f %-14s %-40s %9.2f   ratio %6.3f   %-10s %-11s %s\n", task.constData(), own, unit, peerName,
                peer, ratio, aimText.characters, floorText.characters, verdict);
    std::fflush(stdout);
    if (std::FILE* const table = report_detail::table()) {
        std::fprintf(table, "| %s | %.2f %s | %s: %.2f %s | %.2f | %s %s | %s |\n", task.constData(), own, unit,
                     peerName, peer, unit, ratio, aimText.characters, floorText.characters, verdict);
        std::fflush(table);
    }
}

/// A line of the report: a figure that has no peer, and what it must not be above.
inline void reportFigure(const QByteArray& task, double value, const char* unit, double limit = unbounded) {
    const report_detail::Text limitText = report_detail::bound("at most", limit, "");
    const char* const verdict = value > limit ? "above the limit" : "";
    std::printf("%-52s %9.2f %-14s %-20s %s\n", task.constData(), value, unit, limitText.characters, verdict);
    std::fflush(stdout);
    if (std::FILE* const table = report_detail::table()) {
        std::fprintf(table, "| %s | %.2f %s | | | %s | %s |\n", task.constData(), value, unit, limitText.characters,
                     verdict);
        std::fflush(table);
    }
}

} // namespace quillary
