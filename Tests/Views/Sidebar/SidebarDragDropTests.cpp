#include "Quillary/Sidebar/SidebarDragDrop.h"

#include "SidebarTest.h"

#include <QDrag>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDropEvent>
#include <QScrollBar>

using namespace quillary;
using namespace Qt::StringLiterals;

namespace {

class SidebarDragDropTest : public SidebarTest {
protected:
    static QList<std::pair<QString, QString>> files() {
        return {{u"a.md"_s, {}},        {u"b.md"_s, {}},        {u"c.md"_s, {}},
                {u"d.md"_s, {}},        {u"Casa/x.md"_s, {}},   {u"Lavoro/m.md"_s, {}},
                {u"Lavoro/n.md"_s, {}}, {u"Lavoro/o.md"_s, {}}, {u"Zeta/z.md"_s, {}}};
    }

    explicit SidebarDragDropTest(const QList<std::pair<QString, QString>>& notes = files()) : SidebarTest(notes) {
        // All rows in view, and room below them.
        m_view.resize(260, 900);
        EXPECT_TRUE(QTest::qWaitFor([this] { return m_view.height() == 900; }));
    }

    void dragNotes(const QStringList& titles) {
        QList<NoteID> ids;
        for (const QString& title : titles) {
            ids.append(note(title)->id());
        }
        store().setDragItem(ids);
    }

    void dragFolder(const QString& name) { store().setDragItem(name); }

    QStringList titlesIn(const std::optional<QString>& folder) {
        QStringList titles;
        for (const NoteItemPtr& item : store().notes(folder)) {
            titles.append(item->title());
        }
        return titles;
    }

    /// Whether the list takes what is dragged over a place.
    bool moveTo(const QPoint& place, const QMimeData* data = nullptr) {
        const QMimeData* const dragged = data ? data : &m_data;
        if (!m_isOver) {
            QDragEnterEvent enter(place, Qt::MoveAction, dragged, Qt::LeftButton, {});
            QCoreApplication::sendEvent(m_list->viewport(), &enter);
            m_isOver = enter.isAccepted();
        }
        QDragMoveEvent move(place, Qt::MoveAction, dragged, Qt::LeftButton, {});
        move.ignore();
        QCoreApplication::sendEvent(m_list->viewport(), &move);
        EXPECT_TRUE(!move.isAccepted() || move.dropAction() == Qt::MoveAction);
        return move.isAccepted();
    }

    void leave() {
        QDragLeaveEvent event;
        QCoreApplication::sendEvent(m_list->viewport(), &event);
        m_isOver = false;
    }

    bool dropAt(const QPoint& place) {
        moveTo(place);
        QDropEvent drop(place, Qt::MoveAction, &m_data, Qt::LeftButton, {});
        drop.ignore();
        QCoreApplication::sendEvent(m_list->viewport(), &drop);
        m_isOver = false;
        return drop.isAccepted();
    }

    QPoint upperHalfOf(const QString& title) { return m_list->rowRect(rowOf(title)).topLeft() + QPoint(40, 4); }

    QPoint lowerHalfOf(const QString& title) { return m_list->rowRect(rowOf(title)).bottomLeft() + QPoint(40, -4); }

    QPoint end() {
        m_list->model().update();
        return m_list->rowRect(m_list->model().rowCount() - 1).bottomLeft() + QPoint(40, 12);
    }

    /// Presses on a row and moves far enough; what is done with the drag is told to `run`.
    void drag(const QString& title, const std::function<Qt::DropAction(QDrag&)>& run) {
        m_list->runDrag = run;
        const QPoint place = placeOf(title);
        QTest::mousePress(m_list->viewport(), Qt::LeftButton, {}, place);
        for (int step = 1; step <= 4; ++step) {
            const QPoint to = place + QPoint(0, step * 5);
            QMouseEvent move(QEvent::MouseMove, to, m_list->viewport()->mapToGlobal(to), Qt::NoButton, Qt::LeftButton,
                             {});
            QCoreApplication::sendEvent(m_list->viewport(), &move);
        }
        QTest::mouseRelease(m_list->viewport(), Qt::LeftButton, {}, place);
    }

    SidebarMimeData m_data;
    bool m_isOver = false;
};

class LongSidebarDragTest : public SidebarDragDropTest {
protected:
    static QList<std::pair<QString, QString>> manyFiles() {
        QList<std::pair<QString, QString>> files;
        for (int i = 0; i < 60; ++i) {
            files.append({u"Nota %1.md"_s.arg(QString::number(i).rightJustified(2, u'0')), {}});
        }
        return files;
    }

