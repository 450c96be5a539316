#pragma once
// Frames are given with the origin at the bottom left and y growing upward;
// Qt's origin is the top left. One conversion, so the numbers in the code
// can stay as they are written.

#include <QRect>

inline QRect flippedRect(int parentHeight, int x, int y, int w, int h)
{
    return QRect(x, parentHeight - y - h, w, h);
}
