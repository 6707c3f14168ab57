#pragma once

#include <QList>
#include <QRect>

class QPainter;

// The numbers beside the left side of a plot, right-aligned and all in one style. They are collected first,
// as the widest of them decides how all are written.
class ValueLabels
{
public:
    /// The labels end that many pixels before the plot. They begin at the edge of the widget, as its margin
    /// is room as well.
    ValueLabels(const QRect& plot, int gap);

    /// Centred in that many rows of pixels, whatever stands there.
    void add(double value, int top, int height);
    /// As add(); left out where it would overlap a label that is there already.
    void addIfFree(double value, int top, int height);
    /// In black, at most as large as the painter's font.
    void draw(QPainter& painter) const;

private:
    struct Label
    {
        double value;
        QRect box;
    };

    QRect boxOf(int top, int height) const { return {1, top, m_width, height}; }

    int m_width;
    QList<Label> m_labels;
};
