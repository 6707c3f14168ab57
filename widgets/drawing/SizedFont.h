#pragma once

#include <QFont>

/// The font at another size, in points.
inline QFont sizedFont(QFont font, int pointSize)
{
    font.setPointSize(pointSize);
    return font;
}
