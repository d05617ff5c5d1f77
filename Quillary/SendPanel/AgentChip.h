#pragma once

#include <QAbstractButton>

namespace quillary {

/// One agent program to choose among others: a rounded button that is filled while it is the chosen one.
class AgentChip : public QAbstractButton {
    Q_OBJECT

public:
    explicit AgentChip(const QString& name, QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool isElided() const;
};

} // namespace quillary
