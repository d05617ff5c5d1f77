#pragma once

#include "Quillary/State/NoteItem.h"

#include <QHash>
#include <QList>
#include <QString>

namespace quillary {

/// One stretch of the sidebar: a heading, if it has one, and its notes in the order on show.
struct SidebarSection {
    /// What a section is, which also tells it from the others.
    struct Kind {
        enum class Case {
            /// A folder with a header that opens and closes it; the text is the folder's name.
            folder,
            /// A heading for notes of the top level; the text is the heading.
            group,
            /// No heading, no text.
            plain,
        };

        Case kindCase = Case::plain;
        QString text;

        static Kind folder(const QString& name) { return {Case::folder, name}; }

        static Kind group(const QString& heading) { return {Case::group, heading}; }

        static Kind plain() { return {}; }

        bool isFolder() const { return kindCase == Case::folder; }

        bool isGroup() const { return kindCase == Case::group; }

        friend bool operator==(const Kind&, const Kind&) = default;

        friend size_t qHash(const Kind& self, size_t seed = 0) {
            return qHashMulti(seed, int(self.kindCase), self.text);
        }
    };

    Kind kind;
    QList<NoteItemPtr> items;

    friend bool operator==(const SidebarSection&, const SidebarSection&) = default;
};

} // namespace quillary
