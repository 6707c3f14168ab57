#include "canvas/LayoutFile.h"

#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "canvas/StackingOrder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMainWindow>
#include <QMessageBox>
#include <QSaveFile>

namespace {

// Far above any dashboard; a file beyond them is refused before it can take the memory or the time.
constexpr qint64 kMaxFileBytes = 64LL * 1024 * 1024;
constexpr qsizetype kMaxItems = 2'000;

QString text(const char* source) { return QCoreApplication::translate("LayoutFile", source); }

QString base64(const QByteArray& bytes) { return QString::fromLatin1(bytes.toBase64()); }

QByteArray fromBase64(const QJsonValue& value) { return QByteArray::fromBase64(value.toString().toLatin1()); }

} // namespace

LayoutFile::LayoutFile(QMainWindow* window, DesignScene* scene)
    : m_window(window)
    , m_scene(scene)
{}

void LayoutFile::save(const QString& folder)
{
    QDir().mkpath(folder);
    QFileDialog dialog(m_window, text("Save Layout"), folder, text("Layouts (*.json)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("json"));
    dialog.selectFile(QStringLiteral("layout.json"));
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString problem = saveTo(dialog.selectedFiles().value(0));
    if (!problem.isEmpty())
        QMessageBox::warning(m_window, text("Error"), problem);
}

void LayoutFile::load(const QString& folder)
{
    const QString path =
        QFileDialog::getOpenFileName(m_window, text("Load Layout"), folder, text("Layouts (*.json)"));
    if (path.isEmpty())
        return;
    const QString problem = loadFrom(path);
    if (!problem.isEmpty())
        QMessageBox::warning(m_window, text("Error"), problem);
}

QString LayoutFile::saveTo(const QString& path)
{
    const QString failure = text("Could not save layout.");
    const QFileInfo existing(path);
    if (path.isEmpty() || (existing.exists() && !existing.isFile()))
        return failure;
    normalizeZOrder(m_scene);
    QSaveFile file(path);
    file.setDirectWriteFallback(true);
    if (!file.open(QIODevice::WriteOnly))
        return failure;
    const QByteArray bytes = QJsonDocument(toJson()).toJson(QJsonDocument::Indented);
    // A full disk may show only in the flush; commit() alone would report success.
    if (file.write(bytes) != bytes.size() || !file.flush()) {
        file.cancelWriting();
        file.commit();
        return failure;
    }
    return file.commit() ? QString() : failure;
}

QString LayoutFile::loadFrom(const QString& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return text("Could not load layout.");
    const QString invalid = text("Invalid layout format.");
    if (file.size() > kMaxFileBytes)
        return invalid;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    if (!document.isObject())
        return invalid;
    const QJsonObject layout = document.object();
    if (layout.value(QLatin1String("items")).toArray().size() > kMaxItems)
        return invalid;
    replaceItems(layout);
    restoreWindow(layout);
    m_scene->update();
    return {};
}

QJsonObject LayoutFile::toJson() const
{
    QJsonArray items;
    const QList<DashboardItem*> topmostFirst = m_scene->dashboardItems();
    for (const DashboardItem* item : topmostFirst)
        items.append(item->toJson());
    return {
        {QStringLiteral("items"), items},
        {QStringLiteral("windowGeometry"), base64(m_window->saveGeometry())},
        {QStringLiteral("windowState"), base64(m_window->saveState())},
        {QStringLiteral("isMaximized"), m_window->isMaximized()},
        {QStringLiteral("isFullScreen"), m_window->isFullScreen()},
    };
}

void LayoutFile::replaceItems(const QJsonObject& layout)
{
    const QList<DashboardItem*> old = m_scene->dashboardItems();
    for (DashboardItem* item : old)
        item->requestDelete();
    QList<DashboardItem*> added;
    const QJsonArray records = layout.value(QLatin1String("items")).toArray();
    for (const QJsonValue& record : records) {
        DashboardItem* item = DashboardItem::fromJson(record.toObject());
        if (!item)
            continue;
        m_scene->addItem(item);
        added.append(item);
    }
    // Only now is the highest layer known, which every item asks for.
    for (DashboardItem* item : added)
        item->setDesignMode(m_scene->isDesignMode());
}

void LayoutFile::restoreWindow(const QJsonObject& layout)
{
    m_window->restoreGeometry(fromBase64(layout.value(QLatin1String("windowGeometry"))));
    m_window->restoreState(fromBase64(layout.value(QLatin1String("windowState"))));
    if (layout.value(QLatin1String("isFullScreen")).toBool())
        m_window->showFullScreen();
    else if (layout.value(QLatin1String("isMaximized")).toBool())
        m_window->showMaximized();
}
