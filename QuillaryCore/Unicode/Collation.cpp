#include "QuillaryCore/Unicode/Collation.h"

#include "QuillaryCore/Unicode/Icu.h"
#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <QHash>

#include <unicode/coll.h>

#include <memory>

namespace quillary {

namespace {

std::shared_ptr<const icu::Collator> newCollator(const QString& locale) {
    UErrorCode status = U_ZERO_ERROR;
    std::shared_ptr<icu::Collator> collator(icu::Collator::createInstance(icu_support::locale(locale), status));
    icu_support::require(status, "open a collator");
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    collator->setAttribute(UCOL_STRENGTH, UCOL_IDENTICAL, status);
    icu_support::require(status, "set up a collator");
    return collator;
}

const icu::Collator& collatorFor(const QString& locale) {
    thread_local QHash<QString, std::shared_ptr<const icu::Collator>> collators;
    std::shared_ptr<const icu::Collator>& collator = collators[locale];
    if (!collator) {
        collator = newCollator(locale);
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

CollationKey::CollationKey(QStringView text, const QString& locale) {
    const icu::Collator& collator = collatorFor(locale);
    const auto length = static_cast<int32_t>(text.size());
    QByteArray bytes(4 * text.size() + 16, Qt::Uninitialized);
    const auto writeInto = [&] {
        return collator.getSortKey(icu_support::units(text), length, reinterpret_cast<uint8_t*>(bytes.data()),
                                   static_cast<int32_t>(bytes.size()));
    };
    int32_t size = writeInto();
    if (size > bytes.size()) {
        bytes.resize(size);
        size = writeInto();
    }
    // What is left over would weigh on ten thousand of them.
    m_bytes = QByteArray(bytes.constData(), size);
}

} // namespace quillary
