#include "Quillary/Editor/PinchToZoom.h"

#include "Quillary/State/AppSettings.h"

#include <QApplication>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QTemporaryDir>
#include <QWheelEvent>
#include <QWidget>

#include <gtest/gtest.h>

namespace quillary {

namespace {

using namespace Qt::StringLiterals;

class PinchToZoomTest : public testing::Test {
protected:
    void gesture(Qt::NativeGestureType type, double value = 0) {
        QNativeGestureEvent event(type, QPointingDevice::primaryPointingDevice(), 2, {10, 10}, {10, 10}, {10, 10},
                                  value, {});
        QApplication::sendEvent(&m_pane, &event);
    }

    void pinch(double value) { gesture(Qt::ZoomNativeGesture, value); }

    void turnWheel(int angle, Qt::KeyboardModifiers modifiers) {
        QWheelEvent event({10, 10}, {10, 10}, {}, {0, angle}, Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&m_pane, &event);
    }

    QTemporaryDir m_directory;
    AppSettings m_settings{Preferences(FilePath::fromText(m_directory.filePath(u"preferences.json"_s)))};
    QWidget m_pane;
    PinchToZoom m_zoom{m_settings, m_pane};
};

TEST_F(PinchToZoomTest, AMotionGivesOneStepAtMost) {
    m_settings.setFontSize(13);
    gesture(Qt::BeginNativeGesture);
    pinch(0.3);
    EXPECT_EQ(m_settings.fontSize(), 14);
    pinch(0.07);
    EXPECT_EQ(m_settings.fontSize(), 14);
    pinch(0.02);
    EXPECT_EQ(m_settings.fontSize(), 15);
    pinch(-0.08);
    EXPECT_EQ(m_settings.fontSize(), 14);
}

TEST_F(PinchToZoomTest, TheEndOfAGestureDropsWhatIsLeft) {
    m_settings.setFontSize(13);
    pinch(0.05);
    gesture(Qt::EndNativeGesture);
    pinch(0.05);
    EXPECT_EQ(m_settings.fontSize(), 13);
    pinch(0.03);
    EXPECT_EQ(m_settings.fontSize(), 14);
}

TEST_F(PinchToZoomTest, SizesStayWithinTheirBounds) {
    m_settings.setFontSize(28);
    pinch(0.1);
    EXPECT_EQ(m_settings.fontSize(), 28);
    m_settings.setFontSize(9);
    pinch(-0.1);
    EXPECT_EQ(m_settings.fontSize(), 9);
}

TEST_F(PinchToZoomTest, TheWheelZoomsWithCtrlInWholeNotches) {
    m_settings.setFontSize(13);
    turnWheel(60, Qt::ControlModifier);
    EXPECT_EQ(m_settings.fontSize(), 13);
    turnWheel(60, Qt::ControlModifier);
    EXPECT_EQ(m_settings.fontSize(), 14);
    turnWheel(-240, Qt::ControlModifier);
    EXPECT_EQ(m_settings.fontSize(), 12);
    turnWheel(120, Qt::NoModifier);
    EXPECT_EQ(m_settings.fontSize(), 12);
}

} // namespace

} // namespace quillary
