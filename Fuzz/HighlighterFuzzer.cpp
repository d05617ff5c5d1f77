#include "QuillaryCore/Formats/SyntaxHighlighter.h"
#include "QuillaryCore/Text/TextStorage.h"

#include "Tests/Core/Formats/HighlighterTexts.h"
#include "Tests/Core/Formats/PatternHighlighter.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// Colours a text by scanners and by patterns and compares the two. The first byte chooses the language, the second
/// whether the rest is UTF-8 or each byte one of the pieces that make the language's rules collide; the third and the
/// fourth choose a window.

namespace {

using namespace quillary;

constexpr std::size_t headerLength = 4;
/// ICU takes some patterns in quadratic time and overflows its stack on others.
constexpr qsizetype longestCompared = 1'500;

void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "%s\n", what);
        std::abort();
    }
}

QString textOf(SyntaxLanguage language, bool isPieces, const std::uint8_t* bytes, std::size_t size) {
    if (!isPieces) {
        return QString::fromUtf8(reinterpret_cast<const char*>(bytes), static_cast<qsizetype>(size));
    }
    const std::vector<std::u16string_view>& pieces = test::collidingPieces(language);
    QString text;
    for (std::size_t i = 0; i < size; ++i) {
        text += QStringView(pieces[bytes[i] % pieces.size()]);
    }
    return text;
}

void requireOrder(const QList<SyntaxToken>& tokens, TextRange window) {
    qsizetype end = window.location;
    for (const SyntaxToken& token : tokens) {
        require(token.range.length > 0, "an empty token");
        require(token.range.location >= end, "tokens that overlap or are out of order");
        end = token.range.end();
    }
    require(end <= window.end(), "a token behind the window");
}

void check(const QString& text, SyntaxLanguage language, TextRange window) {
    const QList<SyntaxToken> tokens = SyntaxHighlighter::tokens(text, language, window);
    requireOrder(tokens, window);
    require(tokens == SyntaxHighlighter::tokens(TextStorage(text), language, window), "a stored text differs");
    if (text.size() <= longestCompared) {
        const QList<SyntaxToken> expected = reference::tokens(text, language, window);
        require(reference::Pattern::overflowed || tokens == expected, "scanners and patterns differ");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < headerLength) {
        return 0;
    }
    const SyntaxLanguage language = allSyntaxLanguages[data[0] % allSyntaxLanguages.size()];
    const QString text = textOf(language, data[1] % 2 == 1, data + headerLength, size - headerLength);
    check(text, language, {0, text.size()});
    const qsizetype location = text.size() * data[2] / 256;
    check(text, language, {location, (text.size() - location) * (data[3] + 1) / 256});
    return 0;
}
