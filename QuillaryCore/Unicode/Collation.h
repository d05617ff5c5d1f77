#pragma once

#include <QByteArrayView>
#include <QString>

#include <cstddef>
#include <vector>

namespace quillary {

/// Compares two titles or names as a person of a locale expects to find them in a list: by letters first, runs of
/// digits as numbers ("Nota 2" before "Nota 10"), accents next, then case and width; last by code points, so that
/// only canonically equivalent texts are equal. Negative, zero or positive.
int localizedStandardCompare(QStringView a, QStringView b, const QString& locale);

/// The same in the locale of the interface.
int localizedStandardCompare(QStringView a, QStringView b);

/// Texts made ready for many comparisons: their keys, compared as bytes, are in the order of localizedStandardCompare
/// but for its last step: where two keys are equal, localizedStandardCompare decides, which seldom is asked then.
/// All keys lie in one block of memory.
class CollationKeys {
public:
    explicit CollationKeys(const QString& locale);

    /// Appends the key of a text.
    void append(QStringView text);

    std::size_t size() const { return m_ends.size(); }

    /// The key of the text that was appended as the `index`th; valid until the next is appended.
    QByteArrayView operator[](std::size_t index) const;

private:
    QString m_locale;
    std::vector<char> m_bytes;
    std::vector<std::size_t> m_ends;
};

} // namespace quillary
