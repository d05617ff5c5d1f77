// The store over ten thousand notes of 4 KB in ten folders: listing, reading in the background, refreshing, deriving
// the sidebar and filtering it, each beside what the bare system takes; then the longest that the background reading
// holds the main thread, and the memory that a note takes beside its text.

#include "PeerTable.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NoteDocument.h"
#include "Quillary/State/NotesStore.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <malloc.h>
#include <memory>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace quillary;
using namespace Qt::StringLiterals;

constexpr int noteCount = 10'000;
constexpr int folderCount = 10;
constexpr qsizetype noteBytes = 4096;

/// Half of the notes at the top level, half of them in folders.
void writeNotes(const QString& directory) {
    std::mt19937 random(1);
    for (int folder = 0; folder < folderCount; ++folder) {
        QDir().mkpath(u"%1/Cartella %2"_s.arg(directory).arg(folder));
    }
    for (int i = 0; i < noteCount; ++i) {
        const QString parent = i % 2 == 0 ? directory : u"%1/Cartella %2"_s.arg(directory).arg(i / 2 % folderCount);
        QFile file(u"%1/Nota %2.md"_s.arg(parent).arg(i));
        if (!file.open(QIODevice::WriteOnly)) {
            std::abort();
        }
        QByteArray text;
        while (text.size() < noteBytes) {
            text += QByteArray("parola").left(1 + qsizetype(random() % 6)) + (random() % 12 == 0 ? '\n' : ' ');
        }
        file.write(text.left(noteBytes));
    }
}

/// What any listing must do at least: every entry's facts, without putting anything in order.
qint64 listBare(const QByteArray& directory) {
    qint64 bytes = 0;
    DIR* const stream = opendir(directory.constData());
    while (const dirent* const entry = readdir(stream)) {
        if (entry->d_name[0] == '.') {
            continue;
        }
        if (entry->d_type == DT_DIR) {
            bytes += listBare(directory + '/' + entry->d_name);
            continue;
        }
        struct statx status = {};
        statx(dirfd(stream), entry->d_name, AT_SYMLINK_NOFOLLOW, STATX_TYPE | STATX_SIZE | STATX_MTIME | STATX_BTIME,
              &status);
        bytes += qint64(status.stx_size);
    }
    closedir(stream);
    return bytes;
}

/// What reading all texts must do at least.
qint64 readBare(const QByteArray& directory, QList<QString>& texts) {
    DIR* const stream = opendir(directory.constData());
    while (const dirent* const entry = readdir(stream)) {
        if (entry->d_name[0] == '.') {
            continue;
        }
        if (entry->d_type == DT_DIR) {
            readBare(directory + '/' + entry->d_name, texts);
            continue;
        }
        const int file = openat(dirfd(stream), entry->d_name, O_RDONLY | O_CLOEXEC);
        QByteArray bytes(noteBytes, Qt::Uninitialized);
        bytes.resize(std::max<ssize_t>(read(file, bytes.data(), noteBytes), 0));
        close(file);
        texts.append(QString::fromUtf8(bytes));
    }
    closedir(stream);
    return texts.size();
}

/// Runs the event loop until all texts are there.
void preload(const NotesStore& store) {
    qsizetype missing =
        std::ranges::count_if(store.notes(), [](const NoteItemPtr& note) { return note->document() == nullptr; });
    QObject::connect(&store, &NotesStore::noteChanged, &store,
                     [&missing](NoteItem*, NoteField field) { missing -= field == NoteField::document ? 1 : 0; });
    while (missing > 0) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QObject::disconnect(&store, &NotesStore::noteChanged, &store, nullptr);
}

double threadMilliseconds() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

/// The same beside a timer that wants every turn it can get: the longest time of the main thread between two of them.
double longestHoldOfPreload(const NotesStore& store) {
    double last = threadMilliseconds();
    double longest = 0;
    QTimer everythingElse;
    QObject::connect(&everythingElse, &QTimer::timeout, [&] {
        const double time = threadMilliseconds();
        longest = std::max(longest, time - last);
        last = time;
    });
    everythingElse.start(0);
    preload(store);
    return longest;
}

std::size_t heapBytes() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QTemporaryDir temporary;
    const QString directory = temporary.filePath(u"Note"_s);
    const QByteArray path = directory.toUtf8();
    writeNotes(directory);
    // The disk is not to be written to while something is measured.
    ::sync();
    AppSettings settings(Preferences(FilePath::fromText(temporary.filePath(u"preferences.json"_s))));
    settings.setNotesDirectory(FilePath::fromText(directory));

    qint64 kept = 0;
    std::unique_ptr<NotesStore> store;
    for (const NoteSortOrder order : {NoteSortOrder::created, NoteSortOrder::title}) {
        settings.setSortOrder(order);
        const QByteArray task = "open 10,000 notes, sorted by " + rawValue(order).toUtf8();
        compareWithPeer(
            task.constData(), "readdir + statx", 1.5, 2.5,
            // Listing, order, the first text, watchers and the notes themselves, and their end.
            [&] {
                store = std::make_unique<NotesStore>(&settings);
                // Only what the user waits for: the background reading ends with the store.
                store.reset();
            },
            [&] { kept += listBare(path); });
    }

    settings.setSortOrder(NoteSortOrder::title);
    compareWithPeer(
        "open and read all in the background", "openat + read + fromUtf8", 1.1, 1.5,
        [&] {
            store.reset();
            store = std::make_unique<NotesStore>(&settings);
            preload(*store);
        },
        [&] {
            QList<QString> texts;
            kept += readBare(path, texts);
        });

    compareWithPeer(
        "refresh with nothing changed", "readdir + statx", 1.1, 2.0, [&] { store->refreshFromDisk(); },
        [&] { kept += listBare(path); });

    for (const NoteSortOrder order : {NoteSortOrder::title, NoteSortOrder::modified}) {
        settings.setSortOrder(order);
        const QByteArray task = "sidebar's sections, sorted by " + rawValue(order).toUtf8();
        compareWithPeer(
            task.constData(), "a copy of the list of notes", 20.0, 200.0,
            [&] { kept += store->sidebarSections().size(); },
            [&] {
                QList<NoteItemPtr> copy = store->notes();
                copy.detach();
                kept += copy.size();
            });
    }

    settings.setSortOrder(NoteSortOrder::title);
    store->setSearchQuery(u"introvabile"_s);
    compareWithPeer(
        "filter by a word that no note has", "QString::contains without case", 0.12, 0.5,
        [&] { kept += store->visibleNotes().size(); },
        [&] {
            kept += std::ranges::count_if(store->notes(), [](const NoteItemPtr& note) {
                return note->title().contains(u"introvabile", Qt::CaseInsensitive) ||
                       note->document()->text().contains(u"introvabile", Qt::CaseInsensitive);
            });
        });

    store.reset();
    malloc_trim(0);
    const std::size_t before = heapBytes();
    store = std::make_unique<NotesStore>(&settings);
    const double longestHold = longestHoldOfPreload(*store);
    const double textBytes = double(noteBytes) * sizeof(char16_t);
    const double perNote = double(heapBytes() - before) / noteCount - textBytes;
    constexpr double mostMilliseconds = 5;
    reportFigure("longest hold of the main thread while texts arrive", longestHold, "ms", mostMilliseconds);
    reportFigure("memory of a note never shown, beside its text", perNote, "bytes");
    keep(kept);
    return 0;
}
