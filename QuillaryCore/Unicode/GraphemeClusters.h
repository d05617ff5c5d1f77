#pragma once

#include <QStringView>

#include <limits>
#include <memory>

namespace quillary {

/// The user-perceived characters of a text: extended grapheme clusters as Unicode Standard Annex 29 defines them, of
/// which CR LF is one. Offsets are UTF-16 units; 0 and the length are boundaries of every text.

/// The nearest boundary after `offset`; the length if there is none.
///
/// The answer takes the text before `offset` into account as far as it matters, which in a run of regional indicators
/// is all of the run. Who walks over a whole text uses ClusterWalker, which is linear whatever the text.
qsizetype nextClusterBoundary(QStringView text, qsizetype offset);

/// The nearest boundary before `offset`; 0 if there is none.
qsizetype previousClusterBoundary(QStringView text, qsizetype offset);

/// Whether no cluster has `offset` in its inside.
bool isClusterBoundary(QStringView text, qsizetype offset);

/// The number of clusters. Counting ends as soon as there are more than `upTo`, and gives `upTo` + 1 then.
qsizetype clusterCount(QStringView text, qsizetype upTo = std::numeric_limits<qsizetype>::max());

/// The first `clusters` clusters, or the whole text if it has fewer. What follows them isn't looked at.
QStringView clusterPrefix(QStringView text, qsizetype clusters);

/// Goes over a text from boundary to boundary in linear time. The text must outlive it.
class ClusterWalker {
public:
    /// `start` must be a boundary.
    explicit ClusterWalker(QStringView text, qsizetype start = 0);
    ~ClusterWalker();

    ClusterWalker(const ClusterWalker&) = delete;
    ClusterWalker& operator=(const ClusterWalker&) = delete;

    bool atEnd() const { return m_position >= m_text.size(); }

    qsizetype position() const { return m_position; }

    /// The cluster from here on; empty only at the end. Afterwards the position is behind it.
    QStringView next();

private:
    class Boundaries;

    QStringView m_text;
    qsizetype m_position;
    std::unique_ptr<Boundaries> m_boundaries;
};

} // namespace quillary
