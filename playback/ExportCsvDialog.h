#pragma once

#include <QDialog>
#include <QStringList>

class QCheckBox;
class QDoubleSpinBox;
class QListWidget;
class QVBoxLayout;

// Asks which signals of a recording to export, at which rate, raw or in physical units. It exports nothing.
class ExportCsvDialog : public QDialog
{
    Q_OBJECT

public:
    /// Offers the keys in that order, none of them selected.
    explicit ExportCsvDialog(const QStringList& keys, QWidget* parent = nullptr);

    QStringList selectedSignals() const;
    /// Rows per second; 0 for a row per frame.
    double sampleHz() const;
    bool applyMappings() const;

private:
    void setupSignals(const QStringList& keys, QVBoxLayout* layout);
    void setupOptions(QVBoxLayout* layout);

    QListWidget* m_signals = nullptr;
    QDoubleSpinBox* m_sampleHz = nullptr;
    QCheckBox* m_applyMappings = nullptr;
};
