#pragma once

#include <QObject>
#include <QString>

// Whether all features may be used, and a text about it for the user. The window asks it; it shows nothing
// itself.
class LicenseCheck : public QObject
{
    Q_OBJECT

public:
    LicenseCheck(bool licensed, const QString& statusText, QObject* parent = nullptr);

    bool isLicensed() const { return m_licensed; }
    /// One line, such as "All features".
    QString statusText() const { return m_statusText; }

    /// Sets a new answer; changed() follows when it differs.
    void setAnswer(bool licensed, const QString& statusText);

Q_SIGNALS:
    void changed();

private:
    bool m_licensed;
    QString m_statusText;
};
