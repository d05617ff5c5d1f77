#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace quillary {

/// A text as md4c is to see it: UTF-8, with guards where a line begins so that it could open a block or lose a blank,
/// and where one ends with a blank or a backtick. The guard is a form feed, which md4c takes for whitespace in a line
/// but not for indentation. What md4c gives back is found again in the text itself, so that guards fall out, and what
/// UTF-8 cannot say comes through.
class MarkdownInlineSource {
public:
    /// Whether md4c sees where lines end, or sees other whitespace in their place. Only a destination in angle brackets
    /// and an escaped line end make a difference of that.
    enum class LineEnds : quint8 { kept, hidden };

    MarkdownInlineSource(QStringView text, LineEnds lineEnds);

    const QByteArray& bytes() const { return m_bytes; }

    /// Whether this is a place in `bytes`.
    bool holds(const char* place) const;

    /// The text that `size` bytes from `place` on stand for, appended to `to`. Places are asked for in ascending order.
    void take(const char* place, qsizetype size, QString& to);

    /// The next line end behind what was taken, likewise.
    void takeLineEnd(QString& to);

private:
    void addGuard();
    qsizetype nextGuard() const;
    void goTo(qsizetype byte);
    void step();

    QStringView m_text;
    QByteArray m_bytes;
    /// Where in `bytes` the guards are, ascending.
    QList<qsizetype> m_guards;
    /// Whether each byte is a unit or a guard.
    bool m_isASCII = false;

    // A place in the bytes and the same in the text.
    qsizetype m_byte = 0;
    qsizetype m_unit = 0;
    qsizetype m_nextGuard = 0;
};

} // namespace quillary
