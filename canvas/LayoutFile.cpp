#include "canvas/LayoutFile.h"

#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "canvas/StackingOrder.h"

#include <QDataStream>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMainWindow>
#include <QMessageBox>
#include <QSaveFile>
#include <QScreen>
#include <QStandardPaths>

#include <algorithm>

namespace {

// Far above any dashboard; a file beyond them is refused before it can take the memory or the time.
constexpr qint64 kMaxFileBytes = 64LL * 1024 * 1024;
constexpr qsizetype kMaxItems = 2'000;

QString startFolder(const QString& folder)
{
    return folder.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) : folder;
}

QString base64(const QByteArray& bytes) { return QString::fromLatin1(bytes.toBase64()); }

/// Whether a window whose toolbars all stand visibly at the top, and that has no docks, could have written
/// that state. Qt believes the counts in it and would loop as often as they say, and a toolbar that
/// a layout hid or moved away could not be got back.
bool isUsableWindowState(const QByteArray& state)
{
    constexpr qint32 kVersionMarker = 0xff;
    constexpr quint8 kDockMarker = 0xfd;
    constexpr quint8 kToolBarMarker = 0xfc;
    constexpr qint64 kDockGeometryBytes = 6 * sizeof(qint32); // the central widget's size and four corners
    constexpr qint32 kTopArea = 2;
    constexpr qint32 kMaxToolBars = 64;

    QDataStream stream(state);
    qint32 marker = 0;
    qint32 version = 0;
    qint32 docks = 0;
    qint32 lines = 0;
    quint8 block = 0;
    stream >> marker >> version >> block >> docks;
    if (marker != kVersionMarker || block != kDockMarker || docks != 0)
        return false;
    stream.skipRawData(kDockGeometryBytes);
    stream >> block >> lines;
    if (block != kToolBarMarker || lines < 0 || lines > kMaxToolBars)
        return false;
    for (int line = 0; line < lines; ++line) {
        qint32 area = 0;
        qint32 toolBars = 0;
        stream >> area >> toolBars;
        if (area != kTopArea || toolBars < 0 || toolBars > kMaxToolBars)
            return false;
        for (int i = 0; i < toolBars; ++i) {
            QString name;
            quint8 shown = 0;
            qint32 position = 0;
            qint32 size = 0;
            quint32 geometry[2] = {}; // of a floating toolbar; the lowest bit says whether it is one
            stream >> name >> shown >> position >> size >> geometry[0] >> geometry[1];
            if (shown != 1 || (geometry[0] & 1U) != 0)
                return false;
        }
    }
    return stream.status() == QDataStream::Ok && stream.atEnd();
}

bool writeWhole(const QString& path, const QByteArray& bytes)
{
    QSaveFile file(path);
    file.setDirectWriteFallback(true);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // A full disk may show only in the flush; commit() alone would report success.
    if (file.write(bytes) == bytes.size() && file.flush())
        return file.commit();
    file.cancelWriting();
    file.commit();
    return false;
}

QByteArray fromBase64(const QJsonValue& value) { return QByteArray::fromBase64(value.toString().toLatin1()); }

} // namespace

LayoutFile::LayoutFile(QMainWindow* window, DesignScene* scene)
    : m_window(window)
    , m_scene(scene)
{}

void LayoutFile::save(const QString& folder)
{
    normalizeZOrder(m_scene);
    if (!folder.isEmpty())
        QDir().mkpath(folder);
    QFileDialog dialog(m_window, tr("Save Layout"), startFolder(folder), tr("Layouts (*.json)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("json"));
    dialog.selectFile(QStringLiteral("layout.json"));
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString problem = saveTo(dialog.selectedFiles().value(0));
    if (!problem.isEmpty())
        QMessageBox::warning(m_window, tr("Error"), problem);
}

void LayoutFile::load(const QString& folder)
{
    const QString path = QFileDialog::getOpenFileName(m_window, tr("Load Layout"), startFolder(folder),
                                                      tr("Layouts (*.json)"));
    if (path.isEmpty())
        return;
    const QString problem = loadFrom(path);
    if (!problem.isEmpty())
        QMessageBox::warning(m_window, tr("Error"), problem);
}

QString LayoutFile::saveTo(const QString& path)
{
    QString failure = tr("Could not save layout.");
    const QFileInfo existing(path);
    if (path.isEmpty() || (existing.exists() && !existing.isFile()))
        return failure;
    normalizeZOrder(m_scene);
    const QByteArray bytes = QJsonDocument(toJson()).toJson(QJsonDocument::Indented);
    // Where no new file may be made, the old one is written over; what it held is put back when that fails.
    QFile old(existing.exists() ? existing.canonicalFilePath() : path);
    const bool overwrites = existing.exists() && !QFileInfo(QFileInfo(old).absolutePath()).isWritable();
    if (overwrites && !old.open(QIODevice::ReadOnly))
        return failure;
    const QByteArray before = overwrites ? old.readAll() : QByteArray();
    old.close();
    if (writeWhole(path, bytes))
        return {};
    const bool restored =
        !overwrites || (old.open(QIODevice::WriteOnly) && old.write(before) == before.size() && old.flush());
    if (!restored)
        qWarning("The old layout %s could not be restored", qPrintable(old.fileName()));
    return failure;
}

QString LayoutFile::loadFrom(const QString& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return tr("Could not load layout.");
    QString invalid = tr("Invalid layout format.");
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
    for (const auto& record : records) {
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
    keepWindowOnScreen();
    const QByteArray state = fromBase64(layout.value(QLatin1String("windowState")));
    if (isUsableWindowState(state))
        m_window->restoreState(state);
    if (layout.value(QLatin1String("isFullScreen")).toBool())
        m_window->showFullScreen();
    else if (layout.value(QLatin1String("isMaximized")).toBool())
        m_window->showMaximized();
}

void LayoutFile::keepWindowOnScreen()
{
    const QRect frame = m_window->frameGeometry();
    const QList<QScreen*> screens = QGuiApplication::screens();
    const bool visible = std::any_of(screens.begin(), screens.end(), [&frame](const QScreen* screen) {
        return screen->availableGeometry().intersects(frame);
    });
    if (visible || screens.isEmpty())
        return;
    const QRect home = QGuiApplication::primaryScreen()->availableGeometry();
    m_window->resize(m_window->size().boundedTo(home.size()));
    m_window->move(home.topLeft());
}
