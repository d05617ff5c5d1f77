#include "QuillaryCore/Unicode/Icu.h"

#include <QtGlobal>

namespace quillary::icu_support {

void require(UErrorCode status, const char* action) {
    if (U_FAILURE(status)) {
        qFatal("ICU failed to %s: %s", action, u_errorName(status));
    }
}

icu::Locale locale(const QString& name) {
    const icu::Locale locale = icu::Locale::createFromName(name.toUtf8().constData());
    return locale.isBogus() ? icu::Locale::getRoot() : locale;
}

TextAlias::TextAlias(QStringView text) {
    UErrorCode status = U_ZERO_ERROR;
    utext_openUChars(&m_text, units(text), text.size(), &status);
    require(status, "read a text");
}

} // namespace quillary::icu_support
