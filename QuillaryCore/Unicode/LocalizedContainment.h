#pragma once

#include "QuillaryCore/Unicode/CaselessForm.h"

#include <QString>

#include <vector>

namespace quillary {

/// Tells whether texts contain a query as a person would say: case doesn't matter, accents do, composed and
/// decomposed characters are the same, and a match never takes a part of a user-perceived character. An empty query
/// is in no text.
///
/// Making one costs time in proportion to the query; a test is linear in the text.
class TextMatcher {
public:
    /// `locale`, as ICU names it, decides what is a letter's other case.
    TextMatcher(QStringView query, QStringView locale);

    /// In the locale of the interface.
    explicit TextMatcher(QStringView query);

    bool matches(QStringView text) const;

private:
    CaseFolding m_folding;
    QString m_query;
    std::vector<qsizetype> m_borders;
};

} // namespace quillary
