#pragma once

#include "Quillary/Find/FindController.h"
#include "Quillary/Find/FindTextView.h"
#include "Quillary/State/AppActions.h"
#include "Quillary/State/NoteDocument.h"
#include "QuillaryCore/Text/TextStorage.h"
#include "QuillaryCore/Text/UndoManager.h"

#include "Tests/State/NotesStoreTest.h"

#include <vector>

namespace quillary::test {

/// The editor as the controller sees it: it edits through the undo manager, tells the store and has the open bar search
/// anew, as the real one does, and notes down what it is asked to show.
class FakeFindView : public FindTextView {
public:
    FakeFindView(NotesStore& store, FindController& find, NoteItemPtr item)
        : m_store(store), m_find(find), m_item(std::move(item)) {
        AppActions::shared().editor = this;
    }

    NoteDocument* shownDocument() const override { return m_item->document().get(); }

    TextSelection selection() const override { return selected; }

    void setSelection(TextSelection selection) override { selected = selection; }

    void scrollToRange(TextRange range) override { scrolledTo.push_back(range); }

    bool replaceText(TextRange range, const QString& text) override {
        if (refuses) {
            return false;
        }
        shownDocument()->undoManager().replace(range, text, EditKind::other, selected);
        selected = {range.location + text.size(), range.location + text.size()};
        textDidChange();
        return true;
    }

    bool replaceTexts(std::span<const TextReplacement> replacements) override {
        if (refuses) {
            return false;
        }
        selected = shownDocument()->undoManager().replaceAll(replacements, selected);
        textDidChange();
        return true;
    }

    void textDidChange() {
        m_store.textDidChange(*m_item, *shownDocument(), false);
        if (m_find.isVisible()) {
            m_find.search();
        }
    }

    void resetHighlightedLanguage() override {}

    void setFindHighlights(std::span<const TextRange> ranges, std::optional<qsizetype> current) override {
        highlights.assign(ranges.begin(), ranges.end());
        currentHighlight = current;
    }

    void clearFindHighlights() override {
        highlights.clear();
        currentHighlight.reset();
    }

    void showFindIndicator(TextRange range) override { indicated.push_back(range); }

    TextSelection selected;
    bool refuses = false;
    std::vector<TextRange> highlights;
    std::optional<qsizetype> currentHighlight;
    std::vector<TextRange> scrolledTo;
    std::vector<TextRange> indicated;

private:
    NotesStore& m_store;
    FindController& m_find;
    NoteItemPtr m_item;
};

/// A controller over a store with one note, and the view that shows it.
class FindTest : public NotesStoreTest {
protected:
    ~FindTest() override { AppActions::shared().editor = {}; }

    void open(const QString& text) {
        directory.write(QStringLiteral("nota.txt"), text.toUtf8());
        openStore();
        find = std::make_unique<FindController>(*store);
        view = std::make_unique<FakeFindView>(*store, *find, store->selectedItem());
    }

    /// Opens the bar for a query.
    void lookFor(const QString& query, SearchOptions options = {}) const {
        find->show(false);
        find->setOptions(options);
        find->setQuery(query);
    }

    QString text() const { return view->shownDocument()->text(); }

    QString selectedText() const { return view->shownDocument()->text(view->selected.range()); }

    void select(qsizetype from, qsizetype to) const { view->selected = {from, to}; }

    std::unique_ptr<FindController> find;
    std::unique_ptr<FakeFindView> view;
};

} // namespace quillary::test
