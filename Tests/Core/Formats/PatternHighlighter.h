#pragma once

#include "QuillaryCore/Formats/SyntaxLanguage.h"
#include "QuillaryCore/Formats/SyntaxToken.h"

#include <QList>
#include <QStringView>

#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The highlighter as its rules are written: lists of patterns that ICU runs, and nothing clever. It is what the
/// scanners are compared with, for texts short enough that ICU neither takes minutes nor overflows its stack.
namespace quillary::reference {

/// A pattern, what its matches are coloured as, and the group that is coloured.
struct PatternRule {
    SyntaxTokenKind kind;
    std::u16string pattern;
    int group = 0;
    bool ignoresCase = false;
};

/// The rules of a language in order. All are compiled so that `^` and `$` match at line ends.
const std::vector<PatternRule>& patternRules(SyntaxLanguage language);

/// A compiled pattern.
class Pattern {
public:
    Pattern(const std::u16string& pattern, bool matchesAtLineEnds, bool ignoresCase);
    ~Pattern();
    Pattern(Pattern&&) noexcept;
    Pattern& operator=(Pattern&&) = delete;

    /// The stretches of a group in all matches within a range of the text, empty ones and absent ones left out. Sets
    /// `overflowed` if ICU gave up.
    std::vector<TextRange> matches(QStringView text, TextRange range, int group) const;

    /// Whether ICU gave up on a text since the program began.
    static bool overflowed;

private:
    struct Compiled;
    std::unique_ptr<Compiled> m_compiled;
};

/// The compiled rules of a language, in order.
const std::vector<Pattern>& compiledRules(SyntaxLanguage language);

/// The region patterns.
const Pattern& phpRegionPattern();
const Pattern& scriptBlockPattern();
const Pattern& styleBlockPattern();
const Pattern& scriptClosePattern();
const Pattern& styleClosePattern();

/// What `SyntaxHighlighter::tokens` gives.
QList<SyntaxToken> tokens(QStringView text, SyntaxLanguage language, std::optional<TextRange> range = {});

} // namespace quillary::reference
