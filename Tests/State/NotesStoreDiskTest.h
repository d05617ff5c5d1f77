#pragma once

#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Text/UndoManager.h"

#include "Tests/State/NotesStoreTest.h"
#include "Tests/State/Waiting.h"

#include <chrono>

namespace quillary::test {

/// A store beside other programs that change its directory.
class NotesStoreDisk : public NotesStoreTest {
protected:
    /// A moment some seconds after the file's date as the store knows it.
    static Moment after(const NoteItemPtr& item, double seconds) {
        return item->knownModificationDate + std::chrono::nanoseconds(qRound64(seconds * 1e9));
    }

    /// An edit as the editor makes it, with an undo step.
    void edit(const NoteItemPtr& item) const {
        store->ensureLoaded(*item);
        item->document()->undoManager().replace({0, 0}, u"x", EditKind::typing, {});
        store->textDidChange(*item, *item->document(), false);
    }

    /// Waits for what the watcher brings about.
    bool isListed(const QString& title) {
        return waitUntil([this, title] { return note(title) != nullptr; });
    }
};

} // namespace quillary::test
