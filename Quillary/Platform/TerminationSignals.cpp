#include "Quillary/Platform/TerminationSignals.h"

#include <csignal>
#include <pthread.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace quillary {

namespace {

sigset_t terminationSet() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        sigaddset(&signals, signal);
    }
    return signals;
}

void unblock() {
    const sigset_t signals = terminationSet();
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
}

} // namespace

void TerminationSignals::block() {
    const sigset_t signals = terminationSet();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    // The programs with which Qt opens files inherit what is blocked, and would not end when they are asked to.
    pthread_atfork(nullptr, nullptr, unblock);
}

TerminationSignals::TerminationSignals(QObject* parent)
    : QObject(parent),
      m_descriptor([] {
          const sigset_t signals = terminationSet();
          return signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
      }()),
      m_notifier(m_descriptor, QSocketNotifier::Read) {
    connect(&m_notifier, &QSocketNotifier::activated, this, &TerminationSignals::readOne);
}

TerminationSignals::~TerminationSignals() {
    m_notifier.setEnabled(false);
    close(m_descriptor);
}

void TerminationSignals::readOne() {
    signalfd_siginfo info{};
    if (read(m_descriptor, &info, sizeof info) != sizeof info) {
        return;
    }
    unblock();
    Q_EMIT received(static_cast<int>(info.ssi_signo));
}

} // namespace quillary
