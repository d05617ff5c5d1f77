#pragma once

#include "QuillaryCore/Formats/JSONValue.h"
#include "QuillaryCore/Keys/KeyCode.h"
#include "QuillaryCore/Keys/KeyModifiers.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <optional>

namespace quillary {

/// One combination of keys: a physical key with modifiers. The character that the key gave without them is for display
/// only, and no part of equality.
struct KeyShortcut {
    using Modifiers = KeyModifiers;

    KeyShortcut() = default;

    /// Keeps the relevant modifiers only: what else an event's flags hold, as Caps Lock, is no part of a shortcut.
    KeyShortcut(quint16 keyCode, Modifiers modifiers, QString key);

    /// The virtual key number.
    quint16 keyCode = 0;

    Modifiers modifiers;

    /// The character of the key without modifiers; may be empty.
    QString key;

    /// The name of a key that has one, else `key` in upper case.
    QString displayKey() const;

    /// The marks of the modifiers, ⌃⌥⇧⌘ in this order, then `displayKey`.
    QString displayString() const;

    /// Whether it is one of F1 to F12.
    bool isFunctionKey() const;

    /// Whether a user may choose it: with more than Shift, which is ordinary typing, or a function key.
    bool isValidForRecording() const;

    /// The stored form: a JSON object with `keyCode`, `modifiers` and `key`.
    QString encoded() const;

    /// Reads the stored form; none if one of the three is missing or of the wrong type. Unknown keys don't matter, the
    /// last one of equal keys counts, and modifiers are taken as they stand.
    static std::optional<KeyShortcut> decode(const JSONValue& value);
    static std::optional<KeyShortcut> decode(QStringView text);

    friend bool operator==(const KeyShortcut& a, const KeyShortcut& b) {
        return a.keyCode == b.keyCode && a.modifiers == b.modifiers;
    }

    friend size_t qHash(const KeyShortcut& shortcut, size_t seed = 0) noexcept {
        return qHashMulti(seed, shortcut.keyCode, shortcut.modifiers.rawValue());
    }

    /// The names of the keys that don't show by a character, by key code.
    static const QHash<quint16, QString>& specialKeyNames();

    /// The key codes of F1 to F12.
    static const QSet<quint16>& functionKeyCodes();
};

} // namespace quillary
