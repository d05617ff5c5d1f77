// The sidebar over ten thousand notes in fifty folders: its first paint, a frame of scrolling, a keystroke in the
// search field, the order after a save and steps of the arrow keys, each beside what a QListView with rows of one
// height takes for as many strings. Times are of the process, drawing included, on the offscreen platform.

#include "PeerTable.h"
#include "Quillary/Sidebar/SearchField.h"
#include "Quillary/Sidebar/SidebarList.h"
#include "Quillary/Sidebar/SidebarView.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NoteDocument.h"
#include "Quillary/State/NotesStore.h"
#include "Quillary/Theme/Style.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QListView>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QStringListModel>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <random>

namespace {

using namespace quillary;
using namespace Qt::StringLiterals;

constexpr int noteCount = 10'000;
constexpr int folderCount = 50;
constexpr QSize sidebarSize(270, 700);

/// A fifth of the notes at the top level, the others in folders; 1 KB of words each.
void writeNotes(const QString& directory) {
    std::mt19937 random(1);
    for (int folder = 0; folder < folderCount; ++folder) {
        QDir().mkpath(u"%1/Cartella %2"_s.arg(directory).arg(folder));
    }
    for (int i = 0; i < noteCount; ++i) {
        const QString parent = i % 5 == 0 ? directory : u"%1/Cartella %2"_s.arg(directory).arg(i % folderCount);
        QFile file(u"%1/Nota %2.md"_s.arg(parent).arg(i));
        if (!file.open(QIODevice::WriteOnly)) {
            std::abort();
        }
        QByteArray text;
        while (text.size() < 1024) {
            text += QByteArray("parola").left(1 + qsizetype(random() % 6)) + (random() % 12 == 0 ? '\n' : ' ');
        }
        file.write(text);
    }
}

void preload(const NotesStore& store) {
    while (std::ranges::any_of(store.notes(), [](const NoteItemPtr& note) { return note->document() == nullptr; })) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QCoreApplication::processEvents();
}

/// Everything that is due, drawing included.
void settle() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

void showAt(QWidget& widget) {
    widget.resize(sidebarSize);
    widget.show();
    settle();
}

/// The peer: strings of the same number, in rows of one height.
struct StringList {
    StringList() {
        QStringList strings;
        for (int i = 0; i < noteCount; ++i) {
            strings.append(u"Nota %1"_s.arg(i));
        }
        model.setStringList(strings);
        view.setUniformItemSizes(true);
        view.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
        view.setModel(&model);
    }

    QStringListModel model;
    QListView view;
};

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setStyle(new Style);
    const QTemporaryDir temporary;
    const QString directory = temporary.filePath(u"Note"_s);
    writeNotes(directory);
    AppSettings settings(Preferences(FilePath::fromText(temporary.filePath(u"preferences.json"_s))));
    settings.setNotesDirectory(FilePath::fromText(directory));
    settings.setSortOrder(NoteSortOrder::modified);
    NotesStore store(&settings);
    preload(store);
    QAction newNote;

    compareWithPeer(
        "first paint once the store stands (50 ms)", "QListView over QStringListModel", 2.5, 6.0,
        [&] {
            SidebarView view(store, &newNote);
            showAt(view);
        },
        [] {
            StringList peer;
            showAt(peer.view);
        });

    SidebarView view(store, &newNote);
    showAt(view);
    auto& list = *view.findChild<SidebarList*>();
    StringList peer;
    showAt(peer.view);

    constexpr int frames = 100;
    const auto scroll = [](QAbstractScrollArea& area) {
        QScrollBar& bar = *area.verticalScrollBar();
        for (int frame = 0; frame < frames; ++frame) {
            // A page and a bit: nothing of the last frame can be kept.
            bar.setValue((bar.value() + area.viewport()->height() + 37) % std::max(1, bar.maximum()));
            settle();
        }
    };
    compareWithPeer(
        "100 frames of scrolling by a page (8 ms each)", "QListView, 100 frames", 1.5, 4.0, [&] { scroll(list); },
        [&] { scroll(peer.view); });

    int round = 0;
    const QStringList queries{u"nota 12"_s, u"nota 123"_s, u"nota 1"_s, u"parola"_s};
    QSortFilterProxyModel filter;
    filter.setFilterCaseSensitivity(Qt::CaseInsensitive);
    QStringList texts;
    for (const NoteItemPtr& note : store.notes()) {
        texts.append(note->title() + u'\n' + note->document()->text());
    }
    QStringListModel textModel(texts);
    filter.setSourceModel(&textModel);
    QListView filtered;
    filtered.setUniformItemSizes(true);
    filtered.setModel(&filter);
    showAt(filtered);
    compareWithPeer(
        "four keystrokes in the search field (50 ms each)", "QSortFilterProxyModel, the same four", 1.5, 4.0,
        [&] {
            for (const QString& query : queries) {
                store.setSearchQuery(query);
                settle();
            }
        },
        [&] {
            for (const QString& query : queries) {
                filter.setFilterFixedString(query);
                settle();
            }
        });
    store.setSearchQuery({});
    settle();

    const auto topLevel = store.notes(std::nullopt);
    compareWithPeer(
        "order after a save (10 ms)", "QStringListModel: move a row", 15.0, 45.0,
        [&] {
            const NoteItemPtr& note = topLevel[(topLevel.size() / 2 + ++round) % topLevel.size()];
            note->setModified(now() + std::chrono::seconds(round));
            store.resort();
            settle();
        },
        [&] {
            peer.model.moveRow({}, noteCount / 2, {}, 0);
            settle();
        });

    constexpr int steps = 60;
    compareWithPeer(
        "60 steps of the arrow key (33 ms each)", "QListView, 60 steps", 100.0, 300.0,
        [&] {
            for (int step = 0; step < steps; ++step) {
                store.sidebarMove(step < steps / 2 ? +1 : -1);
                settle();
            }
        },
        [&] {
            for (int step = 0; step < steps; ++step) {
                const int row =
                    std::clamp(peer.view.currentIndex().row() + (step < steps / 2 ? 1 : -1), 0, noteCount - 1);
                peer.view.setCurrentIndex(peer.model.index(row));
                settle();
            }
        });
    return 0;
}
