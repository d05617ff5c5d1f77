#pragma once

#include <QDirIterator>
#include <QFile>
#include <QString>
#include <QStringList>

#include <ostream>
#include <random>

QT_BEGIN_NAMESPACE

/// So that failed comparisons are readable.
inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toUtf8().constData() << '"';
}

QT_END_NAMESPACE

namespace quillary::formats_test {

/// The texts of at most `limit` files under `directory` whose names match, in an order of their own.
inline QStringList textsUnder(const QString& directory, const QStringList& patterns, int limit) {
    QStringList texts;
    QDirIterator files(directory, patterns, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext() && texts.size() < limit) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly)) {
            texts.append(QString::fromUtf8(file.read(4'000'000)));
        }
    }
    return texts;
}

/// Random texts over a small alphabet of pieces, the same in every run.
class RandomTexts {
public:
    RandomTexts(QStringList pieces, unsigned seed) : m_pieces(std::move(pieces)), m_random(seed) {}

    QString next(int mostPieces) {
        QString text;
        for (int left = below(mostPieces + 1); left > 0; --left) {
            text += m_pieces[below(static_cast<int>(m_pieces.size()))];
        }
        return text;
    }

    int below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }

private:
    QStringList m_pieces;
    std::mt19937 m_random;
};

} // namespace quillary::formats_test
