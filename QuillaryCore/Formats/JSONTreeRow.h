#pragma once

#include "QuillaryCore/Formats/JSONPath.h"
#include "QuillaryCore/Formats/JSONValue.h"

#include <variant>

namespace quillary {

/// One row of a JSON tree. Rows are many and few of them are looked at: a row holds where its value lies, and what it
/// shows is made when it is asked for.
class JSONTreeRow {
public:
    /// What stands before the value of the whole text: nothing.
    struct Root {
        friend bool operator==(Root, Root) = default;
    };

    /// A member's key, an element's index, or nothing.
    using Label = std::variant<QString, qint64, Root>;

    /// The path of its value, which no other row of the tree has.
    JSONPath path() const;

    /// The same as text.
    QString id() const { return path().text(); }

    /// How many containers it lies in.
    qint64 depth() const;

    Label label() const;

    JSONValue value() const;

    /// Whether the rows of its children follow; never for anything but containers.
    bool isExpanded() const { return m_isExpanded; }

private:
    friend class JSONTreeBuilder;

    /// A container with rows for its children.
    struct Branch : QSharedData {
        Branch(JSONPath containerPath, JSONValue containerValue, qint64 containerDepth)
            : path(std::move(containerPath)), value(std::move(containerValue)), depth(containerDepth) {}

        JSONPath path;
        JSONValue value;
        qint64 depth;
    };

    using BranchPointer = QExplicitlySharedDataPointer<const Branch>;

    enum class Role : quint8 { root, element, member, duplicate };

    JSONTreeRow(BranchPointer branch, Role role, qsizetype index, qsizetype position)
        : m_branch(std::move(branch)), m_index(index), m_position(position), m_role(role) {}

    QString key() const { return m_branch->value.document()->string(m_position - 1); }

    /// The branch that it lies in; the whole text's own for the whole text.
    BranchPointer m_branch;
    qsizetype m_index;
    /// Of the value in the document.
    qsizetype m_position;
    Role m_role;
    bool m_isExpanded = false;
};

} // namespace quillary
