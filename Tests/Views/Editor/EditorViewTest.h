#pragma once

#include "Quillary/Editor/EditorView.h"
#include "Quillary/Editor/ZoomableTextView.h"
#include "Quillary/Find/FindController.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NoteDocument.h"
#include "Quillary/State/NotesStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

namespace quillary {

using namespace Qt::StringLiterals;

/// The editor over a store with real files: "Alfa.md", "Beta.txt" and "Vuota.txt".
class EditorViewTest : public testing::Test {
protected:
    void SetUp() override {
        QDir().mkpath(m_directory.filePath(u"note"_s));
        write(u"Alfa.md"_s, u"# Alfa\n"_s);
        write(u"Beta.txt"_s, u"riga\n"_s.repeated(500));
        write(u"Vuota.txt"_s, {});
        start();
    }

    /// Opens the store with the notes that are on disk by now.
    void start() {
        m_view.reset();
        m_find.reset();
        m_store.reset();
        m_settings.setNotesDirectory(FilePath::fromText(m_directory.filePath(u"note"_s)));
        m_settings.setSortOrder(NoteSortOrder::title);
        m_store = std::make_unique<NotesStore>(&m_settings);
        m_find = std::make_unique<FindController>(*m_store);
        m_view = std::make_unique<EditorView>(m_store.get(), &m_settings, m_find.get());
        m_view->resize(500, 400);
        m_view->show();
        m_view->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(m_view.get()));
        QCoreApplication::processEvents();
    }

    void write(const QString& name, const QString& text) {
        QFile file(m_directory.filePath(u"note/"_s + name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
    }

    QString read(const QString& name) const {
        QFile file(m_directory.filePath(u"note/"_s + name));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    NoteItemPtr note(const QString& title) const {
        for (const NoteItemPtr& item : m_store->notes()) {
            if (item->title() == title) {
                return item;
            }
        }
        return nullptr;
    }

    void select(const QString& title) { m_store->setSelectedID(note(title)->id()); }

    ZoomableTextView& textView() { return *m_view->textView(); }

    QTemporaryDir m_directory;
    AppSettings m_settings{Preferences(FilePath::fromText(m_directory.filePath(u"preferences.json"_s)))};
    std::unique_ptr<NotesStore> m_store;
    std::unique_ptr<FindController> m_find;
    std::unique_ptr<EditorView> m_view;
};

} // namespace quillary
