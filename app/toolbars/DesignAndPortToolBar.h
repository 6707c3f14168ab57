#pragma once

#include "app/toolbars/CompactToolBar.h"

class QLabel;

// The first toolbar: designing, layouts, the serial controls and the licence chip. The window builds it left
// to right and connects the actions.
class DesignAndPortToolBar : public CompactToolBar
{
    Q_OBJECT

public:
    explicit DesignAndPortToolBar(QWidget* parent);

    QAction* designAction() const { return m_design; }
    QAction* saveAction() const { return m_save; }
    QAction* loadAction() const { return m_load; }

    /// Adds what stands right of the serial controls.
    void addLicenseChip();
    void setLicenseText(const QString& text);

private:
    void setupLicenseChip();

    QAction* m_design;
    QAction* m_save;
    QAction* m_load;
    QLabel* m_licenseChip = nullptr;
};
