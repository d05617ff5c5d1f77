#pragma once

#include <QLineEdit>

namespace quillary {

/// A field that stands for a while in the place of a title, to edit it there. It takes the focus, with everything
/// selected, as soon as it is on screen, and ends with the first of these: Return, Escape, the loss of the focus.
class InlineTextField : public QLineEdit {
    Q_OBJECT

public:
    InlineTextField(const QString& text, const QFont& font, QWidget* parent = nullptr);

Q_SIGNALS:
    /// Return was pressed or the focus went elsewhere in the window. One of the two signals comes, once.
    void committed(const QString& text);

    /// Escape was pressed.
    void cancelled();

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void commit();
    void cancel();

    bool m_isFinished = false;
};

} // namespace quillary
