#pragma once

#include "QuillaryCore/Notes/NoteFileStore.h"
#include "QuillaryCore/Platform/FileStatus.h"

#include "Tests/Support/SystemConditions.h"
#include "Tests/Support/TestDirectory.h"

#include <gtest/gtest.h>

#include <ostream>

namespace quillary {

inline void PrintTo(const FilePath& path, std::ostream* stream) {
    *stream << path.bytes().toPercentEncoding("/ .").constData();
}

namespace test {

/// A store in a fresh directory, with a trash of its own.
class NoteFileStoreTest : public testing::Test {
protected:
    NoteFileStoreTest() { qputenv("XDG_DATA_HOME", home.bytes()); }

    ~NoteFileStoreTest() override { qputenv("XDG_DATA_HOME", m_dataBefore); }

    /// The path of a note's file, relative to the directory; what failed otherwise.
    template <typename Answer>
    QByteArray relative(const Answer& answer) const {
        return answer ? relativePath(*answer) : "failed: " + localizedDescription(answer.error()).toUtf8();
    }

    QByteArray relativePath(const FilePath& url) const {
        const QByteArray prefix = directory.bytes() + '/';
        return url.bytes().startsWith(prefix) ? url.bytes().mid(prefix.size()) : url.bytes();
    }

    /// The paths of the listed notes in the order of their bytes.
    QList<QByteArray> listed() const {
        QList<QByteArray> paths;
        const auto notes = store.listNotes();
        EXPECT_TRUE(notes);
        if (notes) {
            for (const NoteFileInfo& note : *notes) {
                paths.append(relativePath(note.url));
            }
        }
        std::sort(paths.begin(), paths.end());
        return paths;
    }

    QStringList folders() const {
        auto names = store.listFolders();
        EXPECT_TRUE(names);
        QStringList sorted = names ? *names : QStringList();
        sorted.sort();
        return sorted;
    }

    QList<QByteArray> trashed() const { return TestDirectory::namesIn(home.path("Trash/files")); }

    template <typename Answer>
    static int systemCode(const Answer& answer) {
        const auto* const error = answer ? nullptr : std::get_if<SystemError>(&answer.error());
        return error != nullptr ? error->code : 0;
    }

    template <typename Answer>
    static std::optional<NoteStoreError> ownError(const Answer& answer) {
        const auto* const error = answer ? nullptr : std::get_if<NoteStoreError>(&answer.error());
        return error != nullptr ? std::optional(*error) : std::nullopt;
    }

    const TestDirectory directory;
    const TestDirectory home;
    const NoteFileStore store{directory.path()};

private:
    const QByteArray m_dataBefore = qgetenv("XDG_DATA_HOME");
};

} // namespace test

} // namespace quillary
