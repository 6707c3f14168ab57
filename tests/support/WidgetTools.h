#pragma once

#include "definitions/DashboardSignalParser.h"

#include <QImage>
#include <QTemporaryFile>
#include <QWidget>

#include <memory>

// What the widget tests share: a widget's picture and what is dark in it, and a catalogue in place of the
// project's.

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

/// Makes gSignalParser a catalogue of these lines for as long as it lives.
class TestCatalogue
{
public:
    explicit TestCatalogue(const QByteArray& lines)
    {
        QTemporaryFile file;
        const bool written = file.open() && file.write(lines) == lines.size() && file.flush();
        m_parser = std::make_unique<DashboardSignalParser>(file.fileName());
        if (!written || !m_parser->parse())
            qFatal("no catalogue");
        gSignalParser = m_parser.get();
    }
    ~TestCatalogue() { gSignalParser = nullptr; }
    TestCatalogue(const TestCatalogue&) = delete;
    TestCatalogue& operator=(const TestCatalogue&) = delete;

private:
    std::unique_ptr<DashboardSignalParser> m_parser;
};
