#pragma once

#include "QuillaryCore/Platform/SystemError.h"
#include "QuillaryCore/Result.h"
#include "QuillaryCore/Solo/SoloError.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <variant>

namespace quillary {

class Cancellation;

/// Why a call of Solo failed: for a reason of ours, or of the operating system.
using SoloFailure = std::variant<SoloError, SystemError>;

/// What the user reads.
QString localizedDescription(const SoloFailure& failure);

/// Solo's two executables, and how they are run: one process for each call, which lasts as long as the call. Calls
/// block and belong to background threads. A value.
class SoloClient {
public:
    /// What a command may take, and what a whole conversation may.
    static constexpr std::chrono::seconds defaultTimeLimit{10};

    /// How long a terminal gets to take a paste in before the key that submits it.
    static constexpr std::chrono::milliseconds pauseBeforeSubmit{200};

    /// Executables of these paths, absolute ones; none for what isn't installed.
    SoloClient(std::optional<QString> cliPath, std::optional<QString> mcpPath,
               std::chrono::milliseconds timeLimit = defaultTimeLimit)
        : m_cliPath(std::move(cliPath)), m_mcpPath(std::move(mcpPath)), m_timeLimit(timeLimit) {}

    /// The executables that are installed now.
    static SoloClient find();

    /// The first of the paths that is an executable file, "~" at the start standing for the user's home.
    static std::optional<QString> firstExecutable(const QStringList& paths);

    /// The command line; none means that Solo isn't installed.
    const std::optional<QString>& cliPath() const { return m_cliPath; }

    /// The MCP server.
    const std::optional<QString>& mcpPath() const { return m_mcpPath; }

    std::chrono::milliseconds timeLimit() const { return m_timeLimit; }

    /// Runs the command line with "--json" and these arguments, and gives all of its standard output, whatever its
    /// exit code.
    Result<QByteArray, SoloFailure> runCLI(const QStringList& arguments, const Cancellation& cancellation) const;

    /// Pastes a text into the terminal of a session, and then submits it if asked to.
    Status<SoloFailure> paste(const QString& text, qint64 intoProcess, std::optional<qint64> projectID, bool submit,
                              const Cancellation& cancellation) const;

private:
    std::optional<QString> m_cliPath;
    std::optional<QString> m_mcpPath;
    std::chrono::milliseconds m_timeLimit;
};

} // namespace quillary
