#pragma once

#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <qpa/qplatforminputcontext.h>

#include <private/qinputmethod_p.h>
#include <utility>

namespace quillary {

/// An input method in the place of the system's one: what it composes is no part of the text until it is told to
/// commit.
class ComposingInput : public QPlatformInputContext {
public:
    ComposingInput() { QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = this; }

    ~ComposingInput() override { QInputMethodPrivate::get(QGuiApplication::inputMethod())->testContext = nullptr; }

    bool isValid() const override { return true; }

    /// Composes a text where the focus is.
    void compose(const QString& text) {
        m_composed = text;
        QInputMethodEvent event(text, {});
        QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
    }

    void commit() override {
        QInputMethodEvent event;
        event.setCommitString(std::exchange(m_composed, {}));
        if (!event.commitString().isEmpty()) {
            QCoreApplication::sendEvent(QGuiApplication::focusObject(), &event);
        }
    }

    void reset() override { m_composed.clear(); }

private:
    QString m_composed;
};

} // namespace quillary
