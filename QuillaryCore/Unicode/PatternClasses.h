#pragma once

#include <QtGlobal>

#include <span>

namespace quillary {

/// How the classes of ICU's regular expressions see a code point. Bits of one byte.
enum PatternClass : quint8 {
    /// `\w`: alphabetic, mark, decimal digit, connector punctuation, zero-width joiner and non-joiner.
    patternWord = 1 << 0,
    /// `\d`: decimal digit of any script.
    patternDigit = 1 << 1,
    /// `\s`: white space.
    patternSpace = 1 << 2,
    /// What a dot does not match, and where `$` matches in multi-line mode.
    patternLineTerminator = 1 << 3,
    /// What `\b` looks through: it extends the cluster before it, or is a format character.
    patternIgnoredAtBoundary = 1 << 4,
};

/// The classes of one code point; none for a surrogate.
quint8 patternClasses(char32_t codePoint);

/// The classes of the code points below U+10000, made at the first call.
std::span<const quint8, 0x10000> basicPlanePatternClasses();

} // namespace quillary
