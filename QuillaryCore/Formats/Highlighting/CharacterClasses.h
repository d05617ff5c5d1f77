#pragma once

#include <QtGlobal>

#include <array>
#include <initializer_list>
#include <string_view>

namespace quillary::highlighting {

/// What the rules of a language ask of a unit, as bits: seven that all languages share, and nine that each names for
/// the characters that its rules look for.
using Classes = quint16;

inline constexpr Classes word = 1 << 0;
inline constexpr Classes digit = 1 << 1;
inline constexpr Classes space = 1 << 2;
inline constexpr Classes lineTerminator = 1 << 3;
/// `\b` holds before the unit.
inline constexpr Classes boundary = 1 << 4;
/// `\b` holds before the unit, and it is a word's first.
inline constexpr Classes wordStart = 1 << 5;
/// The place behind the last unit.
inline constexpr Classes textEnd = 1 << 6;

constexpr Classes languageClass(int index) {
    return static_cast<Classes>(1 << (7 + index));
}

/// A unit's classes with what follows from the word class of the unit before.
constexpr Classes withEdges(Classes own, Classes before) {
    const auto edge = static_cast<Classes>((own ^ before) & word);
    return static_cast<Classes>(own | edge * boundary | (own & edge) * wordStart);
}

/// The classes of the ASCII characters in one language, edges included: first those of a character behind none of a
/// word, then those of one behind a word's.
using ClassTable = std::array<Classes, 2 * 128>;

/// The place of an ASCII character in the table, by the classes of the one before.
constexpr std::size_t classTableIndex(char16_t unit, Classes before) {
    return static_cast<std::size_t>((before & word) << 7 | unit);
}

struct ClassEntry {
    std::string_view characters;
    Classes classes;
};

constexpr ClassTable makeClassTable(std::initializer_list<ClassEntry> entries) {
    ClassTable table{};
    for (char16_t c = 0; c < 0x80; ++c) {
        const bool isDigit = c >= '0' && c <= '9';
        const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        auto own = static_cast<Classes>((isDigit || isLetter || c == '_' ? word : 0) | (isDigit ? digit : 0) |
                                        ((c >= 0x09 && c <= 0x0D) || c == ' ' ? space : 0) |
                                        (c >= 0x0A && c <= 0x0D ? lineTerminator : 0));
        for (const ClassEntry& entry : entries) {
            own |= entry.characters.find(static_cast<char>(c)) != std::string_view::npos ? entry.classes : 0;
        }
        for (const Classes before : {Classes(0), word}) {
            table[classTableIndex(c, before)] = withEdges(own, before);
        }
    }
    return table;
}

constexpr bool isAsciiLowercase(char16_t unit) {
    return unit >= u'a' && unit <= u'z';
}

constexpr char16_t asciiLowercase(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit | 0x20) : unit;
}

constexpr bool isAsciiLetter(char16_t unit) {
    return isAsciiLowercase(asciiLowercase(unit));
}

constexpr bool isAsciiHexDigit(char16_t unit) {
    const char16_t lower = asciiLowercase(unit);
    return (unit >= u'0' && unit <= u'9') || (lower >= u'a' && lower <= u'f');
}

} // namespace quillary::highlighting
