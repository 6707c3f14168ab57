#pragma once

#include "playback/recording/SignalCsvExport.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class ActiveDefinitions;
class QSaveFile;
class QWidget;

// Exports the loaded recording as CSV: asks what and where to, shows progress, and leaves either a whole file
// or everything as it was. The window asks the licence before and sees to it that a recording is loaded.
class CsvExportController : public QObject
{
    Q_OBJECT

public:
    /// dialogParent is the window above which dialogs appear; nothing is owned.
    CsvExportController(const ActiveDefinitions* definitions, QWidget* dialogParent);

    /// The folder that the save dialogs begin in, made when needed. Empty without a project.
    void setExportFolder(const QString& dir) { m_folder = dir; }
    void exportSignals(std::shared_ptr<const SignalRecording> recording);
    void exportEvents(std::shared_ptr<const SignalRecording> recording);
    /// Ends an export in progress as if the user had.
    void cancel() { m_cancelled = true; }

Q_SIGNALS:
    void statusMessage(const QString& text, int milliseconds);

private:
    /// Writes the rows to a device.
    using Writer = std::function<CsvResult(QIODevice& device, const KeepGoing& keepGoing)>;

    void exportChosenSignals(const SignalRecording& recording);
    /// Empty when the user chose none.
    QString askForFile(const QString& defaultName) const;
    /// WriteFailed also when the file cannot be opened; a box has told the user then.
    CsvResult writeFile(const QString& path, const QString& title, const Writer& writer) const;
    CsvResult writeRows(QSaveFile& file, const QString& title, const Writer& writer) const;

    const ActiveDefinitions* m_definitions;
    QWidget* m_dialogParent;
    QString m_folder;
    bool m_running = false;
    bool m_cancelled = false; ///< the present export shall end
};
