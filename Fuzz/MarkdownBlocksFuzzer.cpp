#include "Fuzz/FuzzText.h"
#include "QuillaryCore/Formats/MarkdownParser.h"

#include "Tests/Core/Formats/MarkdownReference.h"
#include "Tests/Core/Formats/MarkdownTelling.h"

using namespace quillary;

namespace {

/// The rules as they read take time and stack that grow with the depth.
constexpr qsizetype longestForTheRules = 600;

/// Both as bytes, so that the fuzzer shows where they differ.
void compare(const QString& text) {
    const QString told = MarkdownTelling::tell(MarkdownParser::parse(text));
    const QString expected = MarkdownReference::parse(text);
    if (told != expected) {
        std::fprintf(stderr, "told     %s\nexpected %s\n", told.toUtf8().constData(), expected.toUtf8().constData());
    }
    fuzz::require(told == expected, "the rules give the same blocks");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = fuzz::textFrom(data, size);
    const MarkdownBlocks blocks = MarkdownParser::parse(text);
    fuzz::require(blocks == MarkdownParser::parse(text), "the same text gives equal blocks");
    if (text.size() <= longestForTheRules) {
        compare(text);
    }
    return 0;
}
