#include "QuillaryCore/Text/UndoManager.h"

#include "QuillaryCore/Text/LineTerminators.h"
#include "QuillaryCore/Text/TextStorage.h"
#include "QuillaryCore/Text/ValidReplacements.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace quillary {

namespace {

/// Replacements that were made at once, in ascending order and placed in the text that they gave, and all that they
/// removed, one after the other.
struct UndoableEdit {
    std::vector<TextChange> changes;
    QString removed;
    EditKind kind = EditKind::other;
    bool joins = false; // a run may go on from here
};

struct UndoStep {
    std::vector<UndoableEdit> edits;
    TextSelection before;
    TextSelection after;
};

bool holdsLineEnd(QStringView text) {
    return std::any_of(text.begin(), text.end(), [](QChar unit) { return isLineTerminator(unit.unicode()); });
}

qsizetype shifted(qsizetype position, std::span<const TextReplacementView> replacements) {
    qsizetype growth = 0;
    for (const auto& [range, text] : replacements) {
        if (range.end() > position) {
            return range.location < position ? range.location + growth + text.size() : position + growth;
        }
        growth += text.size() - range.length;
    }
    return position + growth;
}

} // namespace

class UndoManager::History {
public:
    explicit History(TextStorage& storage) : m_storage(storage), m_revision(storage.revision()) {}

    void replace(std::span<const TextReplacementView> replacements, EditKind kind, TextSelection before,
                 TextSelection after);

    std::optional<TextSelection> takeBack();
    std::optional<TextSelection> doAgain();

    void beginGroup() { ++m_openGroups; }

    void endGroup();

    void breakCoalescing() { m_isBroken = true; }

    bool canUndo() { return hasSteps(m_done); }

    bool canRedo() { return hasSteps(m_undone); }

    void forget();

private:
    bool hasSteps(const std::vector<UndoStep>& steps) {
        return m_openGroups == 0 && !steps.empty() && m_revision == m_storage.revision();
    }

    UndoableEdit perform(std::span<const TextReplacementView> replacements, EditKind kind);
    void invert(UndoableEdit& edit);
    static bool join(UndoableEdit& last, const UndoableEdit& next);

    TextStorage& m_storage;
    qint64 m_revision; // of the text that the steps lead to
    std::vector<UndoStep> m_done;
    std::vector<UndoStep> m_undone;
    int m_openGroups = 0;
    bool m_isBroken = true;      // the next edit joins nothing
    bool m_groupHasStep = false; // the last step is that of the open group
};

void UndoManager::History::replace(std::span<const TextReplacementView> replacements, EditKind kind,
                                   TextSelection before, TextSelection after) {
    if (m_revision != m_storage.revision()) {
        forget();
    }
    m_undone.clear();
    UndoableEdit edit = perform(replacements, kind);
    edit.joins = kind != EditKind::other &&
                 !holdsLineEnd(kind == EditKind::typing ? replacements.front().text : QStringView(edit.removed));
    m_revision = m_storage.revision();
    const bool isPartOfStep = m_openGroups > 0 && m_groupHasStep;
    const bool mayJoin = !m_isBroken && !m_done.empty() && (isPartOfStep || m_openGroups == 0);
    if (mayJoin && join(m_done.back().edits.back(), edit)) {
        m_done.back().after = after;
    } else if (isPartOfStep) {
        m_done.back().edits.push_back(std::move(edit));
        m_done.back().after = after;
    } else {
        m_done.push_back({{}, before, after});
        m_done.back().edits.push_back(std::move(edit));
        m_groupHasStep = m_openGroups > 0;
    }
    m_isBroken = false;
}

std::optional<TextSelection> UndoManager::History::takeBack() {
    if (!canUndo()) {
        return std::nullopt;
    }
    UndoStep step = std::move(m_done.back());
    m_done.pop_back();
    m_storage.beginEditing();
    std::for_each(step.edits.rbegin(), step.edits.rend(), [&](UndoableEdit& edit) { invert(edit); });
    m_storage.endEditing();
    const TextSelection selection = step.before;
    m_undone.push_back(std::move(step));
    m_revision = m_storage.revision();
    m_isBroken = true;
    return selection;
}

std::optional<TextSelection> UndoManager::History::doAgain() {
    if (!canRedo()) {
        return std::nullopt;
    }
    UndoStep step = std::move(m_undone.back());
    m_undone.pop_back();
    m_storage.beginEditing();
    std::for_each(step.edits.begin(), step.edits.end(), [&](UndoableEdit& edit) { invert(edit); });
    m_storage.endEditing();
    const TextSelection selection = step.after;
    m_done.push_back(std::move(step));
    m_revision = m_storage.revision();
    m_isBroken = true;
    return selection;
}

