#pragma once

#include <QtGlobal>

namespace quillary {

/// A set of modifier keys, and of whatever else an event's flags hold. `command` is the key Ctrl, `option` Alt,
/// `control` Super and `shift` Shift.
class KeyModifiers {
public:
    static const KeyModifiers shift;
    static const KeyModifiers control;
    static const KeyModifiers option;
    static const KeyModifiers command;

    /// The four together.
    static const KeyModifiers relevant;

    constexpr KeyModifiers() = default;

    constexpr explicit KeyModifiers(quint64 rawValue) : m_rawValue(rawValue) {}

    constexpr quint64 rawValue() const { return m_rawValue; }

    constexpr bool isEmpty() const { return m_rawValue == 0; }

    /// Whether it holds every member of another set.
    constexpr bool contains(KeyModifiers other) const { return (*this & other) == other; }

    constexpr bool isSubset(KeyModifiers of) const { return of.contains(*this); }

    constexpr bool isSuperset(KeyModifiers of) const { return contains(of); }

    constexpr bool isDisjoint(KeyModifiers with) const { return (*this & with).isEmpty(); }

    constexpr void insert(KeyModifiers other) { m_rawValue |= other.m_rawValue; }

    constexpr void remove(KeyModifiers other) { m_rawValue &= ~other.m_rawValue; }

    friend constexpr KeyModifiers operator|(KeyModifiers a, KeyModifiers b) {
        return KeyModifiers(a.m_rawValue | b.m_rawValue);
    }

    friend constexpr KeyModifiers operator&(KeyModifiers a, KeyModifiers b) {
        return KeyModifiers(a.m_rawValue & b.m_rawValue);
    }

    /// The members of one set alone.
    friend constexpr KeyModifiers operator^(KeyModifiers a, KeyModifiers b) {
        return KeyModifiers(a.m_rawValue ^ b.m_rawValue);
    }

    /// What `a` holds and `b` doesn't.
    friend constexpr KeyModifiers operator-(KeyModifiers a, KeyModifiers b) {
        return KeyModifiers(a.m_rawValue & ~b.m_rawValue);
    }

    friend constexpr bool operator==(KeyModifiers, KeyModifiers) = default;

private:
    quint64 m_rawValue = 0;
};

inline constexpr KeyModifiers KeyModifiers::shift{0x20000};
inline constexpr KeyModifiers KeyModifiers::control{0x40000};
inline constexpr KeyModifiers KeyModifiers::option{0x80000};
inline constexpr KeyModifiers KeyModifiers::command{0x100000};
inline constexpr KeyModifiers KeyModifiers::relevant{0x1E0000};

} // namespace quillary
