#include "Quillary/State/AppSettings.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace quillary::test {

using namespace Qt::StringLiterals;

namespace {

using Modifiers = KeyShortcut::Modifiers;

const KeyShortcut storedShortcut(38, Modifiers::command, u"j"_s);

struct ActionRow {
    ShortcutAction action;
    quint16 keyCode;
    QString rawValue;
    QString displayName;
    QString defaultShortcut;
    QString key;
};

const ActionRow actionRows[] = {
    {ShortcutAction::nextNote, 125, u"nextNote"_s, u"Nota successiva"_s, u"⌘↓"_s, u"↓"_s},
    {ShortcutAction::previousNote, 126, u"previousNote"_s, u"Nota precedente"_s, u"⌘↑"_s, u"↑"_s},
    {ShortcutAction::search, 40, u"search"_s, u"Cerca note"_s, u"⌘K"_s, u"k"_s},
    {ShortcutAction::togglePreview, 35, u"togglePreview"_s, u"Mostra / nascondi anteprima"_s, u"⇧⌘P"_s, u"p"_s},
    {ShortcutAction::summon, 45, u"summon"_s, u"Mostra Quillary da qualsiasi app"_s, u"⌃⌥N"_s, u"n"_s},
};

class ShortcutPreferencesTest : public testing::Test {
protected:
    AppSettings& open(const QJsonObject& stored = {}) {
        if (!stored.isEmpty()) {
            QFile file(path());
            EXPECT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(QJsonDocument(stored).toJson());
        }
        settings = std::make_unique<AppSettings>(preferences);
        return *settings;
    }

    QString path() const { return directory.filePath(u"preferences.json"_s); }

    QTemporaryDir directory;
    Preferences preferences{FilePath::fromText(directory.filePath(u"preferences.json"_s))};
    std::unique_ptr<AppSettings> settings;
};

} // namespace

TEST(ShortcutAction, HasItsNamesAndDefaults) {
    ASSERT_EQ(std::size(actionRows), allShortcutActions.size());
    for (std::size_t i = 0; i < std::size(actionRows); ++i) {
        const ActionRow& row = actionRows[i];
        EXPECT_EQ(allShortcutActions[i], row.action);
        EXPECT_EQ(rawValue(row.action), row.rawValue);
        EXPECT_EQ(shortcutActionFromRawValue(row.rawValue), row.action);
        EXPECT_EQ(displayName(row.action), row.displayName);
        EXPECT_EQ(defaultShortcut(row.action).displayString(), row.defaultShortcut);
        EXPECT_EQ(defaultShortcut(row.action).keyCode, row.keyCode);
        EXPECT_EQ(defaultShortcut(row.action).key, row.key);
    }
    EXPECT_EQ(shortcutActionFromRawValue(u"sing"), std::nullopt);
}

