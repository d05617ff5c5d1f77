#include "DrawnTexts.h"

#include <QPaintDevice>
#include <QPaintEngine>

namespace quillary {

namespace {

/// Keeps texts and lets everything else go.
class TextEngine : public QPaintEngine {
public:
    TextEngine() : QPaintEngine(AllFeatures) {}

    bool begin(QPaintDevice*) override { return true; }

    bool end() override { return true; }

    void updateState(const QPaintEngineState&) override {}

    void drawPath(const QPainterPath&) override {}

    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}

    void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}

    void drawPolygon(const QPoint*, int, PolygonDrawMode) override {}

    void drawTextItem(const QPointF& place, const QTextItem& item) override {
        const QRectF rect(place.x(), place.y() - item.ascent(), item.width(), item.ascent() + item.descent());
        m_texts.append({item.text(), painter()->combinedTransform().mapRect(rect), painter()->pen().color()});
    }

    Type type() const override { return User; }

    const QList<DrawnText>& texts() const { return m_texts; }

private:
    QList<DrawnText> m_texts;
};

class TextDevice : public QPaintDevice {
public:
    explicit TextDevice(const QSize& size) : m_size(size) {}

    QPaintEngine* paintEngine() const override { return &m_engine; }

    const QList<DrawnText>& texts() const { return m_engine.texts(); }

protected:
    int metric(PaintDeviceMetric metric) const override {
        constexpr int dotsPerInch = 96;
        switch (metric) {
        case PdmWidth:
            return m_size.width();
        case PdmHeight:
            return m_size.height();
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return dotsPerInch;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        default:
            return 0;
        }
    }

private:
    QSize m_size;
    mutable TextEngine m_engine;
};

} // namespace

QList<DrawnText> drawnTexts(const QSize& size, const std::function<void(QPainter& painter)>& draw) {
    TextDevice device(size);
    QPainter painter(&device);
    draw(painter);
    painter.end();
    return device.texts();
}

} // namespace quillary
