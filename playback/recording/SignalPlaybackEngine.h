#pragma once

#include "playback/recording/RecordingValues.h"
#include "playback/recording/SignalRecording.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <memory>

// Replays a recording on a timer, as fast as asked, and jumps to any point of it, emitting what the live
// input would. PlaybackController drives it, the window routes what it emits, the export asks for its
// recording. It knows no widget: whoever moves a slider listens.
class SignalPlaybackEngine : public QObject
{
    Q_OBJECT

public:
    /// Full scale of positionChanged().
    static constexpr int kPositionSteps = 1000;

    explicit SignalPlaybackEngine(QObject* parent = nullptr);
    ~SignalPlaybackEngine() override;

    /// Loads a recording in place of the one before; index and position stay. True when it has a frame; else
    /// the engine is empty. The file that is loaded already and has not changed costs nothing. Emits
    /// loadProgressed() between slices, in which cancelLoading() may be called; the replay stands still
    /// meanwhile. False at once when called from there.
    bool loadFromFile(const QString& path);
    /// Ends a load in progress as if the file could not be read.
    void cancelLoading();
    bool isLoading() const { return m_loading; }
    /// Whether the last loadFromFile() returned false because it was cancelled.
    bool wasLoadCancelled() const { return m_loadCancelled; }

    /// Back to the start; a replay that is running goes on from there.
    void resetStartTime();
    /// Starts or resumes at the position. Without frames it finishes at the next tick.
    void startPlayback();
    /// Stops the timer; position and index stay.
    void stopPlayback();
    bool isPlaying() const { return m_timer.isActive(); }
    bool hasFrames() const { return !m_recording->isEmpty(); }
    /// The largest time of the recording in seconds, at least 0; may be infinite.
    double getMaxTimestamp() const { return m_recording->maxTimestamp(); }
    /// Jumps: the first frame at or after t seconds is the next to play. Emits values, states, errors and
    /// messages as they stood then and, unless playing, the values of the history window before t. NaN and
    /// minus infinity count as 0; infinity is after all finite times.
    void seekToTimestamp(double t);
    /// Replays as much as is due after that many milliseconds of wall clock: nothing for less than 1 or more
    /// than 1999, as after a suspended machine. Listeners may stop, jump and load: what they left is where it
    /// goes on. Does nothing while loading, and when called by a listener.
    void advance(qint64 elapsedMs);

    /// Seconds of recording per second of wall clock, 1 at first; what is not finite or below 0 is ignored.
    void setPlaybackRate(double rate);
    /// Groups that a seek clears when they have no state yet.
    void setKnownStateGroups(const QStringList& ids) { m_knownStateGroups = ids; }
    /// Seconds of history that a seek brings back, 10 at first; what is not finite or below 0 is ignored.
    void setHistoryWindow(double seconds);
    /// Seconds of recording reached.
    double playTime() const { return m_playTime; }
    /// The loaded recording, never null. It stays whole for whoever keeps it, also when another one is
    /// loaded.
    std::shared_ptr<const SignalRecording> recording() const { return m_recording; }

public Q_SLOTS:
    /// The timer's tick: advances by the wall clock.
    void scheduleNextFrame();

Q_SIGNALS:
    // What the recording says; times in seconds.
    void signalValuesUpdated(const QMap<QString, double>& values);
    void signalValuesUpdatedAt(double t, const QMap<QString, double>& values);
    /// An empty state name clears the group.
    void stateEvent(double t, const QString& groupId, const QString& stateName);
    void errorEvent(double t, const QString& errorId);
    void messageEvent(double t, const QString& text);
    /// What is shown of errors, messages and plots is about to be sent anew.
    void errorReset();
    void messageReset();
    void dataReset();

    void playbackTimeAdvanced(double t);
    /// Play time on a scale of 0 to kPositionSteps, where the end is the largest time.
    void positionChanged(int step);
    void playbackFinished();
    /// Between two slices of a load; 0 to 1.
    void loadProgressed(double fraction);

private:
    /// What tells whether a file was replaced or written to since it was loaded.
    struct FileStamp
    {
        QString path; ///< empty when there is no such file
        qint64 size = 0;
        QDateTime modified;
        QDateTime metadataChanged;

        bool operator==(const FileStamp&) const = default;
    };

    static FileStamp stampOf(const QString& path);
    SignalRecording readRecording(const QString& path);
    void emitDueFrames(double playTimeBefore);
    void emitFrame(const SignalRecording& recording, qsizetype frame);
    void emitHistory(const SignalRecording& recording, double t);
    void emitStates(const SignalRecording& recording, qsizetype passed);
    void emitErrorsAndMessages(const SignalRecording& recording, qsizetype passed);
    int positionStep() const;

    std::shared_ptr<const SignalRecording> m_recording; // never null
    RecordingValues m_values;                           // of m_recording
    FileStamp m_loadedFile;                             // empty path when nothing is loaded
    bool m_loading = false;
    bool m_loadCancelled = false;

    QTimer m_timer;
    QElapsedTimer m_clock;
    qint64 m_previousReading = 0; // of m_clock, in milliseconds
    QElapsedTimer m_tickBudget;   // runs during a tick of the timer
    double m_rate = 1.0;
    QStringList m_knownStateGroups;
    double m_historyWindow = 10.0;

    double m_playTime = 0.0;
    double m_position = 0.0;
    qsizetype m_index = 0; // of the next frame to emit; the frame count or more when there is none
    quint64 m_jumps = 0; // seeks, rewinds and loads so far: what is being emitted tells by it that it is over
    bool m_emitting = false;
};
