#pragma once

#include "QuillaryCore/Notes/Moment.h"
#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <QString>

#include <array>
#include <functional>
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

/// The date that an order looks at first; the same for every note where it looks at none.
Moment decidingDate(NoteSortOrder order, Moment created, Moment modified);

/// The positions in sorted order of notes with these deciding dates. Stable. `title` gives the title of the note at a
/// position; it is asked only for notes that share their date with another one.
std::vector<qsizetype> sortedPositions(const std::vector<Moment>& dates, const std::function<QString(qsizetype)>& title,
                                       const QString& locale);

/// The positions of `keys` in sorted order. Stable.
std::vector<qsizetype> sortedPositions(const std::vector<NoteSortKey>& keys, NoteSortOrder order,
                                       const QString& locale);

/// The notes in sorted order, in the interface's locale; those that tie in everything stay in their order. What the
/// list holds points to something with `created()`, `modified()` and `title()`.
template <typename List>
List sorted(const List& notes, NoteSortOrder order) {
    std::vector<Moment> dates;
    dates.reserve(static_cast<std::size_t>(notes.size()));
    for (const auto& note : notes) {
        dates.push_back(decidingDate(order, note->created(), note->modified()));
    }
    const auto title = [&notes](qsizetype position) { return notes[position]->title(); };
    List result;
    result.reserve(notes.size());
    for (const qsizetype position : sortedPositions(dates, title, interfaceLocale())) {
        result.push_back(notes[position]);
    }
    return result;
}

} // namespace quillary
