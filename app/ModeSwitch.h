#pragma once

#include <QObject>
#include <QString>

#include <optional>

class ActiveDefinitions;
class DesignScene;
class PlaybackController;
class RecordingController;
class SignalPlaybackEngine;
class ValueRouter;

// What the window is doing: designing the dashboard, recording, replaying, pausing or just showing live
// values. It leaves one mode and enters the next, one change at a time, and says so by signals. What a mode
// does to the parts of the window stands in one table; how a recording or a replay runs is their business.
class ModeSwitch : public QObject
{
    Q_OBJECT

public:
    enum Mode { Design = 0, Record = 1, Play = 2, Pause = 3, Idle = 4 };
    Q_ENUM(Mode)

    /// None is owned; all must outlive this.
    struct Parts
    {
        DesignScene* scene = nullptr;
        ActiveDefinitions* definitions = nullptr;
        ValueRouter* router = nullptr;
        RecordingController* recordingController = nullptr;
        SignalPlaybackEngine* engine = nullptr;
        PlaybackController* playback = nullptr;
    };

    explicit ModeSwitch(const Parts& parts, QObject* parent = nullptr);

    /// Idle at first.
    Mode mode() const { return m_mode; }
    /// Leaves the mode first and then tries to enter the new one, which may refuse: the old one has been left
    /// by then, and only its number stays. A load in progress ends. Asked while another change is in progress
    /// (from a box or a load), it follows when that is done.
    void setMode(Mode mode);
    /// Idle, unless another mode has been asked for already: what the user wants counts more.
    void fallBackToIdle();
    /// Says the mode's name by statusChanged().
    void updateStatusLabel(Mode mode);

Q_SIGNALS:
    /// The dashboard can be arranged from now on, or no longer. After a mode that refuses it cannot, though
    /// the mode is still called Design; that it cannot is then said once more when the next mode is entered.
    void designingChanged(bool on);
    /// A change begins or ends; boxes may open and files be loaded meanwhile.
    void changingChanged(bool on);
    /// After each change, and when the present mode was asked for.
    void statusChanged(const QString& text);
    /// After each change: mode() holds. It is the old one where the new one refused.
    void modeSettled();

private:
    struct Row;

    static const Row& rowOf(Mode mode);
    void change(Mode mode);

    bool enterDesignMode();
    void exitDesignMode();
    bool enterRecordMode();
    void exitRecordMode();
    bool enterPlayMode();
    void exitPlayMode();
    bool enterIdleMode();

    const Parts m_parts;
    Mode m_mode = Idle;
    bool m_changing = false;
    std::optional<Mode> m_next; ///< asked for during a change
};
