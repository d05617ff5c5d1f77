#include "QuillaryCore/Unicode/Collation.h"

#include "QuillaryCore/Unicode/Icu.h"
#include "QuillaryCore/Unicode/InterfaceLocale.h"
#include "QuillaryCore/Unicode/PrimaryKeys.h"

#include <unicode/tblcoll.h>

#include <map>
#include <memory>

namespace quillary {

namespace {

std::shared_ptr<const icu::RuleBasedCollator> newCollator(const QString& locale, UColAttributeValue strength) {
    UErrorCode status = U_ZERO_ERROR;
    std::shared_ptr<icu::Collator> collator(icu::Collator::createInstance(icu_support::locale(locale), status));
    icu_support::require(status, "open a collator");
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    collator->setAttribute(UCOL_STRENGTH, strength, status);
    icu_support::require(status, "set up a collator");
    return std::dynamic_pointer_cast<const icu::RuleBasedCollator>(collator);
}

const icu::Collator& collatorFor(const QString& locale) {
    thread_local std::map<QString, std::shared_ptr<const icu::Collator>> collators;
    std::shared_ptr<const icu::Collator>& collator = collators[locale];
    if (!collator) {
        collator = newCollator(locale, UCOL_IDENTICAL);
    }
    return *collator;
}

} // namespace

int localizedStandardCompare(QStringView a, QStringView b, const QString& locale) {
    UErrorCode status = U_ZERO_ERROR;
    const UCollationResult order =
        collatorFor(locale).compare(icu_support::units(a), static_cast<int32_t>(a.size()), icu_support::units(b),
                                    static_cast<int32_t>(b.size()), status);
    icu_support::require(status, "compare texts");
    return order;
}

int localizedStandardCompare(QStringView a, QStringView b) {
    return localizedStandardCompare(a, b, interfaceLocale());
}

CollationKeys::CollationKeys(const QString& locale) {
    thread_local std::map<QString, std::shared_ptr<PrimaryKeys>> keysByLocale;
    std::shared_ptr<PrimaryKeys>& keys = keysByLocale[locale];
    if (!keys) {
        keys = std::make_shared<PrimaryKeys>(newCollator(locale, UCOL_PRIMARY));
    }
    m_keys = keys;
}

void CollationKeys::append(QStringView text) {
    m_keys->append(text, m_bytes);
    m_ends.push_back(m_bytes.size());
}

QByteArrayView CollationKeys::operator[](std::size_t index) const {
    const std::size_t start = index == 0 ? 0 : m_ends[index - 1];
    return {m_bytes.data() + start, static_cast<qsizetype>(m_ends[index] - start)};
}

} // namespace quillary
