#include "licensing/LicenseCheck.h"

LicenseCheck::LicenseCheck(bool licensed, const QString& statusText, QObject* parent)
    : QObject(parent)
    , m_licensed(licensed)
    , m_statusText(statusText)
{}

void LicenseCheck::setAnswer(bool licensed, const QString& statusText)
{
    if (licensed == m_licensed && statusText == m_statusText)
        return;
    m_licensed = licensed;
    m_statusText = statusText;
    Q_EMIT changed();
}
