#pragma once

#include "Quillary/State/Desktop.h"
#include "Quillary/State/NoteTextView.h"
#include "Quillary/State/WeakPointer.h"

#include <functional>

namespace quillary {

/// What the state asks of the main window.
class AppWindow : public WeakTarget {
public:
    virtual ~AppWindow() = default;

    virtual bool isVisibleOnScreen() const = 0;
    virtual bool isMiniaturized() const = 0;

    /// Whether it has the keyboard.
    virtual bool isKeyWindow() const = 0;

    virtual void deminiaturize() = 0;

    /// Brings it to the front and gives it the keyboard.
    virtual void makeKeyAndOrderFront() = 0;
};

/// The one place through which commands reach the windows and the live text view. The shell and the editor fill it in;
/// what is not set is skipped. Main thread only.
class AppActions {
public:
    static AppActions& shared();

    /// The main window, if it is alive.
    WeakPointer<AppWindow> mainWindow;

    /// The text view that shows the selected note, if it is alive.
    WeakPointer<NoteTextView> editor;

    /// The desktop that the application runs on.
    WeakPointer<Desktop> desktop;

    /// Makes the main window anew.
    std::function<void()> openMainWindow;

    /// Asks for the keyboard focus to go to the editor.
    std::function<void()> focusEditor;

    /// Brings the application before all others.
    std::function<void()> activateApplication;

    /// Takes all windows of the application off the screen.
    std::function<void()> hideApplication;

    /// Whether the application is the one in use.
    std::function<bool()> isApplicationActive;

    /// Keeps a command until the application is the one in use, or for a moment if it isn't given that.
    std::function<void(const std::function<void()>&)> keepUntilActive;

    /// Brings the main window to the front, out of its icon or anew if need be, with the focus in the editor.
    void showMainWindow() const;

    /// Hides the application if its main window is in use, and shows the main window otherwise.
    void toggleMainWindow() const;

    /// Runs a command that needs the application to be in use, which a window that was just shown does not bring at
    /// once.
    void runWhenActive(const std::function<void()>& command) const;

    /// Tells the user that a command had nothing to act on.
    void beep() const;
};

} // namespace quillary
