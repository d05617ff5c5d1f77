#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace quillary::MarkdownEntities {

/// What an entity of HTML stands for, as "&amp;", "&#38;" or "&#x26;"; it must have one of these forms. None for a name
/// that the HTML standard doesn't know, U+FFFD for a number that is no Unicode scalar.
std::optional<QString> text(QStringView entity);

} // namespace quillary::MarkdownEntities
