#pragma once

#include <QScrollArea>

namespace quillary {

/// A page of the settings: as large as its form, and no larger than the screen has room for. What does not fit, because
/// texts are large or the screen is small, is reached by scrolling.
class SettingsPage : public QScrollArea {
    Q_OBJECT

public:
    explicit SettingsPage(QWidget* form, QWidget* parent = nullptr);

    QSize sizeHint() const override;

    QSize minimumSizeHint() const override { return sizeHint(); }

    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace quillary
