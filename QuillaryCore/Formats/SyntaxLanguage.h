#pragma once

#include "QuillaryCore/Notes/NoteFormat.h"

#include <QLatin1StringView>
#include <QStringView>

#include <array>
#include <optional>

namespace quillary {

/// The languages that `SyntaxHighlighter` colours.
enum class SyntaxLanguage { css, javascript, php, html, json };

inline constexpr std::array allSyntaxLanguages = {SyntaxLanguage::css, SyntaxLanguage::javascript, SyntaxLanguage::php,
                                                  SyntaxLanguage::html, SyntaxLanguage::json};

/// The language's raw string: its name as it is declared.
QLatin1StringView rawValue(SyntaxLanguage language);

/// The language with a raw string, exactly as it is spelt; none for any other text.
std::optional<SyntaxLanguage> syntaxLanguageFromRawValue(QStringView rawValue);

/// The language in which notes of a format are coloured; none for plain text, Markdown and CSV.
std::optional<SyntaxLanguage> syntaxLanguage(NoteFormat format);

/// The language that the info string of a Markdown fence names ("ts", "SCSS", "xml"), whatever its case; none for any
/// other name.
std::optional<SyntaxLanguage> syntaxLanguageFromFenceName(QStringView fenceName);

} // namespace quillary
