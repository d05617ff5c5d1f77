#pragma once

#include <QString>

namespace quillary {

/// What can go wrong between us and Solo, beside the failures of the operating system.
class SoloError {
public:
    enum class Kind {
        /// Solo's command line answered that it can't reach Solo; with its own words.
        notRunning,
        /// The agent's session refused the text; with its own words.
        sendFailed,
        notInstalled,
        unexpectedResponse,
        timedOut,
    };

    static SoloError notRunning(const QString& message) { return {Kind::notRunning, message}; }

    static SoloError sendFailed(const QString& message) { return {Kind::sendFailed, message}; }

    static SoloError notInstalled() { return {Kind::notInstalled, {}}; }

    static SoloError unexpectedResponse() { return {Kind::unexpectedResponse, {}}; }

    static SoloError timedOut() { return {Kind::timedOut, {}}; }

    Kind kind() const { return m_kind; }

    /// What the user reads.
    QString errorDescription() const;

    friend bool operator==(const SoloError&, const SoloError&) = default;

private:
    SoloError(Kind kind, const QString& message) : m_kind(kind), m_message(message) {}

    Kind m_kind;
    QString m_message;
};

} // namespace quillary
