#pragma once

#include "QuillaryCore/Notes/Moment.h"
#include "QuillaryCore/Platform/FilePath.h"

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace quillary::test {

/// A moment some seconds after a fixed one in 2024.
Moment moment(double seconds);

/// A real directory of notes that goes with the test, as another program sees it. Names are paths within it.
class NotesDirectory {
public:
    NotesDirectory();
    ~NotesDirectory();
    NotesDirectory(const NotesDirectory&) = delete;
    NotesDirectory& operator=(const NotesDirectory&) = delete;

    FilePath path() const { return m_path; }

    FilePath path(const QString& name) const { return m_path.appending(name); }

    /// Writes a file in place.
    void write(const QString& name, const QByteArray& bytes = "testo") const;

    /// Replaces a file in one step, as most programs save.
    void replace(const QString& name, const QByteArray& bytes) const;

    /// Sets the modification date.
    void setModified(const QString& name, Moment date) const;

    /// Sets the creation date, as a save of ours would carry it.
    void setCreated(const QString& name, Moment date) const;

    void makeFolder(const QString& name) const;
    void rename(const QString& from, const QString& to) const;
    void remove(const QString& name) const;

    bool exists(const QString& name) const;
    QByteArray contents(const QString& name) const;
    Moment modified(const QString& name) const;

private:
    QString absolute(const QString& name) const;

    QTemporaryDir m_parent;
    FilePath m_path;
};

} // namespace quillary::test
