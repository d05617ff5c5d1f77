#pragma once

#include <QAbstractButton>

namespace quillary {

/// A title that can be clicked, or pressed with the keyboard: plain text until the mouse or the focus is on it.
class TitleButton : public QAbstractButton {
    Q_OBJECT

public:
    explicit TitleButton(QWidget* parent = nullptr);

    const QString& title() const { return m_title; }

    /// The text on show, which is the accessible name too; a button's own text would take "&" for a mnemonic.
    void setTitle(const QString& title);

    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_title;
};

} // namespace quillary
