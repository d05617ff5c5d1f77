#pragma once

#include "QuillaryCore/Formats/JSONPath.h"
#include "QuillaryCore/Formats/JSONValue.h"

#include <variant>
#include <vector>

namespace quillary {

/// One row of a JSON tree. Rows are many and few of them are looked at: the tree holds where the value of each lies,
/// and what a row shows is made when it is asked for.
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
    bool isExpanded() const { return m_tree->rows[m_row].isExpanded; }

private:
    friend class JSONTreeBuilder;
    friend class JSONTreeRows;

    /// What is kept of a row. The numbers are small enough for every text below 2 GiB.
    struct Row {
        static constexpr quint32 indexMask = (1U << 30) - 1;

        /// Of its value in the document.
        quint32 position;
        /// Among its siblings.
        quint32 index : 30;
        quint32 isExpanded : 1;
        /// Whether an earlier member of its object has the same key.
        quint32 isDuplicate : 1;
    };

    /// A container with rows for its children.
    struct Branch {
        /// Its own row.
        quint32 row;
        /// The branch that it lies in; the whole text's own for the whole text.
        quint32 parent;
    };

    /// All rows of a tree; complete once it is built. What encloses a row is found again by where values end in the
    /// document, so that no row has to keep it.
    struct Tree : QSharedData {
        explicit Tree(JSONValue whole) : value(std::move(whole)) {}

        const JSONDocument& document() const { return *value.document(); }

        /// The innermost branch that a row other than the first lies in.
        std::size_t branchAround(std::size_t row) const;

        /// The path of a row from that of the container it lies in.
        JSONPath pathIn(const JSONPath& container, bool isObject, const Row& row) const;

        JSONValue value;
        std::vector<Row> rows;
        /// By their rows, ascending.
        std::vector<Branch> branches;
        qint64 greatestDepth = 0;
    };

    using TreePointer = QExplicitlySharedDataPointer<const Tree>;

    JSONTreeRow(TreePointer tree, std::size_t row) : m_tree(std::move(tree)), m_row(row) {}

    QString key() const { return m_tree->document().string(m_tree->rows[m_row].position - 1); }

    TreePointer m_tree;
    std::size_t m_row;
};

} // namespace quillary
