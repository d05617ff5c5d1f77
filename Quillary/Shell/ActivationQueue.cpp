#include "Quillary/Shell/ActivationQueue.h"

#include <QGuiApplication>

namespace quillary {

ActivationQueue::ActivationQueue(QObject* parent) : QObject(parent), m_endOfPatience(patience, [this] { runAll(); }) {
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive) {
            runAll();
        }
    });
    connect(qGuiApp, &QCoreApplication::aboutToQuit, this, &ActivationQueue::runAll);
}

void ActivationQueue::append(const std::function<void()>& command) {
    m_commands.append(command);
    m_endOfPatience.restart();
}

void ActivationQueue::runAll() {
    m_endOfPatience.cancel();
    while (!m_commands.isEmpty()) {
        const auto command = m_commands.takeFirst();
        command();
    }
}

} // namespace quillary
