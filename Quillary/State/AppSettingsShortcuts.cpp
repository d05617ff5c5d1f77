#include "Quillary/State/AppSettings.h"
#include "QuillaryCore/Formats/JSONFormatter.h"
#include "QuillaryCore/Formats/JSONParser.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

using CustomShortcuts = QMap<ShortcutAction, KeyShortcut>;

constexpr QLatin1StringView shortcutsKey("shortcuts");
constexpr QLatin1StringView disabledShortcutsKey("disabledShortcuts");

/// The text of a JSON object from raw values to stored shortcuts.
QString encoded(const CustomShortcuts& shortcuts) {
    QStringList members;
    for (auto each = shortcuts.cbegin(); each != shortcuts.cend(); ++each) {
        members.append(JSONFormatter::quoted(rawValue(each.key())) % u':' % each->encoded());
    }
    return u'{' % members.join(u',') % u'}';
}

/// One value that is no shortcut loses all of them; a key that is no action loses its own only.
CustomShortcuts decodedShortcuts(const QString& text) {
    CustomShortcuts shortcuts;
    const auto value = JSONParser::parse(text);
    if (!value || value->kind() != JSONValue::Kind::object) {
        return {};
    }
    for (const auto& [key, member] : value->members()) {
        const std::optional<KeyShortcut> shortcut = KeyShortcut::decode(member);
        if (!shortcut) {
            return {};
        }
        if (const auto action = shortcutActionFromRawValue(key)) {
            shortcuts.insert(*action, *shortcut);
        }
    }
    return shortcuts;
}

bool showTheSame(const CustomShortcuts& a, const CustomShortcuts& b) {
    // The character on show is no part of a shortcut's equality, but of what views show.
    return std::equal(a.cbegin(), a.cend(), b.cbegin(), b.cend(),
                      [](const KeyShortcut& x, const KeyShortcut& y) { return x == y && x.key == y.key; }) &&
           a.keys() == b.keys();
}

} // namespace

void AppSettings::readShortcuts(const QJsonObject& values) {
    m_customShortcuts = decodedShortcuts(values[shortcutsKey].toString());
    for (const QJsonValue value : values[disabledShortcutsKey].toArray()) {
        if (const auto action = shortcutActionFromRawValue(value.toString())) {
            m_disabledShortcuts.insert(*action);
        }
    }
}

std::optional<KeyShortcut> AppSettings::shortcut(ShortcutAction forAction) const {
    if (m_disabledShortcuts.contains(forAction)) {
        return std::nullopt;
    }
    const auto custom = m_customShortcuts.constFind(forAction);
    return custom == m_customShortcuts.cend() ? defaultShortcut(forAction) : *custom;
}

std::optional<ShortcutAction> AppSettings::action(const KeyShortcut& forShortcut) const {
    const auto* const action = std::find_if(allShortcutActions.begin(), allShortcutActions.end(),
                                            [&](ShortcutAction each) { return shortcut(each) == forShortcut; });
    return action == allShortcutActions.end() ? std::nullopt : std::optional(*action);
}

void AppSettings::setShortcut(const std::optional<KeyShortcut>& shortcut, ShortcutAction forAction) {
    CustomShortcuts custom = m_customShortcuts;
    QSet<ShortcutAction> disabled = m_disabledShortcuts;
    custom.remove(forAction);
    disabled.remove(forAction);
    if (!shortcut) {
        disabled.insert(forAction);
    } else if (*shortcut != defaultShortcut(forAction)) {
        custom.insert(forAction, *shortcut);
    }
    assignShortcuts(custom, disabled);
}

void AppSettings::resetShortcut(ShortcutAction ofAction) {
    setShortcut(defaultShortcut(ofAction), ofAction);
}

bool AppSettings::isDefault(ShortcutAction action) const {
    return !m_customShortcuts.contains(action) && !m_disabledShortcuts.contains(action);
}

void AppSettings::assignShortcuts(const CustomShortcuts& custom, const QSet<ShortcutAction>& disabled) {
    const bool isChange = !showTheSame(m_customShortcuts, custom) || m_disabledShortcuts != disabled;
    m_customShortcuts = custom;
    m_disabledShortcuts = disabled;
    QJsonArray disabledToStore;
    for (const ShortcutAction action : allShortcutActions) {
        if (disabled.contains(action)) {
            disabledToStore.append(rawValue(action));
        }
    }
    m_preferences.set({{shortcutsKey, encoded(custom)}, {disabledShortcutsKey, disabledToStore}});
    if (isChange) {
        Q_EMIT shortcutsChanged();
    }
}

} // namespace quillary
