#pragma once

#include <QColor>
#include <QString>
#include <QStringList>

// The short list of colours that decorative widgets offer and layouts store by name. It knows no other
// names, and none of Qt's.

/// What stands for every other name.
constexpr QLatin1String kOtherColor("Black");

/// The colour of that exact name; black for any other.
QColor namedColor(const QString& name);
/// All names, in the order in which dialogs offer them.
QStringList colorNames();
/// Those of them that are offered for text.
QStringList textColorNames();
