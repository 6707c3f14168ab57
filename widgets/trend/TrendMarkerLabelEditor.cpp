#include "widgets/trend/TrendMarkerLabelEditor.h"

#include <QGuiApplication>
#include <QLineEdit>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int kMargin = 8;
constexpr QPoint kOffset(8, 8);
constexpr int kMinimumEditWidth = 260; ///< the hint in the empty field fits

} // namespace

// Its parent usually stands on a canvas; without the bypass it would be drawn there and cut off with it.
TrendMarkerLabelEditor::TrendMarkerLabelEditor(const QString& label, QWidget* parent)
    : QDialog(parent, Qt::Popup | Qt::BypassGraphicsProxyWidget)
    , m_edit(new QLineEdit(label, this))
{
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Marker label"));
    m_edit->setPlaceholderText(tr("Label… (Enter to save, Esc to cancel)"));
    m_edit->setAccessibleName(tr("Marker label"));
    m_edit->setToolTip(tr("The text above the marker"));
    m_edit->setMinimumWidth(kMinimumEditWidth);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    layout->addWidget(m_edit);
    connect(m_edit, &QLineEdit::returnPressed, this, &TrendMarkerLabelEditor::enter);
}

void TrendMarkerLabelEditor::showNear(const QPoint& globalPos)
{
    adjustSize();
    QPoint corner = globalPos + kOffset;
    const QScreen* screen = QGuiApplication::screenAt(globalPos);
    if (screen) {
        const QRect room = screen->availableGeometry();
        corner.setX(std::max(room.left(), std::min(corner.x(), room.right() - width() + 1)));
        corner.setY(std::max(room.top(), std::min(corner.y(), room.bottom() - height() + 1)));
    }
    move(corner);
    show();
    raise();
    activateWindow();
    m_edit->setFocus();
    m_edit->selectAll();
}

void TrendMarkerLabelEditor::enter()
{
    Q_EMIT labelEntered(m_edit->text());
    close();
}
