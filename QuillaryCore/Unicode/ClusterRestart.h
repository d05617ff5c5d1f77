#pragma once

namespace quillary {

/// Whether a grapheme cluster ends between two neighbouring code points whatever stands before them. False where there
/// is no boundary and where it depends on what stands before, as in a run of regional indicators.
///
/// From such a place on, a text divides into clusters as if it began there, so nobody has to look further back. By the
/// rules of Unicode Standard Annex 29, where in doubt on the side of false.
bool isClusterRestart(char32_t before, char32_t after);

} // namespace quillary
