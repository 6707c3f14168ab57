#pragma once

#include <QDir>
#include <QString>

#include <sys/mount.h>

// A disk of a few kilobytes in place of a folder, for as long as it lives.
class SmallDisk
{
public:
    explicit SmallDisk(const QString& folder, const char* options = "size=64k")
        : m_folder(folder.toLocal8Bit())
        , m_mounted(QDir().mkpath(folder) && ::mount("tmpfs", m_folder, "tmpfs", 0, options) == 0)
    {}
    ~SmallDisk()
    {
        if (m_mounted)
            ::umount2(m_folder, MNT_DETACH);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    /// False where mounting is not permitted: then a test has to be skipped.
    bool isMounted() const { return m_mounted; }
    bool resize(const char* options) const
    {
        return ::mount("tmpfs", m_folder, "tmpfs", MS_REMOUNT, options) == 0;
    }

private:
    QByteArray m_folder;
    bool m_mounted;
};
