#include "Quillary/Editor/TextViewAccessible.h"

#include "Quillary/Editor/ZoomableTextView.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

/// Words and sentences are looked for within so many units around a place: a line may be endless.
constexpr qsizetype boundarySearchLength = 2000;

/// Offsets of the interface are int, and so is the length of any text that a view shows.
int accessibleOffset(qsizetype position) {
    return static_cast<int>(position);
}

QAccessibleInterface* makeTextViewAccessible(const QString& className, QObject* object) {
    if (className != QLatin1StringView(ZoomableTextView::staticMetaObject.className())) {
        return nullptr;
    }
    auto* const view = qobject_cast<ZoomableTextView*>(object);
    return view ? new TextViewAccessible(*view) : nullptr;
}

} // namespace

TextViewAccessible::TextViewAccessible(ZoomableTextView& view) : QAccessibleWidget(&view, QAccessible::EditableText) {}

void TextViewAccessible::install() {
    [[maybe_unused]] static const bool isInstalled = [] {
        QAccessible::installFactory(makeTextViewAccessible);
        return true;
    }();
}

ZoomableTextView& TextViewAccessible::view() const {
    return static_cast<ZoomableTextView&>(*widget());
}

void* TextViewAccessible::interface_cast(QAccessible::InterfaceType type) {
    switch (type) {
    case QAccessible::TextInterface:
        return static_cast<QAccessibleTextInterface*>(this);
    case QAccessible::EditableTextInterface:
        return static_cast<QAccessibleEditableTextInterface*>(this);
    default:
        return QAccessibleWidget::interface_cast(type);
    }
}

QAccessible::State TextViewAccessible::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.editable = !view().isReadOnly();
    state.readOnly = view().isReadOnly();
    state.multiLine = true;
    state.selectableText = true;
    return state;
}

TextRange TextViewAccessible::range(int start, int end) const {
    const qsizetype length = view().storage().length();
    const qsizetype from = std::clamp<qsizetype>(start, 0, length);
    // -1 stands for the end of the text.
    const qsizetype to = end < 0 ? length : std::clamp<qsizetype>(end, from, length);
    return {from, to - from};
}

void TextViewAccessible::selection(int index, int* start, int* end) const {
    const TextRange selected = index == 0 ? view().selection().range() : TextRange();
    *start = accessibleOffset(selected.location);
    *end = accessibleOffset(selected.end());
}

int TextViewAccessible::selectionCount() const {
    return view().selection().isEmpty() ? 0 : 1;
}

void TextViewAccessible::addSelection(int start, int end) {
    setSelection(0, start, end);
}

void TextViewAccessible::removeSelection(int index) {
    if (index == 0) {
        setCursorPosition(cursorPosition());
    }
}

void TextViewAccessible::setSelection(int index, int start, int end) {
    if (index == 0) {
        view().setSelection({start, end});
    }
}

int TextViewAccessible::cursorPosition() const {
    return accessibleOffset(view().selection().caret);
}

void TextViewAccessible::setCursorPosition(int position) {
    view().setSelection({position, position});
}

QString TextViewAccessible::text(int start, int end) const {
    return view().storage().text(range(start, end));
}

QString TextViewAccessible::text(QAccessible::Text type) const {
    return QAccessibleWidget::text(type);
}

/// The word or sentence around an offset, with what separates it from the next.
TextRange TextViewAccessible::foundUnitAt(qsizetype offset, QAccessible::TextBoundaryType type) const {
    const TextStorage& storage = view().storage();
    const TextRange line = storage.lineRange(storage.lineAt(offset));
    const qsizetype from = storage.clusterBoundaryAtOrBefore(std::max(line.location, offset - boundarySearchLength));
    const qsizetype to = storage.clusterBoundaryAtOrAfter(std::min(line.end(), offset + boundarySearchLength));
    QTextBoundaryFinder finder(type == QAccessible::WordBoundary ? QTextBoundaryFinder::Word
                                                                 : QTextBoundaryFinder::Sentence,
                               storage.text({from, to - from}));
    finder.setPosition(offset - from);
    const qsizetype start = finder.isAtBoundary() ? offset - from : finder.toPreviousBoundary();
    finder.setPosition(offset - from);
    const qsizetype end = finder.toNextBoundary();
    return {from + std::max<qsizetype>(0, start), (end < 0 ? to - from : end) - std::max<qsizetype>(0, start)};
}

TextRange TextViewAccessible::unitAt(qsizetype offset, QAccessible::TextBoundaryType type) const {
    const TextStorage& storage = view().storage();
    switch (type) {
    case QAccessible::CharBoundary: {
        const qsizetype start = storage.clusterBoundaryAtOrBefore(offset);
        return {start, storage.nextCluster(start) - start};
    }
    case QAccessible::WordBoundary:
    case QAccessible::SentenceBoundary:
        return foundUnitAt(offset, type);
    case QAccessible::LineBoundary: {
        const TextLayout::Row row = view().textLayout().rowHolding(offset);
        return {row.contents.location, row.next - row.contents.location};
    }
    case QAccessible::ParagraphBoundary:
        return storage.lineRange(storage.lineAt(offset));
    case QAccessible::NoBoundary:
        break;
    }
    return {0, storage.length()};
}

QString TextViewAccessible::give(TextRange unit, int* start, int* end) const {
    *start = accessibleOffset(unit.location);
    *end = accessibleOffset(unit.end());
    return view().storage().text(unit);
}

QString TextViewAccessible::textAtOffset(int offset, QAccessible::TextBoundaryType type, int* start, int* end) const {
    return give(unitAt(range(offset, offset).location, type), start, end);
}

QString TextViewAccessible::textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* start,
                                             int* end) const {
    const TextRange unit = unitAt(range(offset, offset).location, type);
    if (unit.location == 0) {
        *start = *end = -1;
        return {};
    }
    return give(unitAt(unit.location - 1, type), start, end);
}

QString TextViewAccessible::textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* start,
                                            int* end) const {
    const TextRange unit = unitAt(range(offset, offset).location, type);
    if (unit.end() >= view().storage().length()) {
        *start = *end = -1;
        return {};
    }
    return give(unitAt(unit.end(), type), start, end);
}

int TextViewAccessible::characterCount() const {
    return accessibleOffset(view().storage().length());
}

QRect TextViewAccessible::characterRect(int offset) const {
    const QRect place = view().characterRect(range(offset, offset).location);
    return place.translated(view().viewport()->mapToGlobal(QPoint()));
}

int TextViewAccessible::offsetAtPoint(const QPoint& point) const {
    return accessibleOffset(view().positionAt(view().viewport()->mapFromGlobal(point)));
}

void TextViewAccessible::scrollToSubstring(int start, int end) {
    view().scrollToRange(range(start, end));
}

QString TextViewAccessible::attributes(int, int* start, int* end) const {
    *start = 0;
    *end = characterCount();
    const QFont& font = view().textLayout().font();
    return u"font-family:\"%1\";font-size:%2pt;"_s.arg(font.family()).arg(font.pointSizeF());
}

void TextViewAccessible::deleteText(int start, int end) {
    view().replaceText(range(start, end), {});
}

void TextViewAccessible::insertText(int offset, const QString& text) {
    view().replaceText(range(offset, offset), text);
}

void TextViewAccessible::replaceText(int start, int end, const QString& text) {
    view().replaceText(range(start, end), text);
}

} // namespace quillary
