#pragma once

#include "QuillaryCore/Text/TextRange.h"

#include <vector>

namespace quillary {

class TextPages;

/// Finds the grapheme clusters of a paged text. It looks no further back than the nearest place where a cluster surely
/// begins; in texts that have none for thousands of units - flags without end, a letter under a heap of accents - it
/// remembers clusters that it found, so that going through them in either direction takes linear time.
class ClusterIndex {
public:
    /// The cluster that holds the unit at `offset`, which lies before the end.
    TextRange clusterAt(const TextPages& pages, qsizetype offset);

    /// To be called when the text changed at `offset` or behind it.
    void forgetFrom(qsizetype offset);

private:
    static qsizetype restartBefore(const TextPages& pages, qsizetype offset, qsizetype floor);
    TextRange search(const TextPages& pages, qsizetype start, qsizetype offset);
    const TextRange* lastKnownAt(qsizetype offset) const;
    void remember(TextRange cluster);

    std::vector<TextRange> m_known; // ascending
};

} // namespace quillary
