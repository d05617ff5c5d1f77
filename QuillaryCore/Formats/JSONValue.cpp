#include "QuillaryCore/Formats/JSONValue.h"

namespace quillary {

namespace {

using Tag = JSONTape::Tag;

bool isString(Tag tag) {
    return tag == Tag::asciiString || tag == Tag::plainString || tag == Tag::encodedString;
}

bool sameStrings(const JSONDocument& a, qsizetype aPosition, const JSONDocument& b, qsizetype bPosition) {
    if (a.stringBytes(aPosition) == b.stringBytes(bPosition)) {
        return true;
    }
    const bool isWrittenOut =
        a.tape.tag(aPosition) != Tag::encodedString && b.tape.tag(bPosition) != Tag::encodedString;
    return !isWrittenOut && a.string(aPosition) == b.string(bPosition);
}

bool sameWords(const JSONDocument& a, qsizetype aPosition, const JSONDocument& b, qsizetype bPosition) {
    const Tag tag = a.tape.tag(aPosition);
    if (isString(tag)) {
        return isString(b.tape.tag(bPosition)) && sameStrings(a, aPosition, b, bPosition);
    }
    if (tag != b.tape.tag(bPosition)) {
        return false;
    }
    switch (tag) {
    case Tag::number:
        return a.number(aPosition) == b.number(bPosition);
    case Tag::object:
    case Tag::array:
        return a.tape.payload(aPosition) == b.tape.payload(bPosition);
    default:
        return true;
    }
}

} // namespace

JSONValue::Kind JSONValue::kind() const {
    if (!m_document) {
        return Kind::null;
    }
    switch (m_document->tape.tag(m_position)) {
    case Tag::object:
    case Tag::emptyObject:
        return Kind::object;
    case Tag::array:
    case Tag::emptyArray:
        return Kind::array;
    case Tag::asciiString:
    case Tag::plainString:
    case Tag::encodedString:
        return Kind::string;
    case Tag::number:
        return Kind::number;
    case Tag::yes:
    case Tag::no:
        return Kind::boolean;
    case Tag::null:
        break;
    }
    return Kind::null;
}

qsizetype JSONValue::childCount() const {
    return m_document && m_document->tape.isFullContainer(m_position) ? m_document->tape.payload(m_position) : 0;
}

QString JSONValue::string() const {
    return kind() == Kind::string ? m_document->string(m_position) : QString();
}

QString JSONValue::number() const {
    return kind() == Kind::number ? QString::fromLatin1(m_document->number(m_position)) : QString();
}

bool JSONValue::boolean() const {
    return m_document && m_document->tape.tag(m_position) == Tag::yes;
}

JSONChildren<JSONValue> JSONValue::elements() const& {
    if (kind() != Kind::array || childCount() == 0) {
        return {};
    }
    return JSONChildren<JSONValue>(*this);
}

JSONChildren<JSONMember> JSONValue::members() const& {
    if (kind() != Kind::object || childCount() == 0) {
        return {};
    }
    return JSONChildren<JSONMember>(*this);
}

bool operator==(const JSONValue& a, const JSONValue& b) {
    if (!a.m_document || !b.m_document) {
        return a.kind() == b.kind() && a.kind() == JSONValue::Kind::null;
    }
    // Equal values have equally many words in the same order, so that both tapes are walked from word to word.
    const JSONTape& aTape = a.m_document->tape;
    const JSONTape& bTape = b.m_document->tape;
    const qsizetype aEnd = aTape.next(a.m_position);
    if (aEnd - a.m_position != bTape.next(b.m_position) - b.m_position) {
        return false;
    }
    for (qsizetype i = a.m_position, j = b.m_position; i < aEnd;) {
        if (!sameWords(*a.m_document, i, *b.m_document, j)) {
            return false;
        }
        const qsizetype step = aTape.isFullContainer(i) ? 2 : 1;
        i += step;
        j += step;
    }
    return true;
}

} // namespace quillary
