#include "Quillary/MenuBarExtra/MenuBarContent.h"

#include "Quillary/Keyboard/MenuShortcut.h"
#include "Quillary/Sidebar/ShownName.h"
#include "Quillary/State/AppActions.h"

#include <QAction>
#include <QCoreApplication>

#include <algorithm>
#include <span>
#include <vector>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

/// The notes that were modified last, the latest first; those of equal date stay in their order.
QList<const NoteItem*> latestNotes(const QList<NoteItemPtr>& notes, qsizetype count) {
    // The place in the list decides between equal dates, since a partial sort is not stable.
    std::vector<std::pair<const NoteItem*, qsizetype>> sorted;
    sorted.reserve(static_cast<std::size_t>(notes.size()));
    for (const NoteItemPtr& note : notes) {
        sorted.emplace_back(note.get(), static_cast<qsizetype>(sorted.size()));
    }
    const auto end = sorted.begin() + std::min(count, notes.size());
    std::partial_sort(sorted.begin(), end, sorted.end(), [](const auto& one, const auto& other) {
        const Moment date = one.first->modified();
        const Moment otherDate = other.first->modified();
        return date != otherDate ? date > otherDate : one.second < other.second;
    });
    QList<const NoteItem*> latest;
    for (const auto& each : std::span(sorted.begin(), end)) {
        latest.append(each.first);
    }
    return latest;
}

/// A text that a panel shows as it stands. Panels mark the letter behind an underscore, a double one is one; Qt makes
/// an underscore of the first ampersand, and the second one of a pair is then the letter that is marked.
QString panelText(QString text) {
    text.replace(u'_', u"__"_s);
    if (const qsizetype ampersand = text.indexOf(u'&'); ampersand >= 0) {
        text.insert(ampersand, u'&');
    }
    return text;
}

QString recentLabel(const NoteItem& note) {
    const QString title = shownName(note.title());
    return note.folder() ? title % u"  —  " % shownName(*note.folder()) : title;
}

} // namespace

MenuBarContent::MenuBarContent(NotesStore* store, AppSettings* settings, QObject* parent)
    : QObject(parent), m_store(*store), m_settings(*settings) {
    m_showItem = add(tr("Mostra Quillary"), {});
    // It tells the hot key and doesn't listen for it.
    m_showItem->setShortcutContext(Qt::WidgetShortcut);
    m_menu.addSeparator();
    add(tr("Nuova nota"), [this] { m_store.makeNoteBesideSelected(); });
    add(tr("Nuova nota dagli appunti"),
        [store] { AppActions::shared().runWhenActive([store] { store->createNoteFromClipboard(); }); });
    m_menu.addSeparator();
    addRecentItems();
    m_menu.addSeparator();
    connect(m_menu.addAction(tr("Impostazioni…")), &QAction::triggered, this, &MenuBarContent::settingsRequested);
    connect(m_menu.addAction(tr("Esci da Quillary")), &QAction::triggered, this, [] { QCoreApplication::quit(); });

    connect(settings, &AppSettings::shortcutsChanged, this, &MenuBarContent::updateShortcut);
    updateShortcut();

    m_update.setSingleShot(true);
    m_update.setInterval(0);
    connect(&m_update, &QTimer::timeout, this, &MenuBarContent::updateRecentItems);
    connect(&m_menu, &QMenu::aboutToShow, this, &MenuBarContent::updateRecentItems);
    connect(store, &NotesStore::notesChanged, &m_update, qOverload<>(&QTimer::start));
    connect(store, &NotesStore::noteChanged, this, [this](const NoteItem*, NoteField field) {
        if (field == NoteField::modified || field == NoteField::url || field == NoteField::folder) {
            m_update.start();
        }
    });
    updateRecentItems();
}

QAction* MenuBarContent::add(const QString& text, const std::function<void()>& command) {
    QAction* const action = m_menu.addAction(text);
    connect(action, &QAction::triggered, this, [command] {
        AppActions::shared().showMainWindow();
        if (command) {
            command();
        }
    });
    return action;
}

void MenuBarContent::addRecentItems() {
    // Panels that draw the menu themselves leave out the titles of sections, so that it is an item that does nothing.
    m_menu.addAction(tr("Recenti"))->setEnabled(false);
    for (qsizetype index = 0; index < recentCount; ++index) {
        m_recentItems.append(add({}, [this, index] { reveal(index); }));
    }
}

void MenuBarContent::reveal(qsizetype recent) const {
    // The menu may have been on screen while the note went.
    if (const NoteItemPtr note = m_store.item(m_recentNotes.value(recent))) {
        m_store.reveal(*note, false);
    }
}

void MenuBarContent::updateShortcut() {
    const std::optional<KeyShortcut> shortcut = m_settings.shortcut(ShortcutAction::summon);
    m_showItem->setShortcut(shortcut ? menuShortcut(*shortcut) : QKeySequence());
}

void MenuBarContent::updateRecentItems() {
    const QList<const NoteItem*> notes = latestNotes(m_store.notes(), recentCount);
    m_recentNotes.clear();
    for (qsizetype index = 0; index < recentCount; ++index) {
        const bool isUsed = index < notes.size();
        if (isUsed) {
            m_recentNotes.append(notes[index]->id());
            m_recentItems[index]->setText(panelText(recentLabel(*notes[index])));
        }
        m_recentItems[index]->setVisible(isUsed);
    }
}

} // namespace quillary
