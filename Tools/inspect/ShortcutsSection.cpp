#include "QuillaryCore/Keys/KeyShortcut.h"
#include "Tools/inspect/Sections.h"

#include <utility>

namespace quillary::inspect {

namespace {

using namespace Qt::StringLiterals;

KeyShortcut shortcut(Arguments& arguments) {
    const qint64 keyCode = arguments.integer(u"keyCode"_s);
    const qint64 modifiers = arguments.integer(u"modifiers"_s);
    if (!std::in_range<quint16>(keyCode)) {
        arguments.fail(u"keyCode must be from 0 to 65535"_s);
    }
    if (modifiers < 0) {
        arguments.fail(u"modifiers must be at least 0"_s);
    }
    return {static_cast<quint16>(keyCode), KeyShortcut::Modifiers(static_cast<quint64>(modifiers)),
            arguments.text(u"key"_s)};
}

Prepared describeShortcut(Arguments& arguments) {
    struct Answer {
        quint64 modifiers;
        QString displayKey;
        QString displayString;
        bool isFunctionKey;
        bool isValidForRecording;
    };

    return prepared(
        [shortcut = shortcut(arguments)] {
            return Answer{shortcut.modifiers.rawValue(), shortcut.displayKey(), shortcut.displayString(),
                          shortcut.isFunctionKey(), shortcut.isValidForRecording()};
        },
        [](AnswerWriter& answer, const Answer& result) {
            answer.member(u"modifiers", result.modifiers);
            answer.member(u"displayKey", result.displayKey);
            answer.member(u"displayString", result.displayString);
            answer.member(u"isFunctionKey", result.isFunctionKey);
            answer.member(u"isValidForRecording", result.isValidForRecording);
        });
}

Prepared encodeShortcut(Arguments& arguments) {
    return prepared([shortcut = shortcut(arguments)] { return shortcut.encoded(); },
                    [](AnswerWriter& answer, const QString& file) { answer.member(u"file", file); });
}

Prepared decodeShortcut(Arguments& arguments) {
    return prepared([file = arguments.text(u"file"_s)] { return KeyShortcut::decode(file); },
                    [](AnswerWriter& answer, const std::optional<KeyShortcut>& shortcut) {
                        if (!shortcut) {
                            answer.nullMember(u"shortcut");
                            return;
                        }
                        answer.key(u"shortcut");
                        answer.beginObject();
                        answer.member(u"keyCode", shortcut->keyCode);
                        answer.member(u"modifiers", shortcut->modifiers.rawValue());
                        answer.member(u"key", shortcut->key);
                        answer.endObject();
                    });
}

} // namespace

void addShortcutsOperations(OperationTable& table) {
    table.insert(u"shortcut.describe"_s, describeShortcut);
    table.insert(u"shortcut.encode"_s, encodeShortcut);
    table.insert(u"shortcut.decode"_s, decodeShortcut);
}

} // namespace quillary::inspect
