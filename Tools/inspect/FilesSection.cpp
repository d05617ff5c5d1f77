#include "QuillaryCore/Notes/NoteFileStore.h"
#include "Tools/inspect/Sections.h"
#include "Tools/inspect/SidebarLayoutValue.h"

namespace quillary::inspect {

namespace {

using namespace Qt::StringLiterals;

template <typename T>
using FileResult = Result<T, FileError>;

FilePath pathIn(const NoteFileStore& store, const QString& relative) {
    return store.directory().appending(relative).standardized();
}

QString relativePath(const NoteFileStore& store, const FilePath& url) {
    QByteArray prefix = store.directory().bytes();
    if (!prefix.endsWith('/')) {
        prefix += '/';
    }
    const QByteArray& path = url.bytes();
    return FilePath::textFromBytes(path.startsWith(prefix) ? path.mid(prefix.size()) : path);
}

QStringView kindName(const FileError& error) {
    const auto* const own = std::get_if<NoteStoreError>(&error);
    if (own == nullptr) {
        return u"system";
    }
    switch (own->kind()) {
    case NoteStoreError::Kind::fileTooLarge:
        return u"fileTooLarge";
    case NoteStoreError::Kind::creationFailed:
        return u"creationFailed";
    case NoteStoreError::Kind::invalidName:
        break;
    }
    return u"invalidName";
}

void writeFailure(AnswerWriter& answer, const FileError& error) {
    answer.key(u"failure");
    answer.beginObject();
    answer.member(u"kind", kindName(error));
    answer.member(u"message", localizedDescription(error));
    answer.endObject();
}

NoteFormat formatArgument(Arguments& arguments) {
    const QString value = arguments.text(u"format"_s);
    const std::optional<NoteFormat> format = noteFormatFromRawValue(value);
    if (!format) {
        arguments.fail(u"unknown format: "_s + value);
    }
    return format.value_or(NoteFormat::plain);
}

/// Binds an operation of the store in the argument "directory" to the writer of its result, or of its failure.
template <typename Compute, typename Write>
Prepared onStore(Arguments& arguments, Compute compute, Write write) {
    const NoteFileStore store(FilePath::fromText(arguments.text(u"directory"_s)));
    using Answer = std::invoke_result_t<Compute&, const NoteFileStore&>;
    return prepared([store, compute = std::move(compute)] { return compute(store); },
                    [store, write = std::move(write)](AnswerWriter& answer, const Answer& result) {
                        if (result) {
                            write(answer, store, *result);
                        } else {
                            writeFailure(answer, result.error());
                        }
                    });
}

void writeOk(AnswerWriter& answer, const NoteFileStore&, Done) {
    answer.member(u"ok", true);
}

void writePath(AnswerWriter& answer, const NoteFileStore& store, const FilePath& url) {
    answer.member(u"path", relativePath(store, url));
}

void writeName(AnswerWriter& answer, const NoteFileStore&, const QString& name) {
    answer.member(u"name", name);
}

void writeInfo(AnswerWriter& answer, const NoteFileStore& store, const NoteFileInfo& info) {
    writePath(answer, store, info.url);
    answer.member(u"created", secondsSince1970(info.created));
    answer.member(u"modified", secondsSince1970(info.modified));
    answer.member(u"size", info.size);
    if (info.folder) {
        answer.member(u"folder", *info.folder);
    } else {
        answer.nullMember(u"folder");
    }
}

Prepared listNotes(Arguments& arguments) {
    return onStore(
        arguments, [](const NoteFileStore& store) { return store.listNotes(); },
        [](AnswerWriter& answer, const NoteFileStore& store, const QList<NoteFileInfo>& notes) {
            answer.key(u"notes");
            answer.beginArray();
            for (const NoteFileInfo& note : notes) {
                answer.beginObject();
                writeInfo(answer, store, note);
                answer.endObject();
            }
            answer.endArray();
        });
}

Prepared listFolders(Arguments& arguments) {
    return onStore(
        arguments, [](const NoteFileStore& store) { return store.listFolders(); },
        [](AnswerWriter& answer, const NoteFileStore&, const QStringList& folders) {
            answer.textsMember(u"folders", folders);
        });
}

Prepared info(Arguments& arguments) {
    return onStore(
        arguments,
        [path = arguments.text(u"path"_s)](const NoteFileStore& store) { return store.info(pathIn(store, path)); },
        writeInfo);
}

Prepared read(Arguments& arguments) {
    return onStore(
        arguments,
        [path = arguments.text(u"path"_s)](const NoteFileStore& store) { return store.read(pathIn(store, path)); },
        [](AnswerWriter& answer, const NoteFileStore&, const QString& text) { answer.member(u"text", text); });
}

Prepared write(Arguments& arguments) {
    return onStore(
        arguments,
        [path = arguments.text(u"path"_s), text = arguments.text(u"text"_s)](const NoteFileStore& store) {
            return store.write(text, pathIn(store, path));
        },
        [](AnswerWriter& answer, const NoteFileStore&, Moment modified) {
            answer.member(u"modified", secondsSince1970(modified));
        });
}

Prepared createNote(Arguments& arguments) {
    return onStore(
        arguments,
        [title = arguments.text(u"title"_s), format = formatArgument(arguments),
         contents = arguments.text(u"contents"_s), folder = arguments.optionalText(u"folder"_s)](
            const NoteFileStore& store) { return store.createNote(title, format, contents, folder); },
        writePath);
}

Prepared uniqueURL(Arguments& arguments) {
    return onStore(
        arguments,
        [title = arguments.text(u"title"_s), extension = arguments.text(u"fileExtension"_s),
         folder = arguments.optionalText(u"folder"_s),
         ignoring = arguments.optionalText(u"ignoring"_s)](const NoteFileStore& store) -> FileResult<FilePath> {
            const auto ignored = ignoring ? std::optional(pathIn(store, *ignoring)) : std::nullopt;
            return store.uniqueURL(title, extension, folder, ignored);
        },
        writePath);
}

Prepared importFile(Arguments& arguments) {
    return onStore(
        arguments,
        [source = FilePath::fromText(arguments.text(u"source"_s))](const NoteFileStore& store) {
            return store.importFile(source);
        },
        writePath);
}

Prepared rename(Arguments& arguments) {
    return onStore(
        arguments,
        [path = arguments.text(u"path"_s), title = arguments.text(u"title"_s)](const NoteFileStore& store) {
            return store.rename(pathIn(store, path), title);
        },
        writePath);
}

Prepared changeFormat(Arguments& arguments) {
    return onStore(
        arguments,
        [path = arguments.text(u"path"_s), format = formatArgument(arguments)](const NoteFileStore& store) {
            return store.changeFormat(pathIn(store, path), format);
        },
        writePath);
}

Prepared moveNote(Arguments& arguments) {
    return onStore(
        arguments,
        [path = arguments.text(u"path"_s), folder = arguments.optionalText(u"folder"_s)](const NoteFileStore& store) {
            return store.moveNote(pathIn(store, path), folder);
        },
        writePath);
}

Prepared moveToTrash(Arguments& arguments) {
    return onStore(
        arguments,
        [path = arguments.text(u"path"_s)](const NoteFileStore& store) {
            return store.moveToTrash(pathIn(store, path));
        },
        writeOk);
}

Prepared createFolder(Arguments& arguments) {
    return onStore(
        arguments, [name = arguments.text(u"name"_s)](const NoteFileStore& store) { return store.createFolder(name); },
        writeName);
}

Prepared renameFolder(Arguments& arguments) {
    return onStore(
        arguments,
        [name = arguments.text(u"name"_s), to = arguments.text(u"to"_s)](const NoteFileStore& store) {
            return store.renameFolder(name, to);
        },
        writeName);
}

Prepared deleteFolder(Arguments& arguments) {
    return onStore(
        arguments,
        [name = arguments.text(u"name"_s), keepingNotes = arguments.boolean(u"keepingNotes"_s)](
            const NoteFileStore& store) { return store.deleteFolder(name, keepingNotes); },
        writeOk);
}

Prepared loadLayout(Arguments& arguments) {
    return onStore(
        arguments, [](const NoteFileStore& store) -> FileResult<SidebarLayout> { return store.loadLayout(); },
        [](AnswerWriter& answer, const NoteFileStore&, const SidebarLayout& layout) { writeLayout(answer, layout); });
}

Prepared saveLayout(Arguments& arguments) {
    return onStore(
        arguments,
        [layout = layoutArgument(arguments)](const NoteFileStore& store) { return store.saveLayout(layout); }, writeOk);
}

} // namespace

void addFilesOperations(OperationTable& table) {
    table.insert(u"store.listNotes"_s, listNotes);
    table.insert(u"store.listFolders"_s, listFolders);
    table.insert(u"store.info"_s, info);
    table.insert(u"store.read"_s, read);
    table.insert(u"store.write"_s, write);
    table.insert(u"store.createNote"_s, createNote);
    table.insert(u"store.uniqueURL"_s, uniqueURL);
    table.insert(u"store.importFile"_s, importFile);
    table.insert(u"store.rename"_s, rename);
    table.insert(u"store.changeFormat"_s, changeFormat);
    table.insert(u"store.moveNote"_s, moveNote);
    table.insert(u"store.moveToTrash"_s, moveToTrash);
    table.insert(u"store.createFolder"_s, createFolder);
    table.insert(u"store.renameFolder"_s, renameFolder);
    table.insert(u"store.deleteFolder"_s, deleteFolder);
    table.insert(u"store.loadLayout"_s, loadLayout);
    table.insert(u"store.saveLayout"_s, saveLayout);
}

} // namespace quillary::inspect
