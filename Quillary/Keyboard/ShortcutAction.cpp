#include "Quillary/Keyboard/ShortcutAction.h"

#include <QCoreApplication>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

using Modifiers = KeyShortcut::Modifiers;

} // namespace

QString rawValue(ShortcutAction action) {
    switch (action) {
    case ShortcutAction::nextNote:
        return u"nextNote"_s;
    case ShortcutAction::previousNote:
        return u"previousNote"_s;
    case ShortcutAction::search:
        return u"search"_s;
    case ShortcutAction::togglePreview:
        return u"togglePreview"_s;
    case ShortcutAction::summon:
        break;
    }
    return u"summon"_s;
}

std::optional<ShortcutAction> shortcutActionFromRawValue(QStringView rawValue) {
    for (const ShortcutAction action : allShortcutActions) {
        if (quillary::rawValue(action) == rawValue) {
            return action;
        }
    }
    return std::nullopt;
}

QString displayName(ShortcutAction action) {
    switch (action) {
    case ShortcutAction::nextNote:
        return QCoreApplication::translate("ShortcutAction", "Nota successiva");
    case ShortcutAction::previousNote:
        return QCoreApplication::translate("ShortcutAction", "Nota precedente");
    case ShortcutAction::search:
        return QCoreApplication::translate("ShortcutAction", "Cerca note");
    case ShortcutAction::togglePreview:
        return QCoreApplication::translate("ShortcutAction", "Mostra / nascondi anteprima");
    case ShortcutAction::summon:
        break;
    }
    return QCoreApplication::translate("ShortcutAction", "Mostra Quillary da qualsiasi app");
}

KeyShortcut defaultShortcut(ShortcutAction action) {
    switch (action) {
    case ShortcutAction::nextNote:
        return {KeyCode::downArrow, Modifiers::command, u"↓"_s};
    case ShortcutAction::previousNote:
        return {KeyCode::upArrow, Modifiers::command, u"↑"_s};
    case ShortcutAction::search:
        return {KeyCode::k, Modifiers::command, u"k"_s};
    case ShortcutAction::togglePreview:
        return {KeyCode::p, Modifiers::shift | Modifiers::command, u"p"_s};
    case ShortcutAction::summon:
        break;
    }
    return {KeyCode::n, Modifiers::control | Modifiers::option, u"n"_s};
}

} // namespace quillary
