#pragma once

#include "QuillaryCore/Notes/Moment.h"

#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace quillary {

/// The orders of the list of notes.
enum class NoteSortOrder {
    created,
    modified,
    title,
    manual,
};

inline constexpr std::array allNoteSortOrders{
    NoteSortOrder::created,
    NoteSortOrder::modified,
    NoteSortOrder::title,
    NoteSortOrder::manual,
};

/// The order that is stored as `rawValue`; none if there is no such order.
std::optional<NoteSortOrder> noteSortOrderFromRawValue(QStringView rawValue);

/// What an order is stored as, which also identifies it.
QString rawValue(NoteSortOrder order);

/// The name in menus.
QString displayName(NoteSortOrder order);

/// What of a note decides its place.
struct NoteSortKey {
    QString title;
    Moment created = distantPast;
    Moment modified = distantPast;

    friend bool operator==(const NoteSortKey&, const NoteSortKey&) = default;
};

/// Whether a note goes before another: the newer first, of two of one date the lesser title by
/// localizedStandardCompare. `manual` is as `created` here; an order made by hand is laid over it elsewhere.
bool areInIncreasingOrder(NoteSortOrder order, const NoteSortKey& a, const NoteSortKey& b, const QString& locale);

/// The same in the interface's locale.
bool areInIncreasingOrder(NoteSortOrder order, const NoteSortKey& a, const NoteSortKey& b);

/// The positions of `keys` in sorted order. Stable; a title is prepared for comparison once, and only if it decides.
std::vector<qsizetype> sortedPositions(const std::vector<NoteSortKey>& keys, NoteSortOrder order,
                                       const QString& locale);

/// The same in the interface's locale.
std::vector<qsizetype> sortedPositions(const std::vector<NoteSortKey>& keys, NoteSortOrder order);

/// The items in sorted order. `key` gives the key of an item and is asked once for each; items that tie in everything
/// stay in their order.
template <typename List, typename KeyOf>
List sorted(const List& items, KeyOf key, NoteSortOrder order) {
    std::vector<NoteSortKey> keys;
    keys.reserve(static_cast<std::size_t>(items.size()));
    for (const auto& item : items) {
        keys.push_back(key(item));
    }
    List result;
    result.reserve(items.size());
    for (const qsizetype position : sortedPositions(keys, order)) {
        result.push_back(items[static_cast<typename List::size_type>(position)]);
    }
    return result;
}

} // namespace quillary
