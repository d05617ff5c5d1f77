#pragma once

#include "Quillary/Comparison/DiffMode.h"
#include "Quillary/State/AppSettings.h"
#include "Quillary/State/NotesStore.h"
#include "QuillaryCore/Compare/TextDiffResult.h"

#include <QFutureWatcher>
#include <QWidget>

#include <optional>
#include <stop_token>

class QStackedWidget;

namespace quillary {

class DiffHeader;
class DiffList;
class OverviewRuler;

/// The comparison of two notes, while the store says that two are compared. It shows their texts as they were when
/// the comparison began; another pair begins another one.
///
/// Short texts are compared at once. Long ones are compared on another thread, from copies, so that the main thread is
/// never held up; a result that comes when another pair is compared is dropped.
class DiffView : public QWidget {
    Q_OBJECT

public:
    using Mode = DiffMode;

    DiffView(NotesStore& store, AppSettings& settings, QWidget* parent = nullptr);
    ~DiffView() override;

    /// Whether the result of the present pair stands.
    bool hasResult() const { return m_hasResult; }

    /// The present result; nothing as long as there is none.
    const TextDiffResult& result() const { return m_result; }

Q_SIGNALS:
    /// The result of a pair stands and is on show.
    void resultReady();

protected:
    void focusInEvent(QFocusEvent* event) override;

private:
    /// The two notes in their order.
    struct Pair {
        NoteID oldNote;
        NoteID newNote;

        friend bool operator==(const Pair&, const Pair&) = default;
    };

    QWidget* makeIdenticalState();
    QWidget* makeRowsState();
    void follow();
    void begin(const NoteItem& oldNote, const NoteItem& newNote);
    void compare(const QString& oldText, const QString& newText);
    void end();
    void take(TextDiffResult result);
    void present(TextDiffResult result);
    void updateTitles();
    void updateStyle();

    NotesStore& m_store;
    AppSettings& m_settings;
    DiffHeader* m_header;
    QStackedWidget* m_body;
    QWidget* m_waiting;
    DiffList* m_list;
    OverviewRuler* m_ruler;
    QWidget* m_rowsState;
    QWidget* m_identicalState;

    std::optional<Pair> m_pair;
    TextDiffResult m_result;
    bool m_hasResult = false;
    std::stop_source m_stop;
    QFutureWatcher<TextDiffResult> m_watcher;
};

} // namespace quillary
