#include "QuillaryCore/Keys/KeyShortcut.h"

#include "QuillaryCore/Formats/JSONFormatter.h"
#include "QuillaryCore/Formats/JSONParser.h"

#include <QCoreApplication>
#include <QHash>

#include <array>
#include <cmath>
#include <concepts>
#include <limits>
#include <utility>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<quint16, 12> functionKeysInOrder{122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111};

QHash<quint16, QString> makeSpecialKeyNames() {
    QHash<quint16, QString> names{
        {KeyCode::leftArrow, u"←"_s},
        {KeyCode::rightArrow, u"→"_s},
        {KeyCode::downArrow, u"↓"_s},
        {KeyCode::upArrow, u"↑"_s},
        {KeyCode::tab, u"⇥"_s},
        {KeyCode::returnKey, u"↩"_s},
        {KeyCode::space, QCoreApplication::translate("KeyShortcut", "Spazio")},
        {KeyCode::deleteKey, u"⌫"_s},
        {KeyCode::forwardDelete, u"⌦"_s},
        {KeyCode::escape, u"⎋"_s},
        {KeyCode::pageUp, u"⇞"_s},
        {KeyCode::pageDown, u"⇟"_s},
        {KeyCode::home, u"↖"_s},
        {KeyCode::end, u"↘"_s},
    };
    for (std::size_t i = 0; i < functionKeysInOrder.size(); ++i) {
        names.insert(functionKeysInOrder[i], u'F' % QString::number(i + 1));
    }
    return names;
}

/// A JSON number that is a whole one of this type, however it is written.
template <std::unsigned_integral Integer>
std::optional<Integer> wholeNumber(const JSONValue& value) {
    if (value.kind() != JSONValue::Kind::number) {
        return std::nullopt;
    }
    const QString text = value.number();
    bool isPlain = false;
    const qulonglong plain = text.toULongLong(&isPlain);
    if (isPlain) {
        return std::in_range<Integer>(plain) ? std::optional(static_cast<Integer>(plain)) : std::nullopt;
    }
    // As 4e1 or 40.0. The next power of two is the first number beyond the type, and a double holds it exactly.
    const double real = text.toDouble();
    const double beyond = std::ldexp(1.0, std::numeric_limits<Integer>::digits);
    return real >= 0 && real < beyond && real == std::floor(real) ? std::optional(static_cast<Integer>(real))
                                                                  : std::nullopt;
}

} // namespace

KeyShortcut::KeyShortcut(quint16 keyCode_, Modifiers modifiers_, QString key_)
    : keyCode(keyCode_), modifiers(modifiers_ & Modifiers::relevant), key(std::move(key_)) {}

QString KeyShortcut::displayKey() const {
    const auto name = specialKeyNames().constFind(keyCode);
    return name == specialKeyNames().cend() ? key.toUpper() : *name;
}

QString KeyShortcut::displayString() const {
    QString text;
    const auto addMark = [&](Modifiers modifier, QChar mark) {
        if (modifiers.contains(modifier)) {
            text += mark;
        }
    };
    addMark(Modifiers::control, u'⌃');
    addMark(Modifiers::option, u'⌥');
    addMark(Modifiers::shift, u'⇧');
    addMark(Modifiers::command, u'⌘');
    return text + displayKey();
}

bool KeyShortcut::isFunctionKey() const {
    return functionKeyCodes().contains(keyCode);
}

bool KeyShortcut::isValidForRecording() const {
    return !modifiers.isDisjoint(Modifiers::control | Modifiers::option | Modifiers::command) || isFunctionKey();
}

QString KeyShortcut::encoded() const {
    return u"{\"keyCode\":%1,\"modifiers\":%2,\"key\":%3}"_s.arg(
        QString::number(keyCode), QString::number(modifiers.rawValue()), JSONFormatter::quoted(key));
}

std::optional<KeyShortcut> KeyShortcut::decode(const JSONValue& value) {
    std::optional<quint16> keyCode;
    std::optional<quint64> rawModifiers;
    std::optional<QString> key;
    for (const auto& [name, member] : value.members()) {
        if (name == "keyCode"_L1) {
            keyCode = wholeNumber<quint16>(member);
        } else if (name == "modifiers"_L1) {
            rawModifiers = wholeNumber<quint64>(member);
        } else if (name == "key"_L1) {
            key = member.kind() == JSONValue::Kind::string ? std::optional(member.string()) : std::nullopt;
        }
    }
    if (!keyCode || !rawModifiers || !key) {
        return std::nullopt;
    }
    KeyShortcut shortcut;
    shortcut.keyCode = *keyCode;
    shortcut.modifiers = Modifiers(*rawModifiers);
    shortcut.key = *key;
    return shortcut;
}

std::optional<KeyShortcut> KeyShortcut::decode(QStringView text) {
    const auto value = JSONParser::parse(text);
    return value ? decode(*value) : std::nullopt;
}

const QHash<quint16, QString>& KeyShortcut::specialKeyNames() {
    static const QHash<quint16, QString> names = makeSpecialKeyNames();
    return names;
}

const QSet<quint16>& KeyShortcut::functionKeyCodes() {
    static const QSet<quint16> codes(functionKeysInOrder.begin(), functionKeysInOrder.end());
    return codes;
}

} // namespace quillary
