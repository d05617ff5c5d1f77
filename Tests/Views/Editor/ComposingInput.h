#pragma once

#include <QCoreApplication>
#include <QGuiApplication>
#include <QInputMethod>
#include <QInputMethodEvent>
#include <QRectF>
#include <QString>
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

    /// Asks where the caret is as soon as it is told of a change, as input methods do that show their candidates there.
    void update(Qt::InputMethodQueries) override { m_caret = QGuiApplication::inputMethod()->cursorRectangle(); }

    QRectF caret() const { return m_caret; }

    void reset() override { m_composed.clear(); }

private:
    QString m_composed;
    QRectF m_caret;
};

} // namespace quillary
