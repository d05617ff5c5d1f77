#pragma once

#include <QString>

#include <unicode/locid.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>
#include <unicode/utypes.h>

namespace quillary::icu_support {

/// Ends the program with a message if ICU refused: its data are missing or memory is out, and nothing that this
/// project asks of it can fail otherwise.
void require(UErrorCode status, const char* action);

/// The units of a text for ICU's C functions, to which a null pointer is an error even where there is nothing to read.
inline const char16_t* units(QStringView text) {
    return text.isEmpty() ? u"" : text.utf16();
}

/// ICU's view of a text, which must outlive it. Nothing is copied, and ICU cannot write through it.
inline icu::UnicodeString readOnlyAlias(QStringView text) {
    return {false, units(text), static_cast<int32_t>(text.size())};
}

/// A text of ICU as ours.
inline QStringView view(const icu::UnicodeString& text) {
    return {text.getBuffer(), text.length()};
}

/// A locale by its name; that of no language in particular if there can be none of this name.
icu::Locale locale(const QString& name);

/// A text in place as ICU's iterators read it.
class TextAlias {
public:
    explicit TextAlias(QStringView text);

    ~TextAlias() { utext_close(&m_text); }

    TextAlias(const TextAlias&) = delete;
    TextAlias& operator=(const TextAlias&) = delete;

    UText* get() { return &m_text; }

private:
    UText m_text = UTEXT_INITIALIZER;
};

} // namespace quillary::icu_support
