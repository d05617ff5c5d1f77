#include "QuillaryCore/Unicode/LocalizedContainment.h"

#include "QuillaryCore/Unicode/CaselessIndex.h"
#include "QuillaryCore/Unicode/ClusterRestart.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"
#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <algorithm>

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

bool isPairAt(QStringView text, qsizetype position) {
    return position >= 0 && position + 1 < text.size() && text[position].isHighSurrogate() &&
           text[position + 1].isLowSurrogate();
}

char32_t characterAt(QStringView text, qsizetype position) {
    return isPairAt(text, position) ? QChar::surrogateToUcs4(text[position], text[position + 1])
                                    : text[position].unicode();
}

/// Whether a cluster ends at a position whatever stands before the two characters around it.
bool isRestart(QStringView text, qsizetype position) {
    if (position == 0 || position == text.size()) {
        return true;
    }
    if (isPairAt(text, position - 1)) {
        return false;
    }
    const qsizetype before = isPairAt(text, position - 2) ? position - 2 : position - 1;
    return isClusterRestart(characterAt(text, before), characterAt(text, position));
}

/// Puts the caseless form of a cluster behind `form`; most clusters are one character, whose form is known.
void appendFormOfCluster(QStringView cluster, CaseFolding folding, QString& form) {
    const bool isOneCharacter = cluster.size() == 1 || (cluster.size() == 2 && isPairAt(cluster, 0));
    const char32_t character = characterAt(cluster, 0);
    if (folding != CaseFolding::ordinary || !isOneCharacter || isHangulSyllable(character)) {
        appendCaselessForm(cluster, folding, form);
        return;
    }
    const QStringView known = CaselessIndex::instance().form(character);
    form += known.isEmpty() ? cluster : known;
}

} // namespace

/// Compares the query with caseless forms that come unit by unit (Knuth, Morris and Pratt).
class TextMatcher::FormComparison {
public:
    explicit FormComparison(const TextMatcher& matcher)
        : m_matcher(matcher), m_begins(static_cast<std::size_t>(matcher.m_query.size()), false) {}

    /// `beginsCluster` says whether a match may begin with this unit.
    void feed(QChar unit, bool beginsCluster) {
        const QString& query = m_matcher.m_query;
        const std::vector<qsizetype>& borders = m_matcher.m_borders;
        m_begins[m_next] = beginsCluster;
        m_next = m_next + 1 == m_begins.size() ? 0 : m_next + 1;
        if (m_matched == query.size()) {
            m_matched = borders[static_cast<std::size_t>(m_matched)];
        }
        while (m_matched > 0 && unit != query[m_matched]) {
            m_matched = borders[static_cast<std::size_t>(m_matched)];
        }
        if (unit == query[m_matched]) {
            ++m_matched;
        }
    }

    /// Whether the units up to here end with the query, and it begins where a cluster does.
    bool endsWithQuery() const { return m_matched == m_matcher.m_query.size() && m_begins[m_next]; }

private:
    const TextMatcher& m_matcher;
    /// For the last units, as many as the query has, whether a cluster begins there; a ring, the oldest at m_next.
    std::vector<bool> m_begins;
    std::size_t m_next = 0;
    qsizetype m_matched = 0;
};

/// One search of one text by the places that show the query's sign.
class TextMatcher::Search {
public:
    Search(const TextMatcher& matcher, QStringView text)
        : m_matcher(matcher), m_text(text), m_effortLeft(text.size()) {}

    bool by(std::monostate) { return wholeMatches(); }

    bool by(const QueryAnchor::Pair& pair) {
        const QueryAnchor& anchor = m_matcher.m_anchor;
        const auto pairLeadsToMatch = [&](qsizetype at) {
            return pair.isAt(m_text, at) &&
                   (anchor.firmUnits().empty() ? formsAgreeAround(at) : agreesFrom(at - pair.offset));
        };
        const auto ligatureLeadsToMatch = [&](qsizetype at) {
            return anchor.ligatures().matches(m_text[at]) && formsAgreeAround(at);
        };
        const bool ended =
            scanForPair(m_text, pair.first, pair.second, pair.distance, anchor.ligatures().units(),
                        [&](qsizetype at) { return pairLeadsToMatch(at) || ligatureLeadsToMatch(at) || isGivingUp(); });
        return ended && (!isGivingUp() || wholeMatches());
    }

    bool by(const QueryAnchor::Any& any) {
        const bool ended = scanForAny(m_text, any.units(), [&](qsizetype at) {
            return (any.matches(m_text[at]) && formsAgreeAround(at)) || isGivingUp();
        });
        return ended && (!isGivingUp() || wholeMatches());
    }

private:
    bool agreesFrom(qsizetype start) {
        const std::vector<UnitSet>& units = m_matcher.m_anchor.firmUnits();
        const qsizetype end = start + static_cast<qsizetype>(units.size());
        if (start < 0 || end > m_text.size()) {
            return false;
        }
        const auto mismatch = std::mismatch(units.begin(), units.end(), m_text.begin() + start,
                                            [](const UnitSet& allowed, QChar unit) { return allowed.contains(unit); });
        m_effortLeft -= mismatch.first - units.begin();
        if (mismatch.first != units.end()) {
            return false;
        }
        return (isRestart(m_text, start) && isRestart(m_text, end)) || formsAgreeAround(start);
    }

    /// Whether there is a match that holds the unit at a position.
    bool formsAgreeAround(qsizetype at) {
        // A character has up to two units and its form at least one.
        const qsizetype longestMatch = 2 * m_matcher.m_query.size();
        qsizetype from = std::max(at - longestMatch, qsizetype{0});
        qsizetype to = std::min(at + longestMatch, m_text.size());
        while (!isRestart(m_text, from)) {
            --from;
        }
        const bool agree = m_matcher.formsMatch(m_text, from, to);
        m_effortLeft -= to - from;
        return agree;
    }

    /// Where many places show the sign and no match comes of it, going over the whole text once is cheaper.
    bool isGivingUp() const { return m_effortLeft < 0; }

    bool wholeMatches() const { return m_matcher.matchesByForms(m_text); }

    const TextMatcher& m_matcher;
    QStringView m_text;
    qsizetype m_effortLeft;
};

TextMatcher::TextMatcher(QStringView query, QStringView locale)
    : m_folding(caseFolding(locale)), m_query(caselessForm(query, m_folding)), m_borders(bordersOf(m_query)) {
    // The Turkish i may take its dot from what follows, so forms aren't those of single characters.
    if (m_folding == CaseFolding::ordinary) {
        m_anchor = QueryAnchor(m_query);
    }
}

TextMatcher::TextMatcher(QStringView query) : TextMatcher(query, interfaceLocale()) {}

bool TextMatcher::matches(QStringView text) const {
    return std::visit([&](const auto& sign) { return Search(*this, text).by(sign); }, m_anchor.sign());
}

bool TextMatcher::matchesByForms(QStringView text) const {
    qsizetype end = text.size();
    return formsMatch(text, 0, end);
}

bool TextMatcher::formsMatch(QStringView text, qsizetype from, qsizetype& to) const {
    if (m_query.isEmpty()) {
        return false;
    }
    FormComparison comparison(*this);
    QString form;
    ClusterWalker walker(text, from);
    while (walker.position() < to) {
        form.resize(0);
        appendFormOfCluster(walker.next(), m_folding, form);
        for (qsizetype i = 0; i < form.size(); ++i) {
            comparison.feed(form[i], i == 0);
        }
        if (comparison.endsWithQuery()) {
            to = walker.position();
            return true;
        }
    }
    to = walker.position();
    return false;
}

} // namespace quillary
