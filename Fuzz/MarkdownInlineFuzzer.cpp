#include "QuillaryCore/Formats/MarkdownInline.h"

#include "Fuzz/FuzzText.h"
#include "QuillaryCore/Formats/MarkdownLinks.h"

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

void checkRuns(const QString& text) {
    const QList<MarkdownRun> runs = MarkdownInline::attributed(text);
    QString plain;
    bool hasLink = false;
    for (qsizetype i = 0; i < runs.size(); ++i) {
        fuzz::require(!runs[i].text.isEmpty(), "a run has a text");
        fuzz::require(i == 0 || !runs[i].looksLike(runs[i - 1]), "neighbours look different");
        plain += runs[i].text;
        hasLink |= runs[i].link.has_value();
    }
    // Line ends are no marks; only what leads somewhere can swallow one.
    if (!text.contains(u"](")) {
        const auto count = [](const QString& in) { return in.count(u'\n') + in.count(u'\r'); };
        fuzz::require(text.contains(u'&') || text.contains(u'`') || count(plain) == count(text), "line ends stay");
        fuzz::require(!hasLink || text.contains(u':') || text.contains(u'@'), "links come from somewhere");
    }
}

/// Where no link is written out all links are bare URLs: they are their addresses, and no mark ends one.
void checkBareURLs(QString text) {
    text.remove(u'<');
    text.replace(u"]("_s, u"] ("_s);
    for (const MarkdownRun& run : MarkdownInline::attributed(text)) {
        if (run.link) {
            fuzz::require(run.text.size() == run.link->size(), "a bare URL is its address");
            fuzz::require(!u"?!.,:;*_~'\">\u2026"_s.contains(run.link->back()), "a bare URL ends before punctuation");
            fuzz::require(!run.link->endsWith(u']') || run.link->contains(u'['), "a bare URL ends before a bracket");
        }
    }
}

/// A text without marks comes out as itself, also where a mark behind it has it read.
void checkPlainText(QString text) {
    for (const QChar mark : u"\\*_`&<[]~:"_s) {
        text.remove(mark);
    }
    QString plain;
    for (const MarkdownRun& run : MarkdownInline::attributed(QString(text + u"\n&amp;"_s))) {
        plain += run.text;
    }
    fuzz::require(plain == QString(text + u"\n&"_s), "a text without marks is itself");
}

/// A text that closes no bracket is the text of a link as a whole, also where it holds URLs.
void checkLinkText(QString text) {
    for (const QChar mark : u"\\`<[]"_s) {
        text.remove(mark);
    }
    if (text.endsWith(u"://")) {
        // md4c sees no bracket there.
        return;
    }
    for (const MarkdownRun& run : MarkdownInline::attributed(QString(u'[' + text + u"](a)"_s))) {
        fuzz::require(run.link == u"a"_s, "a link has its whole text");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = fuzz::textFrom(data, size);
    checkRuns(text);
    checkBareURLs(text);
    checkPlainText(text);
    checkLinkText(text);
    const QString slug = MarkdownLinks::slug(text);
    fuzz::require(!slug.contains(u' ') && !slug.contains(u'#'), "a slug has no spaces");
    fuzz::require(MarkdownLinks::uniqueSlugs({text, text}).size() == 2, "each text has a slug");
    const MarkdownLinks::Target target = MarkdownLinks::target(text);
    fuzz::require(text.startsWith(u'#') == std::holds_alternative<MarkdownLinks::Anchor>(target),
                  "a fragment is an anchor");
    return 0;
}
