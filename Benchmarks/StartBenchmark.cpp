#include "Report.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <ctime>
#include <optional>
#include <poll.h>
#include <thread>
#include <unistd.h>
#include <vector>

/// Starts a program on a virtual display and takes the CPU time that the kernel counts for all its threads: when the
/// last of its first drawings is on the display, and when the process has come to rest, which includes what it does in
/// the background; and its peak memory. What it prints is the ratio to each peer.

namespace {

using namespace quillary;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

struct Cost {
    double untilDrawn = 0;
    double untilRest = 0;
    double megabytes = 0;
};

struct Program {
    const char* name = "";
    QString path;
    QStringList arguments;
    /// Of the ratio of Quillary's time to this one's.
    double aim = unbounded;
    double floor = unbounded;
};

std::optional<double> cpuMilliseconds(qint64 pid) {
    clockid_t clock = 0;
    timespec spent{};
    if (clock_getcpuclockid(static_cast<pid_t>(pid), &clock) != 0 || clock_gettime(clock, &spent) != 0) {
        return std::nullopt;
    }
    return double(spent.tv_sec) * 1e3 + double(spent.tv_nsec) / 1e6;
}

double peakMegabytes(qint64 pid) {
    QFile status(u"/proc/%1/status"_s.arg(pid));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:")) {
            return line.mid(6).simplified().split(' ').constFirst().toDouble() / 1024.0;
        }
    }
    return 0;
}

/// A virtual display of its own, so that a measurement neither disturbs a desktop nor is disturbed by it.
class VirtualDisplay {
public:
    VirtualDisplay() {
        int ends[2];
        if (pipe(ends) != 0) {
            return;
        }
        m_server.setProgram(u"Xvfb"_s);
        m_server.setArguments({u"-displayfd"_s, QString::number(ends[1]), u"-screen"_s, u"0"_s, u"1280x800x24"_s,
                               u"-nolisten"_s, u"tcp"_s});
        m_server.setStandardErrorFile(QProcess::nullDevice());
        m_server.start();
        m_server.waitForStarted();
        close(ends[1]);
        char buffer[16] = {};
        if (read(ends[0], buffer, sizeof buffer - 1) > 0) {
            m_name = u":"_s + QString::fromLatin1(buffer).trimmed();
        }
        close(ends[0]);
    }

    ~VirtualDisplay() {
        m_server.terminate();
        m_server.waitForFinished();
    }

    const QString& name() const { return m_name; }

private:
    QProcess m_server;
    QString m_name;
};

/// The windows and drawings of a display, as they come.
class DisplayEvents {
public:
    explicit DisplayEvents(const QString& display)
        : m_connection(xcb_connect(display.toLatin1().constData(), nullptr)) {
        const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
        xcb_change_window_attributes(m_connection, root, XCB_CW_EVENT_MASK, &mask);
        std::free(xcb_damage_query_version_reply(
            m_connection, xcb_damage_query_version(m_connection, XCB_DAMAGE_MAJOR_VERSION, XCB_DAMAGE_MINOR_VERSION),
            nullptr));
        m_firstDamageEvent = xcb_get_extension_data(m_connection, &xcb_damage_id)->first_event;
        xcb_flush(m_connection);
    }

    ~DisplayEvents() { xcb_disconnect(m_connection); }

    DisplayEvents(const DisplayEvents&) = delete;
    DisplayEvents& operator=(const DisplayEvents&) = delete;

    /// Waits for something to be drawn in a window; false if nothing was for that time.
    bool waitForDrawing(std::chrono::milliseconds patience) {
        const auto deadline = std::chrono::steady_clock::now() + patience;
        bool drawn = false;
        while (!drawn && std::chrono::steady_clock::now() < deadline) {
            pollfd descriptor{xcb_get_file_descriptor(m_connection), POLLIN, 0};
            poll(&descriptor, 1, 10);
            while (xcb_generic_event_t* event = xcb_poll_for_event(m_connection)) {
                const int type = event->response_type & 0x7F;
                if (type == XCB_MAP_NOTIFY) {
                    const xcb_window_t window = reinterpret_cast<xcb_map_notify_event_t*>(event)->window;
                    xcb_damage_create(m_connection, xcb_generate_id(m_connection), window,
                                      XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
                    xcb_flush(m_connection);
                }
                drawn = drawn || type == m_firstDamageEvent + XCB_DAMAGE_NOTIFY;
                std::free(event);
            }
        }
        return drawn;
    }

private:
    xcb_connection_t* m_connection;
    int m_firstDamageEvent = 0;
};

/// Runs the program until a window of it stands drawn and its CPU time has stood still for a while.
std::optional<Cost> measure(const Program& program, const QString& display, const QProcessEnvironment& environment) {
    DisplayEvents events(display);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setStandardErrorFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program.path, program.arguments);
    if (!process.waitForStarted()) {
        return std::nullopt;
    }

