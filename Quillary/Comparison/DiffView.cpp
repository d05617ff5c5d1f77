#include "Quillary/Comparison/DiffView.h"

#include "Quillary/Comparison/DiffHeader.h"
#include "Quillary/Comparison/DiffList.h"
#include "Quillary/Comparison/OverviewRuler.h"
#include "Quillary/Sidebar/ShownName.h"
#include "Quillary/State/NoteDocument.h"
#include "Quillary/State/NoteItem.h"
#include "Quillary/Theme/Hairline.h"
#include "Quillary/Theme/Symbol.h"
#include "Quillary/Theme/Theme.h"
#include "QuillaryCore/Compare/TextDiff.h"

#include <QFocusEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPromise>
#include <QStackedWidget>
#include <QThreadPool>
#include <QVBoxLayout>

namespace quillary {

namespace {

/// The most units of both texts that are compared on the main thread: a few milliseconds at the worst.
constexpr qsizetype mostUnitsAtOnce = 60'000;

QString textOf(const NoteItem& note) {
    return note.document() == nullptr ? QString() : note.document()->text();
}

QWidget* emptyGround(QWidget* parent) {
    auto* const widget = new QWidget(parent);
    widget->setBackgroundRole(QPalette::Base);
    widget->setAutoFillBackground(true);
    return widget;
}

/// The sign above the words of the identical state, in the colour of the palette that it is drawn in.
class EqualSign : public QWidget {
public:
    explicit EqualSign(QWidget* parent) : QWidget(parent) { setFixedSize(side, side); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        drawSymbol(painter, Symbol::equal, rect(), Theme::secondaryText(palette()));
    }

private:
    static constexpr int side = 36;
};

} // namespace

DiffView::DiffView(NotesStore& store, AppSettings& settings, QWidget* parent)
    : QWidget(parent),
      m_store(store),
      m_settings(settings),
      m_header(new DiffHeader(this)),
      m_body(new QStackedWidget(this)),
      m_waiting(emptyGround(m_body)),
      m_list(new DiffList(m_body)),
      m_ruler(new OverviewRuler(m_body)),
      m_rowsState(makeRowsState()),
      m_identicalState(makeIdenticalState()) {
    for (QWidget* const state : {m_waiting, m_rowsState, m_identicalState}) {
        m_body->addWidget(state);
    }
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_header);
    layout->addWidget(new Hairline(Qt::Horizontal, this));
    layout->addWidget(m_body, 1);
    setAccessibleName(tr("Confronto"));

    connect(m_header, &DiffHeader::swapRequested, &m_store, &NotesStore::swapComparison);
    connect(m_header, &DiffHeader::closeRequested, &m_store, &NotesStore::clearMultiSelection);
    connect(m_header, &DiffHeader::modeChosen, m_list, &DiffList::setMode);
    connect(m_header, &DiffHeader::showsAllLinesChosen, m_list, &DiffList::setShowsAllLines);
    connect(m_ruler, &OverviewRuler::jump, m_list, &DiffList::scrollToRow);
    connect(&m_settings, &AppSettings::fontSizeChanged, this, &DiffView::updateStyle);
    connect(&m_settings, &AppSettings::fontStyleChanged, this, &DiffView::updateStyle);
    connect(&m_store, &NotesStore::multiSelectionChanged, this, &DiffView::follow);
    connect(&m_store, &NotesStore::isShowingDiffChanged, this, &DiffView::follow);
    connect(&m_store, &NotesStore::notesChanged, this, &DiffView::follow);
    connect(&m_store, &NotesStore::noteChanged, this, [this](const NoteItem*, NoteField field) {
        if (field == NoteField::url) {
            updateTitles();
        }
    });
    connect(&m_watcher, &QFutureWatcherBase::finished, this, [this] {
        if (m_watcher.future().resultCount() > 0) {
            present(m_watcher.result());
        }
    });
    updateStyle();
    follow();
}

DiffView::~DiffView() {
    m_stop.request_stop();
}

QWidget* DiffView::makeRowsState() {
    auto* const state = new QWidget(m_body);
    auto* const layout = new QHBoxLayout(state);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_list, 1);
    layout->addWidget(m_ruler);
    return state;
}

