#pragma once

#include <QCoreApplication>
#include <QString>

class DesignScene;
class QJsonObject;
class QMainWindow;

// A layout on disk: every widget of the canvas, and the window's geometry and toolbars. save() and load()
// ask the user for the file and show a box when it cannot be used; saveTo() and loadFrom() do the work and
// only say what was wrong.
class LayoutFile
{
    Q_DECLARE_TR_FUNCTIONS(LayoutFile)

public:
    /// Neither is owned; both must outlive this.
    LayoutFile(QMainWindow* window, DesignScene* scene);

    /// Asks for a file in the folder, which is made when it is missing. An empty folder stands for the user's
    /// documents.
    void save(const QString& folder);
    /// Asks for a file in the folder; empty as above.
    void load(const QString& folder);

    /// Writes the whole file or leaves the one there as it was. Empty on success, else a text for the user.
    [[nodiscard]] QString saveTo(const QString& path);
    /// Replaces what is on the canvas; on failure the canvas is left alone. Empty on success, else a text for
    /// the user. Records of unknown type are skipped.
    [[nodiscard]] QString loadFrom(const QString& path);

private:
    QJsonObject toJson() const;
    void replaceItems(const QJsonObject& layout);
    void restoreWindow(const QJsonObject& layout);
    void keepWindowOnScreen();

    QMainWindow* m_window;
    DesignScene* m_scene;
};
