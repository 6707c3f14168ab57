#pragma once

#include <QString>

// For widgets that keep paths relative to the project. The canvas tells such a widget the project's folder
// when it comes onto the canvas and whenever the folder changes; it does not watch what is in the folder.
class ProjectFolderAware
{
public:
    virtual ~ProjectFolderAware() = default;

    /// The absolute path of the project's folder; empty while there is none.
    virtual void setProjectFolder(const QString& dir) = 0;
};
