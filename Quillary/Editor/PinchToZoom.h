#pragma once

#include <QObject>

class QNativeGestureEvent;
class QWidget;
class QWheelEvent;

namespace quillary {

class AppSettings;

/// Gives a pane that is no text view the editor's zoom: by a pinch on the touchpad, at most one step a motion, and by
/// the wheel with Ctrl. All else goes on to the pane. It belongs to the pane and writes nothing but the size of the
/// font.
class PinchToZoom : public QObject {
    Q_OBJECT

public:
    /// Acts on the events of `pane`, the viewport where that is a scroll area. The settings must outlive it.
    PinchToZoom(AppSettings& settings, QWidget& pane);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void pinch(const QNativeGestureEvent& event);
    void turn(const QWheelEvent& event);
    void zoom(int step);

    AppSettings& m_settings;
    /// The scale of the gesture that is going on, the one that was last told, and the one of the last step.
    double m_magnification = 1;
    double m_told = 1;
    double m_applied = 1;
    int m_wheelAngle = 0;
};

} // namespace quillary
