#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

class DesignAndPortToolBar;
class LicenseCheck;
class QWidget;

// Says yes or no to what the licence limits, and shows how it stands: the chip on the toolbar, and a box with
// the same text.
class LicenseGate : public QObject
{
    Q_OBJECT

public:
    /// Nothing is owned; dialogParent is the window above which the box appears.
    LicenseGate(DesignAndPortToolBar* chip, QWidget* dialogParent);

    /// The check that is asked from now on, not owned; without one the program counts as unlicensed.
    void setCheck(LicenseCheck* check);
    bool isLicensed() const;
    void show() const;
    /// Whether one more widget fits on a canvas of that many; when not, a box says so.
    [[nodiscard]] bool allowsWidget(int present) const;
    /// Whether signals may be exported; when not, a box says so and the licence's own one follows it.
    [[nodiscard]] bool allowsExport() const;

private:
    QString text() const;
    void refreshChip();

    DesignAndPortToolBar* m_chip;
    QWidget* m_dialogParent;
    QPointer<LicenseCheck> m_check;
};
