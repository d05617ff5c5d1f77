#include "QuillaryCore/Notes/SidebarLayout.h"
#include "Tools/inspect/Sections.h"
#include "Tools/inspect/SidebarLayoutValue.h"

namespace quillary::inspect {

namespace {

using namespace Qt::StringLiterals;

/// Changes a layout as one step of a request says.
using LayoutStep = std::function<void(SidebarLayout&)>;

/// Writes the one list that an operation answers with.
auto writesList(const QString& name) {
    return [name](AnswerWriter& answer, const QStringList& texts) { answer.textsMember(name, texts); };
}

Prepared load(Arguments& arguments) {
    return prepared(
        [file = arguments.text(u"file"_s).toUtf8()] { return SidebarLayout::decode(file).value_or(SidebarLayout()); },
        writeLayout);
}

Prepared save(Arguments& arguments) {
    return prepared(
        [layout = layoutArgument(arguments)] { return layout.encoded(); },
        [](AnswerWriter& answer, const QByteArray& file) { answer.member(u"file", QString::fromUtf8(file)); });
}

Prepared ordered(Arguments& arguments) {
    return prepared([layout = layoutArgument(arguments), folders = arguments.texts(u"folders"_s),
                     locale = arguments.text(u"locale"_s)] { return layout.ordered(folders, locale); },
                    writesList(u"folders"_s));
}

Prepared manuallyOrdered(Arguments& arguments) {
    return prepared([layout = layoutArgument(arguments), names = arguments.texts(u"names"_s),
                     folder = arguments.optionalText(u"folder"_s)] { return layout.manuallyOrdered(names, folder); },
                    writesList(u"names"_s));
}

LayoutStep placeNote(Arguments& step) {
    return
        [name = step.text(u"name"_s), from = step.optionalText(u"from"_s), to = step.optionalText(u"to"_s),
         before = step.optionalText(u"before"_s)](SidebarLayout& layout) { layout.placeNote(name, from, to, before); };
}

LayoutStep renameNote(Arguments& step) {
    return [old = step.text(u"old"_s), newName = step.text(u"new"_s), folder = step.optionalText(u"folder"_s)](
               SidebarLayout& layout) { layout.renameNote(old, newName, folder); };
}

LayoutStep removeNote(Arguments& step) {
    return [name = step.text(u"name"_s), folder = step.optionalText(u"folder"_s)](SidebarLayout& layout) {
        layout.removeNote(name, folder);
    };
}

LayoutStep renameFolderStep(Arguments& step) {
    return [old = step.text(u"old"_s), newName = step.text(u"new"_s)](SidebarLayout& layout) {
        layout.renameFolder(old, newName);
    };
}

LayoutStep removeFolder(Arguments& step) {
    return [name = step.text(u"name"_s)](SidebarLayout& layout) { layout.removeFolder(name); };
}

LayoutStep unknownStep(Arguments& step) {
    step.fail(u"unknown step: "_s + step.text(u"do"_s));
    return {};
}

LayoutStep layoutStep(const QJsonValue& value, Arguments& arguments) {
    static const QHash<QString, LayoutStep (*)(Arguments&)> kinds{
        {u"placeNote"_s, placeNote},           {u"renameNote"_s, renameNote},     {u"removeNote"_s, removeNote},
        {u"renameFolder"_s, renameFolderStep}, {u"removeFolder"_s, removeFolder},
    };
    if (!value.isObject()) {
        arguments.fail(u"argument of the wrong type: steps"_s);
        return {};
    }
    Arguments step(value.toObject());
    const QString kind = step.text(u"do"_s);
    const LayoutStep result = kinds.value(kind, unknownStep)(step);
    if (step.error()) {
        arguments.fail(*step.error());
    }
    return result;
}

Prepared apply(Arguments& arguments) {
    std::vector<LayoutStep> steps;
    for (const QJsonValue value : arguments.array(u"steps"_s)) {
        steps.push_back(layoutStep(value, arguments));
    }
    return prepared(
        [layout = layoutArgument(arguments), steps = std::move(steps)] {
            SidebarLayout result = layout;
            for (const LayoutStep& step : steps) {
                step(result);
            }
            return result;
        },
        writeLayout);
}

} // namespace

void addSidebarLayoutOperations(OperationTable& table) {
    table.insert(u"layout.load"_s, load);
    table.insert(u"layout.save"_s, save);
    table.insert(u"layout.ordered"_s, ordered);
    table.insert(u"layout.manuallyOrdered"_s, manuallyOrdered);
    table.insert(u"layout.apply"_s, apply);
}

} // namespace quillary::inspect