    LongSidebarDragTest() : SidebarDragDropTest(manyFiles()) { m_view.resize(260, 400); }
};

} // namespace

// How a drag starts

TEST_F(SidebarDragDropTest, ADragCarriesAnEmptyMarkOfItsOwnTypeOnly) {
    int drags = 0;
    drag(u"a"_s, [&](QDrag& drag) {
        ++drags;
        EXPECT_EQ(drag.mimeData()->formats(), QStringList(u"app.quillary.sidebar-item"_s));
        EXPECT_TRUE(drag.mimeData()->data(u"app.quillary.sidebar-item"_s).isEmpty());
        EXPECT_FALSE(drag.mimeData()->hasText());
        EXPECT_FALSE(drag.pixmap().isNull());
        EXPECT_TRUE(SidebarMimeData::isIn(drag.mimeData()));
        return Qt::IgnoreAction;
    });
    EXPECT_EQ(drags, 1);
    EXPECT_EQ(store().dragItem(), std::optional(SidebarDragItem(QList{note(u"a"_s)->id()})));
}

TEST_F(SidebarDragDropTest, ADragOfASelectedRowTakesTheWholeSelectionInItsOrder) {
    select(u"d"_s);
    click(u"a"_s, Qt::ControlModifier);
    click(u"n"_s, Qt::ControlModifier);
    drag(u"a"_s, [](QDrag&) { return Qt::IgnoreAction; });
    EXPECT_EQ(store().dragItem(), std::optional(SidebarDragItem(store().multiSelection())));
    // A row outside it goes alone, and the selection stays until the drop.
    drag(u"b"_s, [](QDrag&) { return Qt::IgnoreAction; });
    EXPECT_EQ(store().dragItem(), std::optional(SidebarDragItem(QList{note(u"b"_s)->id()})));
    EXPECT_EQ(store().multiSelection().size(), 3);
}

TEST_F(SidebarDragDropTest, AFolderIsDraggedByItsHeaderAndAHeadingNotAtAll) {
    drag(u"Lavoro"_s, [](QDrag&) { return Qt::IgnoreAction; });
    EXPECT_EQ(store().dragItem(), std::optional(SidebarDragItem(u"Lavoro"_s)));
    EXPECT_TRUE(store().collapsedFolders().isEmpty());
    int drags = 0;
    drag(u"Note"_s, [&](QDrag&) {
        ++drags;
        return Qt::IgnoreAction;
    });
    EXPECT_EQ(drags, 0);
}

TEST_F(SidebarDragDropTest, ADragIsNoClickAndAShortMotionIsNoDrag) {
    select(u"d"_s);
    drag(u"a"_s, [](QDrag&) { return Qt::IgnoreAction; });
    EXPECT_EQ(selectedTitle(), u"d"_s);
    int drags = 0;
    m_list->runDrag = [&](QDrag&) {
        ++drags;
        return Qt::IgnoreAction;
    };
    QTest::mousePress(m_list->viewport(), Qt::LeftButton, {}, placeOf(u"a"_s));
    QMouseEvent move(QEvent::MouseMove, placeOf(u"a"_s) + QPoint(2, 2), QCursor::pos(), Qt::NoButton, Qt::LeftButton,
                     {});
    QCoreApplication::sendEvent(m_list->viewport(), &move);
    QTest::mouseRelease(m_list->viewport(), Qt::LeftButton, {}, placeOf(u"a"_s));
    EXPECT_EQ(drags, 0);
    EXPECT_EQ(selectedTitle(), u"a"_s);
}

// On a note's row

TEST_F(SidebarDragDropTest, NotesGoAboveOrBelowARow) {
    dragNotes({u"d"_s});
    EXPECT_TRUE(dropAt(upperHalfOf(u"b"_s)));
    EXPECT_EQ(titlesIn(std::nullopt), QStringList({u"a"_s, u"d"_s, u"b"_s, u"c"_s}));
    EXPECT_EQ(m_folder.settings().sortOrder(), NoteSortOrder::manual);
    dragNotes({u"a"_s});
    EXPECT_TRUE(dropAt(lowerHalfOf(u"b"_s)));
    EXPECT_EQ(titlesIn(std::nullopt), QStringList({u"d"_s, u"b"_s, u"a"_s, u"c"_s}));
}

