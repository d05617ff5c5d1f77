#include "PeerTable.h"
#include "QuillaryCore/Formats/SyntaxHighlighter.h"

#include "Tests/Core/Formats/HostileSources.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <map>

/// Highlighting 300,000 units of real source beside KSyntaxHighlighting, and how much longer hostile texts take than
/// the ordinary one of their language.

namespace {

using namespace quillary;
using namespace Qt::StringLiterals;

constexpr int rounds = 7;
constexpr double aim = 0.2;
constexpr double lowest = 0.5;
constexpr double mostForHostile = 3.0;

struct Task {
    SyntaxLanguage language;
    /// By which the peer chooses its definition.
    QString fileName;
    /// Where the sources lie; `scripts/setup bench` installs them.
    QString directory;
    QStringList names;
};

std::vector<Task> tasks() {
    return {
        {SyntaxLanguage::css, u"a.css"_s, u"/usr/share/javascript/bootstrap/css"_s, {u"bootstrap.css"_s}},
        {SyntaxLanguage::javascript, u"a.js"_s, u"/usr/share/javascript/jquery"_s, {u"jquery.js"_s}},
        {SyntaxLanguage::php, u"a.php"_s, u"/usr/share/php/phpseclib"_s, {u"*.php"_s}},
        {SyntaxLanguage::html, u"a.html"_s, u"/usr/share/doc/debian/FAQ"_s, {u"*.en.html"_s}},
        {SyntaxLanguage::json, u"a.json"_s, u"/usr/share/iso-codes/json"_s, {u"iso_3166-2.json"_s}},
    };
}

/// The files one after the other, again and again until there is enough; nothing if there are none.
QString sourceOf(const Task& task) {
    QStringList paths;
    QDirIterator files(task.directory, task.names, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        paths.append(files.next());
    }
    paths.sort();
    QString text;
    while (!paths.isEmpty() && text.size() < SyntaxHighlighter::maxLength) {
        for (const QString& path : std::as_const(paths)) {
            QFile file(path);
            if (file.open(QIODevice::ReadOnly)) {
                text += QString::fromUtf8(file.readAll());
            }
        }
    }
    return text.first(std::min(text.size(), SyntaxHighlighter::maxLength));
}

/// The peer at work on a text in a process of its own.
class Peer {
public:
    Peer(const QString& fileName, const QString& text) {
        QFile file(m_directory.filePath(u"source"_s));
        if (file.open(QIODevice::WriteOnly)) {
            file.write(text.toUtf8());
            file.close();
        }
        m_process.start(QCoreApplication::applicationDirPath() + u"/SyntaxHighlightingPeer"_s,
                        {fileName, file.fileName()});
    }

    ~Peer() {
        m_process.closeWriteChannel();
        m_process.waitForFinished();
    }

    /// The CPU milliseconds of one run.
    double run() {
        m_process.write("x");
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead()) {
                std::fprintf(stderr, "the peer does not answer\n");
                std::exit(1);
            }
        }
        return m_process.readLine().toDouble();
    }

private:
    QTemporaryDir m_directory;
    QProcess m_process;
};

double ownMilliseconds(const QString& text, SyntaxLanguage language) {
    return millisecondsOf([&] { keep(SyntaxHighlighter::tokens(text, language)); });
}

double bestOf(const QString& text, SyntaxLanguage language) {
    double best = std::numeric_limits<double>::infinity();
    for (int round = 0; round < rounds; ++round) {
        best = std::min(best, ownMilliseconds(text, language));
    }
    return best;
}

/// The time that the ordinary text takes, or nothing without the text.
std::optional<double> comparedWithPeer(const Task& task) {
    const QString text = sourceOf(task);
    if (text.isEmpty()) {
        std::printf("%s: no sources in %s\n", rawValue(task.language).data(), qPrintable(task.directory));
        return std::nullopt;
    }
    Peer peer(task.fileName, text);
    Milliseconds best;
    for (int round = 0; round < rounds; ++round) {
        best.own = std::min(best.own, ownMilliseconds(text, task.language));
        best.peer = std::min(best.peer, peer.run());
    }
    const QByteArray name = QByteArray(rawValue(task.language).data())
                                .append(", ")
                                .append(QByteArray::number(text.size()))
                                .append(" units");
    reportRatio(name, best.own, "ms", "KSyntaxHighlighting", best.peer, aim, lowest);
    return best.own;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    std::map<SyntaxLanguage, double> ordinary;
    for (const Task& task : tasks()) {
        if (const std::optional<double> own = comparedWithPeer(task)) {
            ordinary[task.language] = *own;
        }
    }
    for (const test::HostileSource& source : test::hostileSources()) {
        const double own = bestOf(source.text(SyntaxHighlighter::maxLength), source.language);
        const auto usual = ordinary.find(source.language);
        if (usual == ordinary.end()) {
            continue;
        }
        reportFigure(source.name, own / usual->second, "of the ordinary", mostForHostile);
    }
    return 0;
}
