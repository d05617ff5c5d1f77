#include "QuillaryCore/Formats/CSVColumns.h"

#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <QCoreApplication>

#include <cmath>

namespace quillary::CSVColumns {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype sampleRows = 300;
constexpr double characterWidth = 0.62;
constexpr double cellPadding = 20;
constexpr double leastWidth = 56;
constexpr double greatestWidth = 360;

qsizetype sampleSize(const CSVTable& table) {
    return std::min(table.rowCount(), sampleRows);
}

bool isDigit(QChar unit) {
    return unit >= u'0' && unit <= u'9';
}

bool isHexDigit(QChar unit) {
    return isDigit(unit) || (unit >= u'a' && unit <= u'f') || (unit >= u'A' && unit <= u'F');
}

/// Reads the parts of a number from front to back.
class NumberReader {
public:
    explicit NumberReader(QStringView text) : m_rest(text) {}

    bool readNumber() {
        skipAny(u"+-");
        if (skipWord(u"inf"_s)) {
            skipWord(u"inity"_s);
        } else if (skipWord(u"nan"_s)) {
            skipPayload();
        } else if (skipWord(u"0x"_s)) {
            if (!skipDigits(isHexDigit) || !skipExponent(u"pP")) {
                return false;
            }
        } else if (!skipDigits(isDigit) || !skipExponent(u"eE")) {
            return false;
        }
        return m_rest.isEmpty();
    }

private:
    bool skipAny(QStringView units) {
        if (m_rest.isEmpty() || !units.contains(m_rest.front())) {
            return false;
        }
        m_rest = m_rest.sliced(1);
        return true;
    }

    bool skipWord(QStringView word) {
        if (!m_rest.startsWith(word, Qt::CaseInsensitive)) {
            return false;
        }
        m_rest = m_rest.sliced(word.size());
        return true;
    }

    template <typename Test>
    qsizetype skipRun(Test test) {
        const auto end = std::find_if_not(m_rest.begin(), m_rest.end(), test);
        const qsizetype length = end - m_rest.begin();
        m_rest = m_rest.sliced(length);
        return length;
    }

    /// Digits with at most one point among them; there must be one digit.
    bool skipDigits(bool (*test)(QChar)) {
        qsizetype digits = skipRun(test);
        if (skipAny(u".,")) {
            digits += skipRun(test);
        }
        return digits > 0;
    }

    /// An exponent, if one begins here. It must have a digit.
    bool skipExponent(QStringView marks) {
        if (!skipAny(marks)) {
            return true;
        }
        skipAny(u"+-");
        return skipRun(isDigit) > 0;
    }

    /// The parenthesis that may follow "nan".
    void skipPayload() {
        const NumberReader before = *this;
        if (!skipAny(u"(")) {
            return;
        }
        skipRun([](QChar unit) {
            return isHexDigit(unit) || (unit >= u'g' && unit <= u'z') || (unit >= u'G' && unit <= u'Z') || unit == u'_';
        });
        if (!skipAny(u")")) {
            *this = before;
        }
    }

    QStringView m_rest;
};

} // namespace

bool isNumber(QStringView text) {
    return NumberReader(text).readNumber();
}

QList<double> widths(const CSVTable& table, double baseSize) {
    const double ofOne = baseSize * characterWidth;
    // Beyond the greatest width a cell's length doesn't matter, so that nothing is counted beyond it.
    const double enough = std::ceil((greatestWidth - cellPadding) / ofOne) + 1;
    const qsizetype limit = enough >= 0 && enough < 1e9 ? static_cast<qsizetype>(enough) : 1'000'000'000;

    QList<qsizetype> longest(table.columnCount(), 0);
    for (qsizetype r = 0; r < sampleSize(table); ++r) {
        qsizetype column = 0;
        for (const QStringView cell : table.row(r)) {
            qsizetype& length = longest[column++];
            // A character has one unit at least.
            if (cell.size() > length && length <= limit) {
                length = std::max(length, clusterCount(cell, limit));
            }
        }
    }

    QList<double> result;
    result.reserve(longest.size());
    for (const qsizetype length : longest) {
        const double width = static_cast<double>(length) * baseSize * characterWidth + cellPadding;
        result.append(std::clamp(width, leastWidth, greatestWidth));
    }
    return result;
}

QList<qsizetype> numeric(const CSVTable& table) {
    enum class Finding : quint8 { nothing, numbers, text };

    QList<Finding> findings(table.columnCount(), Finding::nothing);
    for (qsizetype r = 1; r < sampleSize(table); ++r) {
        qsizetype column = 0;
        for (const QStringView cell : table.row(r)) {
            Finding& finding = findings[column++];
            if (!cell.isEmpty() && finding != Finding::text) {
                finding = isNumber(cell) ? Finding::numbers : Finding::text;
            }
        }
    }

    QList<qsizetype> result;
    for (qsizetype column = 0; column < findings.size(); ++column) {
        if (findings[column] == Finding::numbers) {
            result.append(column);
        }
    }
    return result;
}

qsizetype dataRowCount(const CSVTable& table, bool firstRowIsHeader) {
    return firstRowIsHeader ? std::max<qsizetype>(table.rowCount() - 1, 0) : table.rowCount();
}

QString summary(const CSVTable& table, bool firstRowIsHeader) {
    const char32_t delimiter = table.delimiter();
    return QCoreApplication::translate("CSVPreview", "%1 righe · %2 colonne · separatore «%3»")
        .arg(QString::number(dataRowCount(table, firstRowIsHeader)), QString::number(table.columnCount()),
             delimiter == U'\t' ? u"tab"_s : QString::fromUcs4(&delimiter, 1));
}

} // namespace quillary::CSVColumns
