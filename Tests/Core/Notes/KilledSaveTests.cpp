#include "QuillaryCore/Notes/NoteFileStore.h"

#include "Tests/Support/TestDirectory.h"

#include <chrono>
#include <csignal>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>

namespace quillary {

using test::TestDirectory;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int rounds = 10;
#else
constexpr int rounds = 50;
#endif

constexpr qsizetype noteUnits = 20'000'000;
constexpr qsizetype chunkUnits = 1'000'000;

/// A version of the note is one letter, over and over.
Result<Moment, FileError> saveVersion(const NoteFileStore& store, const FilePath& url, int version) {
    const QString chunk(chunkUnits, QChar(u'a' + version % 26));
    qsizetype given = 0;
    return store.write(
        [&] {
            given += chunkUnits;
            return given > noteUnits ? QStringView() : QStringView(chunk);
        },
        url);
}

/// A child process that saves one version after the other, and tells by a byte when it begins the next.
class SavingProcess {
public:
    SavingProcess(const NoteFileStore& store, const FilePath& url, int firstVersion) {
        int ends[2];
        EXPECT_EQ(::pipe(ends), 0);
        m_process = ::fork();
        if (m_process == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            for (int version = firstVersion;; ++version) {
                if (::write(ends[1], "", 1) != 1 || !saveVersion(store, url, version)) {
                    ::_exit(1);
                }
            }
        }
        ::close(ends[1]);
        m_pipe = ends[0];
    }

    SavingProcess(const SavingProcess&) = delete;
    SavingProcess& operator=(const SavingProcess&) = delete;

    ~SavingProcess() { ::close(m_pipe); }

    void waitForBeginningOfSave() const {
        char byte = 0;
        EXPECT_EQ(::read(m_pipe, &byte, 1), 1);
    }

    /// Whether it was alive until then.
    bool kill() const {
        ::kill(m_process, SIGKILL);
        int status = 0;
        return ::waitpid(m_process, &status, 0) == m_process && WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }

private:
    pid_t m_process = -1;
    int m_pipe = -1;
};

TEST(KilledSave, LeavesOneWholeVersionWheneverTheProcessIsKilled) {
    using Clock = std::chrono::steady_clock;
    const TestDirectory directory;
    const NoteFileStore store(directory.path());
    const FilePath url = directory.path("note.md");
    ASSERT_TRUE(saveVersion(store, url, 0));
    const Moment created = store.info(url)->created;
    for (int round = 0; round < rounds; ++round) {
        const SavingProcess process(store, url, round);
        process.waitForBeginningOfSave();
        const Clock::time_point start = Clock::now();
        process.waitForBeginningOfSave();
        // Each round at another point of a save.
        std::this_thread::sleep_for((Clock::now() - start) * round / rounds);
        ASSERT_TRUE(process.kill());

        const QByteArray contents = directory.read("note.md");
        ASSERT_EQ(contents.size(), noteUnits) << round;
        ASSERT_EQ(contents.count(contents.front()), noteUnits) << round;
        const auto notes = store.listNotes();
        ASSERT_TRUE(notes);
        ASSERT_EQ(notes->size(), 1) << "nothing of an unfinished save is shown";
        EXPECT_EQ(notes->first().created, created);
    }
}

} // namespace

} // namespace quillary
