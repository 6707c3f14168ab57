#include "app/LicenseStatus.h"

#include "app/toolbars/ControlsToolBar.h"
#include "licensing/LicenseCheck.h"

#include <QMessageBox>
#include <QTimer>

namespace {

constexpr int kUnlicensedWidgets = 5;

} // namespace

LicenseStatus::LicenseStatus(ControlsToolBar* chip, QWidget* dialogParent)
    : QObject(dialogParent)
    , m_chip(chip)
    , m_dialogParent(dialogParent)
{}

void LicenseStatus::setCheck(LicenseCheck* check)
{
    if (m_check)
        disconnect(m_check, nullptr, this, nullptr);
    m_check = check;
    if (check) {
        connect(check, &LicenseCheck::changed, this, &LicenseStatus::refreshChip);
        connect(check, &QObject::destroyed, this, &LicenseStatus::refreshChip);
    }
    refreshChip();
}

bool LicenseStatus::isLicensed() const { return m_check && m_check->isLicensed(); }

void LicenseStatus::show() const { QMessageBox::information(m_dialogParent, tr("License"), text()); }

bool LicenseStatus::allowsWidget(int present) const
{
    if (isLicensed() || present < kUnlicensedWidgets)
        return true;
    QMessageBox::information(
        m_dialogParent, tr("Limit reached"),
        tr("In the unlicensed version you can add up to %1 widgets.").arg(kUnlicensedWidgets));
    return false;
}

bool LicenseStatus::allowsExport() const
{
    if (isLicensed())
        return true;
    QMessageBox::information(m_dialogParent, tr("Export CSV"),
                             tr("Export is a licensed feature.\nBuy or enter a license key."));
    QTimer::singleShot(0, this, &LicenseStatus::show);
    return false;
}

QString LicenseStatus::text() const { return m_check ? m_check->statusText() : tr("Unknown license status"); }

void LicenseStatus::refreshChip() { m_chip->setLicenseText(text()); }
