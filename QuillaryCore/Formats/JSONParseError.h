#pragma once

#include <QByteArray>
#include <QString>

namespace quillary {

/// What is wrong with a JSON text, and where. The place is kept as a byte of the text; its line and column are counted
/// when they are asked for, since counting the characters of a long line costs more than refusing it.
class JSONParseError {
public:
    /// The fault that `message` names, at this byte of the text; an offset past the end means the end.
    JSONParseError(QString message, QByteArray text, qsizetype offset);

    /// What was wrong, in Italian.
    const QString& message() const { return m_message; }

    /// The line of the fault, from 1. Line feeds alone end lines.
    qint64 line() const;

    /// The column of the fault, from 1, in characters (extended grapheme clusters); a byte order mark counts as one.
    qint64 column() const;

    /// Place and message in one sentence.
    QString description() const;

    /// The same as `description`.
    QString errorDescription() const { return description(); }

    /// Equal by message, line and column.
    friend bool operator==(const JSONParseError& a, const JSONParseError& b);

private:
    QString m_message;
    QByteArray m_text;
    qsizetype m_offset;
};

} // namespace quillary
