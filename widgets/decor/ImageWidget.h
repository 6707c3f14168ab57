#pragma once

#include "widgets/ProjectFolderAware.h"
#include "widgets/WidgetWithSettings.h"
#include "widgets/settings/BoolSetting.h"
#include "widgets/settings/EditedSetting.h"

#include <QColor>
#include <QComboBox>
#include <QList>
#include <QPixmap>
#include <QPointer>
#include <QSlider>

#include <optional>

class QLineEdit;

// A picture that decorates the dashboard, chosen in the configuration dialog or dropped onto the widget. Its
// path is saved relative to the project's folder, which the canvas tells, so that a project can be moved with
// its pictures. It shows no signal.
class ImageWidget : public WidgetWithSettings, public ProjectFolderAware
{
    Q_OBJECT

public:
    explicit ImageWidget(QWidget* parent = nullptr);

    /// As it was set or loaded: absolute, or relative to the project's folder.
    QString path() const { return m_path; }
    /// Null while there is none.
    QPixmap picture() const { return m_levels.value(0); }

    /// Shows the picture of that file; an empty path clears the picture and keeps the path. What cannot be
    /// read or has more than 64 million pixels (65,535 on a side) changes nothing, silently.
    void loadPixmap(const QString& path);
    /// Looks for a picture with a relative path in that folder, or in the working directory while there is
    /// no project. One that is not found there leaves the widget empty.
    void setProjectFolder(const QString& dir) override;

    void setValue(double) override {}
    void setValueForSignal(const QString&, double) override {}
    QString typeName() const override;
    bool supportsMultipleSignals() const override;
    bool usesSignalSelection() const override;
    /// A picture with a relative path is not loaded before the project's folder was told.
    void loadConfig(const QJsonObject& config) override;
    QJsonObject saveConfig() const override;
    void buildConfigUI(QFormLayout* form, QWidget* parent) override;
    void applyConfigUI() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    static QStringList modeNames();

    /// The number of a scale mode. One that is not listed stays as it was loaded; nothing is selected then.
    class ModeSetting : public EditedSetting<int, QComboBox>
    {
    public:
        using EditedSetting::EditedSetting;
        void load(const QJsonValue& entry) override;

    protected:
        QComboBox* newEditor(QWidget* parent) const override;
        int edited(const QComboBox& editor) const override;
    };
    /// A slider that begins where a picture can still be seen. A number outside of it stays as it was loaded.
    class OpacitySetting : public EditedSetting<int, QSlider>
    {
    public:
        using EditedSetting::EditedSetting;
        void load(const QJsonValue& entry) override;

    protected:
        QSlider* newEditor(QWidget* parent) const override;
        int edited(const QSlider& editor) const override;
    };

    static void browse(const QPointer<QLineEdit>& editor);
    void addPathRow(QFormLayout* form, QWidget* parent);
    QString resolved(const QString& path) const;
    QString pathToSave() const;
    void setPicture(const QImage& image);
    QRectF targetRect() const;
    const QPixmap& levelFor(const QSizeF& pixels) const;
    void drawPicture(QPainter& painter) const;

    QString m_path;
    std::optional<QString> m_projectFolder; ///< nothing until it was told; empty while there is no project
    QList<QPixmap> m_levels; ///< the picture, then each half the size of the one before; empty without one
    ModeSetting m_mode{
        settings(), "mode", 0, {tr("Scale:"), tr("How the picture is fitted into the widget")}};
    /// Per cent; painted within 0 to 100.
    OpacitySetting m_opacity{
        settings(), "opacity", 100, {tr("Opacity:"), tr("How much the picture covers, in per cent")}};
    BoolSetting m_border{settings(), "border", false};
    QColor m_borderColor{30, 30, 30};
    QPointer<QLineEdit> m_pathEditor;
};
