#pragma once

#include <QWidget>

namespace quillary {

/// A round mark of 5 by 5 points: quiet while a note is saved, bright while it has changes that are not.
class SaveMark : public QWidget {
    Q_OBJECT

public:
    explicit SaveMark(QWidget* parent = nullptr);

    void setDirty(bool isDirty);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_isDirty = false;
};

} // namespace quillary
