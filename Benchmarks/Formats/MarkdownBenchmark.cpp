#include "PeerTable.h"
#include "QuillaryCore/Formats/MarkdownParser.h"

#include <QDirIterator>
#include <QFile>
#include <QStringList>

#include <md4c.h>

#include <memory>
#include <string>
#include <vector>

/// Reading the blocks of 1 MB of README files beside md4c, which builds a tree of blocks with their texts. It reads the
/// inline marks on the way; we don't.

namespace {

using namespace quillary;
using namespace Qt::StringLiterals;

constexpr qsizetype megabyte = 1'000'000;

/// The first megabyte of what Markdown and README files the machine's packages brought, in the order of their paths.
QByteArray readmes() {
    QStringList paths;
    QDirIterator files(u"/usr/share"_s, {u"README*"_s, u"*.md"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        if (!path.endsWith(u".gz"_s)) {
            paths.append(path);
        }
    }
    paths.sort();
    QByteArray text;
    while (text.size() < megabyte && !paths.isEmpty()) {
        for (const QString& path : paths) {
            QFile file(path);
            if (file.open(QIODevice::ReadOnly)) {
                text += file.read(50'000) + "\n\n";
            }
            if (text.size() >= megabyte) {
                break;
            }
        }
    }
    text.truncate(megabyte);
    return text;
}

struct Block {
    MD_BLOCKTYPE type = MD_BLOCK_DOC;
    unsigned level = 0;
    std::string text;
    std::vector<std::unique_ptr<Block>> blocks;
};

std::size_t readWithMd4c(const QByteArray& text) {
    std::vector<std::unique_ptr<Block>> open;
    open.push_back(std::make_unique<Block>());
    MD_PARSER parser{};
    parser.flags = MD_FLAG_TABLES | MD_FLAG_TASKLISTS | MD_FLAG_STRIKETHROUGH;
    parser.enter_block = [](MD_BLOCKTYPE type, void* detail, void* data) {
        auto block = std::make_unique<Block>();
        block->type = type;
        if (type == MD_BLOCK_H) {
            block->level = static_cast<MD_BLOCK_H_DETAIL*>(detail)->level;
        }
        static_cast<decltype(open)*>(data)->push_back(std::move(block));
        return 0;
    };
    parser.leave_block = [](MD_BLOCKTYPE, void*, void* data) {
        auto& levels = *static_cast<decltype(open)*>(data);
        std::unique_ptr<Block> block = std::move(levels.back());
        levels.pop_back();
        levels.back()->blocks.push_back(std::move(block));
        return 0;
    };
    parser.enter_span = [](MD_SPANTYPE, void*, void*) { return 0; };
    parser.leave_span = [](MD_SPANTYPE, void*, void*) { return 0; };
    parser.text = [](MD_TEXTTYPE, const MD_CHAR* part, MD_SIZE size, void* data) {
        static_cast<decltype(open)*>(data)->back()->text.append(part, size);
        return 0;
    };
    md_parse(text.constData(), static_cast<MD_SIZE>(text.size()), &parser, &open);
    return open.front()->blocks.size();
}

} // namespace

int main() {
    const QByteArray bytes = readmes();
    const QString text = QString::fromUtf8(bytes);
    compareWithPeer(
        "Read the blocks of 1 MB of README files", "md4c into a tree of blocks", 0.35, 1.0,
        [&] { keep(MarkdownParser::parse(text).isEmpty()); }, [&] { keep(readWithMd4c(bytes)); });
    return 0;
}
