#include "Quillary/State/Preferences.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace quillary::test {

using namespace Qt::StringLiterals;

class PreferencesTest : public testing::Test {
protected:
    QString path() const { return directory.filePath(u"config/preferences.json"_s); }

    void store(const QByteArray& bytes) const {
        QDir().mkpath(directory.filePath(u"config"_s));
        QFile file(path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    static QByteArray contents(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QStringList entries() const { return QDir(directory.filePath(u"config"_s)).entryList(QDir::Files, QDir::Name); }

    QTemporaryDir directory;
    Preferences preferences{FilePath::fromText(directory.filePath(u"config/preferences.json"_s))};
};

TEST_F(PreferencesTest, LieInTheUsersConfigurationDirectory) {
    EXPECT_EQ(Preferences::defaultFile().text(),
              qEnvironmentVariable("XDG_CONFIG_HOME") + u"/quillary/preferences.json"_s);
}

TEST_F(PreferencesTest, AreEmptyWithoutAFileAndMakeNone) {
    EXPECT_EQ(preferences.values(), QJsonObject());
    EXPECT_TRUE(entries().isEmpty());
}

TEST_F(PreferencesTest, KeepTheTypesOfTheirValues) {
    preferences.set(u"flag"_s, false);
    preferences.set(u"size"_s, 13.5);
    preferences.set(u"big"_s, std::numeric_limits<qint64>::max());
    preferences.set(u"text"_s, u"true"_s);

    const QJsonObject values = preferences.values();

    EXPECT_EQ(values[u"flag"_s], QJsonValue(false));
    EXPECT_EQ(values[u"size"_s], QJsonValue(13.5));
    EXPECT_EQ(values[u"big"_s].toInteger(), std::numeric_limits<qint64>::max());
    EXPECT_EQ(values[u"text"_s], QJsonValue(u"true"_s));
}

TEST_F(PreferencesTest, KeepPathsThatAreNoUtf8) {
    const QString text = FilePath::fromBytes("/home/\xE8/note").text();

    preferences.set(u"path"_s, text);

    EXPECT_EQ(FilePath::fromText(preferences.values()[u"path"_s].toString()).bytes(), "/home/\xE8/note");
}

TEST_F(PreferencesTest, ChangeOneKeyAndLeaveTheOthersAsTheyAreOnDisk) {
    preferences.set(u"a"_s, 1);
    const Preferences otherProcess = preferences;
    otherProcess.set(u"b"_s, 2);

    preferences.set(u"a"_s, 3);

    EXPECT_EQ(preferences.values(), QJsonObject({{u"a"_s, 3}, {u"b"_s, 2}}));
}

TEST_F(PreferencesTest, KeepKeysThatNobodyHereKnows) {
    store(R"({"future": {"x": [1, null]}, "a": 1})");

    preferences.set(u"a"_s, 2);

    EXPECT_EQ(preferences.values()[u"future"_s].toObject()[u"x"_s].toArray().size(), 2);
}

TEST_F(PreferencesTest, DropAKeyThatIsSetToNothing) {
    store(R"({"a": 1, "b": 2})");

    preferences.set(u"a"_s, QJsonValue::Undefined);

    EXPECT_EQ(preferences.values(), QJsonObject({{u"b"_s, 2}}));
}

class BrokenPreferences : public PreferencesTest, public testing::WithParamInterface<QByteArray> {};

TEST_P(BrokenPreferences, ReadAsEmptyAndStay) {
    store(GetParam());

    EXPECT_EQ(preferences.values(), QJsonObject());

    EXPECT_EQ(contents(path()), GetParam());
    EXPECT_EQ(entries().size(), 1);
}

TEST_P(BrokenPreferences, AreSetAsideBeforeTheFirstChange) {
    store(GetParam());

    preferences.set(u"a"_s, 1);

    EXPECT_EQ(preferences.values(), QJsonObject({{u"a"_s, 1}}));
    EXPECT_EQ(entries(), QStringList({u"preferences.json"_s, u"preferences.json.broken"_s}));
    EXPECT_EQ(contents(path() + u".broken"_s), GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, BrokenPreferences,
                         testing::Values(QByteArray("{\"a\": 1"), QByteArray("[1]"), QByteArray("not json"),
                                         QByteArray("\xFF\xFE{"), QByteArray("")));

TEST_F(PreferencesTest, SetAsideUnderANewNameEachTime) {
    store("first");
    preferences.set(u"a"_s, 1);
    store("second");
    preferences.set(u"a"_s, 1);

    EXPECT_EQ(contents(path() + u".broken"_s), "first");
    EXPECT_EQ(contents(path() + u".broken 2"_s), "second");
}

TEST_F(PreferencesTest, LeaveAloneWhatCanNotBeRead) {
    QDir().mkpath(path());

    preferences.set(u"a"_s, 1);

    EXPECT_TRUE(QFileInfo(path()).isDir());
    EXPECT_EQ(preferences.values(), QJsonObject());
}

TEST_F(PreferencesTest, FollowALinkToTheirFile) {
    QDir().mkpath(directory.filePath(u"config"_s));
    QDir().mkpath(directory.filePath(u"dotfiles"_s));
    const QString target = directory.filePath(u"dotfiles/p.json"_s);
    store("{}");
    ASSERT_TRUE(QFile::rename(path(), target));
    ASSERT_TRUE(QFile::link(target, path()));

    preferences.set(u"a"_s, 1);

    EXPECT_TRUE(QFileInfo(path()).isSymLink());
    EXPECT_EQ(QJsonDocument::fromJson(contents(target)).object(), QJsonObject({{u"a"_s, 1}}));
}

} // namespace quillary::test
