// Comparing two texts, rows and word segments included, beside GNU diff -d, whose whole process counts, and libgit2's
// minimal line diff. All three give the fewest changed lines.

#include "PeerTable.h"
#include "QuillaryCore/Compare/TextDiff.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdlib>
#include <git2.h>
#include <numeric>
#include <random>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace quillary;
using namespace Qt::StringLiterals;

using Lines = std::vector<QByteArray>;

/// The milliseconds of the processes that this one has waited for.
double childrenMilliseconds() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    const auto milliseconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

class RandomLines {
public:
    QByteArray line() {
        static const std::vector<QByteArray> words = {
            "nota",   "lavoro", "domani", "progetto", "riunione",     "telefono",      "libro",     "casa",
            "elenco", "spesa",  "tempo",  "archivio", "citt\xC3\xA0", "perch\xC3\xA9", "pi\xC3\xB9"};
        QByteArray result = QByteArray::number(static_cast<qulonglong>(m_random()));
        for (int i = 0; i < 5; ++i) {
            result += ' ' + words[m_random() % words.size()];
        }
        return result;
    }

    Lines lines(int count) {
        Lines result;
        std::generate_n(std::back_inserter(result), count, [this] { return line(); });
        return result;
    }

    /// With as many lines replaced, put in or taken out, each a third.
    Lines edited(Lines lines, int edits) {
        for (int i = 0; i < edits; ++i) {
            const auto place = lines.begin() + static_cast<std::ptrdiff_t>(m_random() % lines.size());
            if (i % 3 == 0) {
                *place = line();
            } else if (i % 3 == 1) {
                lines.insert(place, line());
            } else {
                lines.erase(place);
            }
        }
        return lines;
    }

    /// Drawn from a few different ones.
    Lines drawn(const Lines& from, int count) {
        Lines result;
        std::generate_n(std::back_inserter(result), count, [&] { return from[m_random() % from.size()]; });
        return result;
    }

private:
    std::mt19937 m_random;
};

QByteArray joined(const Lines& lines) {
    QByteArray text;
    for (const QByteArray& line : lines) {
        text += line + '\n';
    }
    return text;
}

double bestOfSeven(auto measure) {
    double best = measure();
    for (int round = 1; round < 7; ++round) {
        best = std::min(best, measure());
    }
    return best;
}

/// One case: the texts in memory for us and for the library, in files for the program.
class Case {
public:
    Case(const char* task, const Lines& oldLines, const Lines& newLines)
        : m_task(task), m_old(joined(oldLines)), m_new(joined(newLines)) {
        write(u"old"_s, m_old);
        write(u"new"_s, m_new);
    }

    double gnuDiff() const {
        const QByteArray command =
            "exec diff -d " + path(u"old"_s).toUtf8() + ' ' + path(u"new"_s).toUtf8() + " > /dev/null";
        return bestOfSeven([&command] {
            const double start = childrenMilliseconds();
            const pid_t child = fork();
            if (child == 0) {
                execl("/bin/sh", "sh", "-c", command.constData(), nullptr);
                _exit(127);
            }
            int status = 0;
            waitpid(child, &status, 0);
            return childrenMilliseconds() - start;
        });
    }

    double libgit2() const {
        git_diff_options options = GIT_DIFF_OPTIONS_INIT;
        options.flags = GIT_DIFF_MINIMAL;
        options.context_lines = 0;
        return bestOfSeven([&] {
            return millisecondsOf([&] {
                git_patch* patch = nullptr;
                git_patch_from_buffers(&patch, m_old.constData(), static_cast<size_t>(m_old.size()), nullptr,
                                       m_new.constData(), static_cast<size_t>(m_new.size()), nullptr, &options);
                git_patch_free(patch);
            });
        });
    }

    double own() const {
        const QString oldText = QString::fromUtf8(m_old);
        const QString newText = QString::fromUtf8(m_new);
        return bestOfSeven(
            [&] { return millisecondsOf([&] { keep(TextDiff::compare(oldText, newText).stats.changed); }); });
    }

    void print(double own, const char* peerName, double peer, double aim, double floor) const {
        reportRatio(m_task, own, "ms", peerName, peer, aim, floor);
    }

private:
    QString path(const QString& name) const { return m_directory.filePath(name); }

    void write(const QString& name, const QByteArray& text) const {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
            std::abort();
        }
    }

    const char* m_task;
    QByteArray m_old;
    QByteArray m_new;
    QTemporaryDir m_directory;
};

long peakKilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

int main() {
    git_libgit2_init();
    RandomLines random;

    // First, while the peak of the process is its own.
    const Lines few = random.lines(400);
    const Case worst("e: 5,000 lines drawn from the same 400", random.drawn(few, 5000), random.drawn(few, 5000));
    const long before = peakKilobytes();
    const double worstOwn = worst.own();
    constexpr double mostKilobytes = 16 * 1024 + 64 * 10'000 / 1024;
    reportFigure("e: peak memory above the texts", static_cast<double>(peakKilobytes() - before), "KB", mostKilobytes);
    worst.print(worstOwn, "GNU diff -d", worst.gnuDiff(), 1.0, 2.0);

    const Lines many = random.lines(20'000);
    const Case someEdits("a: 20,000 lines, 200 edits", many, random.edited(many, 200));
    someEdits.print(someEdits.own(), "GNU diff -d", someEdits.gnuDiff(), 0.4, 1.0);

    const Case manyEdits("b: 20,000 lines, 5,000 edits", many, random.edited(many, 5000));
    const double manyOwn = manyEdits.own();
    manyEdits.print(manyOwn, "libgit2 minimal", manyEdits.libgit2(), 1.0, unbounded);
    manyEdits.print(manyOwn, "GNU diff -d", manyEdits.gnuDiff(), unbounded, 1.0);

    const Case different("c: 5,000 wholly different lines", random.lines(5000), random.lines(5000));
    const double differentOwn = different.own();
    different.print(differentOwn, "libgit2 minimal", different.libgit2(), 0.5, unbounded);
    different.print(differentOwn, "GNU diff -d", different.gnuDiff(), unbounded, 1.0);

    const Lines veryMany = random.lines(200'000);
    const Case large("d: 200,000 lines, 100 edits", veryMany, random.edited(veryMany, 100));
    large.print(large.own(), "GNU diff -d", large.gnuDiff(), 0.5, 1.0);

    Lines permuted = random.lines(100'000);
    const Lines inOrder = permuted;
    std::shuffle(permuted.begin(), permuted.end(), std::mt19937(7));
    const Case shuffled("100,000 lines, permuted", inOrder, permuted);
    reportFigure("100,000 lines, permuted", shuffled.own(), "ms");
    git_libgit2_shutdown();
    return 0;
}
