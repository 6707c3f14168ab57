#pragma once

#include <QString>

/// The signal that an assignment entry names: what stands before its first ":", without outer white space.
QString canonical(const QString& entry);
