#include "playback/CsvExportController.h"

#include "definitions/ActiveDefinitions.h"
#include "playback/ExportCsvDialog.h"
#include "playback/WorkProgress.h"
#include "playback/recording/SignalRecording.h"
#include "widgets/PlainWarning.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QSaveFile>
#include <QScopedValueRollback>
#include <QStandardPaths>

namespace {

constexpr int kMessageMs = 4000;

QString fileName(const QString& path) { return QFileInfo(path).fileName(); }

} // namespace

CsvExportController::CsvExportController(const ActiveDefinitions* definitions, QWidget* dialogParent)
    : QObject(dialogParent)
    , m_definitions(definitions)
    , m_dialogParent(dialogParent)
{}

// Kept here while it is exported, as another one may be loaded meanwhile.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void CsvExportController::exportSignals(std::shared_ptr<const SignalRecording> recording)
{
    if (m_running || !recording)
        return;
    const QScopedValueRollback running(m_running, true);
    m_cancelled = false;
    exportChosenSignals(*recording);
}

void CsvExportController::exportChosenSignals(const SignalRecording& recording)
{
    const QString title = tr("Export CSV");
    QStringList keys = recording.keys();
    keys.sort(Qt::CaseSensitive);
    ExportCsvDialog dialog(keys, m_dialogParent);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QStringList chosen = dialog.selectedSignals();
    if (chosen.isEmpty()) {
        warnPlainly(m_dialogParent, title, tr("No signals selected."));
        return;
    }
    const double sampleHz = dialog.sampleHz();
    const bool applyMappings = dialog.applyMappings();
    const QString path = askForFile(QStringLiteral("signals.csv"));
    if (path.isEmpty())
        return;
    const auto columns = csvColumns(chosen, applyMappings, m_definitions->active());
    const auto writer = [&](QIODevice& device, const KeepGoing& keepGoing) {
        return writeSignalsCsv(device, recording, columns, sampleHz, keepGoing);
    };
    const CsvResult result = writeFile(path, title, writer);
    if (result == CsvResult::Written)
        Q_EMIT statusMessage(tr("CSV exported → %1").arg(fileName(path)), kMessageMs);
    else if (result == CsvResult::Endless)
        warnPlainly(m_dialogParent, title,
                    tr("The recording's times cannot be sampled at %1 Hz: "
                       "it would take more than 100,000,000 rows.")
                        .arg(sampleHz));
}

void CsvExportController::exportEvents(std::shared_ptr<const SignalRecording> recording)
{
    if (m_running || !recording)
        return;
    const QScopedValueRollback running(m_running, true);
    m_cancelled = false;
    const QString path = askForFile(QStringLiteral("events.csv"));
    if (path.isEmpty())
        return;
    const auto writer = [&](QIODevice& device, const KeepGoing& keepGoing) {
        return writeEventsCsv(device, *recording, m_definitions->active(), keepGoing);
    };
    if (writeFile(path, tr("Export Events CSV"), writer) == CsvResult::Written)
        Q_EMIT statusMessage(tr("Events CSV exported → %1").arg(fileName(path)), kMessageMs);
}

QString CsvExportController::askForFile(const QString& defaultName) const
{
    if (!m_folder.isEmpty())
        QDir().mkpath(m_folder);
    const QString folder =
        m_folder.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) : m_folder;
    QFileDialog dialog(m_dialogParent, tr("Export CSV"), folder, tr("CSV (*.csv)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QStringLiteral("csv"));
    dialog.selectFile(defaultName);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

CsvResult CsvExportController::writeFile(const QString& path, const QString& title,
                                         const Writer& writer) const
{
    const QFileInfo existing(path);
    // Without its fallback to writing in place: what is there must survive a cancelled export.
    auto file = std::make_unique<QSaveFile>(path);
    // What is there but no regular file must not be replaced by one, and a pipe would not even open.
    if ((existing.exists() && !existing.isFile()) || !file->open(QIODevice::WriteOnly)) {
        warnPlainly(m_dialogParent, title, tr("Could not open file for writing."));
        return CsvResult::WriteFailed;
    }
    const CsvResult result = writeRows(*file, title, writer);
    const QString reason = file->errorString();
    file.reset(); // takes what it wrote along before a box stands open
    if (result == CsvResult::WriteFailed)
        warnPlainly(m_dialogParent, title, tr("Could not write the file: %1").arg(reason));
    return result;
}

CsvResult CsvExportController::writeRows(QSaveFile& file, const QString& title, const Writer& writer) const
{
    WorkProgress progress(title, tr("Exporting %1…").arg(fileName(file.fileName())), m_dialogParent);
    CsvResult result =
        writer(file, [this, &progress](double done) { return progress.update(done) && !m_cancelled; });
    // A full disk may show only in the flush; commit() alone would report success.
    if (result == CsvResult::Written && !(file.flush() && file.commit()))
        result = CsvResult::WriteFailed;
    // A write that came back short names no reason; the next one does.
    if (result == CsvResult::WriteFailed && file.isOpen() && file.error() == QFileDevice::NoError) {
        file.write("\n");
        file.flush();
    }
    return result;
}
