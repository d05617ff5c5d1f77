#pragma once

#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <QString>

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

namespace quillary {

/// The caseless form by ICU's functions for whole texts, without any table of ours.
inline icu::UnicodeString formByIcu(QStringView text) {
    UErrorCode status = U_ZERO_ERROR;
    const icu::Normalizer2* const nfd = icu::Normalizer2::getNFDInstance(status);
    const icu::UnicodeString source(text.utf16(), static_cast<int32_t>(text.size()));
    return nfd->normalize(nfd->normalize(source, status).foldCase(), status);
}

/// What TextMatcher promises, said in the plainest way: whether the form of any stretch of clusters is the query's.
inline bool containsByStretches(const QString& text, const QString& query) {
    const icu::UnicodeString form = formByIcu(query);
    for (qsizetype from = 0; from < text.size(); ++from) {
        for (qsizetype to = from + 1; isClusterBoundary(text, from) && to <= text.size(); ++to) {
            if (isClusterBoundary(text, to) && formByIcu(QStringView(text).sliced(from, to - from)) == form) {
                return true;
            }
        }
    }
    return false;
}

} // namespace quillary
