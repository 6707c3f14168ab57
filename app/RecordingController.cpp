#include "app/RecordingController.h"

#include "canvas/CanvasPlots.h"
#include "playback/recording/SignalRecorder.h"
#include "serial/SerialManager.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>

namespace {

constexpr int kStoppedMessageMs = 3000;
constexpr int kProblemMessageMs = 5000;

} // namespace

RecordingController::RecordingController(SignalRecorder* recorder, const SerialManager* serial,
                                         const DesignScene* scene, QWidget* dialogParent)
    : QObject(dialogParent)
    , m_recorder(recorder)
    , m_serial(serial)
    , m_scene(scene)
    , m_dialogParent(dialogParent)
{}

bool RecordingController::isRecording() const { return m_recorder->isRecording(); }

bool RecordingController::start()
{
    if (!m_serial->isOpen()) {
        QMessageBox::warning(m_dialogParent, tr("Serial"), tr("Open a serial port before recording."));
        return false;
    }
    CanvasPlots::clearDataMarkers(*m_scene);
    // Without a project there is no place to record to.
    const QDir project(m_projectFolder);
    const QString folder =
        m_projectFolder.isEmpty() ? QString() : project.filePath(QStringLiteral("recordings"));
    const QString definitions = project.filePath(QStringLiteral("dashboard_signals.def"));
    if (!m_recorder->start(folder, definitions, QDateTime::currentDateTime())) {
        QMessageBox::warning(m_dialogParent, tr("Record"), tr("Could not open file for writing."));
        Q_EMIT statusMessage(m_recorder->startProblem(), kProblemMessageMs);
        return false;
    }
    Q_EMIT changed();
    Q_EMIT statusMessage(tr("Recording → %1").arg(QFileInfo(m_recorder->path()).fileName()), 0);
    return true;
}

void RecordingController::stop(bool toReplay)
{
    if (!m_recorder->isRecording())
        return;
    m_recorder->stop();
    Q_EMIT changed();
    Q_EMIT statusMessage(tr("Recording stopped."), kStoppedMessageMs);
    if (toReplay)
        Q_EMIT recorded(m_recorder->path());
}
