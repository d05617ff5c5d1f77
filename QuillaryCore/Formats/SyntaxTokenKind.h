#pragma once

#include <QLatin1StringView>

#include <array>

namespace quillary {

/// What a coloured stretch of source text is; the colour follows from it.
enum class SyntaxTokenKind { keyword, string, comment, number, constant, tag, attribute, variable, function };

inline constexpr std::array allSyntaxTokenKinds = {
    SyntaxTokenKind::keyword,   SyntaxTokenKind::string,   SyntaxTokenKind::comment,
    SyntaxTokenKind::number,    SyntaxTokenKind::constant, SyntaxTokenKind::tag,
    SyntaxTokenKind::attribute, SyntaxTokenKind::variable, SyntaxTokenKind::function};

/// The kind's raw string: its name as it is declared.
QLatin1StringView rawValue(SyntaxTokenKind kind);

} // namespace quillary
