#include "QuillaryCore/Notes/NoteSortOrder.h"

#include "QuillaryCore/RadixSort.h"
#include "QuillaryCore/Unicode/Collation.h"

#include <QCoreApplication>
#include <QtEndian>

#include <algorithm>
#include <span>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

struct OrderTraits {
    QLatin1StringView rawValue;
    const char* displayName;
};

constexpr OrderTraits orderTraits[] = {
    {"created"_L1, QT_TRANSLATE_NOOP("NoteSortOrder", "Data di creazione")},
    {"modified"_L1, QT_TRANSLATE_NOOP("NoteSortOrder", "Ultima modifica")},
    {"title"_L1, QT_TRANSLATE_NOOP("NoteSortOrder", "Titolo")},
    {"manual"_L1, QT_TRANSLATE_NOOP("NoteSortOrder", "Manuale (trascinando)")},
};

const OrderTraits& traits(NoteSortOrder order) {
    return orderTraits[static_cast<std::size_t>(order)];
}

/// How many bytes all keys have in common at their start.
qsizetype commonPrefix(const CollationKeys& keys) {
    qsizetype length = keys[0].size();
    for (std::size_t i = 1; i < keys.size(); ++i) {
        const auto [ours, theirs] = std::ranges::mismatch(keys[0].first(length), keys[i]);
        length = ours - keys[0].begin();
    }
    return length;
}

/// The first eight bytes as a number of the same order; what is missing at the end counts as the least.
quint64 leadingBytes(QByteArrayView key) {
    char bytes[sizeof(quint64)] = {};
    std::copy_n(key.data(), std::min(key.size(), qsizetype(sizeof bytes)), bytes);
    return qFromBigEndian<quint64>(bytes);
}

/// A note on its way to its place by its date; small, since sorting moves it often.
struct DatedPosition {
    Moment date;
    qsizetype position = 0;
};

/// A note on its way to its place among those of its date.
struct TitledPosition {
    qsizetype position = 0;
    /// Which of the titles that were made ready is its own, and the eight bytes of that one that decide most often.
    std::size_t title = 0;
    quint64 titleLead = 0;
};

/// The runs of two or more entries that have something in common.
template <typename Entry, typename Value>
std::vector<std::span<Entry>> runsOf(std::span<Entry> entries, Value Entry::*value) {
    std::vector<std::span<Entry>> runs;
    for (std::size_t first = 0; first < entries.size();) {
        std::size_t last = first + 1;
        while (last < entries.size() && entries[last].*value == entries[first].*value) {
            ++last;
        }
        if (last - first > 1) {
            runs.push_back(entries.subspan(first, last - first));
        }
        first = last;
    }
    return runs;
}

/// Brings each run into the order of its titles; equal titles keep theirs. Most places are decided by a number that
/// lies in what is sorted: the eight bytes behind those that all titles have in common.
void sortByTitle(const std::vector<std::span<DatedPosition>>& runs, std::size_t noteCount,
                 const std::function<QString(qsizetype)>& title, const QString& locale) {
    if (runs.empty()) {
        return;
    }
    std::vector<TitledPosition> entries;
    for (const std::span<DatedPosition> run : runs) {
        for (const DatedPosition& dated : run) {
            entries.push_back({.position = dated.position});
        }
    }
    // Titles are asked for in the order of the notes, whose facts lie in memory one behind the other.
    std::vector<TitledPosition*> entryOfNote(noteCount, nullptr);
    for (TitledPosition& entry : entries) {
        entryOfNote[static_cast<std::size_t>(entry.position)] = &entry;
    }
    CollationKeys titles(locale);
    for (TitledPosition* const entry : entryOfNote) {
        if (entry != nullptr) {
            entry->title = titles.size();
            titles.append(title(entry->position));
        }
    }
    const qsizetype prefix = commonPrefix(titles);
    for (TitledPosition& entry : entries) {
        entry.titleLead = leadingBytes(titles[entry.title].sliced(prefix));
    }
    std::span<TitledPosition> rest = entries;
    for (const std::span<DatedPosition> run : runs) {
        const std::span<TitledPosition> sorted = rest.first(run.size());
        rest = rest.subspan(run.size());
        radixSort(sorted, [](const TitledPosition& entry) { return entry.titleLead; });
        for (const std::span<TitledPosition> alike : runsOf(sorted, &TitledPosition::titleLead)) {
            std::ranges::sort(alike, [&](const TitledPosition& a, const TitledPosition& b) {
                if (const int order = titles[a.title].compare(titles[b.title])) {
                    return order < 0;
                }
                const int order = localizedStandardCompare(title(a.position), title(b.position), locale);
                return order != 0 ? order < 0 : a.position < b.position;
            });
        }
        for (std::size_t i = 0; i < run.size(); ++i) {
            run[i].position = sorted[i].position;
        }
    }
}

} // namespace

