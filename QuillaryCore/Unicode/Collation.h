#pragma once

#include <QByteArray>
#include <QString>

#include <compare>

namespace quillary {

/// Compares two titles or names as a person of a locale expects to find them in a list: by letters first, runs of
/// digits as numbers ("Nota 2" before "Nota 10"), accents next, then case and width; last by code points, so that
/// only canonically equivalent texts are equal. Negative, zero or positive.
int localizedStandardCompare(QStringView a, QStringView b, const QString& locale);

/// The same in the locale of the interface.
int localizedStandardCompare(QStringView a, QStringView b);

/// A text made ready for many comparisons: keys of one locale are in the order of localizedStandardCompare, at the
/// cost of comparing bytes.
class CollationKey {
public:
    CollationKey() = default;
    CollationKey(QStringView text, const QString& locale);

    friend bool operator==(const CollationKey&, const CollationKey&) = default;

    friend std::strong_ordering operator<=>(const CollationKey& a, const CollationKey& b) {
        return QByteArrayView(a.m_bytes).compare(b.m_bytes) <=> 0;
    }

private:
    QByteArray m_bytes;
};

} // namespace quillary
