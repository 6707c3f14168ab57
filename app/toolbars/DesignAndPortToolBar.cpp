#include "app/toolbars/DesignAndPortToolBar.h"

#include <QAction>
#include <QLabel>

DesignAndPortToolBar::DesignAndPortToolBar(QWidget* parent)
    : CompactToolBar(tr("Controls"), QStringLiteral("tb_controls"), parent)
{
    addSpacer(10);
    m_design = addIconAction(QStringLiteral(":/icons/design.png"), tr("Design"),
                             tr("Arrange the dashboard; press again to go back to Idle (Ctrl+D)"));
    m_design->setShortcut(Qt::CTRL | Qt::Key_D);
    m_save = addIconAction(QStringLiteral(":/icons/save.png"), tr("Save Layout"),
                           tr("Save the dashboard to a layout file (Ctrl+S)"));
    m_save->setShortcut(QKeySequence::Save);
    m_load = addIconAction(QStringLiteral(":/icons/load.png"), tr("Load Layout"),
                           tr("Replace the dashboard by a layout file (Ctrl+Shift+O)"));
    m_load->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_O);
    addSeparator();
    setupLicenseChip();
}

void DesignAndPortToolBar::setupLicenseChip()
{
    m_licenseChip = new QLabel(tr("Unknown license status"), this);
    m_licenseChip->setObjectName(QStringLiteral("licenseChip"));
    m_licenseChip->setTextFormat(Qt::PlainText);
    m_licenseChip->setToolTip(tr("What your licence allows (Ctrl+L)"));
    m_licenseChip->setStyleSheet(QStringLiteral("QLabel { background: #dde5ec; color: #2f3a45; "
                                                "border-radius: 8px; padding: 3px 10px; }"));
    m_licenseChip->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void DesignAndPortToolBar::addLicenseChip()
{
    addSeparator();
    addExpandingSpacer();
    addWidget(m_licenseChip);
    addSpacer(10);
}

void DesignAndPortToolBar::setLicenseText(const QString& text) { m_licenseChip->setText(text); }
