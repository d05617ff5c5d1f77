#include "QuillaryCore/Text/LineTerminators.h"
#include "QuillaryCore/Text/TextStorage.h"
#include "QuillaryCore/Text/UndoManager.h"
#include "QuillaryCore/Unicode/GraphemeClusters.h"

#include "Tests/Core/Text/HostileText.h"
#include "Tests/Core/Text/PlainText.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace quillary {

using namespace Qt::StringLiterals;

namespace {

/// A storage in the smallest pages, its history, and beside them the plain text and the texts that undo and redo must
/// bring back. `check` compares everything.
class EditedText {
public:
    EditedText(QString text, qsizetype pageUnits) : m_storage(text, pageUnits), m_history(m_storage), m_model{text} {
        QObject::connect(&m_storage, &TextStorage::changed, &m_storage, [this](const TextChange& change) {
            m_changes.push_back(change);
            m_steps.assign(m_storage.steps().begin(), m_storage.steps().end());
        });
    }

    qsizetype length() const { return m_model.text.size(); }

    const QString& text() const { return m_model.text; }

    void replace(TextRange range, const QString& text) {
        record(!range.isEmpty() || !text.isEmpty());
        m_history.replace(range, text, EditKind::other, {range.location, range.end()});
        m_model.replace(range, text);
    }

    void replaceAll(const std::vector<TextReplacement>& replacements) {
        record(std::any_of(replacements.begin(), replacements.end(),
                           [](const auto& each) { return !each.range.isEmpty() || !each.text.isEmpty(); }));
        m_history.replaceAll(replacements, {});
        for (auto each = replacements.rbegin(); each != replacements.rend(); ++each) {
            m_model.replace(each->range, each->text);
        }
    }

    void undo() {
        ASSERT_EQ(m_history.undo().has_value(), !m_past.empty());
        if (!m_past.empty()) {
            m_future.push_back(std::exchange(m_model.text, m_past.back()));
            m_past.pop_back();
        }
    }

    void redo() {
        ASSERT_EQ(m_history.redo().has_value(), !m_future.empty());
        if (!m_future.empty()) {
            m_past.push_back(std::exchange(m_model.text, m_future.back()));
            m_future.pop_back();
        }
    }

    /// Asks for the whole text, after which the storage's pages are slices again.
    void flatten() { ASSERT_EQ(m_storage.text(), m_model.text); }

    void check(HostileText& random) {
        ASSERT_EQ(m_storage.length(), m_model.text.size());
        ASSERT_EQ(m_storage.text({0, m_storage.length()}), m_model.text);
        ASSERT_TRUE(m_storage.equals(m_model.text));
        checkChange();
        checkLines(random);
        checkClusters(random.number(length()));
        checkChunks(random.number(length()));
    }

private:
    void record(bool changes) {
        if (changes) {
            m_past.push_back(m_model.text);
            m_future.clear();
        }
    }

    /// What was announced since the last check must turn the text of then into that of now, as one change and step by
    /// step; the steps go from front to back, so that what they inserted stands in the text of now.
    void checkChange() {
        ASSERT_LE(m_changes.size(), 1U);
        ASSERT_TRUE(m_storage.steps().empty());
        if (m_changes.empty()) {
            ASSERT_EQ(m_model.text, m_checked);
        }
        for (const std::vector<TextChange>& changes : {m_changes, m_steps}) {
            PlainText text{m_checked};
            for (const TextChange& change : changes) {
                text.replace({change.offset, change.removedLength},
                             QStringView(m_model.text).sliced(change.offset, change.insertedLength));
            }
            ASSERT_EQ(text.text, m_model.text);
        }
        m_changes.clear();
        m_steps.clear();
        m_checked = m_model.text;
    }

    void checkLines(HostileText& random) {
        const std::vector<qsizetype> starts = m_model.lineStarts();
        const auto count = static_cast<qsizetype>(starts.size());
        if (random.number(1) == 0) {
            ASSERT_EQ(m_storage.lineCount(), count);
        }
        const qsizetype line = random.number(count - 1);
        const qsizetype start = starts[static_cast<std::size_t>(line)];
        const qsizetype end = line + 1 < count ? starts[static_cast<std::size_t>(line + 1)] : length();
        ASSERT_EQ(m_storage.lineRange(line), (TextRange{start, end - start}));
        const QString whole = m_model.text.mid(start, end - start);
        const qsizetype terminator = line + 1 == count ? 0 : whole.endsWith(u"\r\n"_s) ? 2 : 1;
        ASSERT_EQ(m_storage.lineContents(line), (TextRange{start, end - start - terminator}));
        const qsizetype offset = random.number(length());
        const auto behind = std::upper_bound(starts.begin(), starts.end(), offset);
        ASSERT_EQ(m_storage.lineAt(offset), behind - starts.begin() - 1);
        ASSERT_EQ(m_storage.lineCount(), count);
    }

