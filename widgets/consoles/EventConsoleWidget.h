#pragma once

#include "widgets/WidgetWithSettings.h"
#include "widgets/settings/BoolSetting.h"
#include "widgets/settings/IntSetting.h"

#include <QElapsedTimer>
#include <QList>
#include <QPointer>
#include <QTimer>

class QTextBlock;
class QTextEdit;

// What the error console and the message console have in common: a read-only editor whose document is the
// store, one block per event, the newest maxLines() of them. Appended events are collected and written to the
// document at most once per frame, a limited amount at a time, the first after a pause at the next turn of
// the event loop. It does not know what an event means; the text is shown as it is, never read as markup.
class EventConsoleWidget : public WidgetWithSettings
{
    Q_OBJECT

public:
    /// The empty text is shown in grey as long as there is no event.
    explicit EventConsoleWidget(const QString& emptyText, QWidget* parent = nullptr);

    /// As set; what is shown is bounded to 1 to 100,000 lines.
    int maxLines() const { return m_maxLines; }
    bool autoScroll() const { return m_autoScroll; }
    /// Every line, oldest first. Writes the waiting ones to the document first, all at once.
    QString plainText();
    /// Seconds with three decimals and an "s".
    static QString formatTime(double tSec);

    void setValue(double) override {}
    void setValueForSignal(const QString&, double) override {}
    void buildConfigUI(QFormLayout* form, QWidget* parent) override;

    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    /// Adds "[time] text" as the newest line. What would break the line is shown as U+FFFD, a
    /// text of more than 1,000 characters is cut and ends in "…".
    void appendEvent(double tSec, const QString& text);
    void clearEvents();
    /// A lowered limit takes effect with the next line.
    void setMaxLines(int lines);
    void setAutoScroll(bool on);
    /// The editors of buildConfigUI(); null when the dialog is gone.
    QSpinBox* maxLinesEditor() const { return m_maxLines.editor(); }
    QCheckBox* autoScrollEditor() const { return m_autoScroll.editor(); }
    void settingsAboutToChange() override;

private:
    struct Event
    {
        double tSec;
        QString text;
    };

    static constexpr int kMaxLines = 100'000;

    /// OK takes the number that the editor shows, also for one from a layout that it cannot show.
    class LinesSetting : public IntSetting
    {
    public:
        using IntSetting::IntSetting;

    protected:
        int edited(const QSpinBox& editor) const override { return editor.value(); }
    };

    int lineLimit() const;
    void setupEditor();
    /// Writes some of the pending events and trims.
    void flush();
    void flushAll();
    void writePending();
    void insertAtEnd(const QString& lines);
    QTextBlock firstKeptLine() const;
    /// Height in pixels of the oldest lines over the limit.
    double surplusHeight() const;
    void trim();
    bool isFollowing() const;
    void followNewest();
    void showContextMenu(const QPoint& position);

    QPointer<QTextEdit> m_editor;
    LinesSetting m_maxLines{settings(),
                            "maxLines",
                            500,
                            {tr("Max lines:"), tr("How many of the newest lines are kept"), 50, kMaxLines}};
    BoolSetting m_autoScroll{
        settings(), "autoScroll", true, {tr("Auto-scroll"), tr("Keep the newest line in sight")}};
    bool m_selecting = false; ///< the left button is down in the editor
    QList<Event> m_pending;   ///< never more than lineLimit()
    QTimer m_flushTimer;
    QElapsedTimer m_sinceFlush;
    qint64 m_flushPause = 0; ///< milliseconds from one flush to the next
};
