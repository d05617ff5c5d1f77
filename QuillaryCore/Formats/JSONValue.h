#pragma once

#include "QuillaryCore/Formats/JSONDocument.h"

#include <QExplicitlySharedDataPointer>
#include <QString>

#include <compare>
#include <iterator>

namespace quillary {

struct JSONMember;
template <typename Child>
class JSONChildren;

/// A JSON value as it was written: objects keep the order of their members and duplicate keys, numbers are text and are
/// never converted. A value is a place in the text that it was read from, which it shares; copying it costs nothing,
/// and texts are decoded when they are asked for.
class JSONValue {
public:
    enum class Kind { object, array, string, number, boolean, null };

    /// The value `null`.
    JSONValue() = default;

    /// The value at this position of a parsed text.
    JSONValue(QExplicitlySharedDataPointer<const JSONDocument> document, qsizetype position)
        : m_document(std::move(document)), m_position(position) {}

    Kind kind() const;

    /// Whether it is an object or an array.
    bool isContainer() const { return kind() <= Kind::array; }

    /// The number of members or elements; 0 for any other kind.
    qsizetype childCount() const;

    /// The decoded text of a string; empty for any other kind. Escapes of lone surrogates and ill-formed UTF-8 give
    /// U+FFFD.
    QString string() const;

    /// The text of a number exactly as it was written; empty for any other kind.
    QString number() const;

    /// The value of a boolean; false for any other kind.
    bool boolean() const;

    /// The elements of an array in order, as JSONValue; none for any other kind. They are read through this value, so
    /// that a temporary has none to give.
    JSONChildren<JSONValue> elements() const&;
    void elements() && = delete;

    /// The members of an object in order, as JSONMember; none for any other kind.
    JSONChildren<JSONMember> members() const&;
    void members() && = delete;

    /// Equal by kind and content: members compare in order, strings by their decoded texts, numbers as text, so that
    /// 1.0 is not 1.
    friend bool operator==(const JSONValue& a, const JSONValue& b);

    /// The text and structure that it lies in, null for a value that was not read from a text, and where in it.
    const QExplicitlySharedDataPointer<const JSONDocument>& document() const { return m_document; }

    qsizetype position() const { return m_position; }

private:
    template <typename Child>
    friend class JSONChildren;

    QExplicitlySharedDataPointer<const JSONDocument> m_document;
    qsizetype m_position = 0;
};

/// One member of an object.
struct JSONMember {
    QString key;
    JSONValue value;

    friend bool operator==(const JSONMember&, const JSONMember&) = default;
};

/// The children of a container, to go through once from first to last. It is valid as long as the value it came from.
template <typename Child>
class JSONChildren {
public:
    class Iterator {
    public:
        using value_type = Child;
        using difference_type = std::ptrdiff_t;

        Iterator() = default;

        Child operator*() const;

        Iterator& operator++() {
            const JSONTape& tape = (*m_document)->tape;
            m_position = tape.next(m_position + keyWords);
            return *this;
        }

        Iterator operator++(int) {
            const Iterator before = *this;
            ++*this;
            return before;
        }

        friend bool operator==(const Iterator& a, const Iterator& b) { return a.m_position == b.m_position; }

    private:
        friend class JSONChildren;
        static constexpr qsizetype keyWords = std::is_same_v<Child, JSONMember> ? 1 : 0;

        Iterator(const QExplicitlySharedDataPointer<const JSONDocument>* document, qsizetype position)
            : m_document(document), m_position(position) {}

        const QExplicitlySharedDataPointer<const JSONDocument>* m_document = nullptr;
        qsizetype m_position = 0;
    };

    Iterator begin() const { return m_begin; }

    Iterator end() const { return m_end; }

private:
    friend class JSONValue;
    JSONChildren() = default;

    explicit JSONChildren(const JSONValue& container)
        : m_begin(&container.m_document, JSONTape::firstChild(container.m_position)),
          m_end(&container.m_document, container.m_document->tape.next(container.m_position)) {}

    Iterator m_begin;
    Iterator m_end;
};

template <>
inline JSONValue JSONChildren<JSONValue>::Iterator::operator*() const {
    return {*m_document, m_position};
}

template <>
inline JSONMember JSONChildren<JSONMember>::Iterator::operator*() const {
    return {(*m_document)->string(m_position), {*m_document, m_position + 1}};
}

} // namespace quillary
