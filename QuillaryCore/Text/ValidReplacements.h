#pragma once

#include "QuillaryCore/Text/TextReplacement.h"

#include <span>
#include <vector>

namespace quillary {

/// Replacements as a text takes them from its users: without those that change nothing, and with U+FFFD for each lone
/// surrogate. The texts that it was made from must outlive it.
class ValidReplacements {
public:
    ValidReplacements(TextRange range, QStringView text);
    explicit ValidReplacements(std::span<const TextReplacement> replacements);

    ValidReplacements(const ValidReplacements&) = delete;
    ValidReplacements& operator=(const ValidReplacements&) = delete;

    std::span<const TextReplacementView> views() const { return m_views; }

private:
    void add(TextRange range, QStringView text);

    std::vector<TextReplacementView> m_views;
    std::vector<QString> m_repaired;
};

} // namespace quillary
