#pragma once

#include "QuillaryCore/Formats/Highlighting/ClassifiedText.h"
#include "QuillaryCore/Formats/Highlighting/Pass.h"
#include "QuillaryCore/Formats/SyntaxLanguage.h"

#include <span>

namespace quillary::highlighting {

/// One rule: what its matches are coloured as, and the scanner that gives them to the pass from left to right, each
/// searched for from where the one before ended. A text without any unit of the class `needs` has no match.
struct Rule {
    SyntaxTokenKind kind;
    Classes needs;
    void (*scan)(const ClassifiedText& text, SyntaxTokenKind kind, Pass& pass);
};

/// The rules of a language in the order of their priority, and the classes that they are written in.
struct RuleList {
    const ClassTable& classes;
    std::span<const Rule> rules;
};

RuleList cssRules();
RuleList javaScriptRules();
RuleList jsonRules();
RuleList phpRules();
RuleList htmlRules();

RuleList rulesOf(SyntaxLanguage language);

/// Gives the pass the matches of all rules in the text, which is classified by the list's classes.
void apply(const RuleList& list, const ClassifiedText& text, Pass& pass);

/// The same over a range of the text that `scratch` was made for. An empty range has no matches.
void apply(const RuleList& list, TextRange range, ClassifiedText& scratch, Pass& pass);

} // namespace quillary::highlighting
