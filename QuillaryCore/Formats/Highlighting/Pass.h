#pragma once

#include "QuillaryCore/Formats/SyntaxToken.h"

#include <QList>

#include <memory>
#include <vector>

namespace quillary::highlighting {

/// The state of one run over a text: which units are owned, and by which tokens. Bits stand for units, so that asking
/// for a stretch and taking it cost a word's operation for each 64 units.
class Pass {
public:
    explicit Pass(qsizetype length);

    /// Gives a stretch, at least one unit long, to a token, if no unit of it is owned.
    void add(SyntaxTokenKind kind, qsizetype begin, qsizetype end);

    /// Takes a stretch away from all that come later, without a token.
    void occupy(TextRange range);

    /// The tokens by location, moved by `offset`.
    QList<SyntaxToken> tokens(qsizetype offset) const;

private:
    /// A token in eight bytes: where it begins, its length and kind.
    struct PackedToken {
        quint32 begin;
        quint32 lengthAndKind;
    };

    std::vector<quint64> m_occupied;
    std::vector<quint64> m_starts;
    /// Room for as many tokens as there are units; memory that no token needs is never touched.
    std::unique_ptr<PackedToken[]> m_tokens;
    std::size_t m_count = 0;
};

} // namespace quillary::highlighting
