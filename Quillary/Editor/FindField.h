#pragma once

#include "Quillary/Theme/Symbol.h"

#include <QLineEdit>

namespace quillary {

/// A field of the find bar. Return submits it; with Shift it submits backwards, where somebody listens.
class FindField : public QLineEdit {
    Q_OBJECT

public:
    FindField(const QString& placeholder, Symbol symbol, QWidget* parent);

    /// Whether Shift with Return means something of its own.
    void setSubmitsBackwards(bool submitsBackwards) { m_submitsBackwards = submitsBackwards; }

Q_SIGNALS:
    void submitted();
    void submittedBackwards();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_submitsBackwards = false;
};

} // namespace quillary
