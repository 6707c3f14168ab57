#pragma once

#include <QLabel>

/// Whether the label's text is drawn in red, as trouble is.
inline bool isRed(const QLabel& label)
{
    label.ensurePolished(); // style sheets take effect here
    const QColor color = label.palette().color(label.foregroundRole());
    return color.red() > 2 * color.green() && color.red() > 2 * color.blue();
}
