#pragma once

#include "Quillary/State/DelayedTask.h"

#include <QList>
#include <QObject>

#include <chrono>
#include <functional>

namespace quillary {

/// Commands that wait for the application to become active. Under Wayland it has the clipboard only while it has the
/// keyboard, and a window that is shown gets that later.
class ActivationQueue : public QObject {
    Q_OBJECT

public:
    /// How long commands wait after the last of them. The window system may refuse the keyboard, and none is ever lost.
    static constexpr std::chrono::milliseconds patience{1000};

    explicit ActivationQueue(QObject* parent = nullptr);

    /// Keeps a command, which runs once, after those before it: when the application becomes active or ends, or when
    /// patience does.
    void append(const std::function<void()>& command);

private:
    void runAll();

    QList<std::function<void()>> m_commands;
    DelayedTask m_endOfPatience;
};

} // namespace quillary
