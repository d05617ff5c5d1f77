#include "QuillaryCore/Unicode/LocalizedContainment.h"

#include "QuillaryCore/Unicode/GraphemeClusters.h"
#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <QVarLengthArray>

namespace quillary {

namespace {

/// For each prefix of the query, the length of its longest proper border (Knuth, Morris and Pratt).
std::vector<qsizetype> bordersOf(QStringView query) {
    std::vector<qsizetype> borders(static_cast<std::size_t>(query.size()) + 1, 0);
    qsizetype border = 0;
    for (qsizetype i = 1; i < query.size(); ++i) {
        while (border > 0 && query[i] != query[border]) {
            border = borders[static_cast<std::size_t>(border)];
        }
        if (query[i] == query[border]) {
            ++border;
        }
        borders[static_cast<std::size_t>(i) + 1] = border;
    }
    return borders;
}

} // namespace

TextMatcher::TextMatcher(QStringView query, QStringView locale)
    : m_folding(caseFolding(locale)), m_query(caselessForm(query, m_folding)), m_borders(bordersOf(m_query)) {}

TextMatcher::TextMatcher(QStringView query) : TextMatcher(query, interfaceLocale()) {}

bool TextMatcher::matches(QStringView text) const {
    if (m_query.isEmpty()) {
        return false;
    }
    const qsizetype length = m_query.size();
    // Whether a cluster begins at each of the last units of the form, as many as the query has.
    std::vector<bool> begins(static_cast<std::size_t>(length), false);
    qsizetype written = 0;
    qsizetype matched = 0;
    QString form;
    for (ClusterWalker walker(text); !walker.atEnd();) {
        form.resize(0);
        appendCaselessForm(walker.next(), m_folding, form);
        for (qsizetype i = 0; i < form.size(); ++i) {
            begins[static_cast<std::size_t>(written++ % length)] = i == 0;
            if (matched == length) {
                matched = m_borders[static_cast<std::size_t>(matched)];
            }
            while (matched > 0 && form[i] != m_query[matched]) {
                matched = m_borders[static_cast<std::size_t>(matched)];
            }
            if (form[i] == m_query[matched]) {
                ++matched;
            }
        }
        if (matched == length && begins[static_cast<std::size_t>(written % length)]) {
            return true;
        }
    }
    return false;
}

} // namespace quillary
