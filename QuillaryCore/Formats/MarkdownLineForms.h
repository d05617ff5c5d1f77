#pragma once

#include "QuillaryCore/Formats/MarkdownLine.h"

#include <QStringView>

#include <optional>

/// What a single line can be, each question for itself.
namespace quillary::MarkdownLineForms {

/// Whether the line's first character can begin anything but text. Nothing below holds for a line of which this is
/// false, but for the lines that only go on with something: the closing fence and the underline.
inline bool mayOpenBlock(const MarkdownLine& line) {
    if (line.indent() == line.text().size()) {
        return false;
    }
    switch (line.text()[line.indent()].unicode()) {
    case u'`':
    case u'~':
    case u'#':
    case u'>':
    case u'-':
    case u'*':
    case u'_':
    case u'+':
        return true;
    default:
        return line.text()[line.indent()] >= u'0' && line.text()[line.indent()] <= u'9';
    }
}

/// The opening line of a fenced code block.
struct Fence {
    char16_t marker = u'`';
    qsizetype length = 0;
    qsizetype indent = 0;
    /// What follows the run of markers, without surrounding whitespace.
    QStringView info;
};

std::optional<Fence> fence(const MarkdownLine& line);

/// Whether the line closes the block that the fence opened.
bool closesFence(const MarkdownLine& line, char16_t marker, qsizetype length);

/// The first word of a fence's info, if there is one.
std::optional<QStringView> language(QStringView info);

struct Heading {
    int level = 1;
    QStringView text;
};

/// A heading of one line.
std::optional<Heading> atxHeading(const MarkdownLine& line);

/// Remembers where the search for a thematic break gave up, so that the levels of a line such as "- - - - x", which
/// all ask, read it once together. It serves one line.
struct ThematicMemo {
    char16_t marker = u'\0';
    const char16_t* stop = nullptr;
};

bool isThematicBreak(const MarkdownLine& line, ThematicMemo& memo);

bool isQuoteLine(const MarkdownLine& line);

/// A quote line without its leading spaces, its mark and one space.
MarkdownLine quoteContent(const MarkdownLine& line);

/// The marker of a list item.
struct ListMarker {
    qsizetype indent = 0;
    bool ordered = false;
    int number = 0;
    /// The column at which the item's content starts.
    qsizetype contentOffset = 0;
    MarkdownLine content;
};

std::optional<ListMarker> listMarker(const MarkdownLine& line);

/// The level of the heading that the line underlines; 0 if it is no underline.
int setextLevel(const MarkdownLine& line);

/// What is behind the box of a task item's first line, and whether the box is checked.
struct Task {
    bool checked = false;
    MarkdownLine rest;
};

std::optional<Task> task(const MarkdownLine& line);

} // namespace quillary::MarkdownLineForms
