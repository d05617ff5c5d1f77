#pragma once

#include <QLabel>

namespace quillary {

class FindController;

/// What a search found, in one line: an error, the current match and the number of all, or that there is none.
class FindStatusLabel : public QLabel {
    Q_OBJECT

public:
    explicit FindStatusLabel(QWidget* parent);

    /// Shows the state of a search.
    void follow(const FindController& find);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool m_isError = false;
};

} // namespace quillary
