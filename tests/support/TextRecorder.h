#pragma once

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QStringList>

// A paint device without pixels that notes the texts drawn on it whose ends do not show, because the area
// they were drawn for or the device's edge cuts them off.
class TextRecorder : public QPaintDevice
{
public:
    explicit TextRecorder(const QSize& size)
        : m_size(size)
    {}

    QPaintEngine* paintEngine() const override { return &m_engine; }
    int textCount() const { return m_engine.texts; }
    QStringList cutOff() const { return m_engine.cutOff; }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
            return m_size.width();
        case PdmHeight:
            return m_size.height();
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return int(QPaintDevice::devicePixelRatioFScale());
        case PdmDepth:
            return 32;
        default:
            return 96; // dots per inch
        }
    }

private:
    struct Engine : QPaintEngine
    {
        int texts = 0;
        QStringList cutOff;

        Engine()
            : QPaintEngine(AllFeatures)
        {}
        bool begin(QPaintDevice*) override { return true; }
        bool end() override { return true; }
        Type type() const override { return User; }
        void updateState(const QPaintEngineState&) override {}
        void drawPath(const QPainterPath&) override {}
        void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}
        void drawPolygon(const QPointF*, int, PolygonDrawMode) override {}
        void drawTextItem(const QPointF& origin, const QTextItem& item) override
        {
            ++texts;
            const QRectF text(origin.x() + 1, origin.y(), item.width() - 2, 1); // a pixel for rounding
            QRectF visible(0, -1e6, paintDevice()->width(), 2e6); // cut off sideways is what misleads
            if (painter()->hasClipping())
                visible &= painter()->deviceTransform().mapRect(painter()->clipBoundingRect());
            const QRectF drawn = painter()->deviceTransform().mapRect(text);
            if (drawn.left() < visible.left() || drawn.right() > visible.right())
                cutOff.append(item.text());
        }
    };

    QSize m_size;
    mutable Engine m_engine;
};
