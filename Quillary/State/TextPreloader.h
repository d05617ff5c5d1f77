#pragma once

#include "QuillaryCore/Notes/Moment.h"
#include "QuillaryCore/Platform/FilePath.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace quillary {

/// Reads the texts of many files one after the other on one background thread of low priority, and delivers them on
/// the thread that made it: in batches that give the event loop a turn before they become noticeable.
class TextPreloader : public QObject {
public:
    /// A file's text, the file's modification date from before it was read, and what is made of the text on the way.
    struct Text {
        FilePath url;
        QString text;
        QString snippet;
        Moment modified = distantPast;
    };

    /// Reads one file, on the background thread; nothing for a file that can't be read, which is then passed over.
    using Read = std::function<std::optional<Text>(const FilePath& url)>;

    /// How long a batch may go on before it yields.
    static constexpr std::chrono::milliseconds batchBudget{3};

    /// While texts follow each other, how long the delivering thread waits before it looks for more: to be woken for
    /// each text would take longer than to read it.
    static constexpr std::chrono::milliseconds pauseBetweenBatches{2};

    /// A clock for the budget.
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    explicit TextPreloader(std::function<void(Text)> deliver, Clock clock = &std::chrono::steady_clock::now,
                           QObject* parent = nullptr);

    /// Waits for the file that is being read, and for no other.
    ~TextPreloader() override;

    /// Reads these files, in this order, in the place of those that are left of the last request. What was read of
    /// that is still delivered, so that requests in quick succession get on; its dates tell whether it still holds.
    void start(Read read, const QList<FilePath>& urls);

    /// Reads these too, after all that were asked for before.
    void add(const QList<FilePath>& urls);

private:
    void customEvent(QEvent* event) override;
    void readAll();
    void deliverBatch();
    std::optional<Text> takeText(bool looksAgain);

    std::function<void(Text)> m_deliver;
    Clock m_clock;
    QTimer m_nextBatch;
    std::thread m_thread;

    // What follows is shared with the background thread.
    std::mutex m_mutex;
    std::condition_variable m_wake;
    Read m_read;
    std::deque<FilePath> m_urls;
    std::deque<Text> m_texts;
    bool m_isDeliveryAsked = false;
    bool m_isEnding = false;
};

} // namespace quillary
