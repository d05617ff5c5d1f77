#pragma once

#include "Quillary/Solo/Cancellation.h"
#include "QuillaryCore/Platform/SystemError.h"
#include "QuillaryCore/Result.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <memory>
#include <optional>
#include <sys/types.h>

namespace quillary {

/// A program that runs for the length of one conversation over its standard input and output; what it writes to its
/// standard error is dropped. Its calls block, so it belongs to a background thread.
///
/// There is one time limit for the whole. When it passes, or the conversation is cancelled, the program is asked to
/// end, and after a short grace it is killed, so that no call can wait for ever whatever the program does.
class ChildProcess {
public:
    enum class Input { none, pipe };

    /// How long a program may take to end after it was asked to.
    static constexpr std::chrono::milliseconds grace{1000};

    /// A program that writes more is asked to end, and the rest is dropped.
    static constexpr qsizetype greatestOutput = 256 * 1024 * 1024;

    /// Starts the program. Fails as the system does, also if an argument is too long for it. `cancellation` must
    /// outlive it.
    static Result<std::unique_ptr<ChildProcess>, SystemError> start(const QString& path, const QStringList& arguments,
                                                                    Input input, std::chrono::milliseconds timeLimit,
                                                                    const Cancellation& cancellation);

    /// Closes the program's input, asks it to end if it runs, and waits for it; no process is left behind.
    ~ChildProcess();

    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Writes all bytes to the program's input, and meanwhile takes in what it writes.
    Status<SystemError> write(const QByteArray& bytes);

    /// Takes in more output; false at its end.
    bool readMore();

    /// What was taken in and not yet consumed; the caller consumes it in place.
    QByteArray& output() { return m_output; }

    /// Waits for the end of the program. True if a signal ended it, as an unheeded request to end does.
    bool waitForSignalledEnd();

    /// Whether the program was asked to end before its conversation was over.
    bool wasStopped() const { return m_phase != Phase::running; }

private:
    using Clock = std::chrono::steady_clock;

    enum class Phase { running, terminated, killed, abandoned };

    /// What one wait found.
    struct Ready {
        bool output = false;
        bool input = false;
        bool end = false;
    };

    ChildProcess(pid_t pid, int processDescriptor, int input, int output, Clock::time_point limit,
                 const Cancellation& cancellation);

    Ready wait(bool forOutput, bool forInput, bool forEnd);
    void enterNextPhase();
    void takeOutput();
    void closeInput();
    void reap();

    pid_t m_pid;
    int m_processDescriptor;
    int m_inputDescriptor;
    int m_outputDescriptor;
    Clock::time_point m_limit;
    const Cancellation* m_cancellation;
    Phase m_phase = Phase::running;
    QByteArray m_output;
    std::optional<bool> m_endedBySignal;
};

} // namespace quillary
