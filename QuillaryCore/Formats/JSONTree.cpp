#include "QuillaryCore/Formats/JSONTree.h"

#include "QuillaryCore/Formats/JSONFormatter.h"
#include "QuillaryCore/Formats/JSONKeyScan.h"

#include <optional>

namespace quillary {

/// Goes down and up a value with the opened containers on a stack.
class JSONTreeBuilder {
public:
    JSONTreeBuilder(const JSONValue& value, const JSONTree::Predicate& isExpanded)
        : m_tree(new Row::Tree(value)), m_isExpanded(isExpanded) {}

    std::vector<JSONTreeRow> build() {
        appendRoot();
        while (!m_open.empty()) {
            if (m_open.back().position == m_open.back().end) {
                m_open.pop_back();
            } else {
                appendChild();
            }
        }
        return std::move(m_rows);
    }

private:
    using Row = JSONTreeRow;
    using Role = JSONTreeRow::Role;

    struct Level {
        std::size_t branch;
        bool isObject;
        qsizetype position;
        qsizetype end;
        qsizetype index;
        std::vector<qsizetype> duplicates;
        std::size_t nextDuplicate;
    };

    const JSONTape& tape() const { return m_tree->value.document()->tape; }

    Row& appendRow(std::size_t branch, Role role, qsizetype index, qsizetype position) {
        return m_rows.emplace_back(Row(Row::TreePointer(m_tree.data()), branch, role, index, position));
    }

    void appendRoot() {
        const JSONValue& value = m_tree->value;
        m_tree->branches.push_back({JSONPath().shared(), 0});
        Row& row = appendRow(0, Role::root, 0, value.position());
        if (!value.isContainer()) {
            return;
        }
        row.m_isExpanded = m_isExpanded(row.path(), 0);
        if (row.m_isExpanded && value.childCount() > 0) {
            m_keys.emplace(*value.document());
            open(0, value.position());
        }
    }

    void appendChild() {
        Level& level = m_open.back();
        const qsizetype position = level.isObject ? level.position + 1 : level.position;
        Row& row = appendRow(level.branch, takeRole(level), level.index, position);
        level.position = tape().next(position);
        ++level.index;
        if (!isContainer(tape().tag(position))) {
            return;
        }
        const JSONPath path = row.path();
        const qint64 depth = row.depth();
        row.m_isExpanded = m_isExpanded(path, depth);
        if (row.m_isExpanded && tape().isFullContainer(position)) {
            m_tree->branches.push_back({path.shared(), depth});
            open(m_tree->branches.size() - 1, position);
        }
    }

    void open(std::size_t branch, qsizetype container) {
        const bool isObject = tape().tag(container) == JSONTape::Tag::object;
        std::vector<qsizetype> duplicates;
        if (isObject) {
            duplicates = m_keys->duplicates(container);
        }
        m_open.push_back(
            {branch, isObject, JSONTape::firstChild(container), tape().next(container), 0, std::move(duplicates), 0});
    }

    static Role takeRole(Level& level) {
        if (!level.isObject) {
            return Role::element;
        }
        if (level.nextDuplicate == level.duplicates.size() || level.duplicates[level.nextDuplicate] != level.index) {
            return Role::member;
        }
        ++level.nextDuplicate;
        return Role::duplicate;
    }

    static bool isContainer(JSONTape::Tag tag) { return tag <= JSONTape::Tag::emptyArray; }

    QExplicitlySharedDataPointer<Row::Tree> m_tree;
    const JSONTree::Predicate& m_isExpanded;
    std::optional<JSONKeyScan> m_keys;
    std::vector<Level> m_open;
    std::vector<Row> m_rows;
};

std::vector<JSONTreeRow> JSONTree::rows(const JSONValue& value, const Predicate& isExpanded) {
    return JSONTreeBuilder(value, isExpanded).build();
}

QString JSONTree::valueToCopy(const JSONValue& value) {
    if (value.isContainer()) {
        return JSONFormatter::prettyPrinted(value, 2);
    }
    return value.kind() == JSONValue::Kind::string ? value.string() : JSONFormatter::minified(value);
}

} // namespace quillary
