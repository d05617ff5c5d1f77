#pragma once

#include "Quillary/Sidebar/SidebarRow.h"

#include <vector>

namespace quillary {

/// One step from an old list of rows to a new one. The steps of a list are taken one after the other, each in the rows
/// that the steps before it have left.
struct SidebarRowChange {
    enum class Kind {
        remove,
        move,
        insert,
    };

    Kind kind = Kind::insert;
    /// The first row that goes, moves or comes.
    int first = 0;
    int count = 0;
    /// Where moved rows go: in front of this row, counted before the move.
    int destination = 0;

    friend bool operator==(const SidebarRowChange&, const SidebarRowChange&) = default;
};

/// The steps that make one list of rows out of another, told apart by their keys: what is in both stays where the order
/// allows it and moves otherwise (the longest stretch in order stays). Rows that differ in more places than are worth
/// telling of one by one are replaced as one stretch.
std::vector<SidebarRowChange> sidebarRowChanges(const std::vector<SidebarRow>& before,
                                                const std::vector<SidebarRow>& after);

} // namespace quillary
