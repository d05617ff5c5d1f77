#pragma once

#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"
#include "QuillaryCore/Platform/FileStatus.h"

#include "Tests/State/FakeDesktop.h"
#include "Tests/State/NotesDirectory.h"

#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace quillary::test {

/// A store over a real directory, with preferences of its own.
class NotesStoreTest : public testing::Test {
protected:
    NotesStoreTest();
    ~NotesStoreTest() override;

    /// Opens the store on what is in the directory by now.
    void openStore(NoteSortOrder order = NoteSortOrder::title);

    /// The note of a title, wherever it is; null if there is none.
    NoteItemPtr note(const QString& title) const;

    void select(const QString& title) const;

    QStringList titles() const;

    /// Changes the text of a note as the editor would.
    void type(const NoteItemPtr& item, const QString& text) const;

    bool allTextsAreLoaded() const;

    /// The first line of the failure on screen; empty if there is none.
    QString failure() const;

    /// The file of the sidebar's layout, byte by byte.
    QByteArray layout() const;

    /// What the system knows of that file: the same before and after if it was not written.
    FileStatus layoutFile() const;

    /// Waits until the store has refreshed itself after all that happened in the directory so far.
    void letTheWatcherCatchUp() const;

    static QStringList titles(const QList<NoteItemPtr>& items);

private:
    /// Preferences that name the directory and the order by title, written without the flush of a real assignment.
    Preferences preferences() const;

protected:
    NotesDirectory directory;
    QTemporaryDir configuration;
    AppSettings settings;
    std::unique_ptr<NotesStore> store;
    FakeDesktop desktop;
};

/// How often a signal was sent since it is watched.
class SignalCount {
public:
    template <typename Sender, typename Signal>
    SignalCount(const Sender& sender, Signal signal) : m_spy(&*sender, signal) {}

    qsizetype count() const { return m_spy.count(); }

private:
    QSignalSpy m_spy;
};

} // namespace quillary::test
