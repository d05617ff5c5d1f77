#pragma once

#include "Quillary/Sidebar/InsertionLine.h"
#include "Quillary/State/NotesStore.h"

#include <QMimeData>

#include <optional>

namespace quillary {

/// What a drag of the sidebar carries: an empty mark of a type of its own, so that the system shows a drag and nobody
/// else finds anything in it. What is dragged stands in the store.
class SidebarMimeData : public QMimeData {
    Q_OBJECT

public:
    static constexpr QLatin1StringView type{"app.quillary.sidebar-item"};

    SidebarMimeData();

    /// Whether a drag began in the sidebar of this very process; the type alone could come from another.
    static bool isIn(const QMimeData* data);
};

/// A place where something dragged in the sidebar can be dropped. It is asked with each motion of the pointer whether
/// it takes what is dragged, and told when the pointer comes, moves and goes. What it changes is for the list to draw.
class SidebarDropDelegate {
public:
    explicit SidebarDropDelegate(NotesStore& store) : m_store(store) {}

    virtual ~SidebarDropDelegate() = default;
    SidebarDropDelegate(const SidebarDropDelegate&) = delete;
    SidebarDropDelegate& operator=(const SidebarDropDelegate&) = delete;

    virtual bool validateDrop() const = 0;

    virtual void dropEntered() {}

    /// `y` is the pointer's distance from the upper edge of the place, in logical pixels.
    virtual void dropUpdated(double /*y*/) {}

    virtual void dropExited() {}

    /// Carries the drop out; false if there was nothing to drop.
    virtual bool performDrop() = 0;

protected:
    NotesStore& store() const { return m_store; }

    /// The dragged notes that are still there; none if a folder is dragged.
    QList<NoteItemPtr> draggedNotes() const;

    /// The name of the dragged folder, if one is dragged.
    std::optional<QString> draggedFolder() const;

private:
    NotesStore& m_store;
};

/// On a note's row: notes go above or below it, into its folder.
class NoteRowDropDelegate : public SidebarDropDelegate {
public:
    /// `height` is that of the row; `insertion` must outlive the delegate.
    NoteRowDropDelegate(NoteItemPtr target, NotesStore& store, double height, std::optional<InsertionEdge>& insertion)
        : SidebarDropDelegate(store), m_target(std::move(target)), m_height(height), m_insertion(insertion) {}

    bool validateDrop() const override;
    void dropUpdated(double y) override;
    void dropExited() override;
    bool performDrop() override;

private:
    NoteItemPtr m_target;
    double m_height;
    std::optional<InsertionEdge>& m_insertion;
};

/// On a folder's header: notes go into the folder, a folder goes above it.
class FolderDropDelegate : public SidebarDropDelegate {
public:
    /// `isTargeted` must outlive the delegate.
    FolderDropDelegate(QString folder, NotesStore& store, bool& isTargeted)
        : SidebarDropDelegate(store), m_folder(std::move(folder)), m_isTargeted(isTargeted) {}

    bool validateDrop() const override;
    void dropEntered() override;
    void dropUpdated(double y) override;
    void dropExited() override;
    bool performDrop() override;

private:
    QString m_folder;
    bool& m_isTargeted;
};

/// On a heading: notes leave their folders.
class TopLevelDropDelegate : public SidebarDropDelegate {
public:
    /// `isTargeted` must outlive the delegate.
    TopLevelDropDelegate(NotesStore& store, bool& isTargeted) : SidebarDropDelegate(store), m_isTargeted(isTargeted) {}

    bool validateDrop() const override;
    void dropEntered() override;
    void dropUpdated(double y) override;
    void dropExited() override;
    bool performDrop() override;

private:
    bool& m_isTargeted;
};

/// On the space after the last row: notes go to the end of the top level, a folder becomes the last one.
class EndDropDelegate : public SidebarDropDelegate {
public:
    using SidebarDropDelegate::SidebarDropDelegate;

    bool validateDrop() const override;
    bool performDrop() override;
};

} // namespace quillary
