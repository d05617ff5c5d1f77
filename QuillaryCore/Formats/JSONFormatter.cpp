#include "QuillaryCore/Formats/JSONFormatter.h"

#include "QuillaryCore/Formats/JSONTextWriter.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace quillary {

namespace {

/// Goes along the tape of one value, with the containers that are open on a stack.
class DocumentWriter {
public:
    /// Without an indent everything stands on one line.
    DocumentWriter(const JSONDocument& document, std::optional<qint64> indent)
        : m_document(document), m_tape(document.tape), m_indent(indent) {}

    QString write(qsizetype position) {
        for (;;) {
            if (m_tape.isFullContainer(position)) {
                position = writeOpening(position);
                continue;
            }
            writeLeaf(position);
            ++position;
            while (!m_open.empty() && position == m_open.back().end) {
                writeClosing();
            }
            if (m_open.empty()) {
                return m_text.take();
            }
            m_text.append(u',');
            position = writeLead(position);
        }
    }

private:
    using Tag = JSONTape::Tag;

    struct Container {
        qsizetype end;
        bool isObject;
    };

    void writeLineBreak() {
        if (m_indent) {
            m_text.append(u'\n');
            m_text.appendSpaces(static_cast<qsizetype>(*m_indent) * static_cast<qsizetype>(m_open.size()));
        }
    }

    /// What stands before a child: the line break, and the key if it has one. Gives the position of its value.
    qsizetype writeLead(qsizetype position) {
        writeLineBreak();
        if (!m_open.back().isObject) {
            return position;
        }
        writeLeaf(position);
        m_text.append(u':');
        if (m_indent) {
            m_text.append(u' ');
        }
        return position + 1;
    }

    qsizetype writeOpening(qsizetype position) {
        const bool isObject = m_tape.tag(position) == Tag::object;
        m_text.append(isObject ? u'{' : u'[');
        m_open.push_back({m_tape.next(position), isObject});
        return writeLead(JSONTape::firstChild(position));
    }

    void writeClosing() {
        const bool isObject = m_open.back().isObject;
        m_open.pop_back();
        writeLineBreak();
        m_text.append(isObject ? u'}' : u']');
    }

    void writeLeaf(qsizetype position) {
        switch (m_tape.tag(position)) {
        case Tag::asciiString:
            m_text.append(u'"');
            m_text.appendASCII(m_document.stringBytes(position));
            m_text.append(u'"');
            break;
        case Tag::plainString:
            m_text.append(u'"');
            m_text.appendUTF8(m_document.stringBytes(position));
            m_text.append(u'"');
            break;
        case Tag::encodedString:
            m_text.appendQuoted(m_document.string(position));
            break;
        case Tag::number:
            m_text.appendASCII(m_document.number(position));
            break;
        case Tag::yes:
            m_text.append(u"true");
            break;
        case Tag::no:
            m_text.append(u"false");
            break;
        case Tag::null:
            m_text.append(u"null");
            break;
        case Tag::emptyObject:
            m_text.append(u"{}");
            break;
        case Tag::emptyArray:
            m_text.append(u"[]");
            break;
        case Tag::object:
        case Tag::array:
            Q_UNREACHABLE();
        }
    }

    const JSONDocument& m_document;
    const JSONTape& m_tape;
    std::optional<qint64> m_indent;
    JSONTextWriter m_text;
    std::vector<Container> m_open;
};

QString textOf(const JSONValue& value, std::optional<qint64> indent) {
    if (!value.document()) {
        return QStringLiteral("null");
    }
    return DocumentWriter(*value.document(), indent).write(value.position());
}

} // namespace

QString JSONFormatter::prettyPrinted(const JSONValue& value, qint64 indent) {
    return textOf(value, std::max<qint64>(indent, 0));
}

QString JSONFormatter::minified(const JSONValue& value) {
    return textOf(value, std::nullopt);
}

QString JSONFormatter::quoted(QStringView text) {
    JSONTextWriter writer;
    writer.appendQuoted(text);
    return writer.take();
}

} // namespace quillary
