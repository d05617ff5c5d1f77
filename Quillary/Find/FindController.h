#pragma once

#include "QuillaryCore/Find/TextSearch.h"

#include <QObject>
#include <QString>

#include <optional>
#include <type_traits>
#include <vector>

namespace quillary {

class FindTextView;
class NoteDocument;
class NotesStore;

/// The state of the find bar and all that it does to the editor, which is the one of `AppActions`: it may come and go.
/// A search happens at once, in the call that asks for it. Main thread only.
class FindController : public QObject {
    Q_OBJECT

public:
    /// The store must outlive the controller.
    explicit FindController(NotesStore& store, QObject* parent = nullptr);
    ~FindController() override;

    /// Whether the bar is open, and with it the row for replacements.
    bool isVisible() const { return m_isVisible; }

    bool showsReplace() const { return m_showsReplace; }

    void setShowsReplace(bool showsReplace);

    /// What is looked for. Another query or other options search at once, from where the bar was opened.
    const QString& query() const { return m_query; }

    void setQuery(const QString& query);

    const SearchOptions& options() const { return m_options; }

    void setOptions(SearchOptions options);

    /// What a match is replaced by: a template if the query is a regular expression. Changing it searches nothing.
    const QString& replacement() const { return m_replacement; }

    void setReplacement(const QString& replacement);

    /// The number of matches of the last search, and which of them is the current one.
    qsizetype matchCount() const { return m_matchCount; }

    std::optional<qsizetype> currentIndex() const { return m_currentIndex; }

    /// Why there was no search.
    const std::optional<QString>& errorMessage() const { return m_errorMessage; }

    /// Raised each time that the bar is to take the focus, into the field that `focusesReplaceField` tells.
    qint64 fieldFocusToken() const { return m_fieldFocusToken; }

    bool focusesReplaceField() const { return m_focusesReplaceField; }

    /// The position that a changed query is searched from, in UTF-16 units.
    qsizetype anchorLocation() const { return m_anchorLocation; }

    void setAnchorLocation(qsizetype location) { m_anchorLocation = location; }

    /// Opens the bar for what is selected, if that is a text within a line; with `replace` also the row for
    /// replacements. A preview gives way to the editor.
    void show(bool replace);

    /// Closes the bar and gives the focus back to the editor. What was found stays until the next opening.
    void close();

    /// Makes the match so many places further on the current one, around both ends, and opens the bar if need be.
    /// Beeps if there is none.
    void step(qsizetype by);

    /// Replaces the current match and goes on to the next one behind what was put there. Beeps if there is none.
    void replaceCurrent();

    /// Replaces all matches of the last search in one undoable step. Beeps if there are none.
    void replaceAll();

    /// Searches the editor's text anew. With a position the first match at or behind it becomes the current one, is
    /// selected and scrolled to; without, nothing moves.
    void search(std::optional<qsizetype> selectingFrom = std::nullopt);

    /// What is selected in the editor, if it is a text of at most 500 units within a line.
    std::optional<QString> selectedSingleLineText() const;

    /// Makes what is selected the query and opens the bar. Beeps if it is no text within a line.
    void useSelectionForFind();

Q_SIGNALS:
    void isVisibleChanged();
    void showsReplaceChanged();
    void queryChanged();
    void replacementChanged();
    void optionsChanged();
    void matchCountChanged();
    void currentIndexChanged();
    void errorMessageChanged();
    void fieldFocusTokenChanged();
    void focusesReplaceFieldChanged();

private:
    template <typename T>
    bool assign(T& field, const std::type_identity_t<T>& value, void (FindController::*changed)());
    static FindTextView* editor();
    void assignResults(std::vector<SearchMatch> results);
    std::optional<qsizetype> indexFrom(qsizetype position) const;
    void paint(FindTextView& view) const;
    void revealCurrent() const;

    // FindControllerReplacing.cpp
    bool isTrueTo(const FindTextView& view) const;
    FindTextView* editorWithMatches();

    NotesStore& m_store;
    bool m_isVisible = false;
    bool m_showsReplace = false;
    QString m_query;
    QString m_replacement;
    SearchOptions m_options;
    qsizetype m_matchCount = 0;
    std::optional<qsizetype> m_currentIndex;
    std::optional<QString> m_errorMessage;
    qint64 m_fieldFocusToken = 0;
    bool m_focusesReplaceField = false;
    std::optional<TextSearch> m_engine;
    std::vector<SearchMatch> m_results;
    qsizetype m_anchorLocation = 0;
    /// What the results are places of.
    const NoteDocument* m_searchedDocument = nullptr;
    qint64 m_searchedRevision = 0;
};

} // namespace quillary
