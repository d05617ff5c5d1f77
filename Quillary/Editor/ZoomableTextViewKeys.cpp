#include "Quillary/Editor/TextMotion.h"
#include "Quillary/Editor/ZoomableTextView.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace quillary {

namespace {

enum class Motion {
    right,
    left,
    wordRight,
    wordLeft,
    up,
    down,
    pageUp,
    pageDown,
    rowStart,
    rowEnd,
    lineStart,
    lineEnd,
    textStart,
    textEnd,
};

struct MotionKeys {
    Motion motion;
    QKeySequence::StandardKey move;
    QKeySequence::StandardKey select;
};

constexpr std::array motionKeys = {
    MotionKeys{Motion::right, QKeySequence::MoveToNextChar, QKeySequence::SelectNextChar},
    MotionKeys{Motion::left, QKeySequence::MoveToPreviousChar, QKeySequence::SelectPreviousChar},
    MotionKeys{Motion::wordRight, QKeySequence::MoveToNextWord, QKeySequence::SelectNextWord},
    MotionKeys{Motion::wordLeft, QKeySequence::MoveToPreviousWord, QKeySequence::SelectPreviousWord},
    MotionKeys{Motion::up, QKeySequence::MoveToPreviousLine, QKeySequence::SelectPreviousLine},
    MotionKeys{Motion::down, QKeySequence::MoveToNextLine, QKeySequence::SelectNextLine},
    MotionKeys{Motion::pageUp, QKeySequence::MoveToPreviousPage, QKeySequence::SelectPreviousPage},
    MotionKeys{Motion::pageDown, QKeySequence::MoveToNextPage, QKeySequence::SelectNextPage},
    MotionKeys{Motion::rowStart, QKeySequence::MoveToStartOfLine, QKeySequence::SelectStartOfLine},
    MotionKeys{Motion::rowEnd, QKeySequence::MoveToEndOfLine, QKeySequence::SelectEndOfLine},
    MotionKeys{Motion::lineStart, QKeySequence::MoveToStartOfBlock, QKeySequence::SelectStartOfBlock},
    MotionKeys{Motion::lineEnd, QKeySequence::MoveToEndOfBlock, QKeySequence::SelectEndOfBlock},
    MotionKeys{Motion::textStart, QKeySequence::MoveToStartOfDocument, QKeySequence::SelectStartOfDocument},
    MotionKeys{Motion::textEnd, QKeySequence::MoveToEndOfDocument, QKeySequence::SelectEndOfDocument},
};

/// Not among them: DeleteEndOfLine, whose Ctrl+K the window has for its search.
constexpr std::array editingKeys = {
    QKeySequence::Copy, QKeySequence::Cut,       QKeySequence::Paste,           QKeySequence::Undo,
    QKeySequence::Redo, QKeySequence::SelectAll, QKeySequence::DeleteEndOfWord, QKeySequence::DeleteStartOfWord,
};

/// Whether a key's text is meant to be typed, as Qt's own text widgets decide it.
bool isTyped(const QKeyEvent& event) {
    const QString text = event.text();
    if (text.isEmpty()) {
        return false;
    }
    const char32_t first = text.size() > 1 && text[0].isHighSurrogate() && text[1].isLowSurrogate()
                               ? QChar::surrogateToUcs4(text[0], text[1])
                               : text[0].unicode();
    const QChar::Category category = QChar::category(first);
    // Joiners and direction marks have keys with Ctrl and Shift.
    if (category == QChar::Other_Format) {
        return true;
    }
    if (event.modifiers() == Qt::ControlModifier || event.modifiers() == (Qt::ControlModifier | Qt::ShiftModifier)) {
        return false;
    }
    return QChar::isPrint(first) || category == QChar::Other_PrivateUse || first == U'\t';
}

/// Backspace and Delete also count with Shift, as a slip of the finger.
bool isPlain(const QKeyEvent& event, Qt::Key key) {
    return event.key() == key &&
           !(event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier | Qt::GroupSwitchModifier));
}

} // namespace

