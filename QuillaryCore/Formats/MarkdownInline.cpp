#include "QuillaryCore/Formats/MarkdownInline.h"

#include "QuillaryCore/Formats/MarkdownEntities.h"
#include "QuillaryCore/Formats/MarkdownInlineSource.h"

#include <md4c.h>

#include <algorithm>
#include <limits>

namespace quillary::MarkdownInline {

namespace {

constexpr unsigned readerFlags = MD_FLAG_NOHTMLBLOCKS | MD_FLAG_NOINDENTEDCODEBLOCKS | MD_FLAG_STRIKETHROUGH;

/// What md4c may cost beyond one pass: about as many steps take a tenth of a second.
constexpr qsizetype mostSteps = 50'000'000;

bool isMark(QChar unit) {
    return QStringView(u"\\*_`&<[]~:").contains(unit);
}

/// md4c reads the text between brackets again for each pair if lines end in it.
bool hasCheapBrackets(QStringView text) {
    return text.count(u'[') <= mostSteps / text.size();
}

qsizetype longestWord(QStringView text) {
    qsizetype longest = 0;
    qsizetype start = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i == text.size() || text[i].isSpace()) {
            longest = std::max(longest, i - start);
            start = i + 1;
        }
    }
    return longest;
}

/// md4c looks at all further marks for each bare URL, and reads on to the next whitespace.
bool hasCheapUrls(QStringView text, qsizetype marks) {
    const qsizetype urls = text.count(u"://");
    return urls == 0 || marks + longestWord(text) <= mostSteps / urls;
}

QString attributeText(const MD_ATTRIBUTE& attribute) {
    QString result;
    for (int i = 0; attribute.size > 0 && attribute.substr_offsets[i] < attribute.size; ++i) {
        const MD_OFFSET start = attribute.substr_offsets[i];
        const QString part = QString::fromUtf8(attribute.text + start, attribute.substr_offsets[i + 1] - start);
        result += attribute.substr_types[i] == MD_TEXT_ENTITY ? MarkdownEntities::text(part).value_or(part) : part;
    }
    return result;
}

/// Turns md4c's calls into runs.
class RunBuilder {
public:
    explicit RunBuilder(QStringView text)
        : m_source(text, hasCheapBrackets(text) ? MarkdownInlineSource::LineEnds::kept
                                                : MarkdownInlineSource::LineEnds::hidden) {}

    /// False if md4c could not read the text.
    bool read(unsigned flags) {
        const QByteArray& bytes = m_source.bytes();
        MD_PARSER parser{};
        parser.flags = flags;
        parser.enter_block = [](MD_BLOCKTYPE, void*, void*) { return 0; };
        parser.leave_block = [](MD_BLOCKTYPE, void*, void*) { return 0; };
        parser.enter_span = [](MD_SPANTYPE type, void* detail, void* builder) {
            static_cast<RunBuilder*>(builder)->changeSpan(type, detail, 1);
            return 0;
        };
        parser.leave_span = [](MD_SPANTYPE type, void* detail, void* builder) {
            static_cast<RunBuilder*>(builder)->changeSpan(type, detail, -1);
            return 0;
        };
        parser.text = [](MD_TEXTTYPE type, const MD_CHAR* text, MD_SIZE size, void* builder) {
            static_cast<RunBuilder*>(builder)->addText(type, text, size);
            return 0;
        };
        return bytes.size() <= std::numeric_limits<int>::max() &&
               md_parse(bytes.constData(), static_cast<MD_SIZE>(bytes.size()), &parser, this) == 0;
    }

    QList<MarkdownRun> take() { return std::move(m_runs); }

private:
    void changeSpan(MD_SPANTYPE type, void* detail, int change) {
        switch (type) {
        case MD_SPAN_EM:
            m_emphasis += change;
            break;
        case MD_SPAN_STRONG:
            m_strong += change;
            break;
        case MD_SPAN_DEL:
            m_strike += change;
            break;
        case MD_SPAN_CODE:
            m_code += change;
            break;
        case MD_SPAN_A:
            m_look.link =
                change > 0 ? std::optional(attributeText(static_cast<MD_SPAN_A_DETAIL*>(detail)->href)) : std::nullopt;
            break;
        default:
            // An image is its text.
            break;
        }
        m_look.emphasis = m_emphasis > 0;
        m_look.strong = m_strong > 0;
        m_look.strike = m_strike > 0;
        m_look.code = m_code > 0;
    }

    void addText(MD_TEXTTYPE type, const MD_CHAR* text, MD_SIZE size) {
        if (!m_source.holds(text)) {
            // Line ends are the only text that md4c makes up.
            add(m_source.takeLineEnd());
            return;
        }
        const QString taken = m_source.take(text, size);
        add(type == MD_TEXT_ENTITY ? MarkdownEntities::text(taken).value_or(taken) : taken);
    }

    void add(const QString& text) {
        if (text.isEmpty()) {
            return;
        }
        if (m_runs.isEmpty() || !m_runs.last().looksLike(m_look)) {
            m_runs.append(m_look);
        }
        m_runs.last().text += text;
    }

    MarkdownInlineSource m_source;
    QList<MarkdownRun> m_runs;
    MarkdownRun m_look;
    int m_emphasis = 0;
    int m_strong = 0;
    int m_strike = 0;
    int m_code = 0;
};

} // namespace

QList<MarkdownRun> attributed(QStringView text) {
    if (text.isEmpty()) {
        return {};
    }
    const qsizetype marks = std::count_if(text.begin(), text.end(), isMark);
    if (marks > 0) {
        RunBuilder builder(text);
        if (builder.read(readerFlags | (hasCheapUrls(text, marks) ? MD_FLAG_PERMISSIVEURLAUTOLINKS : 0))) {
            return builder.take();
        }
    }
    MarkdownRun plain;
    plain.text = text.toString();
    return {plain};
}

bool containsLink(QStringView text) {
    return text.contains(u"](") || text.contains(u"<http") || text.contains(u"://");
}

} // namespace quillary::MarkdownInline
