#include "support/Canvas.h"
#include "support/Files.h"
#include "support/WidgetPicture.h"
#include "widgets/decor/ImageWidget.h"

#include <QBitmap>
#include <QDir>
#include <QMimeData>
#include <QTemporaryDir>

static ImageWidget& imageOf(DashboardItem* item) { return static_cast<ImageWidget&>(*item->widget()); }

class TestImageWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesDroppedFile()
    {
        Canvas canvas;
        const ImageWidget& image = imageOf(canvas.add("Image", {0, 0, 300, 300}));
        QMimeData data;
        data.setUrls({QUrl("https://a.b/c.png"), QUrl::fromLocalFile(saved("x.png", {40, 20}))});
        QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, {});
        QDragMoveEvent move(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, {});
        QDropEvent drop(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(canvas.view.viewport(), &enter);
        QCoreApplication::sendEvent(canvas.view.viewport(), &move);
        QVERIFY(move.isAccepted()); // or a window system would not drop
        QCoreApplication::sendEvent(canvas.view.viewport(), &drop);
        QCOMPARE(image.picture().width(), 40);
    }

    void findsPictureInMovedProject()
    {
        Canvas canvas;
        canvas.scene.setProjectFolder(m_dir.filePath("b"));
        DashboardItem* item = canvas.add("Image", {0, 0, 100, 100});
        imageOf(item).loadPixmap(saved("b/x.png", {50, 20}));
        saved("c/x.png", {60, 20});
        DashboardItem* moved = DashboardItem::fromJson(item->toJson());
        canvas.scene.addItem(moved);
        canvas.scene.setProjectFolder(m_dir.filePath("c"));
        QCOMPARE(imageOf(moved).picture().width(), 60);
    }

    void refusedPictureLeavesTheOldOne_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("missing") << m_dir.filePath("none.png");
        QTest::newRow("broken") << writeFile(m_dir.filePath("broken.png"), "no picture");
        QTest::newRow("huge") << saved("long.png", {200'000, 4});
    }

    void refusedPictureLeavesTheOldOne()
    {
        QFETCH(QString, path);
        const auto image = shown({});
        image->loadPixmap(path);
        QCOMPARE(image->picture().width(), 40);
    }

    void takesPhotoOfManyPixels()
    {
        ImageWidget image;
        image.loadPixmap(saved("photo.jpg", {8000, 6000}));
        QCOMPARE(image.picture().width(), 8000);
    }

    void fitsPicture_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<QRect>("seen");
        QTest::newRow("contain") << 0 << QRect(1, 16, 100, 50);
        QTest::newRow("cover") << 1 << QRect(0, 1, 104, 80);
        QTest::newRow("stretch") << 2 << QRect(2, 2, 100, 80);
        QTest::newRow("actual size") << 3 << QRect(2, 2, 40, 20);
    }

    void fitsPicture()
    {
        QFETCH(int, mode);
        const auto image = shown({{"mode", mode}});
        const QRgb ground = image->palette().color(QPalette::Window).rgb();
        const QImage mask = picture(*image).createMaskFromColor(ground);
        QTEST(QRegion(QBitmap::fromImage(mask)).boundingRect(), "seen");
    }

    void halfOpaquePictureLetsGroundThrough()
    {
        const QImage image = picture(*shown({{"mode", 3}, {"opacity", 50}}));
        QVERIFY(qAbs(qRed(image.pixel(9, 9)) - qRed(image.pixel(0, 0)) / 2) < 3);
    }

private:
    /// The path of a new file with a green picture.
    QString saved(const QString& name, const QSize& size) const
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::green);
        QString path = m_dir.filePath(name);
        if (!QFileInfo(path).dir().mkpath(".") || !image.save(path))
            qFatal("cannot save %s", qPrintable(path));
        return path;
    }
    /// A widget with a picture of 40 × 20 pixels.
    std::unique_ptr<ImageWidget> shown(const QJsonObject& config) const
    {
        auto widget = std::make_unique<ImageWidget>();
        widget->resize(104, 84);
        widget->loadPixmap(saved("x.png", {40, 20}));
        widget->loadConfig(config);
        return widget;
    }

    QTemporaryDir m_dir;
};

QTEST_MAIN(TestImageWidget)
#include "tst_imagewidget.moc"
