#pragma once

#include "QuillaryCore/Unicode/CaselessForm.h"
#include "QuillaryCore/Unicode/QueryAnchor.h"

#include <QString>

#include <vector>

namespace quillary {

/// Tells whether texts contain a query as a person would say: case doesn't matter, accents do, composed and
/// decomposed characters are the same, and a match never takes a part of a user-perceived character. An empty query
/// is in no text.
///
/// Made once for a query and asked for many texts. A test is linear in the text, and for most texts a mere scan for a
/// sign that each match must show.
class TextMatcher {
public:
    /// `locale`, as ICU names it, decides what is a letter's other case.
    TextMatcher(QStringView query, QStringView locale);

    /// In the locale of the interface.
    explicit TextMatcher(QStringView query);

    bool matches(QStringView text) const;

    /// The same answer without any scan for signs, by comparing caseless forms from front to back: what `matches` is
    /// measured and tested against.
    bool matchesByForms(QStringView text) const;

private:
    class FormComparison;
    class Search;

    /// Compares clusters from one boundary up to the first one at or behind `to`, which becomes where it ended.
    bool formsMatch(QStringView text, qsizetype from, qsizetype& to) const;

    CaseFolding m_folding;
    QString m_query;
    std::vector<qsizetype> m_borders;
    QueryAnchor m_anchor;
};

} // namespace quillary