TEST_F(ShortcutPreferencesTest, StartWithTheDefaultsAndWriteNothing) {
    const AppSettings& s = open();
    for (const ShortcutAction action : allShortcutActions) {
        EXPECT_EQ(s.shortcut(action), defaultShortcut(action));
        EXPECT_EQ(s.action(defaultShortcut(action)), action);
        EXPECT_TRUE(s.isDefault(action));
    }
    EXPECT_EQ(s.action(storedShortcut), std::nullopt);
    EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(ShortcutPreferencesTest, KeepAChosenShortcut) {
    AppSettings& s = open();
    const QSignalSpy changes(&s, &AppSettings::shortcutsChanged);
    s.setShortcut(storedShortcut, ShortcutAction::search);
    EXPECT_EQ(s.shortcut(ShortcutAction::search), storedShortcut);
    EXPECT_EQ(s.action(storedShortcut), ShortcutAction::search);
    EXPECT_EQ(s.action(defaultShortcut(ShortcutAction::search)), std::nullopt);
    EXPECT_FALSE(s.isDefault(ShortcutAction::search));
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(preferences.values()[u"shortcuts"_s].toString(),
              u"{\"search\":{\"keyCode\":38,\"modifiers\":1048576,\"key\":\"j\"}}"_s);
    EXPECT_EQ(preferences.values()[u"disabledShortcuts"_s].toArray(), QJsonArray());

    s.setShortcut(storedShortcut, ShortcutAction::search);
    EXPECT_EQ(changes.count(), 1);

    const AppSettings& again = open();
    EXPECT_EQ(again.shortcut(ShortcutAction::search), storedShortcut);
    EXPECT_EQ(again.shortcut(ShortcutAction::search)->key, u"j"_s);
}

TEST_F(ShortcutPreferencesTest, TellOfAnotherCharacterOfTheSameKeys) {
    AppSettings& s = open();
    s.setShortcut(storedShortcut, ShortcutAction::search);
    const QSignalSpy changes(&s, &AppSettings::shortcutsChanged);
    s.setShortcut(KeyShortcut(38, Modifiers::command, u"о"_s), ShortcutAction::search);
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(s.shortcut(ShortcutAction::search)->key, u"о"_s);
}

TEST_F(ShortcutPreferencesTest, TurnAnActionOff) {
    AppSettings& s = open();
    s.setShortcut(storedShortcut, ShortcutAction::summon);
    s.setShortcut(std::nullopt, ShortcutAction::summon);
    EXPECT_EQ(s.shortcut(ShortcutAction::summon), std::nullopt);
    EXPECT_EQ(s.action(storedShortcut), std::nullopt);
    EXPECT_EQ(s.action(defaultShortcut(ShortcutAction::summon)), std::nullopt);
    EXPECT_FALSE(s.isDefault(ShortcutAction::summon));
    EXPECT_TRUE(s.customShortcuts().isEmpty());
    EXPECT_EQ(preferences.values()[u"shortcuts"_s].toString(), u"{}"_s);
    EXPECT_EQ(preferences.values()[u"disabledShortcuts"_s].toArray(), QJsonArray{u"summon"_s});

    const AppSettings& again = open();
    EXPECT_EQ(again.shortcut(ShortcutAction::summon), std::nullopt);
}

TEST_F(ShortcutPreferencesTest, ResettingATurnedOffActionGivesItsDefault) {
    AppSettings& s = open();
    s.setShortcut(std::nullopt, ShortcutAction::search);
    s.resetShortcut(ShortcutAction::search);
    EXPECT_EQ(s.shortcut(ShortcutAction::search), defaultShortcut(ShortcutAction::search));
    EXPECT_TRUE(s.isDefault(ShortcutAction::search));
}

TEST_F(ShortcutPreferencesTest, ChoosingTheDefaultLeavesNoTrace) {
    AppSettings& s = open();
    s.setShortcut(storedShortcut, ShortcutAction::search);
    s.setShortcut(std::nullopt, ShortcutAction::search);
    s.setShortcut(KeyShortcut(KeyCode::k, Modifiers::command, u"к"_s), ShortcutAction::search);
    EXPECT_TRUE(s.isDefault(ShortcutAction::search));
    EXPECT_EQ(s.shortcut(ShortcutAction::search)->key, u"k"_s);
    EXPECT_EQ(preferences.values()[u"shortcuts"_s].toString(), u"{}"_s);
    EXPECT_EQ(preferences.values()[u"disabledShortcuts"_s].toArray(), QJsonArray());
}

TEST_F(ShortcutPreferencesTest, TheFirstActionInOrderHasTheKeys) {
    AppSettings& s = open();
    s.setShortcut(storedShortcut, ShortcutAction::summon);
    s.setShortcut(storedShortcut, ShortcutAction::previousNote);
    EXPECT_EQ(s.action(storedShortcut), ShortcutAction::previousNote);
    s.setShortcut(std::nullopt, ShortcutAction::previousNote);
    EXPECT_EQ(s.action(storedShortcut), ShortcutAction::summon);
}

TEST_F(ShortcutPreferencesTest, DropEntriesOfUnknownActionsOnly) {
    const QString stored = u"{\"sing\":%1,\"search\":%1}"_s.arg(storedShortcut.encoded());
    const AppSettings& s =
        open({{u"shortcuts"_s, stored}, {u"disabledShortcuts"_s, QJsonArray{u"sing"_s, 3, u"summon"_s}}});
    EXPECT_EQ(s.customShortcuts(), (QMap<ShortcutAction, KeyShortcut>{{ShortcutAction::search, storedShortcut}}));
    EXPECT_EQ(s.disabledShortcuts(), QSet<ShortcutAction>{ShortcutAction::summon});
}

TEST_F(ShortcutPreferencesTest, LoseAllWithOneBadValue) {
    const QString good = u"\"search\":"_s + storedShortcut.encoded();
    const QString bad[] = {
        u"{"_s + good + u",\"nextNote\":{\"keyCode\":1}}"_s,
        u"{"_s + good + u",\"sing\":3}"_s,
        u"["_s + good + u"]"_s,
        u"{"_s + good,
        u"3"_s,
        QString(),
    };
    for (const QString& text : bad) {
        EXPECT_TRUE(open({{u"shortcuts"_s, text}}).customShortcuts().isEmpty()) << text.toStdString();
    }
    EXPECT_TRUE(open({{u"shortcuts"_s, QJsonObject()}}).customShortcuts().isEmpty());
    EXPECT_TRUE(open({{u"disabledShortcuts"_s, u"summon"_s}}).disabledShortcuts().isEmpty());
}

} // namespace quillary::test
