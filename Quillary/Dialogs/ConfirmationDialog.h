#pragma once

#include <QDialog>
#include <QList>
#include <QString>

class QBoxLayout;
class QPushButton;

namespace quillary {

class WrappingLabel;

/// A question before something is done: a title, a message, some answers and "Annulla". It is modal to its window, and
/// closing it in any way but by an answer cancels.
class ConfirmationDialog : public QDialog {
    Q_OBJECT

public:
    struct Answer {
        QString text;
        bool isDestructive = false;
    };

    explicit ConfirmationDialog(QWidget* window);

    void setTexts(const QString& title, const QString& message);

    /// Replaces the answers, which stand in this order before "Annulla". Return gives the default one, which is an
    /// index into them, or -1 for "Annulla".
    void setAnswers(const QList<Answer>& answers, int defaultAnswer);

Q_SIGNALS:
    /// The dialog is closed, and the user gave this answer.
    void answered(int index);

    /// The dialog is closed without an answer.
    void cancelled();

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void colourDestructive();
    void adjustHeight();

    WrappingLabel* m_title;
    WrappingLabel* m_message;
    QBoxLayout* m_buttons;
    QPushButton* m_cancel;
    QPushButton* m_default = nullptr;
    QList<QPushButton*> m_answers;
    QList<QPushButton*> m_destructive;
};

} // namespace quillary
