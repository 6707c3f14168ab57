#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

// Whole files in one call.

/// Makes a file of these bytes, in place of one that is there, and returns its path; the test ends when that
/// fails.
inline QString writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

/// What the file holds; null where there is none.
inline QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
