#include "app/LicenseGate.h"

#include "app/toolbars/DesignAndPortToolBar.h"
#include "licensing/LicenseCheck.h"

#include <QMessageBox>
#include <QTimer>

namespace {

constexpr int kUnlicensedWidgets = 5;

} // namespace

LicenseGate::LicenseGate(DesignAndPortToolBar* chip, QWidget* dialogParent)
    : QObject(dialogParent)
    , m_chip(chip)
    , m_dialogParent(dialogParent)
{}

void LicenseGate::setCheck(LicenseCheck* check)
{
    if (m_check)
        disconnect(m_check, nullptr, this, nullptr);
    m_check = check;
    if (check) {
        connect(check, &LicenseCheck::changed, this, &LicenseGate::refreshChip);
        connect(check, &QObject::destroyed, this, &LicenseGate::refreshChip);
    }
    refreshChip();
}

bool LicenseGate::isLicensed() const { return m_check && m_check->isLicensed(); }

void LicenseGate::show() const { QMessageBox::information(m_dialogParent, tr("License"), text()); }

bool LicenseGate::allowsWidget(int present) const
{
    if (isLicensed() || present < kUnlicensedWidgets)
        return true;
    QMessageBox::information(
        m_dialogParent, tr("Limit reached"),
        tr("In the unlicensed version you can add up to %1 widgets.").arg(kUnlicensedWidgets));
    return false;
}

bool LicenseGate::allowsExport() const
{
    if (isLicensed())
        return true;
    QMessageBox::information(m_dialogParent, tr("Export CSV"),
                             tr("Export is a licensed feature.\nBuy or enter a license key."));
    QTimer::singleShot(0, this, &LicenseGate::show);
    return false;
}

QString LicenseGate::text() const { return m_check ? m_check->statusText() : tr("Unknown license status"); }

void LicenseGate::refreshChip() { m_chip->setLicenseText(text()); }
