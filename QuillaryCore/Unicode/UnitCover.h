#pragma once

#include "QuillaryCore/Unicode/UnitScan.h"

#include <QVarLengthArray>

namespace quillary {

/// A few masked units that together match every unit of a set, and as little else as they can: what a scan looks for
/// when the set itself has too many units.
template <std::size_t capacity>
class UnitCover {
public:
    /// Covers one more unit; false if that takes more masked units than there is room for.
    bool insert(char16_t unit) {
        // What differs in more bits covers too much that isn't meant.
        constexpr int widest = 6;
        for (MaskedUnit& each : m_units) {
            if (each.matches(unit)) {
                return true;
            }
        }
        for (MaskedUnit& each : m_units) {
            if (each.with(unit).width() <= widest) {
                each = each.with(unit);
                return true;
            }
        }
        if (m_units.size() == static_cast<qsizetype>(capacity)) {
            return false;
        }
        m_units.append({unit, 0});
        return true;
    }

    bool matches(QChar unit) const {
        for (const MaskedUnit& each : m_units) {
            if (each.matches(unit)) {
                return true;
            }
        }
        return false;
    }

    std::span<const MaskedUnit> units() const { return {m_units.data(), static_cast<std::size_t>(m_units.size())}; }

private:
    QVarLengthArray<MaskedUnit, capacity> m_units;
};

} // namespace quillary
