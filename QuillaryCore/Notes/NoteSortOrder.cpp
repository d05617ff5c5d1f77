#include "QuillaryCore/Notes/NoteSortOrder.h"

#include "QuillaryCore/Unicode/Collation.h"
#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <QCoreApplication>

#include <algorithm>

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

/// The date that an order looks at first; the same for every note where it looks at none.
Moment decidingDate(NoteSortOrder order, const NoteSortKey& key) {
    switch (order) {
    case NoteSortOrder::modified:
        return key.modified;
    case NoteSortOrder::created:
    case NoteSortOrder::manual:
        return key.created;
    case NoteSortOrder::title:
        break;
    }
    return distantPast;
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
    const Moment dateOfA = decidingDate(order, a);
    const Moment dateOfB = decidingDate(order, b);
    return dateOfA != dateOfB ? dateOfA > dateOfB : localizedStandardCompare(a.title, b.title, locale) < 0;
}

bool areInIncreasingOrder(NoteSortOrder order, const NoteSortKey& a, const NoteSortKey& b) {
    return areInIncreasingOrder(order, a, b, interfaceLocale());
}

std::vector<qsizetype> sortedPositions(const std::vector<NoteSortKey>& keys, NoteSortOrder order,
                                       const QString& locale) {
    struct Entry {
        Moment date;
        std::size_t position;
    };

    std::vector<Entry> entries;
    entries.reserve(keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        entries.push_back({decidingDate(order, keys[i]), i});
    }
    std::vector<std::optional<CollationKey>> titles(keys.size());
    const auto titleOf = [&](std::size_t position) -> const CollationKey& {
        std::optional<CollationKey>& title = titles[position];
        if (!title) {
            title.emplace(keys[position].title, locale);
        }
        return *title;
    };
    std::stable_sort(entries.begin(), entries.end(), [&](const Entry& a, const Entry& b) {
        return a.date != b.date ? a.date > b.date : titleOf(a.position) < titleOf(b.position);
    });
    std::vector<qsizetype> positions;
    positions.reserve(entries.size());
    for (const Entry& entry : entries) {
        positions.push_back(static_cast<qsizetype>(entry.position));
    }
    return positions;
}

std::vector<qsizetype> sortedPositions(const std::vector<NoteSortKey>& keys, NoteSortOrder order) {
    return sortedPositions(keys, order, interfaceLocale());
}

} // namespace quillary
