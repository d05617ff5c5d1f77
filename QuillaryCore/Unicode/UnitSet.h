#pragma once

#include <QStringView>
#include <QVarLengthArray>

namespace quillary {

/// A few UTF-16 units.
class UnitSet {
public:
    qsizetype size() const { return m_units.size(); }

    bool contains(QChar unit) const { return m_units.contains(unit.unicode()); }

    void insert(char16_t unit) {
        if (!contains(unit)) {
            m_units.append(unit);
        }
    }

    const char16_t* begin() const { return m_units.begin(); }

    const char16_t* end() const { return m_units.end(); }

private:
    QVarLengthArray<char16_t, 4> m_units;
};

} // namespace quillary