TEST_F(SidebarDragDropTest, NotesGoIntoTheFolderOfTheRow) {
    dragNotes({u"b"_s, u"x"_s});
    EXPECT_TRUE(dropAt(upperHalfOf(u"n"_s)));
    EXPECT_EQ(titlesIn(u"Lavoro"_s), QStringList({u"m"_s, u"b"_s, u"x"_s, u"n"_s, u"o"_s}));
    EXPECT_EQ(titlesIn(u"Casa"_s), QStringList());
    EXPECT_TRUE(QFile::exists(m_folder.path(u"Lavoro/b.md"_s)));
}

TEST_F(SidebarDragDropTest, BelowARowAboveADraggedNoteItCountsAsTakenOut) {
    dragNotes({u"c"_s, u"a"_s});
    EXPECT_TRUE(dropAt(lowerHalfOf(u"b"_s)));
    EXPECT_EQ(titlesIn(std::nullopt), QStringList({u"b"_s, u"c"_s, u"a"_s, u"d"_s}));
}

TEST_F(SidebarDragDropTest, BelowTheLastRowOfAFolderIsItsEnd) {
    dragNotes({u"a"_s});
    EXPECT_TRUE(dropAt(lowerHalfOf(u"o"_s)));
    EXPECT_EQ(titlesIn(u"Lavoro"_s), QStringList({u"m"_s, u"n"_s, u"o"_s, u"a"_s}));
}

TEST_F(SidebarDragDropTest, ARowRefusesItsOwnNoteAndFolders) {
    dragNotes({u"a"_s, u"b"_s});
    EXPECT_FALSE(moveTo(placeOf(u"a"_s)));
    EXPECT_FALSE(moveTo(placeOf(u"b"_s)));
    EXPECT_TRUE(moveTo(placeOf(u"c"_s)));
    EXPECT_FALSE(dropAt(placeOf(u"a"_s)));
    dragFolder(u"Lavoro"_s);
    EXPECT_FALSE(moveTo(placeOf(u"a"_s)));
    EXPECT_FALSE(moveTo(placeOf(u"x"_s)));
    EXPECT_EQ(m_folder.settings().sortOrder(), NoteSortOrder::title);
}

TEST_F(SidebarDragDropTest, TheEdgeIsTheHalfThatThePointerIsIn) {
    std::optional<InsertionEdge> insertion;
    dragNotes({u"a"_s});
    NoteRowDropDelegate target(note(u"b"_s), store(), 50, insertion);
    target.dropUpdated(0);
    EXPECT_EQ(insertion, InsertionEdge::above);
    target.dropUpdated(24.9);
    EXPECT_EQ(insertion, InsertionEdge::above);
    target.dropUpdated(25);
    EXPECT_EQ(insertion, InsertionEdge::below);
    target.dropExited();
    EXPECT_EQ(insertion, std::nullopt);
    // Without an edge it is below.
    EXPECT_TRUE(target.performDrop());
    EXPECT_EQ(titlesIn(std::nullopt), QStringList({u"b"_s, u"a"_s, u"c"_s, u"d"_s}));
}

TEST_F(SidebarDragDropTest, ANoteThatVanishedDuringTheDragDropsOut) {
    std::optional<InsertionEdge> insertion = InsertionEdge::above;
    dragNotes({u"d"_s, u"c"_s});
    QFile::remove(m_folder.path(u"d.md"_s));
    store().refreshFromDisk();
    NoteRowDropDelegate target(note(u"a"_s), store(), 50, insertion);
    EXPECT_TRUE(target.validateDrop());
    QFile::remove(m_folder.path(u"c.md"_s));
    store().refreshFromDisk();
    EXPECT_FALSE(target.validateDrop());
    EXPECT_FALSE(target.performDrop());
    EXPECT_EQ(insertion, std::nullopt);
    bool isTargeted = false;
    EXPECT_FALSE(FolderDropDelegate(u"Casa"_s, store(), isTargeted).validateDrop());
    EXPECT_EQ(m_folder.settings().sortOrder(), NoteSortOrder::title);
}

// On a folder's header

TEST_F(SidebarDragDropTest, NotesOnAHeaderGoIntoTheFolderAndTheOrderStays) {
    dragNotes({u"a"_s, u"m"_s});
    EXPECT_TRUE(dropAt(placeOf(u"Casa"_s)));
    EXPECT_EQ(titlesIn(u"Casa"_s), QStringList({u"a"_s, u"m"_s, u"x"_s}));
    EXPECT_EQ(m_folder.settings().sortOrder(), NoteSortOrder::title);
}