QWidget* DiffView::makeIdenticalState() {
    QWidget* const state = emptyGround(m_body);
    auto* const text = new QLabel(tr("Le due note sono identiche"), state);
    text->setFont(Theme::sidebarTitle());
    text->setForegroundRole(QPalette::PlaceholderText);
    auto* const layout = new QVBoxLayout(state);
    layout->setSpacing(10);
    layout->addStretch(2);
    layout->addWidget(new EqualSign(state), 0, Qt::AlignHCenter);
    layout->addWidget(text, 0, Qt::AlignHCenter);
    layout->addStretch(3);
    return state;
}

/// No proxy, which the Tab key would take for a stop, and pass by all before it.
void DiffView::focusInEvent(QFocusEvent* event) {
    m_list->setFocus(event->reason());
}

void DiffView::follow() {
    const QList<NoteID>& ids = m_store.multiSelection();
    const NoteItemPtr oldNote = ids.size() == 2 ? m_store.item(ids.first()) : nullptr;
    const NoteItemPtr newNote = ids.size() == 2 ? m_store.item(ids.last()) : nullptr;
    if (!m_store.isShowingDiff() || oldNote == nullptr || newNote == nullptr) {
        end();
    } else if (const Pair pair{oldNote->id(), newNote->id()}; m_pair != pair) {
        // The same two notes with their sides swapped keep the way in which they are shown.
        const bool isSwapped = m_pair == Pair{pair.newNote, pair.oldNote};
        if (!isSwapped) {
            m_header->setMode(Mode::sideBySide);
            m_header->setShowsAllLines(false);
            m_list->setMode(Mode::sideBySide);
            m_list->setShowsAllLines(false);
        }
        m_pair = pair;
        begin(*oldNote, *newNote);
    }
}

void DiffView::begin(const NoteItem& oldNote, const NoteItem& newNote) {
    updateTitles();
    compare(textOf(oldNote), textOf(newNote));
}

void DiffView::compare(const QString& oldText, const QString& newText) {
    m_stop.request_stop();
    m_stop = std::stop_source();
    m_hasResult = false;
    if (oldText.size() + newText.size() <= mostUnitsAtOnce) {
        m_watcher.setFuture({});
        present(TextDiff::compare(oldText, newText));
        return;
    }
    take({});
    m_body->setCurrentWidget(m_waiting);
    const auto promise = std::make_shared<QPromise<TextDiffResult>>();
    m_watcher.setFuture(promise->future());
    promise->start();
    QThreadPool::globalInstance()->start([promise, oldText, newText, stop = m_stop.get_token()] {
        TextDiffResult result = TextDiff::compare(oldText, newText, stop);
        if (!stop.stop_requested()) {
            promise->addResult(std::move(result));
        }
        promise->finish();
    });
}

void DiffView::end() {
    if (m_pair) {
        m_pair.reset();
        m_hasResult = false;
        m_stop.request_stop();
        m_watcher.setFuture({});
        take({});
        m_body->setCurrentWidget(m_waiting);
    }
}

void DiffView::take(TextDiffResult result) {
    m_result = std::move(result);
    m_header->setStats(m_result.stats);
    m_list->setRows(m_result.rows);
    m_ruler->setRows(m_result.rows);
}

void DiffView::present(TextDiffResult result) {
    take(std::move(result));
    m_hasResult = true;
    m_body->setCurrentWidget(m_result.stats == DiffStats() ? m_identicalState : m_rowsState);
    Q_EMIT resultReady();
}

void DiffView::updateTitles() {
    if (m_pair) {
        const NoteItemPtr oldNote = m_store.item(m_pair->oldNote);
        const NoteItemPtr newNote = m_store.item(m_pair->newNote);
        if (oldNote != nullptr && newNote != nullptr) {
            m_header->setTitles(shownName(oldNote->title()), shownName(newNote->title()));
        }
    }
}

void DiffView::updateStyle() {
    constexpr double lineHeight = 1.45;
    m_list->setStyle(m_settings.editorStyle());
    m_ruler->setLineHeight(m_settings.fontSize() * lineHeight);
}

} // namespace quillary
