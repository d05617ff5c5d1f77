#pragma once

#include "QuillaryCore/Formats/MarkdownRun.h"
#include "QuillaryCore/Formats/MarkdownStyledText.h"

#include <QList>
#include <QStringView>

/// Reads the inline marks of a raw text of Markdown: a paragraph, a heading, a cell.
namespace quillary::MarkdownInline {

/// The text without its marks, in runs; neighbours look different. Whitespace and line ends stay as they are, and no
/// line opens a block, whatever it looks like. A text that cannot be read is one plain run, an empty one is none.
MarkdownStyledText styled(QStringView text);

/// The same with a text of its own for each run.
QList<MarkdownRun> attributed(QStringView text);

/// A quick test on the raw text: true for every text with a link, and for some without, as one in a code span.
bool containsLink(QStringView text);

} // namespace quillary::MarkdownInline