TEST_F(SidebarDragDropTest, AFolderOnAHeaderGoesAboveIt) {
    dragFolder(u"Zeta"_s);
    EXPECT_TRUE(dropAt(placeOf(u"Casa"_s)));
    EXPECT_EQ(store().folders(), QStringList({u"Zeta"_s, u"Casa"_s, u"Lavoro"_s}));
    dragFolder(u"Zeta"_s);
    EXPECT_FALSE(moveTo(placeOf(u"Zeta"_s)));
    EXPECT_TRUE(moveTo(placeOf(u"Lavoro"_s)));
    EXPECT_FALSE(dropAt(placeOf(u"Zeta"_s)));
    EXPECT_EQ(store().folders(), QStringList({u"Zeta"_s, u"Casa"_s, u"Lavoro"_s}));
    EXPECT_TRUE(QFile::exists(m_folder.path(u"Zeta/z.md"_s)));
}

TEST_F(SidebarDragDropTest, AHeaderIsMarkedWhileADropIsOverIt) {
    bool isTargeted = false;
    dragNotes({u"a"_s});
    FolderDropDelegate target(u"Casa"_s, store(), isTargeted);
    target.dropEntered();
    EXPECT_TRUE(isTargeted);
    target.dropExited();
    EXPECT_FALSE(isTargeted);
    target.dropUpdated(3);
    EXPECT_TRUE(isTargeted);
    EXPECT_TRUE(target.performDrop());
    EXPECT_FALSE(isTargeted);
    store().setDragItem(std::nullopt);
    EXPECT_FALSE(target.validateDrop());
}

// On a heading

TEST_F(SidebarDragDropTest, OnTheHeadingNotesLeaveTheirFolders) {
    dragNotes({u"a"_s, u"n"_s});
    EXPECT_TRUE(dropAt(placeOf(u"Note"_s)));
    EXPECT_EQ(titlesIn(std::nullopt), QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"n"_s}));
    EXPECT_EQ(m_folder.settings().sortOrder(), NoteSortOrder::title);
}

TEST_F(SidebarDragDropTest, TheHeadingRefusesWhatIsAtTheTopLevelAlready) {
    dragNotes({u"a"_s, u"b"_s});
    EXPECT_FALSE(moveTo(placeOf(u"Note"_s)));
    dragFolder(u"Casa"_s);
    EXPECT_FALSE(moveTo(placeOf(u"Note"_s)));
    EXPECT_FALSE(dropAt(placeOf(u"Note"_s)));
}

// After the last row

TEST_F(SidebarDragDropTest, AfterTheLastRowNotesGoToTheEndOfTheTopLevel) {
    dragNotes({u"a"_s, u"x"_s});
    EXPECT_TRUE(dropAt(end()));
    EXPECT_EQ(titlesIn(std::nullopt), QStringList({u"b"_s, u"c"_s, u"d"_s, u"a"_s, u"x"_s}));
    EXPECT_EQ(m_folder.settings().sortOrder(), NoteSortOrder::manual);
}

TEST_F(SidebarDragDropTest, AfterTheLastRowAFolderBecomesTheLast) {
    dragFolder(u"Casa"_s);
    EXPECT_TRUE(dropAt(end()));
    EXPECT_EQ(store().folders(), QStringList({u"Lavoro"_s, u"Zeta"_s, u"Casa"_s}));
    store().setDragItem(std::nullopt);
    EXPECT_FALSE(moveTo(end()));
}

// All targets

TEST_F(SidebarDragDropTest, ADropEndsAMultiSelectionThatTheRowWasNotOf) {
    select(u"a"_s);
    click(u"b"_s, Qt::ControlModifier);
    dragNotes({u"d"_s});
    EXPECT_TRUE(dropAt(upperHalfOf(u"a"_s)));
    EXPECT_TRUE(store().multiSelection().isEmpty());
    EXPECT_EQ(selectedTitle(), u"a"_s);
}

