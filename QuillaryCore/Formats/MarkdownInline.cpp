#include "QuillaryCore/Formats/MarkdownInline.h"

#include "QuillaryCore/Formats/MarkdownEntities.h"
#include "QuillaryCore/Formats/MarkdownInlineSource.h"

#include <QByteArrayView>
#include <QVarLengthArray>

#include <md4c.h>

#include <algorithm>
#include <limits>
#include <utility>

namespace quillary::MarkdownInline {

namespace {

constexpr unsigned readerFlags = MD_FLAG_NOHTMLBLOCKS | MD_FLAG_NOINDENTEDCODEBLOCKS | MD_FLAG_STRIKETHROUGH;

/// What md4c may cost beyond one pass: about as many steps take a tenth of a second.
constexpr qsizetype mostSteps = 50'000'000;

constexpr bool isMark(QChar unit) {
    switch (unit.unicode()) {
    case u'\\':
    case u'*':
    case u'_':
    case u'`':
    case u'&':
    case u'<':
    case u'[':
    case u']':
    case u'~':
    case u':':
        return true;
    default:
        return false;
    }
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

/// How much of a bare URL is its address: closing brackets that open before it are none of it, nor is punctuation at
/// its end. md4c, which has found the URL, knows only parentheses and some of the punctuation.
qsizetype addressLength(QStringView url) {
    constexpr QStringView opening = u"([{";
    constexpr QStringView closing = u")]}";
    constexpr QStringView punctuation = u"?!.,:;*_~'\">\u00BB\u2019\u201D\u2026";
    QVarLengthArray<qsizetype, 3> unopened;
    for (qsizetype i = 0; i < closing.size(); ++i) {
        unopened.append(url.count(closing[i]) - url.count(opening[i]));
    }
    qsizetype length = url.size();
    for (; length > 0; --length) {
        const QChar last = url[length - 1];
        const qsizetype bracket = closing.indexOf(last);
        if (bracket >= 0 ? unopened[bracket] <= 0 : !punctuation.contains(last)) {
            break;
        }
        if (bracket >= 0) {
            --unopened[bracket];
        }
    }
    return length;
}

/// Turns md4c's calls into runs.
class RunBuilder {
public:
    explicit RunBuilder(QStringView text)
        : m_source(text, hasCheapBrackets(text) ? MarkdownInlineSource::LineEnds::kept
                                                : MarkdownInlineSource::LineEnds::hidden) {
        m_styled.text.reserve(text.size());
    }

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

    MarkdownStyledText take() { return std::move(m_styled); }

private:
    void changeSpan(MD_SPANTYPE type, void* detail, int change) {
        if (type == MD_SPAN_A && change < 0) {
            addWholeLink();
        } else {
            addHeld();
        }
        m_opensLink = false;
        switch (type) {
        case MD_SPAN_EM:
            count(m_emphasis, change);
            break;
        case MD_SPAN_STRONG:
            count(m_strong, change);
            break;
        case MD_SPAN_DEL:
            count(m_strike, change);
            break;
        case MD_SPAN_CODE:
            count(m_code, change);
            break;
        case MD_SPAN_A:
            changeLink(static_cast<MD_SPAN_A_DETAIL*>(detail), change);
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

    /// md4c also tells of the end of a span whose beginning is part of a URL, and was not told of.
    static void count(int& spans, int change) { spans = std::max(0, spans + change); }

    /// The outermost link has its whole text: md4c sees URLs in there as links of their own.
    void changeLink(const MD_SPAN_A_DETAIL* detail, int change) {
        if (m_links == 0 && change > 0) {
            m_link = attributeText(detail->href);
            m_opensLink = true;
        }
        count(m_links, change);
        if (m_links == 0) {
            m_link.reset();
        }
    }

    void addText(MD_TEXTTYPE type, const MD_CHAR* text, MD_SIZE size) {
        addHeld();
        if (std::exchange(m_opensLink, false) && type == MD_TEXT_NORMAL) {
            // Whether this is a bare URL shows where the link ends.
            m_held = QByteArrayView(text, size);
        } else {
            addPiece(type, text, size);
        }
    }

    void addHeld() {
        if (!m_held.isEmpty()) {
            addPiece(MD_TEXT_NORMAL, m_held.data(), m_held.size());
            m_held = {};
        }
    }

    /// Adds what is held, the whole text of the link that ends; of a bare URL only the address is the link.
    void addWholeLink() {
        if (holdsBareURL()) {
            const qsizetype length = addressLength(*m_link);
            const QByteArrayView rest = m_held.last(m_link->sliced(length).toUtf8().size());
            m_link->truncate(length);
            m_held.chop(rest.size());
            addHeld();
            m_link.reset();
            m_held = rest;
        }
        addHeld();
    }

    /// Whether what is held is its own address, and neither between angle brackets nor the text before a destination.
    bool holdsBareURL() const {
        if (m_held.isEmpty() || *m_link != QString::fromUtf8(m_held)) {
            return false;
        }
        const QByteArrayView bytes = m_source.bytes();
        const QByteArrayView before = bytes.first(m_held.data() - bytes.data());
        const QByteArrayView behind = bytes.sliced(before.size() + m_held.size());
        return !before.endsWith('<') && !behind.startsWith("](");
    }

    void addPiece(MD_TEXTTYPE type, const MD_CHAR* text, qsizetype size) {
        QString& whole = m_styled.text;
        const qsizetype start = whole.size();
        if (!m_source.holds(text)) {
            // Line ends are the only text that md4c makes up.
            m_source.takeLineEnd(whole);
        } else {
            m_source.take(text, size, whole);
        }
        if (type == MD_TEXT_ENTITY) {
            if (const std::optional<QString> meant = MarkdownEntities::text(QStringView(whole).sliced(start))) {
                whole.replace(start, whole.size() - start, *meant);
            }
        }
        if (whole.size() > start) {
            addRun(static_cast<qint32>(start), static_cast<qint32>(whole.size() - start));
        }
    }

    /// Takes a stretch with the present look into the last run, or makes another one of it.
    void addRun(qint32 start, qint32 length) {
        std::vector<MarkdownStyledText::Run>& runs = m_styled.runs;
        MarkdownStyledText::Run run = m_look;
        run.start = start;
        run.length = length;
        if (m_link) {
            // Neighbours that lead to the same place are one link, which may have several looks.
            const bool goesOn = !runs.empty() && runs.back().link >= 0 && m_styled.links.last() == *m_link;
            if (!goesOn) {
                m_styled.links.append(*m_link);
            }
            run.link = static_cast<qint32>(m_styled.links.size()) - 1;
        }
        if (!runs.empty() && runs.back().looksLike(run)) {
            runs.back().length += length;
        } else {
            runs.push_back(run);
        }
    }

    MarkdownInlineSource m_source;
    MarkdownStyledText m_styled;
    /// How the next text looks, and where it leads.
    MarkdownStyledText::Run m_look;
    std::optional<QString> m_link;
    /// Whether a link has just begun, and its first text, until more is known of it.
    bool m_opensLink = false;
    QByteArrayView m_held;
    int m_emphasis = 0;
    int m_strong = 0;
    int m_strike = 0;
    int m_code = 0;
    int m_links = 0;
};

} // namespace

MarkdownStyledText styled(QStringView text) {
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
    MarkdownStyledText plain;
    plain.text = text.toString();
    plain.runs.emplace_back().length = static_cast<qint32>(text.size());
    return plain;
}

QList<MarkdownRun> attributed(QStringView text) {
    const MarkdownStyledText whole = styled(text);
    QList<MarkdownRun> runs;
    runs.reserve(static_cast<qsizetype>(whole.runs.size()));
    for (const MarkdownStyledText::Run& run : whole.runs) {
        runs.append({whole.text.sliced(run.start, run.length), run.emphasis, run.strong, run.strike, run.code,
                     run.link >= 0 ? std::optional(whole.links[run.link]) : std::nullopt});
    }
    return runs;
}

bool containsLink(QStringView text) {
    return text.contains(u"](") || text.contains(u"<http") || text.contains(u"://");
}

} // namespace quillary::MarkdownInline
