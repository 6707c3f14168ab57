#include "support/Canvas.h"
#include "support/Files.h"
#include "support/WidgetPicture.h"
#include "widgets/decor/ImageWidget.h"

#include <QBitmap>
#include <QFormLayout>
#include <QMimeData>
#include <QPainter>
#include <QTemporaryDir>

#include <sys/stat.h>

// Sends what a window system would: no drop without an accepted move. Returns how many of the two are
// accepted.
static int drop(const Canvas& canvas, int x, const QMimeData& data)
{
    QDragEnterEvent enter(QPoint(x, x), Qt::CopyAction, &data, Qt::LeftButton, {});
    QDragMoveEvent move(QPoint(x, x), Qt::CopyAction, &data, Qt::LeftButton, {});
    QDropEvent drop(QPointF(x, x), Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(canvas.view.viewport(), &enter);
    QCoreApplication::sendEvent(canvas.view.viewport(), &move);
    if (move.isAccepted())
        QCoreApplication::sendEvent(canvas.view.viewport(), &drop);
    return int(move.isAccepted()) + int(drop.isAccepted());
}

static ImageWidget* imageOf(DashboardItem* item) { return static_cast<ImageWidget*>(item->widget()); }

/// An image widget with a picture of its own, 30 pixels wide, on an empty one, and a gauge on both.
struct Dropped : Canvas
{
    ImageWidget* below = imageOf(add("Image", {0, 0, 300, 300}));
    DashboardItem* item = add("Image", {100, 100, 300, 300});
    QPointer<ImageWidget> image = imageOf(item);

    Dropped(const QString& picture, bool design)
    {
        add("AnalogGauge", {0, 0, 90, 90});
        image->loadPixmap(picture);
        setDesignMode(design);
    }
};

class TestImageWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QDir::setCurrent(m_dir.path()));
        for (const char* folder : {"b", "c"})
            QVERIFY(QDir().mkdir(folder));
        QVERIFY(QFile::link(m_dir.filePath("b"), m_dir.filePath("link")));
    }

    void takesDrop_data()
    {
        QTest::addColumn<QStringList>("data"); // type, content
        QTest::addColumn<int>("width");        // 30 before, 40 in the file, 50 in the data
        QTest::addColumn<int>("accepted");
        QTest::newRow("files") << QStringList{"text/uri-list", "https://a.b/c.png\r\nFILE"} << 40 << 2;
        QTest::newRow("link") << QStringList{"text/plain", "FILE\n"} << 40 << 2;
        QTest::newRow("image") << QStringList{"application/x-qt-image", "50"} << 50 << 2;
        QTest::newRow("huge image") << QStringList{"application/x-qt-image", "9000"} << 30 << 1;
        QTest::newRow("web") << QStringList{"text/uri-list", "https://a.b/c.png"} << 30 << 2;
        QTest::newRow("words") << QStringList{"text/plain", "any"} << 30 << 1;
        QTest::newRow("refused") << QStringList{"a/b", "any"} << 30 << 0;
    }

    void takesDrop()
    {
        QFETCH(const QStringList, data);
        QFETCH(const int, width);
        QFETCH(const int, accepted);
        const QString old = saved("old.png", {30, 20});
        const QString fresh = saved("fresh.png", {40, 20});
        QMimeData mime;
        mime.setData(data[0], QString(data[1]).replace("FILE", "file://" + fresh).toUtf8());
        if (const int side = data[1].toInt())
            mime.setImageData(QImage(side, side, QImage::Format_Mono));
        Dropped canvas(old, true);
        QCOMPARE(drop(canvas, 200, mime), accepted);
        QWidget dialog;
        canvas.image->buildConfigUI(new QFormLayout(&dialog), &dialog);
        canvas.image->applyConfigUI(); // untouched
        QCOMPARE(canvas.image->picture().width(), width);
        QCOMPARE(canvas.image->path(), width <= 30 ? old : width == 40 ? fresh : QString());
    }

    void dropGoesToTopmostOnly()
    {
        QMimeData file;
        file.setUrls({QUrl::fromLocalFile(saved("fresh.png", {40, 20}))});
        const Dropped canvas({}, true);
        QCOMPARE(drop(canvas, 40, file), 0); // the gauge
        QCOMPARE(canvas.below->path(), QString());
    }

    void dropLeavesTheMouseToTheItem_data()
    {
        QTest::addColumn<bool>("design");
        QTest::addColumn<double>("x");
        QTest::newRow("design mode") << true << 120.0;
        QTest::newRow("other modes") << false << 100.0;
    }

    void dropLeavesTheMouseToTheItem()
    {
        QFETCH(bool, design);
        QFETCH(double, x);
        QMimeData file;
        file.setUrls({QUrl::fromLocalFile(saved("fresh.png", {40, 20}))});
        Dropped canvas({}, design);
        QCOMPARE(drop(canvas, 200, file), 2);
        canvas.drag({350, 350}, {370, 370});
        QCOMPARE(canvas.item->pos().x(), x);
        canvas.item->requestDelete();
        QTRY_VERIFY(!canvas.image);
    }

    void findsPictureInMovedProject()
    {
        Canvas canvas;
        canvas.scene.setProjectFolder(m_dir.filePath("b"));
        DashboardItem* item = canvas.add("Image", {0, 0, 100, 100});
        imageOf(item)->loadPixmap(saved("b/x.png", {60, 20}));
        const QJsonObject layout = item->toJson();
        QVERIFY(QFile::rename("b/x.png", "c/x.png"));
        canvas.scene.addItem(item = DashboardItem::fromJson(layout));
        canvas.scene.setProjectFolder(m_dir.filePath("c"));
        QCOMPARE(imageOf(item)->picture().width(), 60);
        QCOMPARE(imageOf(item)->path(), "x.png");
    }

    void savesPathInLinkedProject()
    {
        ImageWidget image;
        image.setProjectFolder(m_dir.filePath("link"));
        image.loadPixmap(saved("b/x.png", {60, 20})); // as a file manager names it
        QCOMPARE(image.saveConfig()["path"], "x.png");
    }

    void missingPictureLeavesTheOldOne()
    {
        ImageWidget image;
        image.setProjectFolder(m_dir.path());
        image.loadPixmap(saved("x.png", {60, 20}));
        image.loadConfig({{"path", "none"}});
        QCOMPARE(image.picture().width(), 60);
        QCOMPARE(image.path(), "none");
    }

    void emptyPathClearsPictureOnly()
    {
        ImageWidget image;
        const QString path = saved("x.png", {60, 20});
        image.loadPixmap(path);
        image.loadPixmap({});
        QVERIFY(image.picture().isNull());
        QCOMPARE(image.path(), path);
    }

    void relativePathWaitsForTheProject()
    {
        saved("y.png", {50, 20});
        ImageWidget image;
        image.loadConfig({{"path", "y.png"}});
        QVERIFY(image.picture().isNull());
        image.setProjectFolder({}); // there is none: from the working directory
        QCOMPARE(image.picture().width(), 50);
    }

    void relativePathFollowsTheProject()
    {
        saved("b/y.png", {50, 20});
        saved("c/y.png", {60, 20});
        ImageWidget image;
        image.setProjectFolder(m_dir.filePath("b"));
        image.loadConfig({{"path", "y.png"}});
        image.setProjectFolder(m_dir.filePath("c"));
        QCOMPARE(image.picture().width(), 60);
        image.setProjectFolder(m_dir.filePath("none")); // the other project's picture must not stay
        QVERIFY(image.picture().isNull());
        QCOMPARE(image.path(), "y.png");
    }

    void fitsPicture_data()
    {
        QTest::addColumn<QJsonObject>("config");
        QTest::addColumn<QRect>("seen");
        QTest::newRow("contain") << QJsonObject{{"mode", 0}} << QRect(1, 16, 100, 50);
        QTest::newRow("cover") << QJsonObject{{"mode", 1}} << QRect(0, 1, 104, 80);
        QTest::newRow("stretch") << QJsonObject{{"mode", 2}} << QRect(2, 2, 100, 80);
        QTest::newRow("actual size") << QJsonObject{{"mode", 3}} << QRect(2, 2, 40, 20);
        QTest::newRow("no mode") << QJsonObject{{"mode", 7}} << QRect();
        QTest::newRow("too opaque") << QJsonObject{{"mode", 3}, {"opacity", 300}} << QRect(2, 2, 40, 20);
        QTest::newRow("transparent") << QJsonObject{{"opacity", 0}} << QRect();
        QTest::newRow("border") << QJsonObject{{"border", true}} << QRect(0, 0, 104, 84);
    }

    void fitsPicture()
    {
        QFETCH(QJsonObject, config);
        QFETCH(QRect, seen);
        const auto widget = shown(saved("x.png", {40, 20}), config);
        const QRgb back = widget->palette().color(QPalette::Window).rgb();
        const QImage mask = picture(*widget).createMaskFromColor(back);
        QCOMPARE(QRegion(QBitmap::fromImage(mask)).boundingRect(), seen);
    }

    void halfOpaquePictureLetsGroundThrough()
    {
        const auto widget = shown(saved("x.png", {40, 20}), {{"mode", 3}, {"opacity", 50}});
        const QImage image = picture(*widget);
        QVERIFY(qAbs(qRed(image.pixel(9, 9)) - qRed(image.pixel(0, 0)) / 2) < 3);
    }

    void actualSizeIsPixelForPixel()
    {
        const auto widget = shown(saved("fine.png", {2001, 2001}, Qt::Dense4Pattern), {{"mode", 3}});
        QCOMPARE(picture(*widget).copy(2, 2, 100, 80), QImage(widget->path()).copy(0, 0, 100, 80));
    }

    void muchSmallerPictureIsNotGrainy()
    {
        const auto widget = shown(saved("fine.png", {2001, 2001}, Qt::Dense4Pattern), {{"mode", 2}});
        // The mean of 500 pixels instead of one of them.
        QVERIFY(qAbs(qGreen(picture(*widget).pixel(50, 3)) - 128) < 20);
    }

    void coversWithHairOfMillionsOfRows()
    {
        const auto widget = shown(saved("hair.png", {1, 60'000}), {{"mode", 1}});
        QCOMPARE(picture(*widget).pixelColor(50, 41), QColor(Qt::green));
    }

    void takesPhotoOfManyPixels()
    {
        QCOMPARE(shown(saved("photo.jpg", {8000, 6000}), {})->picture().width(), 8000);
    }

    void refusesPicture_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("too long a side") << saved("long.png", {200'000, 4});
        const auto saysSmall = QByteArray::fromHex("00000100010010100000010001000010000016000000");
        const QByteArray lengthy = readFile(m_dir.filePath("long.png")).leftJustified(4096);
        QTest::newRow("header lies") << writeFile(m_dir.filePath("icon.ico"), saysSmall + lengthy);
        QCOMPARE(::mkfifo(qPrintable(m_dir.filePath("pipe.png")), 0600), 0);
        QTest::newRow("pipe") << m_dir.filePath("pipe.png");
    }

    void refusesPicture()
    {
        QFETCH(QString, path);
        ImageWidget widget;
        widget.loadPixmap(path);
        QVERIFY(widget.picture().isNull());
    }

private:
    /// The path of a file with a green picture, black where the pattern says so.
    QString saved(const QString& name, const QSize& size, Qt::BrushStyle pattern = Qt::NoBrush) const
    {
        QImage image(size, size.width() < 9000 ? QImage::Format_RGB32 : QImage::Format_Mono);
        image.fill(Qt::green);
        QPainter(&image).fillRect(image.rect(), pattern);
        if (!image.save(m_dir.filePath(name)))
            qFatal("cannot save %s", qPrintable(name));
        return m_dir.filePath(name);
    }
    static std::unique_ptr<ImageWidget> shown(const QString& path, const QJsonObject& config)
    {
        auto widget = std::make_unique<ImageWidget>();
        widget->resize(104, 84);
        widget->loadPixmap(path);
        widget->loadConfig(config);
        return widget;
    }

    QTemporaryDir m_dir;
};

QTEST_MAIN(TestImageWidget)
#include "tst_imagewidget.moc"
