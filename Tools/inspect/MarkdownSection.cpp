#include "QuillaryCore/Formats/MarkdownInline.h"
#include "QuillaryCore/Formats/MarkdownLinks.h"
#include "QuillaryCore/Formats/MarkdownList.h"
#include "QuillaryCore/Formats/MarkdownParser.h"
#include "QuillaryCore/Formats/MarkdownTable.h"
#include "Tools/inspect/Sections.h"

#include <deque>

namespace quillary::inspect {

namespace {

using namespace Qt::StringLiterals;

/// Writes a tree of any depth: what is open stands in a list, not on the stack.
class BlocksWriter {
public:
    explicit BlocksWriter(AnswerWriter& answer) : m_answer(answer) {}

    void write(const MarkdownBlocks& blocks) {
        open(u"blocks", blocks);
        while (!m_open.empty()) {
            Level& level = m_open.back();
            if (level.place == level.blocks.end() && level.itemPlace == level.items.end()) {
                m_open.pop_back();
                m_answer.endArray();
                if (!m_open.empty()) {
                    m_answer.endObject();
                }
            } else if (level.place != level.blocks.end()) {
                const MarkdownBlock block = *level.place;
                ++level.place;
                writeBlock(block);
            } else {
                const MarkdownListItem item = *level.itemPlace;
                ++level.itemPlace;
                writeItem(item);
            }
        }
    }

private:
    /// What is written of an open array: of blocks or of items, the other being empty.
    struct Level {
        Level(MarkdownBlocks theBlocks, MarkdownSequence<MarkdownListItem> theItems)
            : blocks(std::move(theBlocks)), items(std::move(theItems)) {}

        MarkdownBlocks blocks;
        MarkdownSequence<MarkdownListItem> items;
        MarkdownBlocks::Iterator place = blocks.begin();
        MarkdownSequence<MarkdownListItem>::Iterator itemPlace = items.begin();
    };

    void open(QStringView key, MarkdownBlocks blocks, MarkdownSequence<MarkdownListItem> items = {}) {
        m_answer.key(key);
        m_answer.beginArray();
        m_open.emplace_back(std::move(blocks), std::move(items));
    }

    void writeItem(const MarkdownListItem& item) {
        m_answer.beginObject();
        if (const std::optional<bool> checked = item.checked()) {
            m_answer.member(u"checked", *checked);
        } else {
            m_answer.nullMember(u"checked");
        }
        open(u"blocks", item.blocks());
    }

    void writeBlock(const MarkdownBlock& block) {
        m_answer.beginObject();
        switch (block.kind()) {
        case MarkdownBlock::Kind::heading:
            m_answer.member(u"t", u"heading"_s);
            m_answer.member(u"level", block.level());
            m_answer.member(u"text", block.text());
            break;
        case MarkdownBlock::Kind::paragraph:
            m_answer.member(u"t", u"paragraph"_s);
            m_answer.member(u"text", block.text());
            break;
        case MarkdownBlock::Kind::code:
            m_answer.member(u"t", u"code"_s);
            if (const std::optional<QStringView> language = block.language()) {
                m_answer.member(u"language", *language);
            } else {
                m_answer.nullMember(u"language");
            }
            m_answer.member(u"text", block.text());
            break;
        case MarkdownBlock::Kind::quote:
            m_answer.member(u"t", u"quote"_s);
            open(u"blocks", block.blocks());
            return;
        case MarkdownBlock::Kind::list:
            m_answer.member(u"t", u"list"_s);
            m_answer.member(u"ordered", block.list().isOrdered());
            m_answer.member(u"start", block.list().start());
            open(u"items", {}, block.list().items());
            return;
        case MarkdownBlock::Kind::table:
            m_answer.member(u"t", u"table"_s);
            writeTable(block.table());
            break;
        case MarkdownBlock::Kind::rule:
            m_answer.member(u"t", u"rule"_s);
            break;
        }
        m_answer.endObject();
    }

