#pragma once

#include "QuillaryCore/Formats/MarkdownBlock.h"
#include "QuillaryCore/Formats/MarkdownList.h"
#include "QuillaryCore/Formats/MarkdownTable.h"

#include <QString>
#include <QStringList>

/// Tells a tree of Markdown blocks in one line, in the form of MarkdownReference. For shallow trees.
namespace quillary::MarkdownTelling {

using namespace Qt::StringLiterals;

inline QString quoted(QStringView text) {
    return u"\u2039"_s + text.toString().replace(u'\n', u"\u21B5"_s) + u"\u203A"_s;
}

inline QString tell(const MarkdownBlocks& blocks);

inline QString tell(const MarkdownTable& table) {
    QString result = u"table("_s;
    for (qsizetype c = 0; c < table.columnCount(); ++c) {
        result += QStringView(u"lct")[static_cast<qsizetype>(table.alignment(c))];
    }
    for (qsizetype r = -1; r < table.rowCount(); ++r) {
        result += u';';
        for (qsizetype c = 0; c < table.columnCount(); ++c) {
            result += quoted(r < 0 ? table.header(c) : table.cell(r, c));
        }
    }
    return result + u')';
}

inline QString tell(const MarkdownList& list) {
    QString result = (list.isOrdered() ? u"ordered("_s : u"bullets("_s) + QString::number(list.start());
    for (const MarkdownListItem& item : list.items()) {
        const std::optional<bool> checked = item.checked();
        result += u'[' + QString(!checked ? u' ' : (*checked ? u'+' : u'-')) + tell(item.blocks()) + u']';
    }
    return result + u')';
}

inline QString tell(const MarkdownBlock& block) {
    switch (block.kind()) {
    case MarkdownBlock::Kind::heading:
        return u'h' + QString::number(block.level()) + u'(' + quoted(block.text()) + u')';
    case MarkdownBlock::Kind::paragraph:
        return u"p("_s + quoted(block.text()) + u')';
    case MarkdownBlock::Kind::code:
        return u"code("_s + (block.language() ? quoted(*block.language()) : u"-"_s) + quoted(block.text()) + u')';
    case MarkdownBlock::Kind::quote:
        return u"quote("_s + tell(block.blocks()) + u')';
    case MarkdownBlock::Kind::list:
        return tell(block.list());
    case MarkdownBlock::Kind::table:
        return tell(block.table());
    case MarkdownBlock::Kind::rule:
        return u"rule"_s;
    }
    return QString();
}

inline QString tell(const MarkdownBlocks& blocks) {
    QStringList told;
    for (const MarkdownBlock& block : blocks) {
        told.append(tell(block));
    }
    return told.join(u' ');
}

} // namespace quillary::MarkdownTelling
