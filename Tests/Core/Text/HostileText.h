#pragma once

#include <QString>

#include <random>

namespace quillary {

/// Random texts of what is dear to nobody: every line terminator, no-break spaces, NUL, noncharacters, astral and
/// combining characters, and the pieces of flags and families.
class HostileText {
public:
    explicit HostileText(unsigned seed) : m_random(seed) {}

    /// A number from 0 to `greatest`.
    qsizetype number(qsizetype greatest) { return std::uniform_int_distribution<qsizetype>(0, greatest)(m_random); }

    /// Up to `pieces` pieces, which are up to two units long each.
    QString text(qsizetype pieces) {
        static const QString alphabet[] = {
            QStringLiteral("a"),          QStringLiteral("b"),          QStringLiteral(" "),
            QStringLiteral("\n"),         QStringLiteral("\r\n"),       QStringLiteral("\r"),
            QStringLiteral("\u2028"),     QStringLiteral("\u2029"),     QStringLiteral("\u0085"),
            QStringLiteral("\v"),         QStringLiteral("\f"),         QStringLiteral("\u00A0"),
            QString(QChar(u'\0')),        QStringLiteral("\uFFFC"),     QString(QChar(0xFDD0)),
            QString(QChar(0xFDD1)),       QStringLiteral("\uFEFF"),     QStringLiteral("\u0301"),
            QStringLiteral("\u0308"),     QStringLiteral("\u200D"),     QStringLiteral("\uFE0F"),
            QStringLiteral("\U0001F468"), QStringLiteral("\U0001F469"), QStringLiteral("\U0001F3FD"),
            QStringLiteral("\U0001F1EE"), QStringLiteral("\U0001F1F9"), QStringLiteral("\u0915"),
            QStringLiteral("\u094D"),     QStringLiteral("\u0600"),     QStringLiteral("\u1100"),
            QStringLiteral("\u1161"),     QStringLiteral("\uAC01"),     QStringLiteral("\u11A8"),
            QStringLiteral("\u0903"),     QStringLiteral("\u4E2D"),     QStringLiteral("\u00A9"),
        };
        QString result;
        for (qsizetype i = number(pieces); i > 0; --i) {
            result += alphabet[number(std::size(alphabet) - 1)];
        }
        return result;
    }

private:
    std::mt19937 m_random;
};

} // namespace quillary
