#include "QuillaryCore/Unicode/Collation.h"

#include "QuillaryCore/Unicode/Icu.h"
#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <QHash>

#include <unicode/coll.h>

#include <memory>

namespace quillary {

namespace {

std::shared_ptr<const icu::Collator> newCollator(const QString& locale, UColAttributeValue strength) {
    UErrorCode status = U_ZERO_ERROR;
    std::shared_ptr<icu::Collator> collator(icu::Collator::createInstance(icu_support::locale(locale), status));
    icu_support::require(status, "open a collator");
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    collator->setAttribute(UCOL_STRENGTH, strength, status);
    icu_support::require(status, "set up a collator");
    return collator;
}

template <UColAttributeValue strength>
const icu::Collator& collatorFor(const QString& locale) {
    thread_local QHash<QString, std::shared_ptr<const icu::Collator>> collators;
    std::shared_ptr<const icu::Collator>& collator = collators[locale];
    if (!collator) {
        collator = newCollator(locale, strength);
    }
    return *collator;
}

} // namespace

int localizedStandardCompare(QStringView a, QStringView b, const QString& locale) {
    UErrorCode status = U_ZERO_ERROR;
    const UCollationResult order =
        collatorFor<UCOL_IDENTICAL>(locale).compare(icu_support::units(a), static_cast<int32_t>(a.size()),
                                                    icu_support::units(b), static_cast<int32_t>(b.size()), status);
    icu_support::require(status, "compare texts");
    return order;
}

int localizedStandardCompare(QStringView a, QStringView b) {
    return localizedStandardCompare(a, b, interfaceLocale());
}

CollationKeys::CollationKeys(const QString& locale) : m_locale(locale) {}

void CollationKeys::append(QStringView text) {
    const icu::Collator& collator = collatorFor<UCOL_TERTIARY>(m_locale);
    const std::size_t start = m_bytes.size();
    // Enough for nearly all titles; what is left over is given back below.
    m_bytes.resize(start + 4 * static_cast<std::size_t>(text.size()) + 16);
    const auto write = [&] {
        return static_cast<std::size_t>(collator.getSortKey(icu_support::units(text), static_cast<int32_t>(text.size()),
                                                            reinterpret_cast<uint8_t*>(m_bytes.data() + start),
                                                            static_cast<int32_t>(m_bytes.size() - start)));
    };
    const std::size_t size = write();
    const bool fits = size <= m_bytes.size() - start;
    m_bytes.resize(start + size);
    if (!fits) {
        write();
    }
    m_ends.push_back(m_bytes.size());
}

QByteArrayView CollationKeys::operator[](std::size_t index) const {
    const std::size_t start = index == 0 ? 0 : m_ends[index - 1];
    return {m_bytes.data() + start, static_cast<qsizetype>(m_ends[index] - start)};
}

} // namespace quillary
