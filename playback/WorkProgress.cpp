#include "playback/WorkProgress.h"

#include "definitions/numbers/FileNumbers.h"

#include <QCoreApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>

namespace {

constexpr int kShowAfterMs = 500;
constexpr int kSteps = 1000;
constexpr int kTextWidth = 440;

} // namespace

WorkProgress::WorkProgress(const QString& title, const QString& text, QWidget* parent)
    : m_title(title)
    , m_text(text)
    , m_parent(parent)
{
    m_clock.start();
}

WorkProgress::~WorkProgress() { delete m_dialog; }

bool WorkProgress::update(double done)
{
    if (m_cancelled)
        return false;
    if (!m_dialog && m_clock.elapsed() < kShowAfterMs) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        return true;
    }
    if (!m_dialog)
        showDialog();
    m_bar->setValue(boundedInt(done * kSteps, 0, kSteps, 0));
    QCoreApplication::processEvents();
    // However it was closed, and also when its parent took it along.
    m_cancelled = !m_dialog || !m_dialog->isVisible();
    return !m_cancelled;
}

void WorkProgress::showDialog()
{
    m_dialog = new QProgressDialog(m_parent);
    m_dialog->setWindowTitle(m_title);
    m_dialog->setWindowModality(Qt::WindowModal);
    m_dialog->setAutoReset(false);
    m_dialog->setAutoClose(false);

    auto* label = new QLabel(m_dialog);
    label->setTextFormat(Qt::PlainText); // a file name may look like markup
    label->setText(label->fontMetrics().elidedText(m_text, Qt::ElideMiddle, kTextWidth));
    m_dialog->setLabel(label);

    // Its values are set directly: the dialog's own function would run the event loop a second time, and the
    // dialog may be gone when that comes back.
    m_bar = new QProgressBar(m_dialog);
    m_bar->setRange(0, kSteps);
    m_bar->setAccessibleName(m_text);
    m_bar->setToolTip(tr("How much is done"));
    m_dialog->setBar(m_bar);

    // Its own button: another one would bring a second shortcut for Esc, and neither would work then.
    if (auto* cancel = m_dialog->findChild<QPushButton*>())
        cancel->setToolTip(tr("Stop and leave everything as it was (Esc)"));

    m_dialog->setMinimumWidth(kTextWidth);
    m_dialog->show();
}
