#include "Tests/State/NotesStoreTest.h"

#include "Quillary/State/AppActions.h"
#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Text/TextStorage.h"

#include "Tests/State/Waiting.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace quillary::test {

using namespace Qt::StringLiterals;

NotesStoreTest::NotesStoreTest() : settings(preferences()) {
    AppActions::shared().desktop = &desktop;
}

NotesStoreTest::~NotesStoreTest() {
    AppActions::shared().desktop = nullptr;
}

void NotesStoreTest::openStore(NoteSortOrder order) {
    if (order != settings.sortOrder()) {
        settings.setSortOrder(order);
    }
    store = std::make_unique<NotesStore>(&settings);
}

Preferences NotesStoreTest::preferences() const {
    const QString path = configuration.filePath(u"preferences.json"_s);
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QJsonDocument(QJsonObject{{u"notesDirectory"_s, directory.path().text()}, {u"sortOrder"_s, u"title"_s}})
                   .toJson());
    return Preferences(FilePath::fromText(path));
}

NoteItemPtr NotesStoreTest::note(const QString& title) const {
    const auto& notes = store->notes();
    const auto found = std::ranges::find(notes, title, [](const NoteItemPtr& item) { return item->title(); });
    return found == notes.end() ? nullptr : *found;
}

void NotesStoreTest::select(const QString& title) const {
    store->setSelectedID(note(title)->id());
}

QStringList NotesStoreTest::titles() const {
    return titles(store->notes());
}

void NotesStoreTest::type(const NoteItemPtr& item, const QString& text) const {
    store->ensureLoaded(*item);
    TextStorage& storage = item->document()->storage();
    storage.replace({0, storage.length()}, text);
    store->textDidChange(*item, *item->document(), false);
}

bool NotesStoreTest::allTextsAreLoaded() const {
    return std::ranges::all_of(store->notes(), [](const NoteItemPtr& item) { return item->document() != nullptr; });
}

QString NotesStoreTest::failure() const {
    return store->errorMessage().value_or(QString()).section(u'\n', 0, 0);
}

QByteArray NotesStoreTest::layout() const {
    return directory.contents(u".quillary.json"_s);
}

FileStatus NotesStoreTest::layoutFile() const {
    const auto status = fileStatus(directory.path(u".quillary.json"_s));
    return status ? *status : FileStatus();
}

void NotesStoreTest::letTheWatcherCatchUp() const {
    // A refresh sees all that happened before it, so the one that finds this note has seen the rest.
    const QString title = u"sentinella"_s;
    directory.write(title + u".md"_s);
    ASSERT_TRUE(waitUntil([&] { return note(title) != nullptr; }));
    directory.remove(title + u".md"_s);
    ASSERT_TRUE(waitUntil([&] { return note(title) == nullptr; }));
}

QStringList NotesStoreTest::titles(const QList<NoteItemPtr>& items) {
    QStringList titles;
    for (const NoteItemPtr& item : items) {
        titles.append(item->title());
    }
    return titles;
}

} // namespace quillary::test
