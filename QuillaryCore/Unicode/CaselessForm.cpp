#include "QuillaryCore/Unicode/CaselessForm.h"

#include "QuillaryCore/Unicode/Icu.h"

#include <unicode/normalizer2.h>

#include <algorithm>

namespace quillary {

namespace {

const icu::Normalizer2& normalizer(UNormalization2Mode mode) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const instance = icu::Normalizer2::getInstance(nullptr, "nfc", mode, status);
    icu_support::require(status, "normalize characters");
    return *instance;
}

bool isAscii(QStringView text) {
    return std::all_of(text.begin(), text.end(), [](QChar unit) { return unit.unicode() < 0x80; });
}

} // namespace

CaseFolding caseFolding(QStringView locale) {
    const QStringView language = locale.first(std::min(locale.size(), qsizetype{2}));
    const bool endsThere = locale.size() == 2 || (locale.size() > 2 && !locale[2].isLetter());
    return endsThere && (language == u"tr" || language == u"az") ? CaseFolding::turkic : CaseFolding::ordinary;
}

void appendCaselessForm(QStringView clusters, CaseFolding folding, QString& form) {
    if (folding == CaseFolding::ordinary && isAscii(clusters)) {
        for (const QChar unit : clusters) {
            form += unit >= u'A' && unit <= u'Z' ? QChar(unit.unicode() | 0x20) : unit;
        }
        return;
    }
    const bool turkic = folding == CaseFolding::turkic;
    UErrorCode status = U_ZERO_ERROR;
    icu::UnicodeString folded;
    // Marks in canonical order fold alike. Where i and its dot are one letter, they must meet the folding as one.
    normalizer(turkic ? UNORM2_COMPOSE : UNORM2_DECOMPOSE)
        .normalize(icu_support::readOnlyAlias(clusters), folded, status);
    folded.foldCase(turkic ? U_FOLD_CASE_EXCLUDE_SPECIAL_I : U_FOLD_CASE_DEFAULT);
    icu::UnicodeString decomposed;
    normalizer(UNORM2_DECOMPOSE).normalize(folded, decomposed, status);
    icu_support::require(status, "decompose characters");
    form += icu_support::view(decomposed);
}

QString caselessForm(QStringView text, CaseFolding folding) {
    QString form;
    form.reserve(text.size());
    appendCaselessForm(text, folding, form);
    return form;
}

} // namespace quillary
