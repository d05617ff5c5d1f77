#include "Quillary/State/TextPreloader.h"

#include "Quillary/Platform/ThreadPriority.h"

#include <QCoreApplication>
#include <QEvent>

#include <system_error>
#include <utility>

namespace quillary {

TextPreloader::TextPreloader(std::function<void(Text)> deliver, Clock clock, QObject* parent)
    : QObject(parent), m_deliver(std::move(deliver)), m_clock(std::move(clock)) {
    m_nextBatch.setSingleShot(true);
    connect(&m_nextBatch, &QTimer::timeout, this, &TextPreloader::deliverBatch);
}

TextPreloader::~TextPreloader() {
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_wake.notify_one();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void TextPreloader::start(Read read, const QList<FilePath>& urls) {
    {
        const std::lock_guard lock(m_mutex);
        m_read = std::move(read);
        m_urls.clear();
    }
    add(urls);
}

void TextPreloader::add(const QList<FilePath>& urls) {
    if (urls.isEmpty()) {
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        m_urls.insert(m_urls.end(), urls.cbegin(), urls.cend());
    }
    if (!m_thread.joinable()) {
        try {
            m_thread = std::thread([this] { readAll(); });
        } catch (const std::system_error&) {
            // The system gives no thread; the next request asks again, and texts are read when they are needed.
        }
    }
    m_wake.notify_one();
}

/// The background thread.
void TextPreloader::readAll() {
    lowerPriorityOfThisThread();
    std::unique_lock lock(m_mutex);
    while (true) {
        m_wake.wait(lock, [this] { return m_isEnding || !m_urls.empty(); });
        if (m_isEnding) {
            return;
        }
        const Read read = m_read;
        const FilePath url = std::move(m_urls.front());
        m_urls.pop_front();

        lock.unlock();
        std::optional<Text> text = read(url);
        lock.lock();

        if (text) {
            m_texts.push_back(*std::move(text));
            if (!std::exchange(m_isDeliveryAsked, true)) {
                // An event and not a call with arguments: what is handed over stays behind the lock.
                QCoreApplication::postEvent(this, new QEvent(QEvent::User), Qt::LowEventPriority);
            }
        }
    }
}

void TextPreloader::customEvent(QEvent*) {
    deliverBatch();
}

void TextPreloader::deliverBatch() {
    const auto end = m_clock() + batchBudget;
    bool hasDelivered = false;
    while (std::optional<Text> text = takeText(hasDelivered)) {
        m_deliver(std::move(*text));
        hasDelivered = true;
        if (m_clock() >= end) {
            // A posted event would come before the timers and the input that wait; an empty timer comes after them.
            m_nextBatch.start(0);
            return;
        }
    }
    if (hasDelivered) {
        m_nextBatch.start(pauseBetweenBatches);
    }
}

/// The next text, or nothing; then the background thread has to ask for delivery again, unless this thread looks by
/// itself.
std::optional<TextPreloader::Text> TextPreloader::takeText(bool looksAgain) {
    const std::lock_guard lock(m_mutex);
    if (m_texts.empty()) {
        m_isDeliveryAsked = looksAgain;
        return std::nullopt;
    }
    std::optional<Text> text = std::move(m_texts.front());
    m_texts.pop_front();
    return text;
}

} // namespace quillary
