#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace quillary {

/// The length of a longest common subsequence of two lists by the plain table of all pairs.
template <typename List>
std::size_t longestCommonSubsequence(const List& from, const List& to) {
    std::vector<std::size_t> lengths(to.size() + 1);
    for (std::size_t i = 0; i < from.size(); ++i) {
        std::size_t diagonal = 0;
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t above = lengths[j + 1];
            lengths[j + 1] = from[i] == to[j] ? diagonal + 1 : std::max(above, lengths[j]);
            diagonal = above;
        }
    }
    return lengths.back();
}

} // namespace quillary
