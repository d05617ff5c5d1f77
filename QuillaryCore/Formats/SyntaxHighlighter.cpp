#include "QuillaryCore/Formats/SyntaxHighlighter.h"

#include "QuillaryCore/Formats/Highlighting/OpenElementSearch.h"
#include "QuillaryCore/Formats/Highlighting/TextColouring.h"
#include "QuillaryCore/Text/TextStorage.h"

namespace quillary {

namespace {

bool isAccepted(TextRange window, qsizetype length) {
    return window.location >= 0 && window.length >= 1 && window.length <= SyntaxHighlighter::maxLength &&
           window.length <= length - window.location;
}

} // namespace

QList<SyntaxToken> SyntaxHighlighter::tokens(QStringView text, SyntaxLanguage language,
                                             std::optional<TextRange> range) {
    const TextRange window = range.value_or(TextRange{0, text.size()});
    if (!isAccepted(window, text.size())) {
        return {};
    }
    highlighting::OpenElementSearch search;
    if (highlighting::hasEmbeddedElements(language)) {
        search.lookAt(text.first(window.location));
    }
    return highlighting::tokensOfText(text.sliced(window.location, window.length), language, search.result(),
                                      window.location);
}

QList<SyntaxToken> SyntaxHighlighter::tokens(const TextStorage& text, SyntaxLanguage language, TextRange range) {
    if (!isAccepted(range, text.length())) {
        return {};
    }
    highlighting::OpenElementSearch search;
    if (highlighting::hasEmbeddedElements(language)) {
        constexpr qsizetype pieceLength = 1 << 16;
        for (qsizetype end = range.location; end > 0 && !search.isDecided();) {
            const qsizetype begin = std::max(end - pieceLength, qsizetype(0));
            search.lookAt(text.text({begin, end - begin}));
            end = begin;
        }
    }
    return highlighting::tokensOfText(text.text(range), language, search.result(), range.location);
}

} // namespace quillary
