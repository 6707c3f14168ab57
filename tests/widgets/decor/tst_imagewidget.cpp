#include "support/Canvas.h"
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

class TestImageWidget : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;
    // The path of a new file with a green picture, black where the pattern says so.
    QString saved(const QString& name, const QSize& size, Qt::BrushStyle pattern = Qt::NoBrush) const
    {
        QImage image(size, size.width() < 9000 ? QImage::Format_RGB32 : QImage::Format_Mono);
        image.fill(Qt::green);
        QPainter(&image).fillRect(image.rect(), pattern);
        return image.save(m_dir.filePath(name)) ? m_dir.filePath(name) : QString();
    }

private Q_SLOTS:
    void takesDrops_data()
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
    void takesDrops()
    {
        QFETCH(const QStringList, data);
        QFETCH(const int, width);
        QFETCH(const int, accepted);
        const QString old = saved("old.png", {30, 20}), fresh = saved("fresh.png", {40, 20});
        QMimeData mime;
        mime.setData(data[0], QString(data[1]).replace("FILE", "file://" + fresh).toUtf8());
        if (const int side = data[1].toInt())
            mime.setImageData(QImage(side, side, QImage::Format_Mono));
        for (const bool design : {true, false}) {
            Canvas canvas;
            const ImageWidget* below = imageOf(canvas.add("Image", {0, 0, 300, 300}));
            DashboardItem* item = canvas.add("Image", {100, 100, 300, 300});
            canvas.add("AnalogGauge", {0, 0, 90, 90});
            const QPointer<ImageWidget> image = imageOf(item);
            image->loadPixmap(old);
            canvas.setDesignMode(design);
            QCOMPARE(drop(canvas, 200, mime), accepted);
            QVERIFY(!drop(canvas, 40, mime) && below->path().isEmpty()); // on the gauge
            QWidget dialog;
            image->buildConfigUI(new QFormLayout(&dialog), &dialog);
            image->applyConfigUI();
            QCOMPARE(image->picture().width(), width);
            QCOMPARE(image->path(), width <= 30 ? old : width == 40 ? fresh : QString());
            canvas.drag({350, 350}, {370, 370});
            QCOMPARE(item->pos().x(), design ? 120.0 : 100.0);
            item->requestDelete();
            QTRY_VERIFY(!image);
        }
    }

    void findsThePictureInTheProject()
    {
        Canvas canvas;
        canvas.scene.setProjectFolder(m_dir.path());
        DashboardItem* item = canvas.add("Image", {0, 0, 100, 100});
        imageOf(item)->loadPixmap(saved("x.png", {60, 20}));
        QVERIFY(QDir(m_dir.path()).mkdir("b") && QDir(m_dir.path()).rename("x.png", "b/x.png"));
        canvas.scene.addItem(item = DashboardItem::fromJson(item->toJson()));
        canvas.scene.setProjectFolder(m_dir.filePath("b"));
        ImageWidget* image = imageOf(item);
        QVERIFY(image->picture().width() == 60 && image->path() == "x.png");
        QVERIFY(QFile::link(m_dir.filePath("b"), m_dir.filePath("link")));
        canvas.scene.setProjectFolder(m_dir.filePath("link"));
        image->loadPixmap(m_dir.filePath("b/x.png")); // as a file manager names it
        QCOMPARE(image->saveConfig()["path"].toString(), "x.png");
        image->loadConfig({{"path", "none"}});
        QVERIFY(image->picture().width() == 60 && image->path() == "none");
        image->loadPixmap({});
        QVERIFY(image->picture().isNull() && image->path() == "none");
        ImageWidget fresh;
        QVERIFY(QDir(m_dir.path()).mkdir("c") && QDir::setCurrent(m_dir.path()));
        QVERIFY(!saved("y.png", {50, 20}).isEmpty() && !saved("c/y.png", {60, 20}).isEmpty());
        fresh.loadConfig({{"path", "y.png"}});
        QVERIFY(fresh.picture().isNull());
        fresh.setProjectFolder({});
        QCOMPARE(fresh.picture().width(), 50);
        fresh.setProjectFolder(m_dir.filePath("c"));
        const QPixmap loaded = fresh.picture();
        fresh.setProjectFolder(m_dir.filePath("c")); // told again
        QVERIFY(loaded.width() == 60 && loaded.cacheKey() == fresh.picture().cacheKey());
        fresh.setProjectFolder(m_dir.filePath("none")); // the other project's picture must not stay
        QVERIFY(fresh.picture().isNull() && fresh.path() == "y.png");
    }

    void fitsThePictureOrRefusesIt()
    {
        ImageWidget widget;
        widget.resize(104, 84);
        widget.loadPixmap(saved("x.png", {40, 20}));
        const auto seen = [&widget](const QJsonObject& config) {
            widget.loadConfig(config);
            const QRgb back = widget.palette().color(QPalette::Window).rgb();
            return QRegion(QBitmap::fromImage(picture(widget).createMaskFromColor(back))).boundingRect();
        };
        QCOMPARE(seen({{"mode", 0}}), QRect(1, 16, 100, 50));
        QCOMPARE(seen({{"mode", 1}}), QRect(0, 1, 104, 80));
        QCOMPARE(seen({{"mode", 2}}), QRect(2, 2, 100, 80));
        QCOMPARE(seen({{"mode", 3}, {"opacity", 300}}), QRect(2, 2, 40, 20));
        widget.loadConfig({{"opacity", 50}}); // half of the red behind the green
        QVERIFY(qAbs(qRed(picture(widget).pixel(9, 9)) - qRed(picture(widget).pixel(0, 0)) / 2) < 3);
        QVERIFY(seen({{"opacity", 0}}).isEmpty() && seen({{"mode", 7}, {"opacity", 100}}).isEmpty());
        QCOMPARE(seen({{"border", true}}), widget.rect());
        widget.loadConfig({{"path", saved("fine.png", {2001, 2001}, Qt::Dense4Pattern)}, {"mode", 3}});
        QCOMPARE(picture(widget).copy(2, 2, 100, 80), QImage(widget.path()).copy(0, 0, 100, 80));
        widget.loadConfig({{"mode", 2}}); // the mean of 500 pixels instead of one of them
        QVERIFY(qAbs(qGreen(picture(widget).pixel(50, 3)) - 128) < 20);
        widget.loadConfig({{"path", saved("hair.png", {1, 60'000})}, {"mode", 1}});
        QCOMPARE(picture(widget).pixelColor(50, 41), QColor(Qt::green)); // of 6,000,000 rows
        QFile lengthy(saved("long.png", {200'000, 4})), icon(m_dir.filePath("icon.ico"));
        QVERIFY(lengthy.open(QIODevice::ReadOnly) && icon.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        const auto saysSmall = QByteArray::fromHex("00000100010010100000010001000010000016000000");
        icon.write(saysSmall + lengthy.readAll().leftJustified(4096));
        QVERIFY(::mkfifo(qPrintable(m_dir.filePath("pipe.png")), 0600) == 0);
        for (const char* name : {"long.png", "icon.ico", "pipe.png"})
            widget.loadPixmap(m_dir.filePath(name));
        QCOMPARE(widget.path(), m_dir.filePath("hair.png"));
        widget.loadPixmap(saved("photo.jpg", {8000, 6000}));
        QCOMPARE(widget.picture().width(), 8000);
    }
};

QTEST_MAIN(TestImageWidget)
#include "tst_imagewidget.moc"
