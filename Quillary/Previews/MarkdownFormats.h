#pragma once

#include "QuillaryCore/Formats/MarkdownStyledText.h"
#include "QuillaryCore/Formats/SyntaxToken.h"

#include <QFont>
#include <QList>
#include <QPalette>
#include <QTextLayout>

/// How the texts of the Markdown preview look where they don't look plain.
namespace quillary::MarkdownFormats {

/// The font of a stretch of a text that has a font.
QFont fontOf(const MarkdownStyledText::Run& run, const QFont& font);

/// What the marks of a text say, for a text whose font has a size.
QList<QTextLayout::FormatRange> ofText(const MarkdownStyledText& styled, const QFont& font, const QPalette& palette);

/// The tokens of a code block that lie in a stretch of it, as formats of the stretch.
QList<QTextLayout::FormatRange> ofCode(const QList<SyntaxToken>& tokens, qsizetype start, qsizetype length,
                                       const QPalette& palette);

} // namespace quillary::MarkdownFormats
