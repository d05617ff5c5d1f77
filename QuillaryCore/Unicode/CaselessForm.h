#pragma once

#include <QString>

namespace quillary {

/// How letters lose their case: as everywhere, or as in Turkish and Azeri, whose i and ı are two letters.
enum class CaseFolding {
    ordinary,
    turkic,
};

/// The folding that a locale, by ICU's name, asks for.
CaseFolding caseFolding(QStringView locale);

/// What two texts have in common that differ in case or composition only: each letter folded to its full case folding
/// ("ß" to "ss") and decomposed. Accents stay. The form of a text is that of its clusters, one after the other
/// (Unicode Standard, definition D145).
QString caselessForm(QStringView text, CaseFolding folding);

/// Puts the caseless form of one or more whole clusters behind `form`.
void appendCaselessForm(QStringView clusters, CaseFolding folding, QString& form);

} // namespace quillary