    std::optional<Cost> cost;
    for (auto patience = 30000ms; events.waitForDrawing(patience); patience = 250ms) {
        if (const std::optional<double> spent = cpuMilliseconds(process.processId())) {
            cost = Cost{.untilDrawn = *spent};
        }
    }
    double last = -1;
    for (int quiet = 0; cost && quiet < 6;) {
        std::this_thread::sleep_for(50ms);
        const std::optional<double> spent = cpuMilliseconds(process.processId());
        if (!spent) {
            break;
        }
        quiet = *spent - last < 1 ? quiet + 1 : 0;
        last = *spent;
        cost->untilRest = *spent;
        cost->megabytes = peakMegabytes(process.processId());
    }
    process.kill();
    process.waitForFinished();
    return cost;
}

void makeNotes(const QString& folder, int count, int size) {
    QDir().mkpath(folder);
    for (int i = 0; i < count; ++i) {
        QFile file(folder + u"/Nota %1.md"_s.arg(i));
        if (!file.open(QIODevice::WriteOnly)) {
            continue;
        }
        QByteArray text = "# Nota " + QByteArray::number(i) + "\n\n";
        while (text.size() < size) {
            text += "Una riga di testo come tante, con qualche parola accentata: perch\xC3\xA9, citt\xC3\xA0.\n";
        }
        file.write(text);
    }
    // The disk is not to be written to while something is measured.
    ::sync();
}

/// The first of the programs beside each of the others; those that did not start are left out.
void report(const std::vector<Program>& programs, const std::vector<std::optional<Cost>>& costs, int count) {
    if (!costs.front()) {
        return;
    }
    const Cost& own = *costs.front();
    const QByteArray start = "start with " + QByteArray::number(count) + " notes of 4 KB, ";
    for (std::size_t i = 1; i < programs.size(); ++i) {
        if (costs[i]) {
            reportRatio(start + "until drawn", own.untilDrawn, "ms", programs[i].name, costs[i]->untilDrawn,
                        programs[i].aim, programs[i].floor);
        }
    }
    reportFigure(start + "until at rest", own.untilRest, "ms");
    // The texts are kept as UTF-16.
    const double texts = count * 4096.0 * sizeof(char16_t) / 1e6;
    reportFigure(start + "peak", own.megabytes, "MB", 89 + texts);
}

} // namespace

int main(int argc, char** argv) {
    const QString folder = QFileInfo(QString::fromLocal8Bit(argv[0])).absolutePath();
    const QString quillary = argc > 1 ? QString::fromLocal8Bit(argv[1]) : folder + u"/../Quillary/quillary"_s;
    QTemporaryDir home;
    VirtualDisplay display;

    for (const int count : {200, 10'000}) {
        const QString notes = home.filePath(u"notes-%1"_s.arg(count));
        makeNotes(notes, count, 4096);
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_s, home.path());
        environment.insert(u"XDG_CONFIG_HOME"_s, home.filePath(u"config"_s));
        environment.insert(u"XDG_STATE_HOME"_s, home.filePath(u"state"_s));
        environment.insert(u"DISPLAY"_s, display.name());
        environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
        environment.remove(u"DBUS_SESSION_BUS_ADDRESS"_s);
        environment.remove(u"WAYLAND_DISPLAY"_s);
        QDir().mkpath(home.filePath(u"config/quillary"_s));
        QFile preferences(home.filePath(u"config/quillary/preferences.json"_s));
        if (preferences.open(QIODevice::WriteOnly)) {
            preferences.write("{\"notesDirectory\": \"" + notes.toUtf8() + "\"}");
            preferences.close();
        }

        const bool areFew = count == 200;
        const std::vector<Program> programs = {
            {"quillary", quillary, {}},
            {"Qt program with one label", folder + u"/LabelPeer"_s, {}, areFew ? 2.5 : unbounded},
            {"Qt list of names beside a plain text edit",
             folder + u"/ListPeer"_s,
             {notes},
             areFew ? unbounded : 0.8,
             areFew ? unbounded : 1.5},
            {"FeatherPad with one note",
             u"featherpad"_s,
             {u"--standalone"_s, notes + u"/Nota 1.md"_s},
             unbounded,
             areFew ? 1.0 : unbounded},
        };
        std::vector<std::optional<Cost>> best(programs.size());
        for (int round = 0; round < 7; ++round) {
            for (std::size_t i = 0; i < programs.size(); ++i) {
                const std::optional<Cost> cost = measure(programs[i], display.name(), environment);
                if (cost && (!best[i] || cost->untilDrawn < best[i]->untilDrawn)) {
                    best[i] = cost;
                }
            }
        }
        report(programs, best, count);
    }
    return 0;
}
