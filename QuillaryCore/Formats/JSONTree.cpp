#include "QuillaryCore/Formats/JSONTree.h"

#include "QuillaryCore/Formats/JSONFormatter.h"
#include "QuillaryCore/Formats/JSONKeyScan.h"

#include <optional>

namespace quillary {

/// Goes down and up a value with the opened containers on a stack.
class JSONTreeBuilder {
public:
    JSONTreeBuilder(const JSONValue& value, const JSONTree::Predicate& isExpanded)
        : m_value(value), m_isExpanded(isExpanded) {}

    std::vector<JSONTreeRow> build() {
        const BranchPointer root(new Branch(JSONPath().shared(), m_value, 0));
        Row& row = m_rows.emplace_back(Row(root, Role::root, 0, m_value.position()));
        if (m_value.isContainer()) {
            row.m_isExpanded = m_isExpanded(root->path, 0);
        }
        if (row.m_isExpanded && m_value.childCount() > 0) {
            m_keys.emplace(*m_value.document());
            open(root);
        }
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
    using Branch = JSONTreeRow::Branch;
    using BranchPointer = JSONTreeRow::BranchPointer;

    struct Level {
        BranchPointer branch;
        bool isObject;
        qsizetype position;
        qsizetype end;
        qsizetype index;
        std::vector<qsizetype> duplicates;
        std::size_t nextDuplicate;
    };

    const JSONTape& tape() const { return m_value.document()->tape; }

    void open(const BranchPointer& branch) {
        const qsizetype container = branch->value.position();
        const bool isObject = tape().tag(container) == JSONTape::Tag::object;
        std::vector<qsizetype> duplicates;
        if (isObject) {
            duplicates = m_keys->duplicates(container);
        }
        m_open.push_back(
            {branch, isObject, JSONTape::firstChild(container), tape().next(container), 0, std::move(duplicates), 0});
    }

    Role takeRole(Level& level) {
        if (!level.isObject) {
            return Role::element;
        }
        if (level.nextDuplicate == level.duplicates.size() || level.duplicates[level.nextDuplicate] != level.index) {
            return Role::member;
        }
        ++level.nextDuplicate;
        return Role::duplicate;
    }

    void appendChild() {
        Level& level = m_open.back();
        const qsizetype position = level.isObject ? level.position + 1 : level.position;
        Row& row = m_rows.emplace_back(Row(level.branch, takeRole(level), level.index, position));
        level.position = tape().next(position);
        ++level.index;
        if (!isContainer(tape().tag(position))) {
            return;
        }
        const JSONPath path = row.path();
        const qint64 depth = level.branch->depth + 1;
        row.m_isExpanded = m_isExpanded(path, depth);
        if (row.m_isExpanded && tape().isFullContainer(position)) {
            open(BranchPointer(new Branch(path.shared(), row.value(), depth)));
        }
    }

    static bool isContainer(JSONTape::Tag tag) { return tag <= JSONTape::Tag::emptyArray; }

    const JSONValue& m_value;
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
