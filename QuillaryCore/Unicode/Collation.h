#pragma once

#include <QByteArrayView>
#include <QString>

#include <cstddef>
#include <memory>
#include <vector>

namespace quillary {

class PrimaryKeys;

/// Compares two titles or names as a person of a locale expects to find them in a list: by letters first, runs of
/// digits as numbers ("Nota 2" before "Nota 10"), accents next, then case and width; last by code points, so that
/// only canonically equivalent texts are equal. Negative, zero or positive.
int localizedStandardCompare(QStringView a, QStringView b, const QString& locale);

/// The same in the locale of the interface.
int localizedStandardCompare(QStringView a, QStringView b);

/// Texts made ready for many comparisons: their keys, compared as bytes, are in the order of letters and numbers that
/// localizedStandardCompare asks first. Where two keys are equal, it decides; for titles that is seldom. All keys lie
/// in one block of memory. For use by the thread that made it.
class CollationKeys {
public:
    explicit CollationKeys(const QString& locale);

    /// Appends the key of a text.
    void append(QStringView text);

    std::size_t size() const { return m_ends.size(); }

    /// The key of the text that was appended as the `index`th; valid until the next is appended.
    QByteArrayView operator[](std::size_t index) const;

private:
    std::shared_ptr<PrimaryKeys> m_keys;
    std::vector<char> m_bytes;
    std::vector<std::size_t> m_ends;
};

} // namespace quillary
