#pragma once

#include "../NotesFolder.h"
#include "Quillary/Sidebar/SearchField.h"
#include "Quillary/Sidebar/SidebarList.h"
#include "Quillary/Sidebar/SidebarView.h"
#include "Quillary/State/AppActions.h"

#include "Tests/State/FakeDesktop.h"

#include <QAction>
#include <QTest>

#include <gtest/gtest.h>

namespace quillary {

/// The sidebar on show over a folder of real notes, on a desktop that keeps what it is asked for.
class SidebarTest : public testing::Test {
protected:
    explicit SidebarTest(const QList<std::pair<QString, QString>>& files, NoteSortOrder order = NoteSortOrder::title)
        : m_folder(files, order) {
        AppActions::shared().desktop = &m_desktop;
        m_view.resize(260, 500);
        m_view.show();
        m_view.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_view));
    }

    ~SidebarTest() override { AppActions::shared() = {}; }

    NotesStore& store() { return m_folder.store(); }

    NoteItemPtr note(const QString& title) { return m_folder.note(title); }

    QString selectedTitle() {
        const NoteItemPtr selected = store().selectedItem();
        return selected ? selected->title() : QString();
    }

    /// The titles of the rows as they are after all changes.
    QStringList rows() {
        m_list->model().update();
        QStringList titles;
        for (const SidebarRow& row : m_list->model().rows()) {
            titles.append(SidebarModel::shownTitle(row));
        }
        return titles;
    }

    int rowOf(const QString& title) { return static_cast<int>(rows().indexOf(title)); }

    QPoint placeOf(const QString& title) { return m_list->rowRect(rowOf(title)).center(); }

    void click(const QString& title, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(m_list->viewport(), Qt::LeftButton, modifiers, placeOf(title));
    }

    void select(const QString& title) { store().setSelectedID(note(title)->id()); }

    QStringList multiSelection() {
        QStringList titles;
        for (const NoteID id : store().multiSelection()) {
            titles.append(store().item(id)->title());
        }
        return titles;
    }

    NotesFolder m_folder;
    test::FakeDesktop m_desktop;
    QAction m_newNote;
    SidebarView m_view{m_folder.store(), &m_newNote};
    SidebarList* m_list = m_view.findChild<SidebarList*>();
    SearchField* m_search = m_view.findChild<SearchField*>();
};

} // namespace quillary
