#pragma once

#include "QuillaryCore/Formats/JSONPath.h"
#include "QuillaryCore/Formats/JSONValue.h"

#include <variant>
#include <vector>

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
    struct Branch {
        JSONPath::Shared path;
        qint64 depth;
    };

    /// What the rows of one tree have in common; complete once the tree is built.
    struct Tree : QSharedData {
        explicit Tree(JSONValue whole) : value(std::move(whole)) {}

        JSONValue value;
        std::vector<Branch> branches;
    };

    using TreePointer = QExplicitlySharedDataPointer<const Tree>;

    enum class Role : quint8 { root, element, member, duplicate };

    JSONTreeRow(TreePointer tree, std::size_t branch, Role role, qsizetype index, qsizetype position)
        : m_tree(std::move(tree)), m_branch(branch), m_index(index), m_position(position), m_role(role) {}

    const Branch& branch() const { return m_tree->branches[m_branch]; }

    QString key() const { return m_tree->value.document()->string(m_position - 1); }

    TreePointer m_tree;
    /// The branch that it lies in; the whole text's own for the whole text.
    std::size_t m_branch;
    /// Among its siblings.
    qsizetype m_index;
    /// Of the value in the document.
    qsizetype m_position;
    Role m_role;
    bool m_isExpanded = false;
};

} // namespace quillary
