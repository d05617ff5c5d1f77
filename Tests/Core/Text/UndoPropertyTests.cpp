#include "QuillaryCore/Text/LineTerminators.h"
#include "QuillaryCore/Text/TextStorage.h"
#include "QuillaryCore/Text/UndoManager.h"

#include "Tests/Core/Text/HostileText.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace quillary {

namespace {

/// A history as the plainest code has it: each step with the whole text before and after it, and where a run of edits
/// would go on.
class PlainHistory {
public:
    explicit PlainHistory(QString text) : m_text(std::move(text)) {}

    const QString& text() const { return m_text; }

    void replace(TextRange range, const QString& inserted, EditKind kind) {
        const QString before = m_text;
        const QString removed = m_text.mid(range.location, range.length);
        m_text.replace(range.location, range.length, inserted);
        const qsizetype from = kind == EditKind::deletingBackward ? range.end() : range.location;
        const bool isOpen = kind != EditKind::other && !hasLineEnd(kind == EditKind::typing ? inserted : removed);
        if (isOpen && m_runKind == kind && m_runEnd == from) {
            m_done.back().after = m_text;
        } else {
            m_done.push_back({before, m_text});
        }
        m_undone.clear();
        m_runKind = isOpen ? kind : EditKind::other;
        m_runEnd = range.location + inserted.size();
    }

    bool undo() {
        if (m_done.empty()) {
            return false;
        }
        m_text = m_done.back().before;
        m_undone.push_back(m_done.back());
        m_done.pop_back();
        breakRun();
        return true;
    }

    bool redo() {
        if (m_undone.empty()) {
            return false;
        }
        m_text = m_undone.back().after;
        m_done.push_back(m_undone.back());
        m_undone.pop_back();
        breakRun();
        return true;
    }

    void breakRun() { m_runKind = EditKind::other; }

private:
    struct Step {
        QString before;
        QString after;
    };

    static bool hasLineEnd(const QString& text) {
        return std::any_of(text.begin(), text.end(), [](QChar unit) { return isLineTerminator(unit.unicode()); });
    }

    QString m_text;
    std::vector<Step> m_done;
    std::vector<Step> m_undone;
    EditKind m_runKind = EditKind::other;
    qsizetype m_runEnd = 0;
};

class RandomKeys : public testing::TestWithParam<unsigned> {};

// Keys as a view sends them, at a caret that mostly stays where the last key left it.
TEST_P(RandomKeys, JoinIntoTheStepsOfAPlainHistory) {
    HostileText random(GetParam());
    PlainHistory model(random.text(60));
    TextStorage storage(model.text(), 16);
    UndoManager history(storage);
    qsizetype caret = 0;
    EditKind kind = EditKind::typing;
    for (int step = 0; step < 10'000; ++step) {
        if (random.number(5) == 0) {
            kind = static_cast<EditKind>(random.number(3));
        }
        TextRange range{caret, 0};
        QString text;
        switch (random.number(24)) {
        case 0:
            caret = random.number(storage.length());
            continue;
        case 1:
            history.breakCoalescing();
            model.breakRun();
            continue;
        case 2:
        case 3:
            ASSERT_EQ(history.undo().has_value(), model.undo()) << step;
            break;
        case 4:
            ASSERT_EQ(history.redo().has_value(), model.redo()) << step;
            break;
        default:
            if (kind == EditKind::deletingBackward) {
                range = {std::max<qsizetype>(caret - 1 - random.number(1), 0), 0};
                range.length = caret - range.location;
            } else if (kind == EditKind::deletingForward) {
                range.length = std::min<qsizetype>(1 + random.number(1), storage.length() - caret);
            } else {
                // Mostly letters, so that runs have a chance, and now and then over what is there.
                text = random.number(3) == 0 ? random.text(2) : QStringLiteral("x");
                range.length = random.number(9) == 0 ? std::min<qsizetype>(2, storage.length() - caret) : 0;
            }
            if (range.isEmpty() && text.isEmpty()) {
                continue;
            }
            history.replace(range, text, kind, {caret, caret});
            model.replace(range, text, kind);
            caret = range.location + text.size();
        }
        ASSERT_TRUE(storage.equals(model.text())) << step;
        caret = std::min(caret, storage.length());
    }
    while (model.undo()) {
        ASSERT_TRUE(history.undo());
        ASSERT_TRUE(storage.equals(model.text()));
    }
    ASSERT_FALSE(history.canUndo());
    while (model.redo()) {
        ASSERT_TRUE(history.redo());
        ASSERT_TRUE(storage.equals(model.text()));
    }
    ASSERT_FALSE(history.canRedo());
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomKeys, testing::Values(1U, 2U, 3U));

} // namespace

} // namespace quillary
