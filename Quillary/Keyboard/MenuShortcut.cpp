#include "Quillary/Keyboard/MenuShortcut.h"

#include "Quillary/Keyboard/KeyEvents.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include <QHash>
#include <QKeyCombination>

namespace quillary {

namespace {

const QHash<quint16, Qt::Key>& menuKeys() {
    static const QHash<quint16, Qt::Key> keys{
        {KeyCode::returnKey, Qt::Key_Return}, {KeyCode::tab, Qt::Key_Tab},
        {KeyCode::space, Qt::Key_Space},      {KeyCode::deleteKey, Qt::Key_Backspace},
        {KeyCode::escape, Qt::Key_Escape},    {KeyCode::home, Qt::Key_Home},
        {KeyCode::pageUp, Qt::Key_PageUp},    {KeyCode::forwardDelete, Qt::Key_Delete},
        {KeyCode::end, Qt::Key_End},          {KeyCode::pageDown, Qt::Key_PageDown},
        {KeyCode::leftArrow, Qt::Key_Left},   {KeyCode::rightArrow, Qt::Key_Right},
        {KeyCode::downArrow, Qt::Key_Down},   {KeyCode::upArrow, Qt::Key_Up},
    };
    return keys;
}

} // namespace

std::optional<Qt::Key> keyEquivalent(const KeyShortcut& shortcut) {
    const auto key = menuKeys().constFind(shortcut.keyCode);
    if (key != menuKeys().cend()) {
        return *key;
    }
    if (clusterCount(shortcut.key, 1) != 1) {
        return std::nullopt;
    }
    // Qt numbers the keys of characters by their capitals.
    const QList<uint> lower = shortcut.key.toLower().toUcs4();
    return static_cast<Qt::Key>(QChar::toUpper(lower.constFirst()));
}

QKeySequence menuShortcut(const KeyShortcut& shortcut) {
    const std::optional<Qt::Key> key = keyEquivalent(shortcut);
    return key ? QKeySequence(QKeyCombination(KeyEvents::qtModifiers(shortcut.modifiers), *key)) : QKeySequence();
}

} // namespace quillary
