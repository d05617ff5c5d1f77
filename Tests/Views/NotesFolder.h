#pragma once

#include "Quillary/Find/FindController.h"
#include "Quillary/Keyboard/KeyboardController.h"
#include "Quillary/Solo/SoloController.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"

#include "Tests/Support/TemporaryDirectory.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace quillary {

/// A folder of real notes with the settings and the store over it.
class NotesFolder {
public:
    /// Files by their path in the folder, with their texts; they are dated one second apart, the first one latest.
    explicit NotesFolder(const QList<std::pair<QString, QString>>& files, NoteSortOrder order = NoteSortOrder::title) {
        using namespace Qt::StringLiterals;
        QDir().mkpath(m_directory.filePath(u"Note"_s));
        for (const auto& [path, text] : files) {
            write(path, text);
        }
        m_settings =
            std::make_unique<AppSettings>(Preferences(FilePath::fromText(m_directory.filePath(u"preferences.json"_s))));
        m_settings->setNotesDirectory(FilePath::fromText(m_directory.filePath(u"Note"_s)));
        m_settings->setSortOrder(order);
        m_store = std::make_unique<NotesStore>(m_settings.get());
        m_find = std::make_unique<FindController>(*m_store);
        m_solo = std::make_unique<SoloController>(*m_settings, SoloClient(std::nullopt, std::nullopt));
        m_keyboard = std::make_unique<KeyboardController>(m_store.get(), m_settings.get(), m_find.get(), nullptr);
    }

    NotesStore& store() { return *m_store; }

    AppSettings& settings() { return *m_settings; }

    FindController& find() { return *m_find; }

    /// A Solo that isn't installed.
    SoloController& solo() { return *m_solo; }

    /// The dispatcher of keys, without a hot key.
    KeyboardController& keyboard() { return *m_keyboard; }

    QString path(const QString& name) const {
        using namespace Qt::StringLiterals;
        return m_directory.filePath(u"Note/"_s % name);
    }

    void write(const QString& name, const QString& text) {
        QDir().mkpath(QFileInfo(path(name)).path());
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
    }

    /// The note of a title; there must be one.
    NoteItemPtr note(const QString& title) {
        for (const NoteItemPtr& item : m_store->notes()) {
            if (item->title() == title) {
                return item;
            }
        }
        return nullptr;
    }

private:
    test::TemporaryDirectory m_directory;
    std::unique_ptr<AppSettings> m_settings;
    std::unique_ptr<NotesStore> m_store;
    std::unique_ptr<FindController> m_find;
    std::unique_ptr<SoloController> m_solo;
    std::unique_ptr<KeyboardController> m_keyboard;
};

} // namespace quillary
