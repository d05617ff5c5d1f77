#pragma once

#include "QuillaryCore/Keys/KeyShortcut.h"

#include <QObject>

#include <memory>

namespace quillary {

/// A way in which the desktop reports one combination of keys whatever program has the keyboard.
class HotKeyBackend : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The way of the platform that the application runs on; null where there is none.
    static std::unique_ptr<HotKeyBackend> forPlatform();

    /// Asks for a combination, of which there is one at a time. False if it is refused; where the desktop takes its
    /// time to answer, `refused` tells of it later.
    virtual bool grab(const KeyShortcut& shortcut) = 0;

    /// Gives the combination back; nothing is reported from then on.
    virtual void release() = 0;

Q_SIGNALS:
    /// The combination was pressed; holding it down counts once.
    void pressed();

    /// A combination that was granted, or seemed to be, is not.
    void refused();
};

} // namespace quillary
