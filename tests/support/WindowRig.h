#pragma once

#include "app/Sigvane.h"
#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "licensing/LicenseCheck.h"
#include "playback/recording/SignalPlaybackEngine.h"
#include "support/Files.h"
#include "support/ModalAnswer.h"
#include "support/PseudoTerminal.h"

#include <QAction>
#include <QComboBox>
#include <QSlider>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QToolButton>

// The program's window with a licence, a folder for its files and answers for its dialogs.
struct WindowRig
{
    QTemporaryDir dir;
    LicenseCheck license{true, QStringLiteral("Bought")};
    Sigvane window;
    SignalPlaybackEngine* engine = window.playbackEngine();
    QSlider* slider = window.findChild<QSlider*>();
    ModalAnswer answer;

    WindowRig() { window.setLicenseCheck(&license); }

    QString write(const char* name, const QByteArray& bytes) const
    {
        return writeFile(dir.filePath(QLatin1String(name)), bytes);
    }
    void openProject(const QByteArray& definitions = "\n")
    {
        write("dashboard_signals.def", definitions);
        if (!window.setProjectDir(dir.path()))
            qFatal("no project");
    }
    void connectTo(const PseudoTerminal& device) const
    {
        window.findChild<QComboBox*>(QStringLiteral("portBox"))->setEditText(device.portName());
        window.findChild<QToolButton*>(QStringLiteral("connectButton"))->click();
    }
    void replay(const QByteArray& recording) { window.startPlayback(write("replay.rec", recording)); }

    /// The button or menu entry of that text.
    QAction* action(const QString& text) const
    {
        const QList<QAction*> actions = window.findChildren<QAction*>();
        for (QAction* action : actions) {
            if (action->text() == text)
                return action;
        }
        qFatal("nothing is called %s", qPrintable(text));
    }
    void press(const QString& text) const { action(text)->trigger(); }

    template <class Widget>
    Widget* add() const
    {
        auto* widget = new Widget;
        window.scene()->addItem(new DashboardItem(widget));
        return widget;
    }
    QList<DashboardItem*> items() const { return window.scene()->dashboardItems(); }
    QString status() const { return window.statusBar()->currentMessage(); }
};
