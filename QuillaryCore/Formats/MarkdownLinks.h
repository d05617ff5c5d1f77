#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>
#include <variant>

/// Anchors of headings, and where links lead.
namespace quillary::MarkdownLinks {

/// A place in the same note.
struct Anchor {
    QString slug;

    friend bool operator==(const Anchor&, const Anchor&) = default;
};

/// Anything with a scheme other than "file", as it was written.
struct External {
    QString url;

    friend bool operator==(const External&, const External&) = default;
};

/// A file, possibly with a place in it.
struct File {
    QString path;
    std::optional<QString> anchor;

    friend bool operator==(const File&, const File&) = default;
};

using Target = std::variant<Anchor, External, File>;

/// Where a link with this URL, absolute or relative, leads.
Target target(const QString& url);

/// The anchor of a heading with this raw text: letters, marks and digits of all scripts in lowercase, "_" and "-", and
/// "-" for each space. It may be empty.
QString slug(QStringView text);

/// The anchors of a note's headings, in order: the slug, and from its second occurrence on "-1", "-2" and so on behind.
QStringList uniqueSlugs(const QStringList& texts);

} // namespace quillary::MarkdownLinks