TEST_F(SidebarDragDropTest, OnlyADragOfThisSidebarIsTaken) {
    dragNotes({u"a"_s});
    QMimeData text;
    text.setText(u"testo"_s);
    EXPECT_FALSE(moveTo(placeOf(u"c"_s), &text));
    // The type alone can come from another process.
    QMimeData foreign;
    foreign.setData(SidebarMimeData::type, {});
    EXPECT_FALSE(moveTo(placeOf(u"c"_s), &foreign));
    EXPECT_TRUE(moveTo(placeOf(u"c"_s)));
}

TEST_F(SidebarDragDropTest, MarksShowWhereADropGoesAndEndWithTheDrag) {
    const auto picture = [this] { return m_list->viewport()->grab().toImage(); };
    m_list->model().update();
    const QImage plain = picture();
    dragNotes({u"a"_s});
    QList<QImage> marked;
    for (const QPoint& place : {upperHalfOf(u"c"_s), lowerHalfOf(u"c"_s), placeOf(u"Casa"_s), end()}) {
        EXPECT_TRUE(moveTo(place));
        marked.append(picture());
        EXPECT_NE(marked.constLast(), plain);
    }
    EXPECT_NE(marked.at(0), marked.at(1));
    EXPECT_FALSE(moveTo(placeOf(u"a"_s)));
    EXPECT_EQ(picture(), plain);
    EXPECT_TRUE(moveTo(placeOf(u"c"_s)));
    leave();
    EXPECT_EQ(picture(), plain);
}

TEST_F(SidebarDragDropTest, MarksOfAFolderShowAboveWhatItGoes) {
    const auto differsIn = [this](const QImage& plain, const QRect& rect) {
        return m_list->viewport()->grab().toImage().copy(rect) != plain.copy(rect);
    };
    m_list->model().update();
    const QImage plain = m_list->viewport()->grab().toImage();
    dragFolder(u"Zeta"_s);
    // On a header the line is above it, for a folder goes into no other.
    const QRect header = m_list->rowRect(rowOf(u"Lavoro"_s));
    EXPECT_TRUE(moveTo(header.center()));
    EXPECT_TRUE(differsIn(plain, header.adjusted(0, -4, 0, -header.height() + 4)));
    EXPECT_FALSE(differsIn(plain, header.adjusted(0, 6, 0, 0)));
    // After the last row of all it is below the last of the folders, which is where the folder comes to stand.
    dragFolder(u"Casa"_s);
    EXPECT_TRUE(moveTo(end()));
    const QRect last = m_list->rowRect(rowOf(u"z"_s));
    EXPECT_TRUE(differsIn(plain, last.adjusted(0, last.height() - 4, 0, 4)));
    EXPECT_FALSE(differsIn(plain, m_list->rowRect(rowOf(u"d"_s)).adjusted(0, 0, 0, 12)));
    leave();
    EXPECT_EQ(m_list->viewport()->grab().toImage(), plain);
}

TEST_F(SidebarDragDropTest, WhatWasDraggedIsKeptAfterTheDropUntilTheNextDrag) {
    dragNotes({u"a"_s});
    EXPECT_TRUE(dropAt(placeOf(u"Casa"_s)));
    EXPECT_EQ(store().dragItem(), std::optional(SidebarDragItem(QList{note(u"a"_s)->id()})));
    EXPECT_TRUE(EndDropDelegate(store()).validateDrop());
}

TEST_F(SidebarDragDropTest, RowsThatChangeUnderTheDragAreJudgedAnew) {
    dragNotes({u"a"_s});
    EXPECT_TRUE(moveTo(placeOf(u"b"_s)));
    const QPoint place = placeOf(u"b"_s);
    store().toggleCollapsed(u"Zeta"_s);
    m_list->model().update();
    QDropEvent drop(place, Qt::MoveAction, &m_data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(m_list->viewport(), &drop);
    EXPECT_TRUE(drop.isAccepted());
    EXPECT_NE(titlesIn(std::nullopt), QStringList({u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
}

TEST_F(LongSidebarDragTest, ADragNearAnEdgeScrollsTheList) {
    QScrollBar& bar = *m_list->verticalScrollBar();
    const QSize size = m_list->viewport()->size();
    dragNotes({u"Nota 05"_s});
    EXPECT_TRUE(moveTo({40, size.height() - 3}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return bar.value() > 120; }));
    moveTo({40, size.height() / 2});
    const int stopped = bar.value();
    EXPECT_TRUE(moveTo({40, 3}));
    ASSERT_TRUE(QTest::qWaitFor([&] { return bar.value() < stopped; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return bar.value() == 0; }));
    leave();
}
