#pragma once

#include "QuillaryCore/Formats/SyntaxLanguage.h"

#include <QString>

#include <random>
#include <string_view>
#include <vector>

namespace quillary::test {

/// The pieces from which random texts of a language are put together, so that its rules collide.
const std::vector<std::u16string_view>& collidingPieces(SyntaxLanguage language);

/// A random text of so many pieces.
QString collidingText(SyntaxLanguage language, int pieces, std::mt19937& random);

} // namespace quillary::test
