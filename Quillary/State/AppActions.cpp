#include "Quillary/State/AppActions.h"

namespace quillary {

namespace {

void callIfSet(const std::function<void()>& action) {
    if (action) {
        action();
    }
}

} // namespace

AppActions& AppActions::shared() {
    static AppActions actions;
    return actions;
}

void AppActions::showMainWindow() const {
    callIfSet(activateApplication);
    AppWindow* const window = mainWindow;
    if (window && (window->isVisibleOnScreen() || window->isMiniaturized())) {
        window->deminiaturize();
        window->makeKeyAndOrderFront();
    } else {
        callIfSet(openMainWindow);
    }
    callIfSet(focusEditor);
}

void AppActions::toggleMainWindow() const {
    const AppWindow* const window = mainWindow;
    if (isApplicationActive && isApplicationActive() && window && window->isVisibleOnScreen() &&
        window->isKeyWindow()) {
        callIfSet(hideApplication);
    } else {
        showMainWindow();
    }
}

void AppActions::runWhenActive(const std::function<void()>& command) const {
    if (keepUntilActive && isApplicationActive && !isApplicationActive()) {
        keepUntilActive(command);
    } else {
        command();
    }
}

void AppActions::beep() const {
    if (desktop) {
        desktop->beep();
    }
}

} // namespace quillary