void UndoManager::History::endGroup() {
    Q_ASSERT(m_openGroups > 0);
    if (--m_openGroups == 0) {
        m_isBroken = m_isBroken || m_groupHasStep;
        m_groupHasStep = false;
    }
}

void UndoManager::History::forget() {
    m_done.clear();
    m_undone.clear();
    m_isBroken = true;
    m_groupHasStep = false;
    m_revision = m_storage.revision();
}

UndoableEdit UndoManager::History::perform(std::span<const TextReplacementView> replacements, EditKind kind) {
    UndoableEdit edit;
    edit.kind = kind;
    edit.changes.reserve(replacements.size());
    qsizetype growth = 0;
    for (const auto& [range, text] : replacements) {
        edit.changes.push_back({range.location + growth, range.length, text.size()});
        growth += text.size() - range.length;
        edit.removed += m_storage.text(range);
    }
    m_storage.replaceExactly(replacements);
    return edit;
}

// Brings back what the edit removed; what it inserted is now what it removed.
void UndoManager::History::invert(UndoableEdit& edit) {
    std::vector<TextReplacementView> replacements;
    replacements.reserve(edit.changes.size());
    QStringView rest = edit.removed;
    for (const TextChange& change : edit.changes) {
        replacements.push_back({{change.offset, change.insertedLength}, rest.first(change.removedLength)});
        rest = rest.sliced(change.removedLength);
    }
    edit = perform(replacements, edit.kind);
}

bool UndoManager::History::join(UndoableEdit& last, const UndoableEdit& next) {
    if (!last.joins || !next.joins || last.kind != next.kind) {
        return false;
    }
    TextChange& run = last.changes.front();
    const TextChange& change = next.changes.front();
    switch (last.kind) {
    case EditKind::typing:
        if (change.offset != run.offset + run.insertedLength) {
            return false;
        }
        break;
    case EditKind::deletingBackward:
        if (change.offset + change.removedLength != run.offset) {
            return false;
        }
        run.offset = change.offset;
        last.removed.prepend(next.removed);
        run.removedLength += change.removedLength;
        return true;
    case EditKind::deletingForward:
        if (change.offset != run.offset) {
            return false;
        }
        break;
    case EditKind::other:
        return false;
    }
    last.removed += next.removed;
    run.removedLength += change.removedLength;
    run.insertedLength += change.insertedLength;
    return true;
}

UndoManager::UndoManager(TextStorage& storage, QObject* parent)
    : QObject(parent), m_history(std::make_unique<History>(storage)) {}

UndoManager::~UndoManager() = default;

void UndoManager::replace(TextRange range, QStringView text, EditKind kind, TextSelection before) {
    const ValidReplacements valid(range, text);
    if (valid.views().empty()) {
        return;
    }
    const qsizetype behind = range.location + text.size();
    m_history->replace(valid.views(), kind, before, {behind, behind});
    Q_EMIT changed();
}

TextSelection UndoManager::replaceAll(std::span<const TextReplacement> replacements, TextSelection before) {
    const ValidReplacements valid(replacements);
    if (valid.views().empty()) {
        return before;
    }
    const TextSelection after{shifted(before.anchor, valid.views()), shifted(before.caret, valid.views())};
    m_history->replace(valid.views(), EditKind::other, before, after);
    Q_EMIT changed();
    return after;
}

void UndoManager::beginGroup() {
    m_history->beginGroup();
    Q_EMIT changed();
}

void UndoManager::endGroup() {
    m_history->endGroup();
    Q_EMIT changed();
}

void UndoManager::breakCoalescing() {
    m_history->breakCoalescing();
}

bool UndoManager::canUndo() const {
    return m_history->canUndo();
}

bool UndoManager::canRedo() const {
    return m_history->canRedo();
}

std::optional<TextSelection> UndoManager::undo() {
    const std::optional<TextSelection> selection = m_history->takeBack();
    Q_EMIT changed();
    return selection;
}

std::optional<TextSelection> UndoManager::redo() {
    const std::optional<TextSelection> selection = m_history->doAgain();
    Q_EMIT changed();
    return selection;
}

void UndoManager::removeAllActions() {
    m_history->forget();
    Q_EMIT changed();
}

} // namespace quillary
