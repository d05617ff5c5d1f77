#include "Quillary/Editor/PinchToZoom.h"

#include "Quillary/State/AppSettings.h"

#include <QNativeGestureEvent>
#include <QWheelEvent>
#include <QWidget>

#include <cmath>

namespace quillary {

namespace {

constexpr double smallestMotion = 0.01;
constexpr double travelPerStep = 0.08;
/// Sums of hundredths are not exact in binary.
constexpr double roundingTolerance = 1e-9;

} // namespace

PinchToZoom::PinchToZoom(AppSettings& settings, QWidget& pane) : QObject(&pane), m_settings(settings) {
    pane.installEventFilter(this);
}

bool PinchToZoom::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::NativeGesture) {
        pinch(static_cast<const QNativeGestureEvent&>(*event));
        return false;
    }
    if (event->type() == QEvent::Wheel) {
        const auto& wheel = static_cast<const QWheelEvent&>(*event);
        if (wheel.modifiers() == Qt::ControlModifier && wheel.angleDelta().y() != 0) {
            turn(wheel);
            return true;
        }
    }
    return false;
}

void PinchToZoom::pinch(const QNativeGestureEvent& event) {
    if (event.gestureType() == Qt::BeginNativeGesture || event.gestureType() == Qt::EndNativeGesture) {
        m_magnification = m_told = m_applied = 1;
        return;
    }
    if (event.gestureType() != Qt::ZoomNativeGesture) {
        return;
    }
    m_magnification += event.value();
    if (std::abs(m_magnification - m_told) < smallestMotion - roundingTolerance) {
        return;
    }
    m_told = m_magnification;
    const double travel = m_told - m_applied;
    if (std::abs(travel) >= travelPerStep - roundingTolerance) {
        zoom(travel > 0 ? 1 : -1);
        m_applied = m_told;
    }
}

void PinchToZoom::turn(const QWheelEvent& event) {
    m_wheelAngle += event.angleDelta().y();
    while (std::abs(m_wheelAngle) >= QWheelEvent::DefaultDeltasPerStep) {
        const int step = m_wheelAngle > 0 ? 1 : -1;
        m_wheelAngle -= step * QWheelEvent::DefaultDeltasPerStep;
        zoom(step);
    }
}

void PinchToZoom::zoom(int step) {
    m_settings.setFontSize(AppSettings::clampedFontSize(m_settings.fontSize() + step));
}

} // namespace quillary