    void writeTable(const MarkdownTable& table) {
        m_answer.key(u"header");
        m_answer.beginArray();
        for (qsizetype column = 0; column < table.columnCount(); ++column) {
            m_answer.text(table.header(column));
        }
        m_answer.endArray();
        m_answer.key(u"alignments");
        m_answer.beginArray();
        for (qsizetype column = 0; column < table.columnCount(); ++column) {
            m_answer.text(alignmentName(table.alignment(column)));
        }
        m_answer.endArray();
        m_answer.key(u"rows");
        m_answer.beginArray();
        for (qsizetype row = 0; row < table.rowCount(); ++row) {
            m_answer.beginArray();
            for (qsizetype column = 0; column < table.columnCount(); ++column) {
                m_answer.text(table.cell(row, column));
            }
            m_answer.endArray();
        }
        m_answer.endArray();
    }

    static QString alignmentName(MarkdownTable::Alignment alignment) {
        switch (alignment) {
        case MarkdownTable::Alignment::leading:
            return u"leading"_s;
        case MarkdownTable::Alignment::center:
            return u"center"_s;
        case MarkdownTable::Alignment::trailing:
            return u"trailing"_s;
        }
        return QString();
    }

    AnswerWriter& m_answer;
    /// A deque, since the places in a level refer to the level itself.
    std::deque<Level> m_open;
};

Prepared markdownParse(Arguments& arguments) {
    const QString text = arguments.text(u"text"_s);
    return prepared([=] { return MarkdownParser::parse(text); },
                    [](AnswerWriter& answer, const MarkdownBlocks& blocks) { BlocksWriter(answer).write(blocks); });
}

Prepared markdownSlug(Arguments& arguments) {
    const QString text = arguments.text(u"text"_s);
    return prepared([=] { return MarkdownLinks::slug(text); },
                    [](AnswerWriter& answer, const QString& result) { answer.member(u"slug", result); });
}

Prepared markdownUniqueSlugs(Arguments& arguments) {
    const QStringList texts = arguments.texts(u"texts"_s);
    return prepared([=] { return MarkdownLinks::uniqueSlugs(texts); },
                    [](AnswerWriter& answer, const QStringList& result) { answer.textsMember(u"slugs", result); });
}

void writeTarget(AnswerWriter& answer, const MarkdownLinks::Target& target) {
    answer.key(u"target");
    answer.beginObject();
    if (const auto* anchor = std::get_if<MarkdownLinks::Anchor>(&target)) {
        answer.member(u"anchor", anchor->slug);
    } else if (const auto* external = std::get_if<MarkdownLinks::External>(&target)) {
        answer.member(u"external", external->url);
    } else if (const auto* file = std::get_if<MarkdownLinks::File>(&target)) {
        answer.member(u"file", file->path);
        if (file->anchor) {
            answer.member(u"anchor", *file->anchor);
        } else {
            answer.nullMember(u"anchor");
        }
    }
    answer.endObject();
}

Prepared markdownTarget(Arguments& arguments) {
    const QString url = arguments.text(u"url"_s);
    return prepared([=] { return MarkdownLinks::target(url); }, writeTarget);
}

Prepared markdownContainsLink(Arguments& arguments) {
    const QString text = arguments.text(u"text"_s);
    return prepared([=] { return MarkdownInline::containsLink(text); },
                    [](AnswerWriter& answer, bool result) { answer.member(u"containsLink", result); });
}

Prepared markdownInline(Arguments& arguments) {
    const QString text = arguments.text(u"text"_s);
    return prepared([=] { return MarkdownInline::attributed(text); },
                    [](AnswerWriter& answer, const QList<MarkdownRun>& runs) {
                        answer.key(u"runs");
                        answer.beginArray();
                        for (const MarkdownRun& run : runs) {
                            answer.beginObject();
                            answer.member(u"text", run.text);
                            answer.member(u"emphasis", run.emphasis);
                            answer.member(u"strong", run.strong);
                            answer.member(u"strike", run.strike);
                            answer.member(u"code", run.code);
                            if (run.link) {
                                answer.member(u"link", *run.link);
                            } else {
                                answer.nullMember(u"link");
                            }
                            answer.endObject();
                        }
                        answer.endArray();
                    });
}

} // namespace

void addMarkdownOperations(OperationTable& table) {
    table.insert(u"markdown.parse"_s, markdownParse);
    table.insert(u"markdown.slug"_s, markdownSlug);
    table.insert(u"markdown.uniqueSlugs"_s, markdownUniqueSlugs);
    table.insert(u"markdown.target"_s, markdownTarget);
    table.insert(u"markdown.containsLink"_s, markdownContainsLink);
    table.insert(u"markdown.inline"_s, markdownInline);
}

} // namespace quillary::inspect
