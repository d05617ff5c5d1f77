#include "PeerTable.h"
#include "QuillaryCore/Notes/NoteFileStore.h"
#include "QuillaryCore/Notes/NoteSortOrder.h"
#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

/// Listing and reading whole notes directories beside the bare calls of the system that nobody can do without.

namespace {

using namespace quillary;
using namespace Qt::StringLiterals;

constexpr int fewNotes = 10'000;
constexpr int manyNotes = 100'000;
constexpr int noteBytes = 4096;

/// A directory of notes, each made by one write, as other programs make them, and each last changed at another time.
class NotesDirectory {
public:
    NotesDirectory(int count, int bytes) {
        const QByteArray line = "Una riga di testo come tante, con qualche lettera accentata: perch\xC3\xA9 no.\n";
        const QByteArray contents = line.repeated(bytes / line.size() + 1).first(bytes);
        for (int i = 0; i < count; ++i) {
            const QByteArray path =
                QFile::encodeName(m_directory.filePath(u"Nota %1.md"_s.arg(i, 6, 10, QLatin1Char('0'))));
            const int file = ::open(path.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0644);
            if (file < 0 || ::write(file, contents.constData(), std::size_t(contents.size())) != contents.size()) {
                std::perror("cannot make the notes");
                std::exit(1);
            }
            // The order of the dates is not that of the names: 7,919 is a prime, so no two are alike.
            const timespec date = {.tv_sec = 1'700'000'000 + i * 7919LL % count * 60, .tv_nsec = 0};
            const timespec dates[] = {date, date};
            ::futimens(file, dates);
            ::close(file);
        }
        // The disk is not to be written to while something is measured.
        ::sync();
    }

    FilePath path() const { return FilePath::fromBytes(QFile::encodeName(m_directory.path())); }

private:
    QTemporaryDir m_directory;
};

/// The facts of every file of a directory by the system's bare calls.
qint64 statAll(const FilePath& directory) {
    DIR* const stream = ::opendir(directory.bytes().constData());
    qint64 total = 0;
    while (const dirent* const entry = ::readdir(stream)) {
        struct statx facts;
        if (::statx(::dirfd(stream), entry->d_name, AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME, &facts) ==
            0) {
            total += qint64(facts.stx_size) + facts.stx_mtime.tv_sec;
        }
    }
    ::closedir(stream);
    return total;
}

/// The text of every file by the system's bare calls and Qt's decoder.
qsizetype readAll(const std::vector<QByteArray>& paths) {
    qsizetype total = 0;
    char buffer[64 * 1024];
    for (const QByteArray& path : paths) {
        const int file = ::openat(AT_FDCWD, path.constData(), O_RDONLY | O_CLOEXEC);
        const ssize_t length = ::read(file, buffer, sizeof buffer);
        ::close(file);
        total += QString::fromUtf8(buffer, length).size();
    }
    return total;
}

/// Listing and bringing into an order; the peer has only the facts.
void compareListing(const char* task, const NotesDirectory& notes, NoteSortOrder order) {
    const NoteFileStore store(notes.path());
    compareWithPeer(
        task, "readdir and statx", 1.1, 1.5,
        [&] {
            const auto listed = store.listNotes();
            std::vector<Moment> dates;
            dates.reserve(std::size_t(listed->size()));
            for (const NoteFileInfo& note : *listed) {
                dates.push_back(decidingDate(order, note.created, note.modified));
            }
            const auto title = [&listed](qsizetype position) { return listed->at(position).url.title(); };
            keep(qsizetype(sortedPositions(dates, title, interfaceLocale()).size()));
        },
        [&] { keep(statAll(notes.path())); });
}

void compareReading(const char* task, const NotesDirectory& notes) {
    const NoteFileStore store(notes.path());
    std::vector<FilePath> urls;
    std::vector<QByteArray> paths;
    const auto listed = store.listNotes();
    for (const NoteFileInfo& note : *listed) {
        urls.push_back(note.url);
        paths.push_back(note.url.bytes());
    }
    compareWithPeer(
        task, "openat, read and QString::fromUtf8", 1.1, 1.5,
        [&] {
            qsizetype total = 0;
            for (const FilePath& url : urls) {
                total += store.read(url)->size();
            }
            keep(total);
        },
        [&] { keep(readAll(paths)); });
}

} // namespace

int main() {
    const NotesDirectory few(fewNotes, noteBytes);
    compareListing("list 10,000 notes, by date", few, NoteSortOrder::modified);
    compareListing("list 10,000 notes, by title", few, NoteSortOrder::title);
    compareReading("read 10,000 notes of 4 KB", few);
    const NotesDirectory many(manyNotes, 1);
    compareListing("list 100,000 notes, by date", many, NoteSortOrder::modified);
    compareListing("list 100,000 notes, by title", many, NoteSortOrder::title);
    return 0;
}
