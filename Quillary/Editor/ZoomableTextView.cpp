#include "Quillary/Editor/ZoomableTextView.h"

#include "Quillary/Editor/OfferedText.h"
#include "Quillary/Editor/TextViewAccessible.h"
#include "Quillary/State/NoteDocument.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QNativeGestureEvent>
#include <QScrollBar>
#include <QStyleHints>

#include <algorithm>

namespace quillary {

namespace {

/// Travel of a pinch that makes one zoom step.
constexpr double magnificationPerStep = 0.08;

} // namespace

ZoomableTextView::ZoomableTextView(NoteDocument& document, QWidget* parent)
    : QAbstractScrollArea(parent),
      m_document(document),
      m_storage(document.storage()),
      m_undoManager(document.undoManager()),
      m_layout(m_storage) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::WheelFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    setAttribute(Qt::WA_KeyCompression);
    TextViewAccessible::install();
    viewport()->setAcceptDrops(true);
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setBackgroundRole(QPalette::Base);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(&m_layout, &TextLayout::textChanged, this, &ZoomableTextView::follow);
    connect(&m_layout, &TextLayout::reflowed, this, &ZoomableTextView::reflow);
    connect(QGuiApplication::styleHints(), &QStyleHints::cursorFlashTimeChanged, this,
            &ZoomableTextView::restartBlinking);
}

ZoomableTextView::~ZoomableTextView() = default;

void ZoomableTextView::setWraps(bool wraps) {
    setHorizontalScrollBarPolicy(wraps ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
    m_layout.setWraps(wraps);
}

void ZoomableTextView::setReadOnly(bool isReadOnly) {
    if (isReadOnly == m_isReadOnly) {
        return;
    }
    commitPreedit();
    m_isReadOnly = isReadOnly;
    setAttribute(Qt::WA_InputMethodEnabled, !isReadOnly);
    restartBlinking();
}

void ZoomableTextView::setHighlights(std::optional<SyntaxLanguage> language, std::optional<TextRange> window,
                                     std::vector<SyntaxRanges::Span> colors) {
    m_highlightedLanguage = language;
    m_highlightedWindow = window;
    m_layout.syntax().setAll(std::move(colors));
    viewport()->update();
}

void ZoomableTextView::setSelection(TextSelection selection) {
    const auto settled = [this](qsizetype position) {
        return m_storage.clusterBoundaryAtOrBefore(std::clamp<qsizetype>(position, 0, m_storage.length()));
    };
    assignSelection({settled(selection.anchor), settled(selection.caret)}, Side::after);
}

void ZoomableTextView::assignSelection(TextSelection selection, Side side) {
    const TextSelection before = m_selection;
    const bool changes = selection != m_selection;
    if (changes || side != m_caretSide) {
        m_selection = selection;
        m_caretSide = side;
        viewport()->update();
        updateInputMethod();
    }
    restartBlinking();
    if (changes) {
        announceSelection(before);
        Q_EMIT selectionChanged();
    }
}

QString ZoomableTextView::selectedText() const {
    return m_storage.text(m_selection.range());
}

bool ZoomableTextView::replaceText(TextRange range, const QString& text) {
    if (m_isReadOnly) {
        return false;
    }
    edit(range, text, EditKind::other);
    return true;
}

void ZoomableTextView::edit(TextRange range, const QString& text, EditKind kind) {
    if (m_isReadOnly || (range.isEmpty() && text.isEmpty())) {
        return;
    }
    clearPreedit();
    rememberForAccessibility(range);
    Q_EMIT aboutToEdit();
    m_undoManager.replace(range, text, kind, m_selection);
    const qsizetype caret = m_storage.clusterBoundaryAtOrAfter(range.location + text.size());
    m_goalX.reset();
    assignSelection({caret, caret}, Side::after);
    Q_EMIT edited();
    ensureCaretVisible();
}

void ZoomableTextView::removeRange(TextRange range, EditKind kind) {
    edit(range, {}, kind);
}

/// Keeps selection and scroll position where they were in the text. A replacement of the whole text leaves no such
/// place: there they keep their offsets as far as the new text goes.
void ZoomableTextView::follow(const TextChange& change) {
    const bool replacesAll = m_storage.steps().size() == 1 && change.offset == 0 && change.removedLength > 0 &&
                             change.insertedLength == m_storage.length();
    const auto follows = [&](qsizetype position) {
        if (replacesAll) {
            return std::min(position, m_storage.length());
        }
        for (const TextChange& step : m_storage.steps()) {
            position = followed(position, step);
        }
        return position;
    };
    announceChange(change);
    // Whoever looks for matches finds them anew.
    m_currentFind.reset();
    // All places before the selection: an input method that is told of it asks at once where it is on the screen.
    m_topPosition = follows(m_topPosition);
    const qsizetype dragStart = follows(m_dragOrigin.location);
    m_dragOrigin = {dragStart, follows(m_dragOrigin.end()) - dragStart};
    if (m_dropSpot) {
        m_dropSpot->position = follows(m_dropSpot->position);
    }
    TextSelection selection{follows(m_selection.anchor), follows(m_selection.caret)};
    selection.anchor = m_storage.clusterBoundaryAtOrBefore(selection.anchor);
    selection.caret = m_storage.clusterBoundaryAtOrBefore(selection.caret);
    assignSelection(selection, Side::after);
    settleTop();
    updateInputMethod();
    updateScrollBars();
    startMeasuring();
    viewport()->update();
}

void ZoomableTextView::undo() {
    if (!m_isReadOnly && m_undoManager.canUndo()) {
        clearPreedit();
        Q_EMIT aboutToEdit();
        showAfterUndo(m_undoManager.undo());
    }
}

void ZoomableTextView::redo() {
    if (!m_isReadOnly && m_undoManager.canRedo()) {
        clearPreedit();
        Q_EMIT aboutToEdit();
        showAfterUndo(m_undoManager.redo());
    }
}

void ZoomableTextView::showAfterUndo(const std::optional<TextSelection>& selection) {
    m_goalX.reset();
    if (selection) {
        setSelection(*selection);
    }
    Q_EMIT edited();
    ensureCaretVisible();
}

void ZoomableTextView::cut() {
    if (!m_isReadOnly && !m_selection.isEmpty()) {
        copy();
        deleteSelection();
    }
}

void ZoomableTextView::copy() {
    if (!m_selection.isEmpty()) {
        QGuiApplication::clipboard()->setText(selectedText());
    }
}

void ZoomableTextView::paste() {
    insertFromMimeData(QGuiApplication::clipboard()->mimeData());
}

void ZoomableTextView::insertFromMimeData(const QMimeData* source) {
    if (const std::optional<QString> text = plainTextOf(source)) {
        edit(m_selection.range(), *text, EditKind::other);
    }
}

void ZoomableTextView::deleteSelection() {
    if (!m_selection.isEmpty()) {
        removeRange(m_selection.range(), EditKind::other);
    }
}

void ZoomableTextView::selectAll() {
    m_goalX.reset();
    assignSelection({0, m_storage.length()}, Side::after);
    publishPrimarySelection();
}

/// Offers the selection to a middle click, as X11 users expect. An empty one leaves the last offer as it is.
void ZoomableTextView::publishPrimarySelection() {
    QClipboard* clipboard = QGuiApplication::clipboard();
    if (clipboard->supportsSelection() && !m_selection.isEmpty()) {
        clipboard->setMimeData(new OfferedText(m_storage, m_selection.range()), QClipboard::Selection);
    }
}

bool ZoomableTextView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride) {
        auto& key = static_cast<QKeyEvent&>(*event);
        if (claimsKey(key)) {
            key.accept();
            return true;
        }
    }
    return QAbstractScrollArea::event(event);
}

