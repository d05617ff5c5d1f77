#pragma once

#include <QHash>
#include <QString>

namespace quillary {

/// Whether two texts are canonically equivalent: the same characters, however they are composed. Case matters.
bool canonicallyEqual(QStringView a, QStringView b);

/// Whether a text is surely its own canonical form, and with it all of its parts. Quick: in rare cases it is, and the
/// answer is no.
bool isCanonicalForm(QStringView text);

/// Normalization Form C: texts are canonically equivalent when their forms are the same units. Lone surrogates stay.
QString canonicalForm(QStringView text);

/// A name as it is spelled, which equals every name that is canonically equivalent to it: the key of maps by name.
class CanonicalName {
public:
    CanonicalName() = default;

    // Names are texts everywhere else, so they turn into keys by themselves.
    CanonicalName(const QString& text) : m_text(text), m_form(canonicalForm(text)) {}

    /// As it is spelled.
    const QString& text() const { return m_text; }

    friend bool operator==(const CanonicalName& a, const CanonicalName& b) { return a.m_form == b.m_form; }

    friend size_t qHash(const CanonicalName& name, size_t seed = 0) { return qHash(name.m_form, seed); }

private:
    QString m_text;
    QString m_form;
};

} // namespace quillary