    void checkClusters(qsizetype offset) {
        const QString& text = m_model.text;
        const qsizetype next = offset == text.size() ? offset : nextClusterBoundary(text, offset);
        const qsizetype previous = offset == 0 ? 0 : previousClusterBoundary(text, offset);
        const bool isBoundary = isClusterBoundary(text, offset);
        ASSERT_EQ(m_storage.nextCluster(offset), next) << offset;
        ASSERT_EQ(m_storage.previousCluster(offset), previous) << offset;
        ASSERT_EQ(m_storage.clusterBoundaryAtOrAfter(offset), isBoundary ? offset : next) << offset;
        ASSERT_EQ(m_storage.clusterBoundaryAtOrBefore(offset), isBoundary ? offset : previous) << offset;
    }

    void checkChunks(qsizetype offset) {
        const QStringView ahead = m_storage.chunkAt(offset);
        ASSERT_EQ(ahead.isEmpty(), offset == length());
        ASSERT_EQ(ahead, QStringView(m_model.text).mid(offset, ahead.size()));
        const QStringView behind = m_storage.chunkBefore(offset);
        ASSERT_EQ(behind.isEmpty(), offset == 0);
        ASSERT_EQ(behind, QStringView(m_model.text).mid(offset - behind.size(), behind.size()));
        if (offset < length()) {
            ASSERT_EQ(m_storage.unitAt(offset), m_model.text[offset].unicode());
        }
    }

    TextStorage m_storage;
    UndoManager m_history;
    PlainText m_model;
    std::vector<QString> m_past;
    std::vector<QString> m_future;
    std::vector<TextChange> m_changes;
    std::vector<TextChange> m_steps;
    QString m_checked = m_model.text;
};

struct Run {
    unsigned seed;
    qsizetype pageUnits;
    qsizetype greatestLength;
    int steps;

    friend void PrintTo(const Run& run, std::ostream* out) { *out << "seed " << run.seed; }
};

class RandomEdits : public testing::TestWithParam<Run> {};

TEST_P(RandomEdits, EqualAPlainStringAfterEachStep) {
    const auto [seed, pageUnits, greatestLength, steps] = GetParam();
    HostileText random(seed);
    EditedText edited(random.text(greatestLength / 2), pageUnits);
    const auto someRange = [&](qsizetype longest) {
        const qsizetype location = random.number(edited.length());
        return TextRange{location, random.number(std::min(longest, edited.length() - location))};
    };
    for (int step = 0; step < steps; ++step) {
        switch (random.number(11)) {
        case 0: // a paste
            edited.replace(someRange(8), random.text(greatestLength / 16));
            break;
        case 1: // a deletion, long when the text has become so
            edited.replace(someRange(edited.length() > greatestLength ? edited.length() : 12), {});
            break;
        case 2: // lines are joined
            for (qsizetype offset = random.number(edited.length()); offset < edited.length(); ++offset) {
                if (isLineTerminator(edited.text()[offset].unicode())) {
                    edited.replace({offset, 1}, {});
                    break;
                }
            }
            break;
        case 3: // a line is split
            edited.replace({random.number(edited.length()), 0}, random.number(1) == 0 ? u"\r\n"_s : u"\r"_s);
            break;
        case 4: { // many places at once
            std::vector<TextReplacement> replacements;
            for (qsizetype offset = random.number(edited.length()); offset <= edited.length();) {
                const qsizetype length = random.number(std::min<qsizetype>(3, edited.length() - offset));
                replacements.push_back({{offset, length}, random.text(3)});
                offset += length + random.number(greatestLength / 8);
            }
            edited.replaceAll(replacements);
            break;
        }
        case 5:
        case 6:
            edited.undo();
            break;
        case 7:
            edited.redo();
            break;
        case 8:
            edited.flatten();
            break;
        default: // a key
            edited.replace({random.number(edited.length()), 0}, random.text(1));
        }
        edited.check(random);
        ASSERT_FALSE(testing::Test::HasFatalFailure()) << "step " << step;
    }
}

// Together 100,000 steps: in the smallest pages, in some, and in texts that fit into one.
INSTANTIATE_TEST_SUITE_P(Seeds, RandomEdits,
                         testing::Values(Run{1, 8, 120, 40'000}, Run{2, 32, 400, 30'000}, Run{3, 64, 1000, 10'000},
                                         Run{4, 256, 200, 20'000}),
                         [](const auto& run) { return "PagesOf" + std::to_string(run.param.pageUnits); });

} // namespace

} // namespace quillary