bool ZoomableTextView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::NativeGesture) {
        zoomByGesture(static_cast<const QNativeGestureEvent&>(*event));
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void ZoomableTextView::zoomByGesture(const QNativeGestureEvent& event) {
    if (event.gestureType() == Qt::ZoomNativeGesture) {
        m_pendingMagnification += event.value();
        while (std::abs(m_pendingMagnification) >= magnificationPerStep) {
            const int step = m_pendingMagnification > 0 ? 1 : -1;
            if (onZoomStep) {
                onZoomStep(step);
            }
            m_pendingMagnification -= step * magnificationPerStep;
        }
    } else if (event.gestureType() == Qt::BeginNativeGesture || event.gestureType() == Qt::EndNativeGesture) {
        m_pendingMagnification = 0;
    }
}

void ZoomableTextView::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    restartBlinking();
    viewport()->update();
}

void ZoomableTextView::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    commitPreedit();
    restartBlinking();
    viewport()->update();
}

void ZoomableTextView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::ActivationChange || event->type() == QEvent::PaletteChange) {
        viewport()->update();
    }
}

bool ZoomableTextView::focusNextPrevChild(bool next) {
    // Tab is a letter here.
    return m_isReadOnly && QAbstractScrollArea::focusNextPrevChild(next);
}

void ZoomableTextView::restartBlinking() {
    m_isCaretOn = hasFocus() && !m_isReadOnly;
    const int period = QGuiApplication::styleHints()->cursorFlashTime();
    if (m_isCaretOn && period >= 2) {
        m_blinkTimer.start(period / 2, this);
    } else {
        m_blinkTimer.stop();
    }
}

} // namespace quillary
