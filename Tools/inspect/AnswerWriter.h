#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QStringView>

#include <concepts>
#include <vector>

namespace quillary::inspect {

/// Writes one JSON text from front to back, of any depth and without recursion of its own. The caller opens and
/// closes containers in order and gives a key before each member's value.
class AnswerWriter {
public:
    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    void key(QStringView name);

    void null();
    void text(QStringView value);
    void boolean(bool value);

    void integer(std::integral auto value) {
        separate();
        m_bytes += QByteArray::number(value);
    }

    void real(double value);

    /// An object as it stands.
    void object(const QJsonObject& value);

    /// A member whose value is one of the simple kinds.
    void member(QStringView name, QStringView value) {
        key(name);
        text(value);
    }

    void member(QStringView name, const QString& value) { member(name, QStringView(value)); }

    void member(QStringView name, std::same_as<bool> auto value) {
        key(name);
        boolean(value);
    }

    void member(QStringView name, std::integral auto value) requires(!std::same_as<decltype(value), bool>) {
        key(name);
        integer(value);
    }

    void member(QStringView name, double value) {
        key(name);
        real(value);
    }

    void nullMember(QStringView name) {
        key(name);
        null();
    }

    /// An array of texts as a member.
    template <typename Texts>
    void textsMember(QStringView name, const Texts& texts) {
        key(name);
        beginArray();
        for (const auto& each : texts) {
            text(each);
        }
        endArray();
    }

    const QByteArray& bytes() const { return m_bytes; }

private:
    void separate();

    QByteArray m_bytes;
    std::vector<bool> m_hasElements;
    bool m_afterKey = false;
};

} // namespace quillary::inspect