/// Keys that the view wants for itself before they become shortcuts of the window.
bool ZoomableTextView::claimsKey(const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    if (modifiers == Qt::NoModifier && isTyped(event)) {
        return !m_isReadOnly;
    }
    // X11 has Ctrl+E for the end of a line, which End does as well; here it searches for what is selected.
    if (event.modifiers() == Qt::ControlModifier && event.key() == Qt::Key_E) {
        return false;
    }
    const auto matches = [&](QKeySequence::StandardKey key) { return event.matches(key); };
    const auto moves = [&](const MotionKeys& keys) { return matches(keys.move) || matches(keys.select); };
    return isPlain(event, Qt::Key_Backspace) || isPlain(event, Qt::Key_Delete) || isPlain(event, Qt::Key_Return) ||
           isPlain(event, Qt::Key_Enter) || std::any_of(editingKeys.begin(), editingKeys.end(), matches) ||
           std::any_of(motionKeys.begin(), motionKeys.end(), moves);
}

void ZoomableTextView::keyPressEvent(QKeyEvent* event) {
    if (moveByKey(event) || editByKey(event)) {
        event->accept();
    } else {
        event->ignore();
    }
}

bool ZoomableTextView::moveByKey(QKeyEvent* event) {
    const auto keys = std::find_if(motionKeys.begin(), motionKeys.end(), [&](const MotionKeys& each) {
        return event->matches(each.move) || event->matches(each.select);
    });
    if (keys == motionKeys.end()) {
        return false;
    }
    const bool extends = event->matches(keys->select);
    const qsizetype line = m_storage.lineAt(m_selection.caret);
    switch (keys->motion) {
    case Motion::right:
    case Motion::left: {
        const bool towardsRight = keys->motion == Motion::right;
        if (!extends && !m_selection.isEmpty()) {
            const TextRange range = m_selection.range();
            moveCaret(caretRow().isRightToLeft == towardsRight ? range.location : range.end(), false);
        } else {
            moveCaret(sideways(towardsRight, false), extends);
        }
        break;
    }
    case Motion::wordRight:
        moveCaret(sideways(true, true), extends);
        break;
    case Motion::wordLeft:
        moveCaret(sideways(false, true), extends);
        break;
    case Motion::up:
        moveVertically(-1, extends);
        break;
    case Motion::down:
        moveVertically(1, extends);
        break;
    case Motion::pageUp:
        movePage(-1, extends);
        break;
    case Motion::pageDown:
        movePage(1, extends);
        break;
    case Motion::rowStart:
        moveCaret(caretRow().contents.location, extends);
        break;
    case Motion::rowEnd: {
        moveCaret(endOf(caretRow()), extends);
        break;
    }
    case Motion::lineStart:
        moveCaret(m_storage.lineRange(line).location, extends);
        break;
    case Motion::lineEnd:
        moveCaret(m_storage.lineContents(line).end(), extends);
        break;
    case Motion::textStart:
        moveCaret(0, extends);
        break;
    case Motion::textEnd:
        moveCaret(m_storage.length(), extends);
        break;
    }
    publishPrimarySelection();
    return true;
}

/// The arrow keys go by the direction of the line: right is forward in lines from left to right.
ZoomableTextView::Spot ZoomableTextView::sideways(bool towardsRight, bool byWord) {
    const qsizetype caret = m_selection.caret;
    if (towardsRight != caretRow().isRightToLeft) {
        return {byWord ? TextMotion::nextWord(m_storage, caret) : m_storage.nextCluster(caret)};
    }
    return {byWord ? TextMotion::previousWord(m_storage, caret) : m_storage.previousCluster(caret)};
}

ZoomableTextView::Row ZoomableTextView::caretRow() {
    return m_layout.rowHolding(m_selection.caret, m_caretSide);
}

ZoomableTextView::Spot ZoomableTextView::spotInRow(const Row& row, qreal x) {
    const qsizetype position = m_layout.positionAt(row, x);
    return {position, position == row.contents.end() && !row.endsLine ? Side::before : Side::after};
}

