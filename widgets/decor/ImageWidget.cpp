#include "widgets/decor/ImageWidget.h"

#include "definitions/numbers/FileNumbers.h"

#include <QDir>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QImageReader>
#include <QLineEdit>
#include <QMimeData>
#include <QPainter>
#include <QPushButton>
#include <QStandardPaths>
#include <QUrl>

#include <algorithm>

namespace {

// No enum class: layouts store the number, and one that is not listed is kept and draws nothing.
enum ScaleMode { Contain = 0, Cover = 1, Stretch = 2, ActualSize = 3 };

constexpr qint64 kMaxPixels = 64'000'000;
constexpr int kMaxSide = 65'535;      ///< as in a JPEG; on absurdly long sides Qt's smooth scaling crashes
constexpr int kSmallestLevel = 512;   ///< longer side, in pixels
constexpr int kMegabytesToRead = 256; ///< kMaxPixels of 32 bits
constexpr int kInset = 2;
constexpr int kLowestOffered = 10; ///< a picture that nobody sees cannot be chosen

constexpr QLatin1String kPathKey("path");

bool isTooLarge(const QSize& size)
{
    return qint64(size.width()) * size.height() > kMaxPixels ||
           std::max(size.width(), size.height()) > kMaxSide;
}

/// Null for whatever cannot be shown.
QImage readImage(const QString& file)
{
    if (!QFileInfo(file).isFile()) // reading a pipe or a device might never end
        return {};
    // Qt refuses more than 128 MB, which the photos of many cameras need. The limit is the whole
    // program's, but only pictures chosen by the user are that large.
    QImageReader::setAllocationLimit(kMegabytesToRead);
    QImageReader reader(file);
    reader.setAutoTransform(true); // photos are often stored lying on their side
    if (isTooLarge(reader.size()))
        return {};
    const QImage image = reader.read();
    // A header may lie about the size, and a pixmap takes up to 32 times the memory of a black and white
    // image.
    return isTooLarge(image.size()) ? QImage() : image;
}

/// The path that the dragged data names; empty when it names none.
QString droppedPath(const QMimeData& data)
{
    if (data.hasUrls()) {
        const QList<QUrl> urls = data.urls();
        const auto local =
            std::find_if(urls.begin(), urls.end(), [](const QUrl& u) { return u.isLocalFile(); });
        return local != urls.end() ? local->toLocalFile() : urls.value(0).toString();
    }
    const QUrl url(data.hasImage() ? QString() : data.text().trimmed());
    return url.isLocalFile() ? url.toLocalFile() : QString();
}

bool isDroppable(const QMimeData& data)
{
    return !data.urls().isEmpty() || data.hasImage() || (data.hasText() && QUrl(data.text()).isValid());
}

void acceptAsCopy(QDropEvent* event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

/// The picture scaled into the box, or around it when expanding, in the middle of the widget. In 64 bits, as
/// one long column around a wide box becomes a billion pixels high.
QRectF centred(const QSize& picture, const QSize& box, bool expanding, const QSize& widget)
{
    qint64 width = qint64(box.height()) * picture.width() / picture.height();
    qint64 height = box.height();
    if (expanding ? width < box.width() : width > box.width()) {
        width = box.width();
        height = qint64(box.width()) * picture.height() / picture.width();
    }
    const qint64 left = (widget.width() - 1) / 2 - width / 2;
    const qint64 top = (widget.height() - 1) / 2 - height / 2;
    return QRectF(double(left), double(top), double(width), double(height));
}

} // namespace

QStringList ImageWidget::modeNames()
{
    return {tr("Contain"), tr("Cover"), tr("Stretch"), tr("Actual size")};
}

void ImageWidget::ModeSetting::load(const QJsonValue& entry) { set(jsonInt(entry, value())); }

QComboBox* ImageWidget::ModeSetting::newEditor(QWidget* parent) const
{
    auto* editor = new QComboBox(parent);
    editor->addItems(modeNames());
    editor->setCurrentIndex(value());
    return editor;
}

int ImageWidget::ModeSetting::edited(const QComboBox& editor) const
{
    return editor.currentIndex() < 0 ? value() : editor.currentIndex();
}

void ImageWidget::OpacitySetting::load(const QJsonValue& entry) { set(jsonInt(entry, value())); }

QSlider* ImageWidget::OpacitySetting::newEditor(QWidget* parent) const
{
    auto* editor = new QSlider(Qt::Horizontal, parent);
    editor->setRange(kLowestOffered, 100);
    editor->setValue(value());
    return editor;
}

int ImageWidget::OpacitySetting::edited(const QSlider& editor) const
{
    return editor.value() == std::clamp(value(), kLowestOffered, 100) ? value() : editor.value();
}

ImageWidget::ImageWidget(QWidget* parent)
    : WidgetWithSettings(parent)
{
    setAcceptDrops(true);
    setMinimumSize(80, 60);
}

void ImageWidget::loadPixmap(const QString& path)
{
    if (path.isEmpty()) {
        m_levels.clear();
        update();
        return;
    }
    const QImage image = readImage(resolved(path));
    if (image.isNull())
        return;
    m_path = path;
    setPicture(image);
}

void ImageWidget::setPicture(const QImage& image)
{
    m_levels = {QPixmap::fromImage(image)};
    QImage level = picture().toImage();
    while (std::max(level.width(), level.height()) >= kSmallestLevel) {
        level = level.scaled(std::max(1, level.width() / 2), std::max(1, level.height() / 2),
                             Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        m_levels.append(QPixmap::fromImage(level));
    }
    update();
}

QString ImageWidget::resolved(const QString& path) const
{
    const QString folder = m_projectFolder.value_or(QString());
    if (folder.isEmpty() || QDir::isAbsolutePath(path))
        return path;
    // Cleaned, because ".." behind a folder that is a link would lead elsewhere.
    return QDir::cleanPath(QDir(folder).filePath(path));
}

void ImageWidget::setProjectFolder(const QString& dir)
{
    if (m_projectFolder == dir)
        return;
    m_projectFolder = dir;
    if (!m_path.isEmpty() && QDir::isRelativePath(m_path)) {
        m_levels.clear(); // the path does not name that picture any more
        loadPixmap(m_path);
        update();
    }
}

QString ImageWidget::typeName() const { return QStringLiteral("Image"); }

bool ImageWidget::supportsMultipleSignals() const { return false; }

bool ImageWidget::usesSignalSelection() const { return false; }

// --- Configuration -----------------------------------------------------------------------------------------

void ImageWidget::loadConfig(const QJsonObject& config)
{
    if (config.contains(kPathKey)) {
        const QString path = config.value(kPathKey).toString();
        // In the working directory a file of the same name may be another picture.
        if (m_projectFolder || path.isEmpty() || QDir::isAbsolutePath(path))
            loadPixmap(path);
        m_path = path; // also when it is not found: it may be there in the next folder
    }
    WidgetWithSettings::loadConfig(config);
}

QString ImageWidget::pathToSave() const
{
    const QString folder = m_projectFolder.value_or(QString());
    if (folder.isEmpty() || !QDir::isAbsolutePath(m_path))
        return m_path;
    // The project may have been opened through a link, and the picture dropped by its real path.
    QString direct = QDir(folder).relativeFilePath(m_path);
    const QString realFolder = QFileInfo(folder).canonicalFilePath();
    const QString realPath = QFileInfo(m_path).canonicalFilePath();
    if (realFolder.isEmpty() || !realPath.startsWith(realFolder + QLatin1Char('/')))
        return direct; // outside, or one of them is gone
    return QDir(realFolder).relativeFilePath(realPath);
}

QJsonObject ImageWidget::saveConfig() const
{
    QJsonObject config = WidgetWithSettings::saveConfig();
    config.insert(kPathKey, pathToSave());
    return config;
}

void ImageWidget::buildConfigUI(QFormLayout* form, QWidget* parent)
{
    addPathRow(form, parent);
    WidgetWithSettings::buildConfigUI(form, parent);
}

void ImageWidget::addPathRow(QFormLayout* form, QWidget* parent)
{
    m_pathEditor = new QLineEdit(m_path, parent);
    describeEditor(m_pathEditor, tr("Image"),
                   tr("The picture's file; a relative path starts in the project's folder"));
    auto* button = new QPushButton(tr("Browse…"), parent);
    describeEditor(button, tr("Browse for an image"), tr("Choose the picture's file"));
    button->setAutoDefault(false); // or Enter in the line would open the file dialog
    connect(button, &QPushButton::clicked, m_pathEditor, [editor = m_pathEditor] { browse(editor); });

    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_pathEditor);
    row->addWidget(button);
    form->addRow(tr("Image:"), row);
}

// The editor may be gone when the dialog closes, and the widget too.
void ImageWidget::browse(const QPointer<QLineEdit>& editor)
{
    const QString file =
        QFileDialog::getOpenFileName(editor->window(), tr("Choose image"),
                                     QStandardPaths::writableLocation(QStandardPaths::PicturesLocation),
                                     tr("Images (*.png *.jpg *.jpeg *.bmp *.gif)"));
    if (editor && !file.isEmpty())
        editor->setText(file);
}

void ImageWidget::applyConfigUI()
{
    const QString path = m_pathEditor ? m_pathEditor->text().trimmed() : QString();
    // Nothing was cleared in a line that was empty before: the picture may have been dropped without a file.
    if (m_pathEditor && !(path.isEmpty() && m_path.isEmpty()))
        loadPixmap(path);
    WidgetWithSettings::applyConfigUI();
}

// --- Drag and drop -----------------------------------------------------------------------------------------

void ImageWidget::dragEnterEvent(QDragEnterEvent* event)
{
    if (isDroppable(*event->mimeData()))
        acceptAsCopy(event);
    else
        event->ignore();
}

void ImageWidget::dragMoveEvent(QDragMoveEvent* event) { acceptAsCopy(event); }

void ImageWidget::dropEvent(QDropEvent* event)
{
    const QString path = droppedPath(*event->mimeData());
    if (!path.isEmpty()) {
        loadPixmap(path);
        acceptAsCopy(event);
        return;
    }
    const auto image = qvariant_cast<QImage>(event->mimeData()->imageData()); // a pixmap is converted
    if (image.isNull() || isTooLarge(image.size())) {
        event->ignore();
        return;
    }
    m_path.clear();
    setPicture(image);
    acceptAsCopy(event);
}

// --- Painting ----------------------------------------------------------------------------------------------

QRectF ImageWidget::targetRect() const
{
    const QSize logical = picture().deviceIndependentSize().toSize();
    const QSize box = size() - QSize(2 * kInset, 2 * kInset);
    if (logical.isEmpty() || box.isEmpty())
        return {};
    switch (m_mode.value()) {
    case Contain:
    case Cover:
        return centred(logical, box, m_mode == Cover, size());
    case Stretch:
        return QRectF(QPointF(kInset, kInset), box);
    case ActualSize:
        return QRectF(QPointF(kInset, kInset), logical);
    default:
        return {};
    }
}

/// The smallest level that need not be enlarged to so many pixels: one much larger would flicker in its
/// details, and reading all over it is slow.
const QPixmap& ImageWidget::levelFor(const QSizeF& pixels) const
{
    const auto tooSmall = [&pixels](const QPixmap& level) {
        return level.width() < pixels.width() || level.height() < pixels.height();
    };
    const auto first = std::find_if(m_levels.begin(), m_levels.end(), tooSmall);
    return first == m_levels.begin() ? m_levels.first() : *std::prev(first);
}

void ImageWidget::drawPicture(QPainter& painter) const
{
    const QRectF target = targetRect();
    const QRectF visible = target & QRectF(rect());
    if (visible.isEmpty())
        return;
    const QSizeF pixels = painter.deviceTransform().mapRect(target).size();
    const QPixmap& level = levelFor(pixels);
    const qreal across = level.width() / target.width();
    const qreal down = level.height() / target.height();
    const QRectF source((visible.x() - target.x()) * across, (visible.y() - target.y()) * down,
                        visible.width() * across, visible.height() * down);
    // Pixel for pixel there is nothing to smooth, only something to blur.
    painter.setRenderHint(QPainter::SmoothPixmapTransform, QSizeF(level.size()) != pixels);
    painter.drawPixmap(visible, level, source);
}

void ImageWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    if (m_levels.isEmpty()) {
        painter.setPen(Qt::gray);
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextWordWrap, tr("Drop image or choose file…"));
        return;
    }
    painter.setOpacity(std::clamp(m_opacity.value(), 0, 100) / 100.0);
    drawPicture(painter);
    painter.setOpacity(1.0);
    if (m_border) { // filled, since half of a pen's line would lie outside on screens of finer pixels
        const QRegion frame = QRegion(rect()) - rect().adjusted(1, 1, -1, -1);
        for (const QRect& side : frame)
            painter.fillRect(side, m_borderColor);
    }
}
