#include "QuillaryCore/Formats/JSONTreeRow.h"

namespace quillary {

JSONPath JSONTreeRow::path() const {
    const JSONPath parent(branch().path);
    switch (m_role) {
    case Role::element:
        return parent.appending(m_index);
    case Role::member:
        return parent.appending(key());
    case Role::duplicate:
        return parent.appendingDuplicate(key(), m_index);
    case Role::root:
        break;
    }
    return parent;
}

qint64 JSONTreeRow::depth() const {
    return m_role == Role::root ? branch().depth : branch().depth + 1;
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
    return {m_tree->value.document(), m_position};
}

} // namespace quillary
