#pragma once

#include <QWidget>

class QLabel;

namespace quillary {

class WrappingLabel;

/// What stands where a note would: a title, a detail and some hints, centred and quiet.
class PlaceholderView : public QWidget {
    Q_OBJECT

public:
    explicit PlaceholderView(QWidget* parent = nullptr);

    /// Replaces all texts; an empty detail and no hints take no room.
    void setTexts(const QString& title, const QString& detail, const QStringList& hints);

private:
    QLabel* m_title;
    WrappingLabel* m_detail;
    QLabel* m_hints;
};

} // namespace quillary
