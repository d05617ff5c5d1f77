#include "Quillary/State/AppSettings.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

namespace quillary::test {

using namespace Qt::StringLiterals;

class AppSettingsTest : public testing::Test {
protected:
    QString path() const { return directory.filePath(u"preferences.json"_s); }

    AppSettings& open(const QJsonObject& stored = {}) {
        if (!stored.isEmpty()) {
            QFile file(path());
            EXPECT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(QJsonDocument(stored).toJson());
        }
        settings = std::make_unique<AppSettings>(preferences);
        return *settings;
    }

    QTemporaryDir directory;
    Preferences preferences{FilePath::fromText(directory.filePath(u"preferences.json"_s))};
    std::unique_ptr<AppSettings> settings;
};

TEST_F(AppSettingsTest, StartWithTheirDefaultsAndWriteNothing) {
    const AppSettings& s = open();

    EXPECT_EQ(s.notesDirectory(), AppSettings::defaultDirectory());
    EXPECT_EQ(s.fontSize(), 13);
    EXPECT_EQ(s.fontStyle(), EditorFontStyle::monospaced);
    EXPECT_TRUE(s.wrapLines());
    EXPECT_EQ(s.defaultFormat(), NoteFormat::markdown);
    EXPECT_EQ(s.sortOrder(), NoteSortOrder::created);
    EXPECT_TRUE(s.autoDetectFormat());
    EXPECT_EQ(s.appearance(), AppAppearance::system);
    EXPECT_TRUE(s.showsMenuBarExtra());
    EXPECT_EQ(s.soloMode(), u"newSession");
    EXPECT_EQ(s.soloProjectID(), std::nullopt);
    EXPECT_EQ(s.soloAgentToolID(), std::nullopt);
    EXPECT_TRUE(s.soloSubmitAfterPaste());
    EXPECT_TRUE(s.soloBringToFront());
    EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(AppSettingsTest, DefaultDirectoryIsInTheDocuments) {
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);

    EXPECT_EQ(AppSettings::defaultDirectory().text(), documents + u"/Quillary"_s);
    EXPECT_FALSE(QFile::exists(AppSettings::defaultDirectory().text()));
}

TEST_F(AppSettingsTest, ReadWhatIsStored) {
    const AppSettings& s = open({{u"notesDirectory"_s, u"/dove/sono/le note"_s},
                                 {u"fontSize"_s, 17},
                                 {u"fontStyle"_s, u"system"_s},
                                 {u"wrapLines"_s, false},
                                 {u"defaultFormat"_s, u"json"_s},
                                 {u"sortOrder"_s, u"manual"_s},
                                 {u"autoDetectFormat"_s, false},
                                 {u"appearance"_s, u"dark"_s},
                                 {u"showsMenuBarExtra"_s, false},
                                 {u"soloMode"_s, u"whatever"_s},
                                 {u"soloProjectID"_s, qint64{9'007'199'254'740'993}},
                                 {u"soloAgentToolID"_s, -1},
                                 {u"soloSubmitAfterPaste"_s, false},
                                 {u"soloBringToFront"_s, false}});

    EXPECT_EQ(s.notesDirectory().text(), u"/dove/sono/le note");
    EXPECT_EQ(s.editorStyle(), (EditorStyle{17, EditorFontStyle::system}));
    EXPECT_FALSE(s.wrapLines());
    EXPECT_EQ(s.defaultFormat(), NoteFormat::json);
    EXPECT_EQ(s.sortOrder(), NoteSortOrder::manual);
    EXPECT_FALSE(s.autoDetectFormat());
    EXPECT_EQ(s.appearance(), AppAppearance::dark);
    EXPECT_FALSE(s.showsMenuBarExtra());
    EXPECT_EQ(s.soloMode(), u"whatever");
    EXPECT_EQ(s.soloProjectID(), 9'007'199'254'740'993);
    EXPECT_EQ(s.soloAgentToolID(), -1);
    EXPECT_FALSE(s.soloSubmitAfterPaste());
    EXPECT_FALSE(s.soloBringToFront());
}

struct StoredDirectory {
    QString stored;
    QString read;
};

class StoredDirectories : public AppSettingsTest, public testing::WithParamInterface<StoredDirectory> {};

TEST_P(StoredDirectories, AreTakenUncheckedAsPathsFromWhereTheProgramRuns) {
    EXPECT_EQ(open({{u"notesDirectory"_s, GetParam().stored}}).notesDirectory().text(), GetParam().read);
}

INSTANTIATE_TEST_SUITE_P(All, StoredDirectories,
                         testing::Values(StoredDirectory{u"/non/c'è"_s, u"/non/c'è"_s},
                                         StoredDirectory{u"Note mie"_s, QDir::currentPath() + u"/Note mie"_s},
                                         StoredDirectory{QString(), QDir::currentPath()}));

struct StoredFontSize {
    QJsonValue stored;
    double read;
};

class StoredFontSizes : public AppSettingsTest, public testing::WithParamInterface<StoredFontSize> {};

TEST_P(StoredFontSizes, AreRoundedAndClamped) {
    EXPECT_EQ(open({{u"fontSize"_s, GetParam().stored}}).fontSize(), GetParam().read);
}

INSTANTIATE_TEST_SUITE_P(All, StoredFontSizes,
                         testing::Values(StoredFontSize{0.4, 9}, StoredFontSize{0, 13}, StoredFontSize{8.6, 9},
                                         StoredFontSize{28.5, 28}, StoredFontSize{13.5, 14}, StoredFontSize{14.5, 15},
                                         StoredFontSize{13.4, 13}, StoredFontSize{-5, 9}, StoredFontSize{1e300, 28},
                                         StoredFontSize{u"venti"_s, 13}, StoredFontSize{QJsonValue::Null, 13},
                                         StoredFontSize{QJsonArray(), 13}));

/// A bad stored value, and whether the settings then have the default.
struct BadValue {
    const char* key;
    QJsonValue stored;
    std::function<bool(const AppSettings&)> isDefault;
};

class BadStoredValues : public AppSettingsTest, public testing::WithParamInterface<BadValue> {};

TEST_P(BadStoredValues, ReadAsTheDefaultAndStayStored) {
    const QString key = QString::fromLatin1(GetParam().key);

    EXPECT_TRUE(GetParam().isDefault(open({{key, GetParam().stored}})));

    EXPECT_EQ(preferences.values()[key], GetParam().stored);
}

INSTANTIATE_TEST_SUITE_P(
    All, BadStoredValues,
    testing::Values(
        BadValue{"wrapLines", u"false"_s, [](const AppSettings& s) { return s.wrapLines(); }},
        BadValue{"wrapLines", 0, [](const AppSettings& s) { return s.wrapLines(); }},
        BadValue{"autoDetectFormat", QJsonValue::Null, [](const AppSettings& s) { return s.autoDetectFormat(); }},
        BadValue{"showsMenuBarExtra", u"no"_s, [](const AppSettings& s) { return s.showsMenuBarExtra(); }},
        BadValue{"soloSubmitAfterPaste", 0, [](const AppSettings& s) { return s.soloSubmitAfterPaste(); }},
        BadValue{"soloBringToFront", QJsonArray(), [](const AppSettings& s) { return s.soloBringToFront(); }},
        BadValue{"fontStyle", u"System"_s,
                 [](const AppSettings& s) { return s.fontStyle() == EditorFontStyle::monospaced; }},
        BadValue{"fontStyle", 1, [](const AppSettings& s) { return s.fontStyle() == EditorFontStyle::monospaced; }},
        BadValue{"defaultFormat", u"rtf"_s,
                 [](const AppSettings& s) { return s.defaultFormat() == NoteFormat::markdown; }},
        BadValue{"sortOrder", u"size"_s, [](const AppSettings& s) { return s.sortOrder() == NoteSortOrder::created; }},
        BadValue{"appearance", u"sepia"_s,
                 [](const AppSettings& s) { return s.appearance() == AppAppearance::system; }},
        BadValue{"notesDirectory", 5,
                 [](const AppSettings& s) { return s.notesDirectory() == AppSettings::defaultDirectory(); }},
        BadValue{"soloMode", 5, [](const AppSettings& s) { return s.soloMode() == u"newSession"; }},
        BadValue{"soloProjectID", u"5"_s, [](const AppSettings& s) { return !s.soloProjectID(); }},
        BadValue{"soloProjectID", 5.5, [](const AppSettings& s) { return !s.soloProjectID(); }},
        BadValue{"soloProjectID", true, [](const AppSettings& s) { return !s.soloProjectID(); }},
        BadValue{"soloAgentToolID", 1e30, [](const AppSettings& s) { return !s.soloAgentToolID(); }}));

/// An assignment of a value that is not the default: key, what is stored, the signal that tells of it.
struct Assignment {
    const char* key;
    QJsonValue stored;
    std::function<void(AppSettings&)> assign;
    void (AppSettings::*changed)();
};

class Assignments : public AppSettingsTest, public testing::WithParamInterface<Assignment> {};

TEST_P(Assignments, AreStoredAtOnceAndTold) {
    AppSettings& s = open();
    const QSignalSpy spy(&s, GetParam().changed);

    GetParam().assign(s);

    EXPECT_EQ(preferences.values(), QJsonObject({{QString::fromLatin1(GetParam().key), GetParam().stored}}));
    EXPECT_EQ(spy.count(), 1);
}

TEST_P(Assignments, OfAnEqualValueAreStoredButNotTold) {
    AppSettings& s = open();
    GetParam().assign(s);
    QFile::remove(path());
    const QSignalSpy spy(&s, GetParam().changed);

    GetParam().assign(s);

    EXPECT_EQ(preferences.values()[QString::fromLatin1(GetParam().key)], GetParam().stored);
    EXPECT_EQ(spy.count(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    All, Assignments,
    testing::Values(
        Assignment{"notesDirectory", u"/altrove"_s,
                   [](AppSettings& s) { s.setNotesDirectory(FilePath::fromText(u"/altrove")); },
                   &AppSettings::notesDirectoryChanged},
        Assignment{"fontSize", 31.25, [](AppSettings& s) { s.setFontSize(31.25); }, &AppSettings::fontSizeChanged},
        Assignment{"fontStyle", u"system"_s, [](AppSettings& s) { s.setFontStyle(EditorFontStyle::system); },
                   &AppSettings::fontStyleChanged},
        Assignment{"wrapLines", false, [](AppSettings& s) { s.setWrapLines(false); }, &AppSettings::wrapLinesChanged},
        Assignment{"defaultFormat", u"php"_s, [](AppSettings& s) { s.setDefaultFormat(NoteFormat::php); },
                   &AppSettings::defaultFormatChanged},
        Assignment{"sortOrder", u"title"_s, [](AppSettings& s) { s.setSortOrder(NoteSortOrder::title); },
                   &AppSettings::sortOrderChanged},
        Assignment{"autoDetectFormat", false, [](AppSettings& s) { s.setAutoDetectFormat(false); },
                   &AppSettings::autoDetectFormatChanged},
        Assignment{"appearance", u"light"_s, [](AppSettings& s) { s.setAppearance(AppAppearance::light); },
                   &AppSettings::appearanceChanged},
        Assignment{"showsMenuBarExtra", false, [](AppSettings& s) { s.setShowsMenuBarExtra(false); },
                   &AppSettings::showsMenuBarExtraChanged},
        Assignment{"soloMode", u"sendToAgent"_s, [](AppSettings& s) { s.setSoloMode(u"sendToAgent"_s); },
                   &AppSettings::soloModeChanged},
        Assignment{"soloProjectID", 7, [](AppSettings& s) { s.setSoloProjectID(7); },
                   &AppSettings::soloProjectIDChanged},
        Assignment{"soloAgentToolID", 0, [](AppSettings& s) { s.setSoloAgentToolID(0); },
                   &AppSettings::soloAgentToolIDChanged},
        Assignment{"soloSubmitAfterPaste", false, [](AppSettings& s) { s.setSoloSubmitAfterPaste(false); },
                   &AppSettings::soloSubmitAfterPasteChanged},
        Assignment{"soloBringToFront", false, [](AppSettings& s) { s.setSoloBringToFront(false); },
                   &AppSettings::soloBringToFrontChanged}),
    [](const auto& parameter) { return std::string(parameter.param.key); });

TEST_F(AppSettingsTest, ClearingAnIdRemovesItsKey) {
    AppSettings& s = open({{u"soloProjectID"_s, 7}, {u"soloAgentToolID"_s, 8}});

    s.setSoloProjectID(std::nullopt);

    EXPECT_EQ(preferences.values(), QJsonObject({{u"soloAgentToolID"_s, 8}}));
    EXPECT_EQ(AppSettings(preferences).soloProjectID(), std::nullopt);
}

TEST_F(AppSettingsTest, EveryAssignmentOfTheAppearanceAppliesIt) {
    AppSettings& s = open({{u"appearance"_s, u"dark"_s}});
    QList<AppAppearance> applied;
    s.onApplyAppearance = [&applied](AppAppearance appearance) { applied.append(appearance); };

    s.setAppearance(AppAppearance::dark);
    s.setAppearance(AppAppearance::system);
    s.applyAppearance();

    EXPECT_EQ(applied, QList({AppAppearance::dark, AppAppearance::system, AppAppearance::system}));
}

TEST_F(AppSettingsTest, TheAppearanceIsNotAppliedByReadingIt) {
    AppSettings& s = open({{u"appearance"_s, u"dark"_s}});

    s.applyAppearance(); // With nothing to apply it to, as before the application exists.

    EXPECT_EQ(s.appearance(), AppAppearance::dark);
}

TEST_F(AppSettingsTest, KeepTheBytesOfADirectoryThatIsNoUtf8) {
    const FilePath strange = FilePath::fromBytes("/home/\xE8/note");
    open().setNotesDirectory(strange);

    EXPECT_EQ(AppSettings(preferences).notesDirectory(), strange);
}

TEST_F(AppSettingsTest, ClampTheSizesThatUsersStepThrough) {
    EXPECT_EQ(AppSettings::clampedFontSize(8), 9);
    EXPECT_EQ(AppSettings::clampedFontSize(29), 28);
    EXPECT_EQ(AppSettings::clampedFontSize(13.5), 14);
}

TEST(EditorFontStyles, HaveTheirTexts) {
    EXPECT_EQ(rawValue(EditorFontStyle::monospaced), u"monospaced");
    EXPECT_EQ(rawValue(EditorFontStyle::system), u"system");
    EXPECT_EQ(displayName(EditorFontStyle::monospaced), u"Monospazio");
    EXPECT_EQ(displayName(EditorFontStyle::system), u"Sistema");
}

TEST(AppAppearances, HaveTheirTexts) {
    QStringList texts;
    for (const AppAppearance appearance : allAppAppearances) {
        texts << rawValue(appearance) << displayName(appearance);
        EXPECT_EQ(appAppearanceFromRawValue(rawValue(appearance)), appearance);
    }
    EXPECT_EQ(texts, QStringList({u"system"_s, u"Sistema"_s, u"light"_s, u"Chiaro"_s, u"dark"_s, u"Scuro"_s}));
}

} // namespace quillary::test
