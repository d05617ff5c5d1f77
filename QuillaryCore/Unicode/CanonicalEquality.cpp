#include "QuillaryCore/Unicode/CanonicalEquality.h"

#include "QuillaryCore/Unicode/Icu.h"

#include <unicode/normalizer2.h>
#include <unicode/unorm2.h>

#include <algorithm>

namespace quillary {

namespace {

/// Texts of such units alone are in Normalization Form C and can't be equivalent without being the same.
bool isBelowCombining(QStringView text) {
    // By blocks: no unit of a block has a bit that their union lacks, and the union takes few instructions.
    constexpr qsizetype blockSize = 256;
    const char16_t* const units = text.utf16();
    for (qsizetype start = 0; start < text.size(); start += blockSize) {
        const qsizetype end = std::min(start + blockSize, text.size());
        char16_t all = 0;
        for (qsizetype i = start; i < end; ++i) {
            all |= units[i];
        }
        if (all >= 0x300 && std::any_of(units + start, units + end, [](char16_t unit) { return unit >= 0x300; })) {
            return false;
        }
    }
    return true;
}

const icu::Normalizer2& normalizer() {
    static const icu::Normalizer2* const instance = [] {
        UErrorCode status = U_ZERO_ERROR;
        const icu::Normalizer2* const nfc = icu::Normalizer2::getNFCInstance(status);
        icu_support::require(status, "compose characters");
        return nfc;
    }();
    return *instance;
}

} // namespace

bool canonicallyEqual(QStringView a, QStringView b) {
    if (a == b) {
        return true;
    }
    if (isBelowCombining(a) && isBelowCombining(b)) {
        return false;
    }
    UErrorCode status = U_ZERO_ERROR;
    const int32_t order = unorm_compare(icu_support::units(a), static_cast<int32_t>(a.size()), icu_support::units(b),
                                        static_cast<int32_t>(b.size()), 0, &status);
    icu_support::require(status, "compare texts");
    return order == 0;
}

bool isCanonicalForm(QStringView text) {
    if (isBelowCombining(text)) {
        return true;
    }
    UErrorCode status = U_ZERO_ERROR;
    const int32_t composed = normalizer().spanQuickCheckYes(icu_support::readOnlyAlias(text), status);
    icu_support::require(status, "compose characters");
    return composed == text.size();
}

QString canonicalForm(QStringView text) {
    if (isBelowCombining(text)) {
        return text.toString();
    }
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString source = icu_support::readOnlyAlias(text);
    const int32_t composed = normalizer().spanQuickCheckYes(source, status);
    if (composed == source.length()) {
        return text.toString();
    }
    icu::UnicodeString form(text.utf16(), composed);
    normalizer().normalizeSecondAndAppend(form, source.tempSubString(composed), status);
    icu_support::require(status, "compose characters");
    return icu_support::view(form).toString();
}

} // namespace quillary
