#include "QuillaryCore/Formats/JSONTreeRow.h"

namespace quillary {

JSONPath JSONTreeRow::path() const {
    switch (m_role) {
    case Role::element:
        return m_branch->path.appending(m_index);
    case Role::member:
        return m_branch->path.appending(key());
    case Role::duplicate:
        return m_branch->path.appendingDuplicate(key(), m_index);
    case Role::root:
        break;
    }
    return m_branch->path;
}

qint64 JSONTreeRow::depth() const {
    return m_role == Role::root ? m_branch->depth : m_branch->depth + 1;
}

JSONTreeRow::Label JSONTreeRow::label() const {
    switch (m_role) {
    case Role::element:
        return m_index;
    case Role::member:
    case Role::duplicate:
        return key();
    case Role::root:
        break;
    }
    return Root();
}

JSONValue JSONTreeRow::value() const {
    return {m_branch->value.document(), m_position};
}

} // namespace quillary
