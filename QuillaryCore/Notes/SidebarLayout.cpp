#include "QuillaryCore/Notes/SidebarLayout.h"

#include "QuillaryCore/Unicode/CanonicalEquality.h"
#include "QuillaryCore/Unicode/Collation.h"
#include "QuillaryCore/Unicode/InterfaceLocale.h"

#include <QHash>
#include <QSet>

#include <algorithm>

namespace quillary {

namespace {

bool areSameNames(const QStringList& a, const QStringList& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const QString& x, const QString& y) { return canonicallyEqual(x, y); });
}

auto isNamed(const QString& name) {
    return [&name](const QString& each) { return canonicallyEqual(each, name); };
}

/// The entry of a folder: that of the very spelling, else one of an equivalent spelling.
template <typename Map>
auto findByName(Map& map, const QString& name) {
    auto exact = map.find(name);
    if (exact != map.end()) {
        return exact;
    }
    auto entry = map.begin();
    while (entry != map.end() && !canonicallyEqual(entry.key(), name)) {
        ++entry;
    }
    return entry;
}

template <typename Map, typename AreSame>
bool areSameByName(const Map& a, const Map& b, AreSame areSame) {
    return a.size() == b.size() && std::all_of(a.keyBegin(), a.keyEnd(), [&](const QString& name) {
               const auto other = findByName(b, name);
               return other != b.end() && areSame(a.find(name).value(), other.value());
           });
}

/// Moves the entry of one name to another, over what is there.
template <typename Map>
void renameKey(Map& map, const QString& old, const QString& newName) {
    const auto entry = findByName(map, old);
    if (entry == map.end()) {
        return;
    }
    const auto value = entry.value();
    map.erase(entry);
    if (const auto inTheWay = findByName(map, newName); inTheWay != map.end()) {
        map.erase(inTheWay);
    }
    map.insert(newName, value);
}

template <typename Map>
void removeKey(Map& map, const QString& name) {
    if (const auto entry = findByName(map, name); entry != map.end()) {
        map.erase(entry);
    }
}

/// Names on disk, parted by an order.
struct PartedNames {
    /// Those that the order has, in its order and as often as it has them.
    QStringList known;
    /// The others, as they were given.
    QStringList others;
};

PartedNames partedBy(const QStringList& order, const QStringList& names) {
    const QSet<QString> spelledInOrder(order.begin(), order.end());
    const QSet<QString> spelledOnDisk(names.begin(), names.end());
    // Those that only an equivalent spelling can reach.
    QHash<CanonicalName, QString> equivalents;
    for (const QString& name : names) {
        if (!spelledInOrder.contains(name) && !equivalents.contains(name)) {
            equivalents.insert(name, name);
        }
    }
    PartedNames result;
    QSet<QString> taken;
    for (const QString& entry : order) {
        const QString name = spelledOnDisk.contains(entry) ? entry : equivalents.value(entry);
        if (!name.isNull()) {
            result.known.append(name);
            taken.insert(name);
        }
    }
    std::copy_if(names.begin(), names.end(), std::back_inserter(result.others),
                 [&](const QString& name) { return !taken.contains(name); });
    return result;
}

void sortByName(QStringList& names, const QString& locale) {
    std::stable_sort(names.begin(), names.end(),
                     [&](const QString& a, const QString& b) { return localizedStandardCompare(a, b, locale) < 0; });
}

} // namespace

bool operator==(const SidebarLayout& a, const SidebarLayout& b) {
    return areSameNames(a.folderOrder, b.folderOrder) && areSameNames(a.collapsedFolders, b.collapsedFolders) &&
           areSameByName(a.folderColors, b.folderColors, std::equal_to<>()) &&
           areSameByName(a.noteOrder, b.noteOrder, areSameNames);
}

QString SidebarLayout::key(const std::optional<QString>& folder) {
    return folder.value_or(QString());
}

QStringList SidebarLayout::ordered(const QStringList& folders, const QString& locale) const {
    PartedNames parted = partedBy(folderOrder, folders);
    sortByName(parted.others, locale);
    return parted.known + parted.others;
}

QStringList SidebarLayout::ordered(const QStringList& folders) const {
    return ordered(folders, interfaceLocale());
}

QStringList SidebarLayout::manuallyOrdered(const QStringList& names, const std::optional<QString>& folder) const {
    const auto order = findByName(noteOrder, key(folder));
    const PartedNames parted = partedBy(order == noteOrder.end() ? QStringList() : order.value(), names);
    return parted.others + parted.known;
}

void SidebarLayout::placeNote(const QString& name, const std::optional<QString>& from, const std::optional<QString>& to,
                              const std::optional<QString>& before) {
    removeNote(name, from);
    const auto entry = findByName(noteOrder, key(to));
    QStringList& order = entry == noteOrder.end() ? noteOrder[key(to)] : entry.value();
    order.removeIf(isNamed(name));
    const auto place = before ? std::find_if(order.begin(), order.end(), isNamed(*before)) : order.end();
    order.insert(place, name);
}

void SidebarLayout::ensurePlace(const QString& name, const QStringList& names, const std::optional<QString>& folder) {
    const auto entry = findByName(noteOrder, key(folder));
    QStringList& order = entry == noteOrder.end() ? noteOrder[key(folder)] : entry.value();
    if (std::none_of(order.cbegin(), order.cend(), isNamed(name))) {
        order = partedBy(order, names).others + order;
    }
}

void SidebarLayout::renameNote(const QString& old, const QString& newName, const std::optional<QString>& folder) {
    const auto order = findByName(noteOrder, key(folder));
    if (order == noteOrder.end()) {
        return;
    }
    const auto entry = std::find_if(order->begin(), order->end(), isNamed(old));
    if (entry != order->end()) {
        *entry = newName;
    }
}

void SidebarLayout::removeNote(const QString& name, const std::optional<QString>& folder) {
    const auto order = findByName(noteOrder, key(folder));
    if (order != noteOrder.end()) {
        order->removeIf(isNamed(name));
    }
}

void SidebarLayout::renameFolder(const QString& old, const QString& newName) {
    std::replace_if(folderOrder.begin(), folderOrder.end(), isNamed(old), newName);
    std::replace_if(collapsedFolders.begin(), collapsedFolders.end(), isNamed(old), newName);
    renameKey(folderColors, old, newName);
    renameKey(noteOrder, old, newName);
}

void SidebarLayout::removeFolder(const QString& name) {
    folderOrder.removeIf(isNamed(name));
    collapsedFolders.removeIf(isNamed(name));
    removeKey(folderColors, name);
    removeKey(noteOrder, name);
}

} // namespace quillary
