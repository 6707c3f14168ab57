#include "widgets/xyplot/DotCloud.h"

#include <QPainter>
#include <QRandomGenerator>
#include <QTest>

class TestDotCloud : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void looksLikeSingleCircles_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("tolerance"); ///< of 255
        QTest::newRow("ratio 1") << 1.0 << 60 << 32;
        QTest::newRow("ratio 1.25") << 1.25 << 60 << 32;
        QTest::newRow("ratio 1.5") << 1.5 << 60 << 32;
        QTest::newRow("ratio 2, more than is painted at a time") << 2.0 << 900 << 4;
    }

    void looksLikeSingleCircles()
    {
        QFETCH(double, ratio);
        QFETCH(int, height);
        QFETCH(int, tolerance);
        const QList<CloudDot> dots = someDots(height);
        const QRect area(-2, -2, 110, height + 10);
        const QImage cloud =
            painted(ratio, height, [&](QPainter& painter) { drawDotCloud(painter, area, kColor, 1, dots); });
        const QImage circles = painted(ratio, height, [&](QPainter& painter) { drawSingly(painter, dots); });
        int largest = 0;
        qsizetype sum = 0;
        for (qsizetype i = 0; i < cloud.sizeInBytes(); ++i) {
            const int difference = abs(cloud.constBits()[i] - circles.constBits()[i]);
            largest = std::max(largest, difference);
            sum += difference;
        }
        QVERIFY2(largest <= tolerance, qPrintable(QString::number(largest)));
        QVERIFY(sum < 3 * cloud.sizeInBytes());
    }

private:
    static constexpr QColor kColor{40, 140, 160};

    static QList<CloudDot> someDots(int height)
    {
        QRandomGenerator random(1);
        QList<CloudDot> dots;
        for (int i = 0; i < height * 50; ++i)
            dots.append({{random.bounded(-3, 104), random.bounded(-3, height + 4)}, i * 5 / height});
        return dots;
    }
    static void drawSingly(QPainter& painter, const QList<CloudDot>& dots)
    {
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        for (const CloudDot& dot : dots) {
            painter.setBrush(QColor(kColor.red(), kColor.green(), kColor.blue(), dot.alpha));
            painter.drawEllipse(dot.centre, 1, 1);
        }
    }
    static QImage painted(double ratio, int height, const std::function<void(QPainter&)>& paint)
    {
        QImage image(QSize(100, height) * ratio, QImage::Format_RGB32);
        image.fill(Qt::white);
        image.setDevicePixelRatio(ratio);
        QPainter painter(&image);
        painter.translate(0.5, 0.25); // as on an item that does not lie on whole pixels
        paint(painter);
        return image;
    }
};

QTEST_MAIN(TestDotCloud)
#include "tst_dotcloud.moc"
