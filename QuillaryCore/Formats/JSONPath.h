#pragma once

#include <QExplicitlySharedDataPointer>
#include <QHash>
#include <QSharedData>
#include <QString>
#include <QVarLengthArray>

namespace quillary {

/// Where in a JSON text a value lies: "$" for the whole, then ".key", "[\"any key\"]" or "[index]" for each step down.
///
/// Paths that were made from one that is shared hold it by reference, so that a very long key above many values is
/// kept once. Comparing and hashing such paths looks at what differs, not at what they share.
class JSONPath {
    struct Stem;
    using StemPointer = QExplicitlySharedDataPointer<Stem>;

public:
    /// A path that many others begin with.
    class Shared {
        friend class JSONPath;

        explicit Shared(StemPointer stem) : m_stem(std::move(stem)) {}

        StemPointer m_stem;
    };

    /// The path of the whole text.
    JSONPath();

    explicit JSONPath(const Shared& path) : m_stem(path.m_stem) {}

    // Copied where it could be moved: in Qt 6.4 an array that something is moved into forgets the memory it had.
    JSONPath(const JSONPath&) = default;
    JSONPath& operator=(const JSONPath&) = default;
    ~JSONPath() = default;

    /// The path that `text` returns as this text. Any text will do.
    static JSONPath fromText(QStringView text);

    /// One step down to a member or an element.
    JSONPath appending(QStringView key) const;
    JSONPath appending(qint64 index) const;

    /// One step down to the member at this position of an object that has an earlier member with the same key. The
    /// mark "#position" behind the key keeps paths unique within a tree.
    JSONPath appendingDuplicate(QStringView key, qint64 position) const;

    /// The same path for many to begin with.
    Shared shared() const;

    QString text() const;

    /// The text for use elsewhere: without the mark of a duplicate at its end.
    QString textToCopy() const;

    /// Whether a key needs no brackets: an ASCII letter, "_" or "$", then any number of these and of digits.
    static bool isIdentifier(QStringView key);

    /// Equal by text, however the paths were made.
    friend bool operator==(const JSONPath& a, const JSONPath& b);

    friend size_t qHash(const JSONPath& path, size_t seed = 0) { return qHash(path.hash(), seed); }

private:
    /// Most steps are as short as this.
    static constexpr qsizetype usualStep = 12;

    using Units = QVarLengthArray<char16_t, usualStep>;

    /// A beginning that several paths share. It doesn't change once it is made.
    struct Stem : QSharedData {
        Stem(StemPointer parentStem, const Units& units, qsizetype wholeLength, quint64 wholeHash)
            : parent(std::move(parentStem)), tail(units), length(wholeLength), hash(wholeHash) {}

        ~Stem();

        StemPointer parent;
        Units tail;
        /// Of the whole path.
        qsizetype length;
        quint64 hash;
    };

    static QStringView view(const Units& units) { return {units.constData(), units.size()}; }

    static quint64 hashed(quint64 hash, QStringView text);

    void append(QStringView text) { m_tail.append(text.utf16(), text.size()); }

    void appendNumber(qint64 number);

    qsizetype length() const { return (m_stem ? m_stem->length : 0) + m_tail.size(); }

    quint64 hash() const { return hashed(m_stem ? m_stem->hash : 0, view(m_tail)); }

    /// What comes before the tail.
    StemPointer m_stem;
    Units m_tail;
};

} // namespace quillary
