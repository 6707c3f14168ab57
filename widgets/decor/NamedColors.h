#pragma once

#include <QColor>
#include <QString>
#include <QStringList>

// The short list of colours that decorative widgets offer and layouts store by name. It knows no other
// names, and none of the toolkit's.

/// The colour of that exact name; black for any other.
QColor namedColor(const QString& name);
/// The name of a listed colour; "Black" for any other.
QString colorName(const QColor& color);
/// All names, in the order in which dialogs offer them.
QStringList colorNames();
/// Those of them that are offered for text.
QStringList textColorNames();
