#pragma once

#include "Quillary/State/WeakPointer.h"
#include "QuillaryCore/Platform/FilePath.h"

#include <QList>
#include <QString>

#include <optional>

namespace quillary {

/// The panels, the clipboard and the other programs of the desktop, as commands need them. The shell implements it and
/// tests fake it; rules have no place in it. Main thread only.
class Desktop : public WeakTarget {
public:
    virtual ~Desktop() = default;

    /// Tells the user that a command had nothing to act on.
    virtual void beep() = 0;

    /// The plain text on the clipboard; none if there is none.
    virtual std::optional<QString> clipboardText() const = 0;

    /// Puts a plain text on the clipboard, in the place of what is there.
    virtual void setClipboardText(const QString& text) = 0;

    /// Lets the user choose several files in a modal panel: in the order of the panel, none if it was dismissed.
    virtual QList<FilePath> chooseFiles(const QString& message, const QString& prompt) = 0;

    /// Lets the user choose a directory, or make one, in a modal panel that opens on one; none if it was dismissed.
    virtual std::optional<FilePath> chooseDirectory(const FilePath& start, const QString& prompt) = 0;

    /// Lets the user choose where to save, in a modal panel with a name filled in; none if it was dismissed. That the
    /// file may be replaced is agreed by then.
    virtual std::optional<FilePath> chooseDestination(const QString& name) = 0;

    /// Opens a file or a directory in the program that the desktop has for it.
    virtual void open(const FilePath& path) = 0;

    /// Opens a URL in the program that the desktop has for its scheme. Where nothing claims it, nothing happens.
    virtual void openURL(const QString& url) = 0;

    /// Shows a file in the file manager, selected among its neighbours.
    virtual void reveal(const FilePath& path) = 0;
};

} // namespace quillary