std::optional<NoteSortOrder> noteSortOrderFromRawValue(QStringView rawValue) {
    for (const NoteSortOrder order : allNoteSortOrders) {
        if (rawValue == traits(order).rawValue) {
            return order;
        }
    }
    return std::nullopt;
}

QString rawValue(NoteSortOrder order) {
    return traits(order).rawValue;
}

QString displayName(NoteSortOrder order) {
    return QCoreApplication::translate("NoteSortOrder", traits(order).displayName);
}

bool areInIncreasingOrder(NoteSortOrder order, const NoteSortKey& a, const NoteSortKey& b, const QString& locale) {
    const Moment dateOfA = decidingDate(order, a.created, a.modified);
    const Moment dateOfB = decidingDate(order, b.created, b.modified);
    return dateOfA != dateOfB ? dateOfA > dateOfB : localizedStandardCompare(a.title, b.title, locale) < 0;
}

bool areInIncreasingOrder(NoteSortOrder order, const NoteSortKey& a, const NoteSortKey& b) {
    return areInIncreasingOrder(order, a, b, interfaceLocale());
}

Moment decidingDate(NoteSortOrder order, Moment created, Moment modified) {
    switch (order) {
    case NoteSortOrder::modified:
        return modified;
    case NoteSortOrder::created:
    case NoteSortOrder::manual:
        return created;
    case NoteSortOrder::title:
        break;
    }
    return distantPast;
}

std::vector<qsizetype> sortedPositions(const std::vector<Moment>& dates, const std::function<QString(qsizetype)>& title,
                                       const QString& locale) {
    std::vector<DatedPosition> entries;
    entries.reserve(dates.size());
    for (std::size_t i = 0; i < dates.size(); ++i) {
        entries.push_back({.date = dates[i], .position = static_cast<qsizetype>(i)});
    }
    // The newest first: what a date lacks to the last one there is grows into the past.
    const auto distanceToLast = [](const DatedPosition& entry) {
        return static_cast<quint64>(Moment::max().time_since_epoch().count()) -
               static_cast<quint64>(entry.date.time_since_epoch().count());
    };
    radixSort(std::span(entries), distanceToLast);
    sortByTitle(runsOf(std::span(entries), &DatedPosition::date), dates.size(), title, locale);

    std::vector<qsizetype> positions(entries.size());
    std::ranges::transform(entries, positions.begin(), &DatedPosition::position);
    return positions;
}

std::vector<qsizetype> sortedPositions(const std::vector<NoteSortKey>& keys, NoteSortOrder order,
                                       const QString& locale) {
    std::vector<Moment> dates;
    dates.reserve(keys.size());
    for (const NoteSortKey& key : keys) {
        dates.push_back(decidingDate(order, key.created, key.modified));
    }
    const auto title = [&keys](qsizetype position) { return keys[static_cast<std::size_t>(position)].title; };
    return sortedPositions(dates, title, locale);
}

} // namespace quillary
