#include "widgets/trend/TrendMarkerPopups.h"

#include "widgets/trend/TrendMarkerLabelEditor.h"

#include <QGraphicsProxyWidget>
#include <QGraphicsScene>
#include <QMenu>
#include <QTimer>

TrendMarkerPopups::TrendMarkerPopups(TrendMarkers& markers, QWidget& plot)
    : m_markers(markers)
    , m_plot(plot)
{}

void TrendMarkerPopups::openMenuAfterPress(const QPoint& globalPos)
{
    afterPress([this, globalPos] { openMenu(globalPos); });
}

void TrendMarkerPopups::editLabelAfterPress(int index, const QPoint& globalPos)
{
    afterPress([this, index, globalPos] { editLabel(index, globalPos); });
}

// What opens takes the mouse and will swallow the release as well: if the plot went on grabbing it, the
// canvas would go on sending the plot every move and the next press.
void TrendMarkerPopups::afterPress(const std::function<void()>& open)
{
    QTimer::singleShot(0, this, [this, open] {
        QGraphicsProxyWidget* proxy = m_plot.graphicsProxyWidget();
        if (proxy && proxy->scene() && proxy->scene()->mouseGrabberItem() == proxy)
            proxy->ungrabMouse();
        open();
    });
}

// Without a parent, as it would be drawn on the canvas and cut off there.
void TrendMarkerPopups::openMenu(const QPoint& globalPos)
{
    auto* menu = new QMenu;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    connect(this, &QObject::destroyed, menu, &QWidget::close);
    menu->addAction(tr("Delete all markers"), this, [this] {
        m_markers.clear();
        Q_EMIT markersChanged();
    });
    menu->addAction(tr("Delete screen markers"), this, [this] { clear(Marker::Kind::Screen); });
    menu->addAction(tr("Delete data markers"), this, [this] { clear(Marker::Kind::Data); });
    menu->popup(globalPos);
}

void TrendMarkerPopups::editLabel(int index, const QPoint& globalPos)
{
    if (index < 0 || index >= m_markers.list().size())
        return;
    auto* editor = new TrendMarkerLabelEditor(m_markers.list()[index].label, &m_plot);
    connect(editor, &TrendMarkerLabelEditor::labelEntered, this, [this, index](const QString& label) {
        m_markers.setLabel(index, label);
        Q_EMIT markersChanged();
    });
    editor->showNear(globalPos);
}

void TrendMarkerPopups::clear(Marker::Kind kind)
{
    m_markers.clear(kind);
    Q_EMIT markersChanged();
}