void ZoomableTextView::moveCaret(Spot spot, bool extends) {
    commitPreedit();
    m_goalX.reset();
    assignSelection({extends ? m_selection.anchor : spot.position, spot.position}, spot.side);
    ensureCaretVisible();
}

/// Where the End key goes. The blank that a row is broken at stays behind the caret, as in Qt's own text widgets; a row
/// broken elsewhere keeps the caret at its end.
ZoomableTextView::Spot ZoomableTextView::endOf(const Row& row) const {
    const qsizetype end = row.contents.end();
    if (row.endsLine) {
        return {end, Side::after};
    }
    return QChar(m_storage.unitAt(end - 1)).isSpace() ? Spot{end - 1, Side::after} : Spot{end, Side::before};
}

/// At the first and the last row nothing happens, but a selection grows to the edge of the text.
void ZoomableTextView::moveVertically(int rows, bool extends) {
    const Row start = caretRow();
    const qreal x = m_goalX.value_or(m_layout.xOf(start, m_selection.caret));
    Row row = start;
    for (int i = 0; i < std::abs(rows); ++i) {
        const std::optional<Row> next = rows < 0 ? m_layout.rowAbove(row) : m_layout.rowBelow(row);
        if (!next) {
            break;
        }
        row = *next;
    }
    if (row != start) {
        moveCaret(spotInRow(row, x), extends);
        m_goalX = x;
    } else if (extends) {
        moveCaret(rows < 0 ? 0 : m_storage.length(), true);
    } else {
        ensureCaretVisible();
    }
}

/// The view and the caret move together, by what fits on the screen less one row.
void ZoomableTextView::movePage(int direction, bool extends) {
    const int rows = std::max(1, viewport()->height() / m_layout.pitch() - 1);
    scrollBy(pixels(direction * rows));
    moveVertically(direction * rows, extends);
}

bool ZoomableTextView::editByKey(QKeyEvent* event) {
    if (event->matches(QKeySequence::SelectAll)) {
        selectAll();
        return true;
    }
    if (event->matches(QKeySequence::Copy)) {
        copy();
        return true;
    }
    if (m_isReadOnly) {
        return false;
    }
    const qsizetype caret = m_selection.caret;
    const auto removeTo = [&](qsizetype position, EditKind kind) {
        const TextSelection range = m_selection.isEmpty() ? TextSelection{caret, position} : m_selection;
        removeRange(range.range(), m_selection.isEmpty() ? kind : EditKind::other);
    };
    if (event->matches(QKeySequence::Undo)) {
        undo();
    } else if (event->matches(QKeySequence::Redo)) {
        redo();
    } else if (event->matches(QKeySequence::Cut)) {
        cut();
    } else if (event->matches(QKeySequence::Paste)) {
        paste();
    } else if (isPlain(*event, Qt::Key_Backspace)) {
        removeTo(m_storage.previousCluster(caret), EditKind::deletingBackward);
    } else if (isPlain(*event, Qt::Key_Delete)) {
        removeTo(m_storage.nextCluster(caret), EditKind::deletingForward);
    } else if (event->matches(QKeySequence::DeleteStartOfWord)) {
        removeTo(TextMotion::previousWord(m_storage, caret), EditKind::other);
    } else if (event->matches(QKeySequence::DeleteEndOfWord)) {
        removeTo(TextMotion::nextWord(m_storage, caret), EditKind::other);
    } else if (event->matches(QKeySequence::DeleteEndOfLine)) {
        const qsizetype line = m_storage.lineAt(caret);
        const qsizetype end = m_storage.lineContents(line).end();
        removeTo(caret < end ? end : m_storage.lineRange(line).end(), EditKind::other);
    } else if (isPlain(*event, Qt::Key_Return) || isPlain(*event, Qt::Key_Enter)) {
        edit(m_selection.range(), m_storage.terminatorForNewLineAt(m_selection.range().location), EditKind::typing);
    } else if (isTyped(*event)) {
        edit(m_selection.range(), event->text(), EditKind::typing);
    } else {
        return false;
    }
    return true;
}

} // namespace quillary
