#pragma once

#include <QImage>
#include <QWidget>

// What the widget tests share: a widget's picture and what is dark in it.

/// The widget as it looks on a device of that pixel ratio; magenta where it paints nothing.
inline QImage picture(QWidget& widget, double ratio = 1.0)
{
    QImage image(widget.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::magenta);
    widget.render(&image);
    return image;
}

/// How many pixels of the area are dark, as text and lines are.
inline int darkPixels(const QImage& image, const QRect& area)
{
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x)
            count += image.pixelColor(x, y).lightness() < 100;
    }
    return count;
}
