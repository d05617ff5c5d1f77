#include "QuillaryCore/Formats/JSONTree.h"

#include "QuillaryCore/Formats/JSONFormatter.h"
#include "QuillaryCore/Formats/JSONKeyScan.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace quillary {

/// Goes down and up a value with the opened containers on a stack.
class JSONTreeBuilder {
public:
    JSONTreeBuilder(const JSONValue& value, const JSONTree::Predicate& isExpanded)
        : m_tree(new Tree(value)), m_isExpanded(isExpanded) {}

    JSONTreeRows build() {
        appendRoot();
        while (!m_open.empty()) {
            if (m_open.back().position == m_open.back().end) {
                m_open.pop_back();
            } else {
                appendChild();
            }
        }
        m_tree->rows.shrink_to_fit();
        m_tree->branches.shrink_to_fit();
        return JSONTreeRows(JSONTreeRow::TreePointer(m_tree.data()));
    }

private:
    using Tree = JSONTreeRow::Tree;
    using Row = JSONTreeRow::Row;

    struct Level {
        quint32 branch;
        bool isObject;
        qsizetype position;
        qsizetype end;
        quint32 index;
        std::vector<qsizetype> duplicates;
        std::size_t nextDuplicate;
        JSONPath::Shared path;
    };

    const JSONTape& tape() const { return m_tree->document().tape; }

    void appendRoot() {
        const JSONValue& value = m_tree->value;
        m_tree->rows.push_back({static_cast<quint32>(value.position()), 0, 0, 0});
        if (!value.isContainer()) {
            return;
        }
        const JSONPath path;
        const bool isExpanded = m_isExpanded(path, 0);
        m_tree->rows.back().isExpanded = isExpanded;
        if (isExpanded && value.childCount() > 0) {
            m_keys.emplace(*value.document());
            open(path, value.position());
        }
    }

    void appendChild() {
        Level& level = m_open.back();
        const qsizetype position = level.isObject ? level.position + 1 : level.position;
        const bool isDuplicate = takeDuplicate(level);
        Row& row = m_tree->rows.emplace_back(
            Row{static_cast<quint32>(position), level.index & Row::indexMask, 0, isDuplicate});
        level.position = tape().next(position);
        ++level.index;
        if (tape().tag(position) > JSONTape::Tag::emptyArray) {
            return;
        }
        const JSONPath path = m_tree->pathIn(JSONPath(level.path), level.isObject, row);
        const bool isExpanded = m_isExpanded(path, static_cast<qint64>(m_open.size()));
        row.isExpanded = isExpanded;
        if (isExpanded && tape().isFullContainer(position)) {
            open(path, position);
        }
    }

    /// Opens the container of the last row.
    void open(const JSONPath& path, qsizetype container) {
        const bool isObject = tape().tag(container) == JSONTape::Tag::object;
        std::vector<qsizetype> duplicates;
        if (isObject) {
            duplicates = m_keys->duplicates(container);
        }
        m_tree->branches.push_back(
            {static_cast<quint32>(m_tree->rows.size() - 1), m_open.empty() ? 0 : m_open.back().branch});
        m_open.push_back({static_cast<quint32>(m_tree->branches.size() - 1), isObject, JSONTape::firstChild(container),
                          tape().next(container), 0, std::move(duplicates), 0, path.shared()});
        m_tree->greatestDepth = std::max(m_tree->greatestDepth, static_cast<qint64>(m_open.size()));
    }

    static bool takeDuplicate(Level& level) {
        if (level.nextDuplicate == level.duplicates.size() || level.duplicates[level.nextDuplicate] != level.index) {
            return false;
        }
        ++level.nextDuplicate;
        return true;
    }

    QExplicitlySharedDataPointer<Tree> m_tree;
    const JSONTree::Predicate& m_isExpanded;
    std::optional<JSONKeyScan> m_keys;
    std::vector<Level> m_open;
};

JSONTreeRows JSONTree::rows(const JSONValue& value, const Predicate& isExpanded) {
    return JSONTreeBuilder(value, isExpanded).build();
}

QString JSONTree::valueToCopy(const JSONValue& value) {
    if (value.isContainer()) {
        return JSONFormatter::prettyPrinted(value, 2);
    }
    return value.kind() == JSONValue::Kind::string ? value.string() : JSONFormatter::minified(value);
}

} // namespace quillary
