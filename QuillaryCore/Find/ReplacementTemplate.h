#pragma once

#include "QuillaryCore/Find/SearchMatch.h"

#include <QString>

namespace quillary {

/// A template with the texts of a match in the place of `$0`, `$1` and so on. A number has no more digits than the
/// number of groups; what follows is text, as is a `$` without a digit. A group that doesn't exist or took no part is
/// empty. A backslash takes the next character literally; the last one of a template is left out.
QString expandedTemplate(QStringView replacementTemplate, const SearchMatch& match, QStringView text);

} // namespace quillary
