#pragma once

#include "Quillary/State/AppSettings.h"

#include <QWidget>

class QToolButton;

namespace quillary {

/// The size of the text in the note: smaller, larger, and back to the default.
class ZoomControl : public QWidget {
    Q_OBJECT

public:
    explicit ZoomControl(AppSettings& settings, QWidget* parent = nullptr);

private:
    QToolButton* makeButton(const QString& help);
    void step(int by);
    void update();

    AppSettings& m_settings;
    QToolButton* m_smaller;
    QToolButton* m_percentage;
    QToolButton* m_larger;
};

} // namespace quillary
