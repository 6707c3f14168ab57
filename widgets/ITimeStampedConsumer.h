#pragma once

#include <QString>
#include <QtPlugin>

/// What a widget with a time axis implements, so that others can ask for it with qobject_cast.
class ITimeStampedConsumer
{
public:
    virtual ~ITimeStampedConsumer() = default;

    /// One sample; tSec is its time in seconds on the stream's own axis (live or recorded). Value and time
    /// may be NaN or infinite.
    virtual void setValueForSignalAt(const QString& name, double value, double tSec) = 0;
};

Q_DECLARE_INTERFACE(ITimeStampedConsumer, "ITimeStampedConsumer")
