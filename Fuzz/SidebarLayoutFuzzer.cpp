#include "QuillaryCore/Notes/SidebarLayout.h"

#include "QuillaryCore/Unicode/CanonicalEquality.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

/// Reads the input as a layout's file. What can be read is written and read again unchanged, and the operations keep
/// their promises with the names that it holds.

namespace {

using namespace quillary;
using namespace Qt::StringLiterals;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

qsizetype entriesOf(const QStringList& names, const QString& name) {
    return std::count_if(names.begin(), names.end(), [&](const QString& each) { return canonicallyEqual(each, name); });
}

void checkCoding(const SidebarLayout& layout) {
    const QByteArray file = layout.encoded();
    const std::optional<SidebarLayout> again = SidebarLayout::decode(file);
    require(again.has_value());
    require(*again == layout);
    require(again->encoded() == file);
}

void checkOrders(const SidebarLayout& layout, const QStringList& names) {
    const QStringList folders = layout.ordered(names, u"it"_s);
    const QStringList notes = layout.manuallyOrdered(names, std::nullopt);
    for (const QString& name : names) {
        require(folders.contains(name));
        require(notes.contains(name));
    }
    const auto isOnDisk = [&](const QString& name) { return names.contains(name); };
    require(std::all_of(folders.begin(), folders.end(), isOnDisk));
    require(std::all_of(notes.begin(), notes.end(), isOnDisk));
}

void checkChanges(SidebarLayout layout, const QString& name) {
    layout.placeNote(name, u"altra"_s, std::nullopt, u"gone"_s);
    require(layout.manuallyOrdered({name}, std::nullopt) == QStringList{name});
    require(layout.noteOrder[u""_s].constLast() == name);
    require(entriesOf(layout.noteOrder[u""_s], name) == 1);
    layout.removeNote(name, std::nullopt);
    require(entriesOf(layout.noteOrder[u""_s], name) == 0);
    layout.renameFolder(name, u"nuova"_s);
    require(entriesOf(layout.folderOrder, name) == 0 || canonicallyEqual(name, u"nuova"_s));
    layout.removeFolder(u"nuova"_s);
    require(entriesOf(layout.folderOrder, u"nuova"_s) == 0);
    require(!layout.folderColors.contains(u"nuova"_s));
    checkCoding(layout);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto layout = SidebarLayout::decode(QByteArrayView(data, static_cast<qsizetype>(size)));
    if (!layout) {
        return 0;
    }
    checkCoding(*layout);
    QStringList names = layout->folderOrder + layout->collapsedFolders + layout->noteOrder.value(QString());
    names.removeDuplicates();
    checkOrders(*layout, names.first(names.size() / 2));
    checkOrders(*layout, names);
    for (const QString& name : std::as_const(names)) {
        checkChanges(*layout, name);
    }
    return 0;
}
