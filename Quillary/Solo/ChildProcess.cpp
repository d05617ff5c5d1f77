#include "Quillary/Solo/ChildProcess.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace quillary {

using namespace std::chrono_literals;

namespace {

constexpr qsizetype readSize = 64 * 1024;

/// Closes a descriptor with its owner.
class Descriptor {
public:
    explicit Descriptor(int number = -1) : m_number(number) {}

    ~Descriptor() {
        if (m_number >= 0) {
            close(m_number);
        }
    }

    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return m_number; }

    int release() { return std::exchange(m_number, -1); }

private:
    int m_number;
};

/// The rules that a child is started by: streams of its own, and the signals as a new program expects them, whatever
/// this process blocks or ignores for itself.
class SpawnRules {
public:
    SpawnRules() {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawnattr_init(&m_attributes);
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&m_attributes, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&m_attributes, &signals);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }

    ~SpawnRules() {
        posix_spawnattr_destroy(&m_attributes);
        posix_spawn_file_actions_destroy(&m_actions);
    }

    SpawnRules(const SpawnRules&) = delete;
    SpawnRules& operator=(const SpawnRules&) = delete;

    void useNothing(int stream, int access) {
        posix_spawn_file_actions_addopen(&m_actions, stream, "/dev/null", access, 0);
    }

    void use(int stream, int descriptor) { posix_spawn_file_actions_adddup2(&m_actions, descriptor, stream); }

    /// The number of the error, or 0.
    int start(pid_t& pid, std::vector<QByteArray>& arguments) const {
        std::vector<char*> vector;
        vector.reserve(arguments.size() + 1);
        for (QByteArray& argument : arguments) {
            vector.push_back(argument.data());
        }
        vector.push_back(nullptr);
        return posix_spawn(&pid, vector.front(), &m_actions, &m_attributes, vector.data(), environ);
    }

private:
    posix_spawn_file_actions_t m_actions{};
    posix_spawnattr_t m_attributes{};
};

/// A write to a pipe that the other side has closed is an error here, not the end of the process: the signal is kept
/// from this thread, and taken back if the write raised it.
ssize_t writeWithoutSignal(int descriptor, const QByteArray& bytes, qsizetype from) {
    sigset_t brokenPipe;
    sigset_t before;
    sigset_t pending;
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    sigpending(&pending);
    pthread_sigmask(SIG_BLOCK, &brokenPipe, &before);
    const ssize_t written = write(descriptor, bytes.constData() + from, static_cast<std::size_t>(bytes.size() - from));
    const int error = errno;
    if (written < 0 && error == EPIPE && sigismember(&pending, SIGPIPE) == 0) {
        const timespec atOnce{};
        while (sigtimedwait(&brokenPipe, nullptr, &atOnce) < 0 && errno == EINTR) {
        }
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = error;
    return written;
}

} // namespace

Result<std::unique_ptr<ChildProcess>, SystemError> ChildProcess::start(const QString& path,
                                                                       const QStringList& arguments, Input input,
                                                                       std::chrono::milliseconds timeLimit,
                                                                       const Cancellation& cancellation) {
    std::array<int, 2> outputEnds{-1, -1};
    std::array<int, 2> inputEnds{-1, -1};
    if (pipe2(outputEnds.data(), O_CLOEXEC) != 0) {
        return SystemError::last();
    }
    Descriptor outputOurs(outputEnds[0]);
    const Descriptor outputTheirs(outputEnds[1]);
    if (input == Input::pipe && pipe2(inputEnds.data(), O_CLOEXEC) != 0) {
        return SystemError::last();
    }
    const Descriptor inputTheirs(inputEnds[0]);
    Descriptor inputOurs(inputEnds[1]);
    // Only our ends: a program does not expect its own to refuse.
    fcntl(outputOurs.number(), F_SETFL, O_NONBLOCK);
    if (inputOurs.number() >= 0) {
        fcntl(inputOurs.number(), F_SETFL, O_NONBLOCK);
    }

    SpawnRules rules;
    if (input == Input::pipe) {
        rules.use(STDIN_FILENO, inputTheirs.number());
    } else {
        rules.useNothing(STDIN_FILENO, O_RDONLY);
    }
    rules.use(STDOUT_FILENO, outputTheirs.number());
    rules.useNothing(STDERR_FILENO, O_WRONLY);

    std::vector<QByteArray> vector{QFile::encodeName(path)};
    for (const QString& argument : arguments) {
        vector.push_back(argument.toUtf8());
    }
    pid_t pid = 0;
    if (const int error = rules.start(pid, vector)) {
        return SystemError{error};
    }
    const auto processDescriptor = static_cast<int>(syscall(SYS_pidfd_open, pid, 0));
    if (processDescriptor < 0) {
        const SystemError error = SystemError::last();
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
        return error;
    }
    return std::unique_ptr<ChildProcess>(new ChildProcess(
        pid, processDescriptor, inputOurs.release(), outputOurs.release(), Clock::now() + timeLimit, cancellation));
}

