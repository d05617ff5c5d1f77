#include <QFile>
#include <QStringList>

#include <KSyntaxHighlighting/AbstractHighlighter>
#include <KSyntaxHighlighting/Definition>
#include <KSyntaxHighlighting/Format>
#include <KSyntaxHighlighting/Repository>
#include <KSyntaxHighlighting/State>
#include <cstdio>
#include <ctime>
#include <vector>

/// Highlights the text of a file by the definition for files of a name, once for each line on standard input, and
/// answers each with the CPU time in milliseconds. Built with the Qt that the library is built with, hence a program of
/// its own.

namespace {

struct Token {
    int offset;
    int length;
    int format;
};

class Collector : public KSyntaxHighlighting::AbstractHighlighter {
public:
    void highlight(const QStringList& lines) {
        m_tokens.clear();
        m_lineStart = 0;
        KSyntaxHighlighting::State state;
        for (const QString& line : lines) {
            state = highlightLine(line, state);
            m_lineStart += line.size() + 1;
        }
    }

protected:
    void applyFormat(int offset, int length, const KSyntaxHighlighting::Format& format) override {
        m_tokens.push_back({m_lineStart + offset, length, format.id()});
    }

private:
    std::vector<Token> m_tokens;
    int m_lineStart = 0;
};

double milliseconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        return 2;
    }
    QFile file(QString::fromLocal8Bit(argv[2]));
    const KSyntaxHighlighting::Repository repository;
    const KSyntaxHighlighting::Definition definition =
        repository.definitionForFileName(QString::fromLocal8Bit(argv[1]));
    if (!definition.isValid() || !file.open(QIODevice::ReadOnly)) {
        return 1;
    }
    const QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
    Collector collector;
    collector.setDefinition(definition);
    // The first time loads the definition and all that it includes.
    collector.highlight(lines);
    for (int request = std::getchar(); request != EOF; request = std::getchar()) {
        const double start = milliseconds();
        collector.highlight(lines);
        std::printf("%f\n", milliseconds() - start);
        std::fflush(stdout);
    }
    return 0;
}