ChildProcess::ChildProcess(pid_t pid, int processDescriptor, int input, int output, Clock::time_point limit,
                           const Cancellation& cancellation)
    : m_pid(pid),
      m_processDescriptor(processDescriptor),
      m_inputDescriptor(input),
      m_outputDescriptor(output),
      m_limit(limit),
      m_cancellation(&cancellation) {}

ChildProcess::~ChildProcess() {
    closeInput();
    if (!m_endedBySignal) {
        if (m_phase == Phase::running) {
            enterNextPhase();
        }
        reap();
    }
    close(m_outputDescriptor);
    close(m_processDescriptor);
}

Status<SystemError> ChildProcess::write(const QByteArray& bytes) {
    for (qsizetype written = 0; written < bytes.size();) {
        const ssize_t count = writeWithoutSignal(m_inputDescriptor, bytes, written);
        if (count >= 0) {
            written += count;
            continue;
        }
        if (errno != EAGAIN && errno != EINTR) {
            return SystemError::last();
        }
        // It may be waiting for its own output to be read before it reads on.
        if (wait(m_outputDescriptor >= 0, true, false).output) {
            takeOutput();
        }
        if (m_phase == Phase::abandoned) {
            return SystemError{EPIPE};
        }
    }
    return Done();
}

bool ChildProcess::readMore() {
    const qsizetype before = m_output.size();
    while (m_outputDescriptor >= 0 && m_output.size() == before) {
        if (wait(true, false, false).output) {
            takeOutput();
        }
        // Another process may hold on to the output of one that has gone.
        if (m_phase == Phase::abandoned) {
            return false;
        }
    }
    return m_output.size() > before;
}

bool ChildProcess::waitForSignalledEnd() {
    reap();
    return *m_endedBySignal;
}

/// Waits for one of these, and past the time limit or a cancellation goes on to the next phase of the end.
ChildProcess::Ready ChildProcess::wait(bool forOutput, bool forInput, bool forEnd) {
    std::array waiting{
        pollfd{forOutput ? m_outputDescriptor : -1, POLLIN, 0},
        pollfd{forInput ? m_inputDescriptor : -1, POLLOUT, 0},
        pollfd{forEnd ? m_processDescriptor : -1, POLLIN, 0},
        pollfd{m_phase == Phase::running ? m_cancellation->descriptor() : -1, POLLIN, 0},
    };
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_limit - Clock::now());
    const int found = poll(waiting.data(), waiting.size(), static_cast<int>(std::max(left, 0ms).count()));
    // A program that never pauses leaves no wait without a find, and is at its limit all the same.
    if (found == 0 || (found > 0 && waiting[3].revents != 0) || Clock::now() >= m_limit) {
        enterNextPhase();
    }
    if (found <= 0) {
        return {};
    }
    return {.output = waiting[0].revents != 0, .input = waiting[1].revents != 0, .end = waiting[2].revents != 0};
}

void ChildProcess::enterNextPhase() {
    m_limit = Clock::now() + grace;
    switch (m_phase) {
    case Phase::running:
        m_phase = Phase::terminated;
        kill(m_pid, SIGTERM);
        break;
    case Phase::terminated:
        m_phase = Phase::killed;
        kill(m_pid, SIGKILL);
        break;
    case Phase::killed:
    case Phase::abandoned:
        m_phase = Phase::abandoned;
        break;
    }
}

void ChildProcess::takeOutput() {
    const qsizetype before = m_output.size();
    m_output.resize(before + readSize);
    const ssize_t count = read(m_outputDescriptor, m_output.data() + before, readSize);
    m_output.resize(before + std::max<ssize_t>(count, 0));
    if (m_output.size() > greatestOutput) {
        m_output.resize(before);
        if (m_phase == Phase::running) {
            enterNextPhase();
        }
    }
    if (count == 0 || (count < 0 && errno != EAGAIN && errno != EINTR)) {
        close(std::exchange(m_outputDescriptor, -1));
    }
}

void ChildProcess::closeInput() {
    if (m_inputDescriptor >= 0) {
        close(std::exchange(m_inputDescriptor, -1));
    }
}

/// Waits until it can be collected. A killed program can't stay, so there is an end to it.
void ChildProcess::reap() {
    while (!m_endedBySignal) {
        if (m_phase != Phase::killed && m_phase != Phase::abandoned && !wait(false, false, true).end) {
            continue;
        }
        int status = 0;
        if (waitpid(m_pid, &status, 0) == m_pid) {
            m_endedBySignal = WIFSIGNALED(status);
        } else if (errno != EINTR) {
            m_endedBySignal = false;
        }
    }
}

} // namespace quillary
